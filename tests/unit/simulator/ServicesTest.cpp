// The services without a network: random ranges against a model, hostile requests, and what a request costs.
#include "simulator/server/Services.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "platform/stack/services/ReadRange.h"
#include "simulator/Generate.h"
#include "simulator/model/LogRange.h"
#include "tests/support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <random>

namespace sim {
namespace {

using bacnet::ConfirmedService;

constexpr BACSTAC_OBJECT_ID TREND{OBJ_TREND_LOG, 1};

// The same numbers in every run.
class Random {
public:
    explicit Random(unsigned seed) : m_engine(seed) {}
    std::uint32_t operator()() { return static_cast<std::uint32_t>(m_engine()); }

private:
    std::mt19937 m_engine;
};

std::vector<std::uint8_t> Encoded(const bacnet::ReadRangeRequest& request) {
    std::vector<std::uint8_t> octets(64);
    bacnet::Writer writer(octets);
    EXPECT_TRUE(bacnet::EncodeReadRange(request, writer));
    octets.resize(writer.Size());
    return octets;
}

bacnet::ReadRangeRequest RequestFor(const BACSTAC_OBJECT_ID& object) {
    bacnet::ReadRangeRequest request;
    request.Target.Object = object;
    request.Target.Property = PROP_LOG_BUFFER;
    return request;
}

// The numbers logged in the items, each of them [0] { Date, Time } [1] { [4] Unsigned }.
std::vector<std::uint32_t> Numbers(std::span<const std::uint8_t> items) {
    bacnet::Reader reader(items);
    std::vector<std::uint32_t> numbers;
    while (reader.Ok() && !reader.AtEnd()) {
        std::span<const std::uint8_t> stamp;
        std::uint32_t number = 0;
        reader.Enclosed(0, stamp);
        reader.Open(1);
        reader.Unsigned(number, 4);
        reader.Close(1);
        numbers.push_back(number);
    }
    EXPECT_TRUE(reader.Ok());
    return numbers;
}

// A log whose record with sequence number n holds the value n, and the same records in a list.
struct RandomLog {
    explicit RandomLog(Random& random) {
        LogConfig log;
        log.Capacity = 1 + static_cast<std::uint32_t>(random() % 40);
        log.InitialTotal = random() % 3 == 0 ? 0xFFFFFFF0U : static_cast<std::uint32_t>(random() % 300);
        LocalTime time = DEFAULT_RECORD_BASE;
        for (std::uint64_t i = random() % 60, index = log.InitialTotal; i > 0; --i, ++index) {
            time += static_cast<LocalTime>(random() % 3) * 100;
            LogRecord record;
            record.Time = time;
            record.Data.push_back(LogDatum::Unsigned(LogBuffer::SequenceOf(index)));
            log.Records.push_back(record);
        }
        ObjectConfig trend;
        trend.Id = TREND;
        trend.Log = log;
        DeviceConfig config;
        config.Objects.push_back(trend);
        Dut = std::make_unique<Device>(config, [] { return LocalTime{0}; });
        for (const LogRecord& record : Dut->Records(TREND))
            Items.push_back({record.Data[0].Value.Unsigned, record.Time});
    }
    struct Item {
        std::uint32_t Sequence;
        LocalTime Time;
    };
    std::unique_ptr<Device> Dut;
    std::vector<Item> Items;
};

BACSTAC_READ_RANGE_SPEC RandomRange(const RandomLog& log, Random& random, LocalTime& reference) {
    constexpr std::uint32_t KINDS[] = {BACSTAC_RANGE_ALL, BACSTAC_RANGE_BY_POSITION, BACSTAC_RANGE_BY_SEQUENCE,
                                       BACSTAC_RANGE_BY_TIME};
    BACSTAC_READ_RANGE_SPEC range{};
    range.Kind = KINDS[random() % 4];
    const auto count = static_cast<std::int32_t>(random() % 61) - 30;
    const auto place = static_cast<std::uint32_t>(random() % 45);
    reference = DEFAULT_RECORD_BASE + static_cast<LocalTime>(random() % 70) * 100;
    if (range.Kind == BACSTAC_RANGE_BY_TIME) {
        range.ByTime.Count = count;
        range.ByTime.Reference = ToDateTime(reference);
    } else if (range.Kind != BACSTAC_RANGE_ALL) {
        const bool bySequence = range.Kind == BACSTAC_RANGE_BY_SEQUENCE && !log.Items.empty();
        range.ByIndex.Reference = bySequence ? log.Items.back().Sequence - place + 2 : place;
        range.ByIndex.Count = count;
    }
    return range;
}

// What clause 15.8 asks for, found by looking at every record.
std::vector<std::uint32_t> Wanted(const RandomLog& log, const BACSTAC_READ_RANGE_SPEC& range, LocalTime reference,
                                  bool& backwards) {
    const auto size = static_cast<std::int64_t>(log.Items.size());
    std::int64_t at = -1;
    std::int64_t count = range.Kind == BACSTAC_RANGE_BY_TIME ? range.ByTime.Count : range.ByIndex.Count;
    if (range.Kind == BACSTAC_RANGE_ALL) {
        at = 0;
        count = size;
    }
    for (std::int64_t i = 0; i < size; ++i) {
        const RandomLog::Item& item = log.Items[static_cast<std::size_t>(i)];
        if (range.Kind == BACSTAC_RANGE_BY_POSITION && i + 1 == std::int64_t{range.ByIndex.Reference})
            at = i;
        if (range.Kind == BACSTAC_RANGE_BY_SEQUENCE && item.Sequence == range.ByIndex.Reference)
            at = i;
        if (range.Kind == BACSTAC_RANGE_BY_TIME && count > 0 && item.Time > reference && at < 0)
            at = i;
        if (range.Kind == BACSTAC_RANGE_BY_TIME && count < 0 && item.Time < reference)
            at = i;
    }
    backwards = count < 0;
    std::vector<std::uint32_t> numbers;
    if (at < 0)
        return numbers;
    const std::int64_t begin = backwards ? std::max<std::int64_t>(0, at + 1 + count) : at;
    const std::int64_t end = backwards ? at + 1 : std::min(size, at + count);
    for (std::int64_t i = begin; i < end; ++i)
        numbers.push_back(log.Items[static_cast<std::size_t>(i)].Sequence);
    return numbers;
}

TEST(ServeReadRange, AgreesWithAModelForRandomLogsRangesAndRooms) {
    Random random(42);
    Scratch scratch;
    unsigned more = 0;
    for (int round = 0; round < 400; ++round) {
        const RandomLog log(random);
        for (int question = 0; question < 50; ++question) {
            bacnet::ReadRangeRequest request = RequestFor(TREND);
            LocalTime reference = 0;
            request.Range = RandomRange(log, random, reference);
            const AnswerRoom room{47 + random() % 700, false};
            const Outcome outcome = Serve(*log.Dut, ConfirmedService::readRange, Encoded(request), room, scratch);
            ASSERT_EQ(outcome.What, Outcome::Kind::ack);
            ASSERT_LE(outcome.Parameters.size(), room.Octets);
            bacnet::ReadRangeAck ack;
            ASSERT_TRUE(bacnet::DecodeReadRangeAck(outcome.Parameters, ack));
            const std::vector<std::uint32_t> got = Numbers(ack.Items);
            ASSERT_EQ(got.size(), ack.ItemCount);

            bool backwards = false;
            const std::vector<std::uint32_t> wanted = Wanted(log, request.Range, reference, backwards);
            ASSERT_LE(got.size(), wanted.size());
            // What was left out is what lies farthest from the reference.
            const std::size_t from = backwards ? wanted.size() - got.size() : 0;
            for (std::size_t i = 0; i < got.size(); ++i)
                ASSERT_EQ(got[i], wanted[from + i]);
            const bool left = got.size() < wanted.size();
            if (left) {
                ++more;
                constexpr std::size_t RECORD = 12 + 2 + 5; // and what the room for the largest numbers may cost
                ASSERT_GT(outcome.Parameters.size() + RECORD + 10, room.Octets) << "another record would have fitted";
            }
            const bool first = !got.empty() && got.front() == log.Items.front().Sequence;
            const bool last = !got.empty() && got.back() == log.Items.back().Sequence;
            ASSERT_EQ(ack.Flags.BitCount, 3U);
            ASSERT_EQ(int{ack.Flags.Bits[0]}, (first ? 1 : 0) | (last ? 2 : 0) | (left ? 4 : 0));
            const bool numbered =
                request.Range.Kind == BACSTAC_RANGE_BY_SEQUENCE || request.Range.Kind == BACSTAC_RANGE_BY_TIME;
            ASSERT_EQ(ack.FirstSequenceNumber, numbered && !got.empty() ? got.front() : 0U);
        }
    }
    EXPECT_GT(more, 1000U);
}

TEST(ServeHostile, NoRequestHarmsAndEveryAnswerStaysInItsRoom) {
    Counts counts;
    counts.Trends = 2;
    counts.Multiples = 1;
    Device device(GenerateConfig(counts).Devices[0], [] { return LocalTime{0}; });
    std::vector<std::vector<std::uint8_t>> seeds;
    bacnet::ReadRangeRequest range = RequestFor(TREND);
    seeds.push_back(Encoded(range));
    range.Range.Kind = BACSTAC_RANGE_BY_TIME;
    range.Range.ByTime.Count = -5;
    range.Range.ByTime.Reference = ToDateTime(DEFAULT_RECORD_BASE + 100000);
    seeds.push_back(Encoded(range));
    seeds.push_back({0x0C, 0x02, 0x00, 0x03, 0xE8, 0x19, 0x4C, 0x29, 0x01});                         // ReadProperty
    seeds.push_back({0x0C, 0x02, 0x00, 0x03, 0xE8, 0x1E, 0x09, 0x08, 0x09, 0x4C, 0x19, 0x00, 0x1F}); // multiple
    Scratch scratch;
    Random random(7);
    const ConfirmedService services[] = {ConfirmedService::readProperty, ConfirmedService::readPropertyMultiple,
                                         ConfirmedService::readRange, ConfirmedService::createObject};
    for (int round = 0; round < 60'000; ++round) {
        std::vector<std::uint8_t> octets = seeds[random() % seeds.size()];
        for (unsigned changes = random() % 4; changes > 0; --changes)
            octets[random() % octets.size()] = static_cast<std::uint8_t>(random());
        octets.resize(random() % 5 == 0 ? random() % (octets.size() + 1) : octets.size());
        const AnswerRoom room{47 + random() % 1430, random() % 2 == 0};
        const Outcome outcome = Serve(device, services[random() % 4], octets, room, scratch);
        ASSERT_LE(outcome.Parameters.size(), room.Octets);
    }
}

TEST(ServeReadProperty, AllocatesNothing) {
    Device device(GenerateConfig({}).Devices[0], [] { return LocalTime{0}; });
    Scratch scratch;
    const std::uint8_t request[] = {0x0C, 0x00, 0x00, 0x00, 0x01, 0x19, 0x55};
    const CAllocationCounter counter;
    for (int i = 0; i < 100; ++i)
        Serve(device, ConfirmedService::readProperty, request, {1473, true}, scratch);
    EXPECT_EQ(counter.GetCount(), 0U);
}

} // namespace
} // namespace sim
