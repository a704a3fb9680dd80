#include "host/BacnetNames.h"

#include <gtest/gtest.h>

TEST(BacnetNames, KnowTheStandardsNames) {
    EXPECT_EQ(ObjectTypeByName("analog-input"), 0U);
    EXPECT_EQ(ObjectTypeByName("characterstring-value"), 40U);
    EXPECT_EQ(ObjectTypeByName("network-port"), 56U);
    EXPECT_EQ(PropertyByName("present-value"), 85U);
    EXPECT_EQ(PropertyByName("log-buffer"), 131U);
    for (const char* text : {"", "ai", "0", "analog input", "ANALOG-INPUT", "analog-inputs"})
        EXPECT_EQ(ObjectTypeByName(text), std::nullopt) << text;
    for (const char* text : {"", "pv", "85", "presentvalue"})
        EXPECT_EQ(PropertyByName(text), std::nullopt) << text;
}

TEST(BacnetNames, TakeAbbreviationsNumbersAndAnyCase) {
    const std::pair<const char*, BACSTAC_OBJECT_TYPE> types[] = {
        {"acc", 23},  {"ai", 0},      {"ao", 1},   {"av", 2},   {"avg", 18},  {"bi", 3},           {"bo", 4},
        {"bv", 5},    {"cal", 6},     {"cmd", 7},  {"csv", 40}, {"dev", 8},   {"ee", 9},           {"el", 25},
        {"iv", 45},   {"lav", 46},    {"lp", 12},  {"mi", 13},  {"mo", 14},   {"msi", 13},         {"mso", 14},
        {"msv", 19},  {"mv", 19},     {"nc", 15},  {"np", 56},  {"pc", 24},   {"piv", 48},         {"prg", 16},
        {"sch", 17},  {"tl", 20},     {"tlm", 27}, {"AI", 0},   {"file", 10}, {"Analog-Input", 0}, {"0", 0},
        {"128", 128}, {"1023", 1023},
    };
    for (const auto& [text, type] : types)
        EXPECT_EQ(ObjectTypeByText(text), type) << text;
    const std::pair<const char*, BACSTAC_PROPERTY_ID> properties[] = {
        {"desc", 28},
        {"es", 36},
        {"hl", 45},
        {"id", 75},
        {"ll", 59},
        {"lb", 131},
        {"name", 77},
        {"oos", 81},
        {"pa", 87},
        {"pv", 85},
        {"PV", 85},
        {"rd", 104},
        {"rel", 103},
        {"sf", 111},
        {"type", 79},
        {"units", 117},
        {"present-value", 85},
        {"85", 85},
        {"4194303", 4194303},
    };
    for (const auto& [text, property] : properties)
        EXPECT_EQ(PropertyByText(text), property) << text;
}

TEST(BacnetNames, RefuseWhatIsNeither) {
    for (const char* text : {"", "1024", "-1", "+1", "a i", "1 ", "4294967296"})
        EXPECT_EQ(ObjectTypeByText(text), std::nullopt) << text;
    for (const char* text : {"", "4194304", "p v", "pv ", "-85"})
        EXPECT_EQ(PropertyByText(text), std::nullopt) << text;
}
