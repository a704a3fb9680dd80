#include "simulator/model/LogBuffer.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

LogRecord Real(LocalTime time, float value) {
    LogRecord record;
    record.Time = time;
    record.Data.push_back(LogDatum::Real(value));
    return record;
}

RecordGenerator Generator() {
    GeneratorConfig config;
    config.Seed = 7;
    config.Base = 1000;
    config.Interval = 10;
    return RecordGenerator(config);
}

std::vector<LocalTime> Times(const LogBuffer& log) {
    std::vector<LocalTime> times;
    LogRecord scratch;
    for (std::uint64_t i = log.Begin(); i != log.End(); ++i) {
        times.push_back(log.At(i, scratch).Time);
        EXPECT_EQ(times.back(), log.TimeAt(i));
    }
    return times;
}

TEST(LogBuffer, IsEmptyAtFirst) {
    LogBuffer log(4);
    EXPECT_EQ(log.Count(), 0U);
    EXPECT_EQ(log.TotalRecordCount(), 0U);
    EXPECT_FALSE(log.IndexOf(1));
    EXPECT_FALSE(log.LastBefore(1'000'000));
    EXPECT_EQ(log.FirstAfter(-1), log.End());
}

TEST(LogBuffer, KeepsTheNewestRecordsAndTheirSequenceNumbers) {
    LogBuffer log(3);
    for (int i = 1; i <= 5; ++i)
        log.Append(Real(i * 100, 0));
    EXPECT_EQ(Times(log), (std::vector<LocalTime>{300, 400, 500}));
    EXPECT_EQ(log.Count(), 3U);
    EXPECT_TRUE(log.IsFull());
    EXPECT_EQ(log.TotalRecordCount(), 5U);
    EXPECT_FALSE(log.IndexOf(2));
    EXPECT_EQ(log.IndexOf(3), log.Begin());
    EXPECT_EQ(log.IndexOf(5), log.End() - 1);
    EXPECT_FALSE(log.IndexOf(6));
}

TEST(LogBuffer, SequenceNumbersWrapToOne) {
    LogBuffer log(4, 0xFFFFFFFDU);
    for (int i = 1; i <= 4; ++i)
        log.Append(Real(i, 0));
    EXPECT_EQ(log.TotalRecordCount(), 2U);
    EXPECT_EQ(log.IndexOf(0xFFFFFFFEU), log.Begin());
    EXPECT_EQ(log.IndexOf(0xFFFFFFFFU), log.Begin() + 1);
    EXPECT_EQ(log.IndexOf(1), log.Begin() + 2);
    EXPECT_EQ(log.IndexOf(2), log.Begin() + 3);
    EXPECT_FALSE(log.IndexOf(0));
    EXPECT_FALSE(log.IndexOf(3));
}

TEST(LogBuffer, ClearForgetsRecordsButNotTheTotal) {
    LogBuffer log(4);
    log.Append(Real(1, 0));
    log.Append(Real(2, 0));
    log.Clear();
    EXPECT_EQ(log.Count(), 0U);
    EXPECT_EQ(log.TotalRecordCount(), 2U);
    EXPECT_FALSE(log.IndexOf(2));
    log.Append(Real(3, 0));
    EXPECT_EQ(Times(log), (std::vector<LocalTime>{3}));
    EXPECT_EQ(log.IndexOf(3), log.Begin());
}

TEST(LogBuffer, MoreGeneratedRecordsLeaveTheEarlierOnesAsTheyWere) {
    LogBuffer small(100);
    small.SetGenerator(Generator());
    small.Generate(10);
    LogBuffer large(100);
    large.SetGenerator(Generator());
    large.Generate(25);
    LogRecord one;
    LogRecord two;
    for (std::uint64_t i = 0; i < 10; ++i) {
        const LogRecord& a = small.At(i, one);
        const LogRecord& b = large.At(i, two);
        EXPECT_EQ(a.Time, b.Time);
        EXPECT_EQ(a.Data.front().Value.Real, b.Data.front().Value.Real);
        EXPECT_EQ(a.StatusFlags, b.StatusFlags);
    }
}

TEST(LogBuffer, GeneratedAndAppendedRecordsShareTheRing) {
    LogBuffer log(4);
    log.SetGenerator(Generator());
    log.Generate(3); // 1000 1010 1020
    log.Append(Real(1025, 0));
    log.Generate(1); // 1030
    EXPECT_EQ(Times(log), (std::vector<LocalTime>{1010, 1020, 1025, 1030}));
    log.Append(Real(1040, 0));
    log.Append(Real(1050, 0));
    log.Append(Real(1060, 0));
    EXPECT_EQ(Times(log), (std::vector<LocalTime>{1030, 1040, 1050, 1060}));
    EXPECT_EQ(log.TotalRecordCount(), 8U);
}

TEST(LogBuffer, GeneratingMoreThanTheCapacityKeepsTheNewest) {
    LogBuffer log(4);
    log.SetGenerator(Generator());
    log.Generate(1'000'000);
    EXPECT_EQ(log.TotalRecordCount(), 1'000'000U);
    EXPECT_EQ(Times(log), (std::vector<LocalTime>{10'000'960, 10'000'970, 10'000'980, 10'000'990}));
}

TEST(LogBuffer, FindsTimesInOrderedAndInDisorderedLogs) {
    LogBuffer log(10);
    for (const LocalTime time : {10, 20, 20, 30})
        log.Append(Real(time, 0));
    EXPECT_EQ(log.FirstAfter(9), 0U);
    EXPECT_EQ(log.FirstAfter(10), 1U);
    EXPECT_EQ(log.FirstAfter(20), 3U);
    EXPECT_EQ(log.FirstAfter(30), log.End());
    EXPECT_EQ(log.LastBefore(31), 3U);
    EXPECT_EQ(log.LastBefore(20), 0U);
    EXPECT_FALSE(log.LastBefore(10));

    log.Append(Real(5, 0)); // the clock was set back
    log.Append(Real(15, 0));
    EXPECT_EQ(log.FirstAfter(12), 1U);
    EXPECT_EQ(log.LastBefore(12), 4U);
    EXPECT_EQ(log.LastBefore(16), 5U);
    EXPECT_EQ(log.FirstAfter(30), log.End());
}

TEST(RecordGenerator, MixedKindsCoverEveryKindOfDatum) {
    GeneratorConfig config;
    config.Kinds = {MIXED_KINDS};
    const RecordGenerator generator(config);
    std::vector<bool> seen(11);
    LogRecord record;
    for (std::uint64_t i = 0; i < 9; ++i) {
        generator.Make(i, record);
        seen[record.Data.front().Kind] = true;
    }
    for (std::uint32_t kind = BACSTAC_LOG_BOOLEAN; kind <= BACSTAC_LOG_ANY; ++kind)
        EXPECT_EQ(seen[kind], kind != BACSTAC_LOG_TIME_CHANGE) << kind;
}

TEST(RecordGenerator, PutsStatusRecordsWhereToldTo) {
    GeneratorConfig config;
    config.StatusEvery = 4;
    const RecordGenerator generator(config);
    LogRecord record;
    for (std::uint64_t i = 0; i < 12; ++i) {
        generator.Make(i, record);
        EXPECT_EQ(record.IsData(), i % 4 != 0);
    }
}

} // namespace
} // namespace sim
