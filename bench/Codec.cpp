// Encoding and decoding values of every type.
#include "bench/Harness.h"
#include "bench/Site.h"

#include "api/bacnet/PropertyValue.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/codec/Writer.h"
#include "tests/unit/stack/codec/GoldenValues.h"
#include "tests/unit/stack/codec/Hex.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <span>
#include <string>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRounds = 2000;
constexpr std::size_t kElements = 16; // of one value: as an array of the type has

struct Value {
    BACSTAC_DATA_TYPE Type;
    std::vector<std::uint8_t> Octets;
    CPropertyContents Contents;
};

// The values that the tests of the codec go through: one at least of every type.
std::deque<Value> EveryType() {
    std::deque<Value> values;
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        if (golden.Type == TYPE_RAW_STRING)
            continue; // is never decoded to
        Value& value = values.emplace_back();
        value.Type = golden.Type;
        const std::vector<std::uint8_t> element = Hex(golden.Hex);
        const std::size_t count = golden.Type == TYPE_SETPOINT_REF ? 1 : kElements; // such a one stands alone
        for (std::size_t i = 0; i < count; ++i)
            value.Octets.insert(value.Octets.end(), element.begin(), element.end());
        if (bacnet::DecodeRecords(value.Octets, value.Type, value.Contents) != bacnet::DecodeResult::ok)
            Fail(std::string("cannot decode ") + golden.What);
    }
    for (const bacnet::TypeInfo& type : bacnet::AllTypes())
        if (type.Type != TYPE_RAW_STRING && type.Type < bacnet::PART_LOG_DATUM &&
            std::ranges::none_of(values, [&](const Value& value) { return value.Type == type.Type; }))
            Fail(std::string("there is no value of type ") + type.Name);
    return values;
}

double Megabytes(const std::deque<Value>& values) {
    std::size_t octets = 0;
    for (const Value& value : values)
        octets += value.Octets.size();
    return static_cast<double>(octets) * kRounds / 1e6;
}

// Seconds of work with every value, all rounds.
template <class Values, class Work>
double Seconds(Values& values, Work work) {
    const auto start = Clock::now();
    for (int round = 0; round < kRounds; ++round)
        for (auto& value : values)
            work(value);
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Calls use with each tag of well-formed octets and what it holds.
template <class Use>
void ForEachTag(std::span<const std::uint8_t> encoded, Use use) {
    bacnet::Reader reader(encoded);
    bacnet::Tag tag;
    while (reader.ReadTag(tag)) {
        std::span<const std::uint8_t> octets;
        const bool isBracket = tag.Kind == bacnet::TagKind::opening || tag.Kind == bacnet::TagKind::closing;
        const bool isBoolean = tag.Kind == bacnet::TagKind::application && tag.Number == TYPE_BOOLEAN;
        if (!isBracket && !isBoolean && !reader.Octets(tag.Length, octets))
            Fail("a value is cut short");
        use(tag, octets);
    }
}

Sample MeasureDecode() {
    auto values = EveryType();
    const double decode = Seconds(values, [](Value& value) {
        if (bacnet::DecodeRecords(value.Octets, value.Type, value.Contents) != bacnet::DecodeResult::ok)
            Fail("a value cannot be decoded");
        benchmark::ClobberMemory();
    });
    const double walk = Seconds(values, [](const Value& value) {
        std::size_t sum = 0;
        ForEachTag(value.Octets, [&](const bacnet::Tag& tag, std::span<const std::uint8_t> octets) {
            sum += tag.Number + octets.size();
        });
        benchmark::DoNotOptimize(sum);
    });
    return {Megabytes(values) / decode, Megabytes(values) / walk};
}

struct Part {
    bacnet::Tag Tag;
    std::span<const std::uint8_t> Octets;
};

std::vector<Part> PartsOf(const Value& value) {
    std::vector<Part> parts;
    ForEachTag(value.Octets, [&](const bacnet::Tag& tag, std::span<const std::uint8_t> octets) {
        parts.push_back({tag, octets});
    });
    return parts;
}

void Write(bacnet::Writer& writer, const Part& part) {
    if (part.Tag.Kind == bacnet::TagKind::opening)
        return writer.Opening(part.Tag.Number);
    if (part.Tag.Kind == bacnet::TagKind::closing)
        return writer.Closing(part.Tag.Number);
    writer.Tag(part.Tag.Number, part.Tag.Kind == bacnet::TagKind::context, part.Tag.Length);
    writer.Octets(part.Octets);
}

Sample MeasureEncode() {
    auto values = EveryType();
    std::vector<std::uint8_t> buffer(BACSTAC_CONTENTS_SIZE);
    const double encode = Seconds(values, [&](const Value& value) {
        bacnet::Writer writer(buffer);
        if (!bacnet::EncodeContents(writer, value.Contents) || writer.Size() != value.Octets.size())
            Fail("a value cannot be encoded");
        benchmark::ClobberMemory();
    });
    std::vector<std::vector<Part>> parts;
    for (const Value& value : values)
        parts.push_back(PartsOf(value));
    const double bare = Seconds(parts, [&](const std::vector<Part>& value) {
        bacnet::Writer writer(buffer);
        for (const Part& part : value)
            Write(writer, part);
        benchmark::ClobberMemory();
    });
    return {Megabytes(values) / encode, Megabytes(values) / bare};
}

} // namespace

void AddCodecFigures(std::vector<Figure>& figures) {
    figures.push_back({"codec/encode", "MB/s", Better::Higher, 0,
                       "values of every type, 16 elements each, beside writing the same tags and their octets without "
                       "looking at values",
                       MeasureEncode});
    figures.push_back({"codec/decode", "MB/s", Better::Higher, 0,
                       "the same octets into values, beside a bare walk over their tags", MeasureDecode});
}

} // namespace bench
