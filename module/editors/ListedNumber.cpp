#include "module/editors/ListedNumber.h"

#include "api/bacnet/MoreRecords.h"

#include <iterator>

namespace {

constexpr const char* WEEKDAY_TEXTS[] = {"*Any*",    "Monday", "Tuesday",  "Wednesday",
                                         "Thursday", "Friday", "Saturday", "Sunday"};
constexpr const char* MONTH_TEXTS[] = {"*Any*",   "January",  "February", "March",  "April",
                                       "May",     "June",     "July",     "August", "September",
                                       "October", "November", "December", "*Odd*",  "*Even*"};
constexpr const char* WEEK_TEXTS[] = {"*Any*", "1 to 7", "8 to 14", "15 to 21", "22 to 28", "29 to 31", "*Last*"};
constexpr const char* ODD_DAY_TEXTS[] = {"*Last*", "*Odd*", "*Even*"};
constexpr int MOST_DAYS = 31;

std::string DayText(int item) {
    if (item == 0)
        return "*Any*";
    return item <= MOST_DAYS ? std::to_string(item) : ODD_DAY_TEXTS[item - MOST_DAYS - 1];
}

std::string TimeText(int item) {
    if (item == 0)
        return "*";
    const int number = item - 1;
    return (number < 10 ? "0" : "") + std::to_string(number);
}

template <const auto& Texts>
std::string TextIn(int item) {
    return Texts[item];
}

template <const auto& Texts>
constexpr ListedNumber Of(std::uint32_t unspecified) {
    return {unspecified, 1, std::size(Texts), &TextIn<Texts>};
}

constexpr ListedNumber Time(int count) {
    return {BACSTAC_ANY_TIME, 0, 1 + count, &TimeText};
}

} // namespace

int ListedNumber::ItemOf(std::uint32_t number) const {
    if (number == unspecified)
        return 0;
    const bool isListed = number >= first && number - first < static_cast<std::uint32_t>(count - 1);
    return isListed ? static_cast<int>(number - first) + 1 : NO_ITEM;
}

std::uint32_t ListedNumber::NumberOf(int item) const {
    return item == 0 ? unspecified : first + static_cast<std::uint32_t>(item - 1);
}

const ListedNumber DAYS_OF_WEEK = Of<WEEKDAY_TEXTS>(BACSTAC_ANY_WEEKDAY);
const ListedNumber DAYS_OF_MONTH{BACSTAC_ANY_DAY, 1, 1 + MOST_DAYS + std::size(ODD_DAY_TEXTS), &DayText};
const ListedNumber MONTHS = Of<MONTH_TEXTS>(BACSTAC_ANY_MONTH);
const ListedNumber WEEKS_OF_MONTH = Of<WEEK_TEXTS>(BACSTAC_ANY_WEEK);
const ListedNumber HOURS = Time(24);
const ListedNumber SIXTIETHS = Time(60);
const ListedNumber HUNDREDTHS = Time(100);

const std::array<const char*, 16> PRIORITIES = {
    "01: Manual-life safety ",
    "02: Automatic-life safety ",
    "03: Available ",
    "04: Available ",
    "05: Critical equipment control ",
    "06: Minimum on/off ",
    "07: Available ",
    "08: Manual operator ",
    "09: Available",
    "10: Available",
    "11: Available",
    "12: Available",
    "13: Available",
    "14: Available",
    "15: Available",
    "16: Available",
};
