// Devices that behave badly, by name: for tests, and for users who want to see what their client makes of them.
// Constant data, any thread.
#pragma once

#include "simulator/Config.h"

#include <span>
#include <string_view>

namespace sim {

struct Profile {
    const char* Name;
    const char* What; // a line for people
    void (*Apply)(DeviceConfig& device);
};

std::span<const Profile> AllProfiles();
const Profile* FindProfile(std::string_view name); // null: there is none of that name

} // namespace sim
