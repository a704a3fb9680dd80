// The drop-down lists that stand for numbers, such as the months. Pure data and functions.
#pragma once

#include <array>
#include <cstdint>
#include <string>

// The first item stands for what is unspecified, the others for the numbers from a first one on.
struct ListedNumber {
    static constexpr int NO_ITEM = -1;

    std::uint32_t unspecified;
    std::uint32_t first;
    int count; // of items
    std::string (*text)(int item);

    // NO_ITEM for a number that no item stands for.
    int ItemOf(std::uint32_t number) const;
    std::uint32_t NumberOf(int item) const;
};

// ---- of dates, as BACSTAC_DATE and BACSTAC_WEEK_N_DAY have them

extern const ListedNumber DAYS_OF_WEEK;
extern const ListedNumber DAYS_OF_MONTH;
extern const ListedNumber MONTHS;
extern const ListedNumber WEEKS_OF_MONTH;

// ---- of times, as BACSTAC_TIME has them

extern const ListedNumber HOURS;
extern const ListedNumber SIXTIETHS; // minutes and seconds
extern const ListedNumber HUNDREDTHS;

// The priorities of writing, the first first. The blanks at some ends stand so.
extern const std::array<const char*, 16> PRIORITIES;
