// The fields of the editor of action commands. Pure functions, any thread.
#pragma once

#include "api/bacnet/Records.h"

#include <cstdint>
#include <string>

inline constexpr int MOST_PRIORITY = 16;

// Item of the list of priorities, whose first means none; -1 for what is in no list.
int PriorityItem(std::int32_t priority);
std::int32_t PriorityOfItem(int item);

// In seconds; empty when the command has none.
std::string ShowPostDelay(const BACSTAC_ACTION_COMMAND& command);
// False, and the command stays as it is, for a text that is no number.
bool StorePostDelay(const std::string& text, BACSTAC_ACTION_COMMAND& command);
