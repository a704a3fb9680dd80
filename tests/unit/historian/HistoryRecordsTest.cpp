#include "platform/historian/HistoryRecords.h"
#include "tests/unit/historian/HistoryTestSupport.h"

#include <limits>

TEST(HistoryRecords, WellFormedUtf8IsTold) {
    for (const char* good : {"", "plain",
                             "21.5 \xC2\xB0"
                             "C",
                             "\xE2\x82\xAC", "\xF0\x9F\x94\xA5", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(IsUtf8(good)) << good;
    }
}

TEST(HistoryRecords, MalformedUtf8IsTold) {
    for (const char* bad :
         {"\x80", "\xC3", "\xC0\xAF", "\xC1\xBF", "\xE0\x9F\xBF", "\xE2\x82", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "a\xC3(", "\xE2\x28\xA1", "\xF0\x9F\x94("}) {
        EXPECT_FALSE(IsUtf8(bad)) << bad;
    }
}

TEST(HistoryRecords, StoredFormOfANumberHasNoText) {
    VfiRecord record = Number(1, 2, 3.0);
    std::memset(record.text, 'x', sizeof record.text);
    EXPECT_TRUE(SameBytes(StoredForm(record), Number(1, 2, 3.0)));
}

TEST(HistoryRecords, StoredFormOfATextEndsInZerosAndKeepsTheValue) {
    VfiRecord record = Text(1, 2, "null");
    SetVfiValue(record, 1.0);
    VfiRecord expected = record;
    std::memset(record.text + 5, 'x', sizeof record.text - 5);
    EXPECT_TRUE(SameBytes(StoredForm(record), expected));
}

TEST(HistoryRecords, RepetitionIsFoundWithinOneInstantOnly) {
    RepetitionFilter filter;
    EXPECT_FALSE(filter.Repeats(Number(1, 0, 1.0)));
    EXPECT_FALSE(filter.Repeats(Number(1, 0, 2.0)));
    EXPECT_TRUE(filter.Repeats(Number(1, 0, 1.0)));
    EXPECT_FALSE(filter.Repeats(Number(1, 0, 1.0, 10)));
    EXPECT_FALSE(filter.Repeats(Number(1, 1, 1.0)));
}

TEST(HistoryRecords, RecordsThatDifferInAnyFieldAreNotRepetitions) {
    RepetitionFilter filter;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    VfiRecord textWithBit = Text(1, 0, "null");
    SetVfiValue(textWithBit, 1.0);
    for (const VfiRecord& record : {Number(1, 0, 0.0), Number(1, 0, -0.0), Number(1, 0, nan), Number(1, 0, -nan),
                                    Text(1, 0, ""), Text(1, 0, "null"), textWithBit}) {
        EXPECT_FALSE(filter.Repeats(record));
    }
    EXPECT_TRUE(filter.Repeats(Number(1, 0, nan)));
    EXPECT_TRUE(filter.Repeats(textWithBit));
}
