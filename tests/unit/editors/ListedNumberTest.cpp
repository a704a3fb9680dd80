#include "module/editors/ListedNumber.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;

std::vector<std::string> Items(const ListedNumber& numbers) {
    std::vector<std::string> items;
    for (int item = 0; item < numbers.count; ++item)
        items.push_back(numbers.text(item));
    return items;
}

TEST(ListedNumber, HasTheDaysOfTheWeek) {
    EXPECT_THAT(Items(DAYS_OF_WEEK),
                ElementsAre("*Any*", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"));
    EXPECT_EQ(DAYS_OF_WEEK.NumberOf(0), 0U);
    EXPECT_EQ(DAYS_OF_WEEK.NumberOf(7), 7U);
}

TEST(ListedNumber, HasTheDaysOfAMonth) {
    const auto items = Items(DAYS_OF_MONTH);
    ASSERT_EQ(items.size(), 35U);
    EXPECT_EQ(items[0], "*Any*");
    EXPECT_EQ(items[1], "1");
    EXPECT_EQ(items[31], "31");
    EXPECT_THAT(std::vector(items.begin() + 32, items.end()), ElementsAre("*Last*", "*Odd*", "*Even*"));
    EXPECT_EQ(DAYS_OF_MONTH.NumberOf(0), 255U);
    EXPECT_EQ(DAYS_OF_MONTH.NumberOf(32), 32U);
    EXPECT_EQ(DAYS_OF_MONTH.NumberOf(34), 34U);
}

TEST(ListedNumber, HasTheMonths) {
    EXPECT_THAT(Items(MONTHS),
                ElementsAre("*Any*", "January", "February", "March", "April", "May", "June", "July", "August",
                            "September", "October", "November", "December", "*Odd*", "*Even*"));
    EXPECT_EQ(MONTHS.NumberOf(13), 13U);
    EXPECT_EQ(MONTHS.NumberOf(14), 14U);
}

TEST(ListedNumber, HasTheWeeksOfAMonth) {
    EXPECT_THAT(Items(WEEKS_OF_MONTH),
                ElementsAre("*Any*", "1 to 7", "8 to 14", "15 to 21", "22 to 28", "29 to 31", "*Last*"));
    EXPECT_EQ(WEEKS_OF_MONTH.NumberOf(0), 0xFFFFFFFFU);
    EXPECT_EQ(WEEKS_OF_MONTH.NumberOf(1), 1U);
    EXPECT_EQ(WEEKS_OF_MONTH.NumberOf(6), 6U);
}

TEST(ListedNumber, HasThePartsOfATime) {
    const struct {
        const ListedNumber& numbers;
        const char* last;
    } parts[] = {{HOURS, "23"}, {SIXTIETHS, "59"}, {HUNDREDTHS, "99"}};
    for (const auto& part : parts) {
        const auto items = Items(part.numbers);
        EXPECT_EQ(items[0], "*");
        EXPECT_EQ(items[1], "00");
        EXPECT_EQ(items[10], "09");
        EXPECT_EQ(items.back(), part.last);
        EXPECT_EQ(part.numbers.NumberOf(0), 255U);
        EXPECT_EQ(part.numbers.NumberOf(1), 0U);
    }
}

TEST(ListedNumber, FindsTheItemOfEachNumberAndNoneForOthers) {
    for (const ListedNumber* const numbers :
         {&DAYS_OF_WEEK, &DAYS_OF_MONTH, &MONTHS, &WEEKS_OF_MONTH, &HOURS, &SIXTIETHS, &HUNDREDTHS}) {
        for (int item = 0; item < numbers->count; ++item)
            EXPECT_EQ(numbers->ItemOf(numbers->NumberOf(item)), item);
        EXPECT_EQ(numbers->ItemOf(numbers->NumberOf(numbers->count - 1) + 1), ListedNumber::NO_ITEM);
        EXPECT_EQ(numbers->ItemOf(0x80000000), ListedNumber::NO_ITEM);
    }
    EXPECT_EQ(DAYS_OF_MONTH.ItemOf(0), ListedNumber::NO_ITEM) << "no day is 0";
    EXPECT_EQ(WEEKS_OF_MONTH.ItemOf(0), ListedNumber::NO_ITEM);
    EXPECT_EQ(HOURS.ItemOf(77), ListedNumber::NO_ITEM);
}

TEST(Priorities, AreSixteenWithTheirBlanks) {
    EXPECT_THAT(std::vector<std::string>(PRIORITIES.begin(), PRIORITIES.end()),
                ElementsAre("01: Manual-life safety ", "02: Automatic-life safety ", "03: Available ", "04: Available ",
                            "05: Critical equipment control ", "06: Minimum on/off ", "07: Available ",
                            "08: Manual operator ", "09: Available", "10: Available", "11: Available", "12: Available",
                            "13: Available", "14: Available", "15: Available", "16: Available"));
}

} // namespace
