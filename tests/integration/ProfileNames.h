// The simulator's profiles of bad devices, as parameters of tests.
#pragma once

#include "simulator/Profiles.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

inline std::vector<const char*> ProfileNames() {
    std::vector<const char*> names;
    for (const sim::Profile& profile : sim::AllProfiles())
        names.push_back(profile.Name);
    return names;
}

inline std::string ProfileTestName(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
    return name;
}
