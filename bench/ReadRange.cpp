// Decoding a full block of trend-log records, as one ReadRange answer carries it.
#include "bench/Harness.h"

#include "api/bacnet/PropertyValue.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/codec/Writer.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRounds = 400;
constexpr std::uint32_t kRecords = BACSTAC_CONTENTS_SIZE / sizeof(BACSTAC_LOG_RECORD);

std::vector<std::uint8_t> EncodedBlock() {
    CPropertyContents contents;
    auto* records = static_cast<BACSTAC_LOG_RECORD*>(contents.Buffer);
    std::memset(records, 0, contents.BufferSize);
    for (std::uint32_t i = 0; i < kRecords; ++i) {
        records[i].TimeStamp = {{2026, 0, 3, 1 + i / 1440, 0},
                                {static_cast<std::uint8_t>(i / 60 % 24), static_cast<std::uint8_t>(i % 60), 0, 0}};
        records[i].DatumType = BACSTAC_LOG_REAL;
        records[i].Value.Real = static_cast<float>(i) / 8;
        records[i].HasStatus = 1;
        records[i].StatusFlags.BitCount = 4;
    }
    contents.DataType = TYPE_LOG_RECORD;
    contents.ElementCount = kRecords;
    std::vector<std::uint8_t> octets(BACSTAC_CONTENTS_SIZE);
    bacnet::Writer writer(octets);
    if (!bacnet::EncodeContents(writer, contents) || writer.Overflow()) {
        fmt::print(stderr, "bdc-bench: the block of records cannot be encoded\n");
        std::_Exit(2);
    }
    octets.resize(writer.Size());
    return octets;
}

template <class Work>
double Seconds(Work work) {
    const auto start = Clock::now();
    for (int round = 0; round < kRounds; ++round)
        work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double DecodeSeconds(const std::vector<std::uint8_t>& octets, CPropertyContents& contents) {
    return Seconds([&] {
        if (bacnet::DecodeRecords(octets, TYPE_LOG_RECORD, contents) != bacnet::DecodeResult::ok ||
            contents.ElementCount != kRecords) {
            fmt::print(stderr, "bdc-bench: the block of records cannot be decoded\n");
            std::_Exit(2);
        }
        benchmark::ClobberMemory();
    });
}

// Passing over the same tags without looking at what they hold.
double WalkSeconds(const std::vector<std::uint8_t>& octets) {
    return Seconds([&] {
        bacnet::Reader reader(octets);
        bacnet::Tag tag;
        std::span<const std::uint8_t> value;
        std::uint32_t sum = 0;
        while (reader.ReadTag(tag) && reader.Octets(tag.Length, value))
            sum += tag.Number;
        benchmark::DoNotOptimize(sum);
    });
}

Sample MeasureRecords() {
    const auto octets = EncodedBlock();
    CPropertyContents contents;
    const double records = double{kRecords} * kRounds;
    return {records / DecodeSeconds(octets, contents), records / WalkSeconds(octets)};
}

Sample MeasureBytes() {
    const auto octets = EncodedBlock();
    CPropertyContents contents;
    const double megabytes = static_cast<double>(octets.size()) * kRounds / 1e6;
    return {megabytes / DecodeSeconds(octets, contents), megabytes / WalkSeconds(octets)};
}

} // namespace

void AddReadRangeFigures(std::vector<Figure>& figures) {
    figures.push_back({"read_range/decode", "records/s", Better::Higher, 0,
                       "2184 trend-log records with status flags, beside a bare walk over their tags", MeasureRecords});
    figures.push_back({"read_range/decode_bytes", "MB/s", Better::Higher, 0,
                       "the same in octets of the encoding, beside the same walk", MeasureBytes});
}

} // namespace bench
