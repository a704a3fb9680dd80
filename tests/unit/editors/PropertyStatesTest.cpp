// The sixteen forms of a property state.
#include "module/editors/PropertyStates.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

BACSTAC_PROPERTY_STATE State(std::uint32_t form, std::uint32_t number) {
    BACSTAC_PROPERTY_STATE state{};
    state.Type = form;
    state.Value = number;
    return state;
}

std::string Text(std::uint32_t form, std::uint32_t number) {
    const auto value = ReadState(State(form, number));
    return value ? value->ToText(BACSTAC_NO_INDEX) : "none";
}

TEST(PropertyStates, PrintInTheirOrderWithTheNamesOfTheirEnumeration) {
    using Texts = std::vector<std::pair<std::string, std::string>>;
    const Texts expected{
        {"boolean-value", "true"},
        {"binary-value", "active"},
        {"event-type", "change-of-state"},
        {"polarity", "reverse"},
        {"program-change", "load"},
        {"program-state", "loading"},
        {"reason-for-halt", "load-failed"},
        {"reliability", "no-sensor"},
        {"state", "fault"},
        {"system-status", "operational-read-only"},
        {"units", "square-feet"},
        {"unsigned-value", "1"},
        {"life-safety-mode", "on"},
        {"life-safety-state", "pre-alarm"},
        {"restart-reason", "coldstart"},
        {"door-alarm-state", "alarm"},
    };
    Texts found;
    for (std::uint32_t form = 0; form < PropertyStateForms().size(); ++form)
        found.emplace_back(PropertyStateForms()[form].name, Text(form, 1));
    EXPECT_EQ(found, expected);
}

TEST(PropertyStates, FormsBeyondTheTableHaveNoValue) {
    EXPECT_EQ(PropertyStateForms().size(), 16U);
    EXPECT_EQ(ReadState(State(16, 1)), nullptr);
    EXPECT_EQ(ReadState(State(0xFFFFFFFFU, 1)), nullptr);
}

TEST(PropertyStates, ComeBackAsTheyWere) {
    for (std::uint32_t form = 1; form < PropertyStateForms().size(); ++form) {
        for (const std::uint32_t number : {0U, 1U, 77U, 0xFFFFFFFFU}) {
            const BACSTAC_PROPERTY_STATE before = State(form, number);
            BACSTAC_PROPERTY_STATE after = State(form, 5);
            WriteState(*ReadState(before), after);
            EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0) << form << " " << number;
        }
    }
}

TEST(PropertyStates, ABooleanLeavesNothingBehindIt) {
    BACSTAC_PROPERTY_STATE state = State(0, 0x12345601U);
    WriteState(*ReadState(state), state);
    EXPECT_EQ(state.Value, 1U);
}

} // namespace
