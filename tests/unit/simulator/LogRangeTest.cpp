// Ranges of a log, compared with a model that looks at every record of a plain list.
#include "simulator/model/LogRange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace sim {
namespace {

struct Item {
    std::uint32_t Sequence;
    LocalTime Time;
};

std::vector<Item> Items(const LogBuffer& log) {
    std::vector<Item> items;
    for (std::uint64_t i = log.Begin(); i != log.End(); ++i)
        items.push_back({LogBuffer::SequenceOf(i), log.TimeAt(i)});
    return items;
}

std::vector<std::uint32_t> Sequences(const LogRange& range) {
    std::vector<std::uint32_t> numbers;
    for (std::uint64_t i = range.Begin; i != range.End; ++i)
        numbers.push_back(LogBuffer::SequenceOf(i));
    return numbers;
}

// The clause in its own words: find the reference item, then walk away from it.
std::vector<std::uint32_t> Model(const std::vector<Item>& items, const BACSTAC_READ_RANGE_SPEC& spec,
                                 LocalTime reference) {
    const auto size = static_cast<std::int64_t>(items.size());
    std::int64_t at = -1;
    std::int64_t count = 0;
    if (spec.Kind == BACSTAC_RANGE_ALL) {
        at = 0;
        count = size;
    } else if (spec.Kind == BACSTAC_RANGE_BY_POSITION) {
        at = std::int64_t{spec.ByIndex.Reference} - 1;
        count = spec.ByIndex.Count;
    } else if (spec.Kind == BACSTAC_RANGE_BY_SEQUENCE) {
        count = spec.ByIndex.Count;
        for (std::int64_t i = 0; i < size; ++i)
            if (items[i].Sequence == spec.ByIndex.Reference)
                at = i;
    } else {
        count = spec.ByTime.Count;
        for (std::int64_t i = 0; i < size; ++i) {
            if (count > 0 && items[i].Time > reference) {
                at = i;
                break;
            }
            if (count < 0 && items[i].Time < reference)
                at = i;
        }
    }
    std::vector<std::uint32_t> numbers;
    if (at < 0 || at >= size)
        return numbers;
    for (std::int64_t i = 0; i < std::abs(count); ++i) {
        const std::int64_t place = count > 0 ? at + i : at - i;
        if (place < 0 || place >= size)
            break;
        numbers.push_back(items[place].Sequence);
    }
    if (count < 0)
        std::reverse(numbers.begin(), numbers.end());
    return numbers;
}

BACSTAC_READ_RANGE_SPEC Spec(std::uint32_t kind, std::uint32_t reference, std::int32_t count) {
    BACSTAC_READ_RANGE_SPEC spec{};
    spec.Kind = kind;
    if (kind == BACSTAC_RANGE_BY_TIME || kind == BACSTAC_RANGE_BY_TIME_2001)
        spec.ByTime.Count = count;
    else {
        spec.ByIndex.Reference = reference;
        spec.ByIndex.Count = count;
    }
    return spec;
}

void Compare(const LogBuffer& log, const BACSTAC_READ_RANGE_SPEC& spec, LocalTime reference) {
    const LogRange range = SelectRange(log, spec, reference);
    ASSERT_LE(range.Begin, range.End);
    ASSERT_EQ(Sequences(range), Model(Items(log), spec, reference))
        << "kind " << spec.Kind << " count " << spec.ByTime.Count << " reference " << reference;
}

TEST(LogRange, AgreesWithAWalkOverRandomLogs) {
    std::mt19937 engine(20261121);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    for (int round = 0; round < 300; ++round) {
        const std::uint32_t capacity = 1 + random() % 20;
        const std::uint32_t start = round % 3 == 0 ? 0xFFFFFFFFU - random() % 20 : random() % 5;
        LogBuffer log(capacity, start);
        GeneratorConfig generator;
        generator.Base = 50;
        generator.Interval = 3;
        log.SetGenerator(RecordGenerator(generator));
        if (round % 2 == 0)
            log.Generate(random() % 30);
        LocalTime time = 50;
        for (unsigned i = random() % 30; i > 0; --i) {
            time += static_cast<LocalTime>(random() % 5) - (round % 5 == 0 ? 2 : 0);
            LogRecord record;
            record.Time = time;
            record.Data.push_back(LogDatum::Null());
            log.Append(record);
            if (random() % 40 == 0)
                log.Clear();
        }
        for (int question = 0; question < 60; ++question) {
            const auto count = static_cast<std::int32_t>(random() % 31) - 15;
            Compare(log, Spec(BACSTAC_RANGE_ALL, 0, 0), 0);
            Compare(log, Spec(BACSTAC_RANGE_BY_POSITION, random() % 25, count), 0);
            const std::uint32_t sequence = log.TotalRecordCount() - random() % 25 + 3;
            Compare(log, Spec(BACSTAC_RANGE_BY_SEQUENCE, sequence, count), 0);
            const LocalTime reference = 40 + static_cast<LocalTime>(random() % 100);
            Compare(log, Spec(BACSTAC_RANGE_BY_TIME, 0, count), reference);
            Compare(log, Spec(BACSTAC_RANGE_BY_TIME_2001, 0, count), reference);
        }
    }
}

TEST(LogRange, ExtremeCountsAndReferencesStayInside) {
    LogBuffer log(5);
    log.SetGenerator(RecordGenerator({}));
    log.Generate(9);
    for (const std::int32_t count : {INT32_MIN, -32768, -1, 0, 1, 32767, INT32_MAX}) {
        for (const std::uint32_t reference : {0U, 1U, 5U, 6U, 9U, 10U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            Compare(log, Spec(BACSTAC_RANGE_BY_POSITION, reference, std::max(count, -40000)), 0);
            const LogRange range = SelectRange(log, Spec(BACSTAC_RANGE_BY_SEQUENCE, reference, count), 0);
            EXPECT_LE(range.Begin, range.End);
            EXPECT_LE(range.Count(), 5U);
        }
    }
}

TEST(LogRange, CountZeroSelectsNothing) {
    LogBuffer log(5);
    log.SetGenerator(RecordGenerator({}));
    log.Generate(5);
    EXPECT_TRUE(SelectRange(log, Spec(BACSTAC_RANGE_BY_POSITION, 1, 0), 0).IsEmpty());
    EXPECT_TRUE(SelectRange(log, Spec(BACSTAC_RANGE_BY_SEQUENCE, 1, 0), 0).IsEmpty());
    EXPECT_TRUE(SelectRange(log, Spec(BACSTAC_RANGE_BY_TIME, 0, 0), -1).IsEmpty());
}

TEST(LogRange, PositionsOfAPlainList) {
    const LogRange whole = SelectPositions(4, Spec(BACSTAC_RANGE_ALL, 0, 0));
    EXPECT_EQ(whole.Begin, 0U);
    EXPECT_EQ(whole.End, 4U);
    const LogRange back = SelectPositions(4, Spec(BACSTAC_RANGE_BY_POSITION, 3, -2));
    EXPECT_EQ(back.Begin, 1U);
    EXPECT_EQ(back.End, 3U);
    EXPECT_TRUE(back.Backwards);
    EXPECT_TRUE(SelectPositions(4, Spec(BACSTAC_RANGE_BY_POSITION, 5, 1)).IsEmpty());
}

} // namespace
} // namespace sim
