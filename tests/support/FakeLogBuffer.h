// Lays entries of a fake log out as the BACnet library leaves a log buffer: the records, behind them the items, behind
// them the values of any type, all of it referred to by offsets from the buffer's start.
#pragma once

#include "tests/support/FakeBacnet.h"

#include <cstddef>
#include <vector>

// Fills contents with the entries from first to end, as many as there is room for; gives that number.
std::size_t FillLogBuffer(BACSTAC_OBJECT_TYPE objectType, const std::vector<FakeLogEntry>& log, std::size_t first,
                          std::size_t end, BACSTAC_PROPERTY_CONTENTS& contents);
