// Ten thousand values of all types, made from the type table, as an independent decoder reads them: every tag with its
// place, class, number and length, and every value that carries its type with it.
#include "platform/stack/codec/Writer.h"
#include "platform/stack/network/Apdu.h"
#include "platform/stack/schema/TypeTable.h"
#include "platform/stack/services/ReadProperty.h"
#include "platform/stack/services/ServiceChoice.h"
#include "tests/interop/Recording.h"
#include "tests/support/GeneratedValue.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <vector>

namespace interop {
namespace {

using testing_support::ValueGenerator;
using testing_support::WrittenTag;

constexpr std::size_t FRAMES = 10'000;
constexpr std::size_t MAX_VALUE = 1400; // octets, for one APDU
// A vendor's property, of which the decoder knows nothing: it goes by the tags alone.
constexpr bacnet::PropertyTarget TARGET{{2, 1}, 600, BACSTAC_NO_INDEX};
constexpr std::size_t VALUE_POSITION = Recording::APDU_POSITION + 3 + 5 + 3 + 1; // header, [0], [1], opening tag [3]

struct Sample {
    const bacnet::TypeInfo* Type = nullptr;
    unsigned Seed = 0;
    std::vector<WrittenTag> Tags;
};

// ---- values as the decoder prints them

template <typename... Kind>
struct Overloaded : Kind... {
    using Kind::operator()...;
};
template <typename... Kind>
Overloaded(Kind...) -> Overloaded<Kind...>;

std::string MonthText(std::uint32_t month) {
    constexpr std::array NAMES{"any month", "January",  "February", "March",     "April",
                               "May",       "June",     "July",     "August",    "September",
                               "October",   "November", "December", "odd month", "even month"};
    return NAMES.at(month);
}

std::string WeekdayText(std::uint32_t weekday) {
    constexpr std::array NAMES{"any day of week", "Monday", "Tuesday",  "Wednesday",
                               "Thursday",        "Friday", "Saturday", "Sunday"};
    return NAMES.at(weekday);
}

std::string TimeText(const BACSTAC_TIME& time) {
    const bool afternoon = time.Hour >= 12;
    return fmt::format("{}:{:02}:{:02}.{} {} = {:02}:{:02}:{:02}.{}", time.Hour > 12 ? time.Hour - 12 : time.Hour,
                       time.Minute, time.Second, time.Hundredths, afternoon ? "P.M." : "A.M.", time.Hour, time.Minute,
                       time.Second, time.Hundredths);
}

std::string BitsText(const BACSTAC_BIT_STRING& bits) {
    std::string text;
    for (unsigned bit = 0; bit < bits.BitCount; ++bit)
        text += (bits.Bits[bit / 8] >> bit % 8 & 1) != 0 ? 'T' : 'F';
    return "(Bit String) (" + text + ")";
}

std::string Hex(const std::vector<std::uint8_t>& octets) {
    std::string text;
    for (const std::uint8_t octet : octets)
        text += fmt::format("{:02x}", octet);
    return text;
}

bool IsPlain(const std::string& text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~' && c != '\\' && c != '\''; });
}

// Empty for what has no text of its own: see ExpectValue.
std::string DecoderText(const WrittenTag& tag) {
    return std::visit(Overloaded{
                          [](std::monostate) -> std::string { return "NULL"; },
                          [](bool value) -> std::string { return value ? "TRUE" : "FALSE"; },
                          [&](std::uint32_t value) {
                              return (tag.Type == TYPE_ENUMERATED ? " " : "(Unsigned) ") + std::to_string(value);
                          },
                          [](std::int32_t value) { return "(Signed) " + std::to_string(value); },
                          [](float value) { return fmt::format("{:.6f} (Real)", value); },
                          [](double value) { return fmt::format("{:.6f} (Double)", value); },
                          [](const std::string& value) { return IsPlain(value) ? "UTF-8 '" + value + "'" : ""; },
                          [](const std::vector<std::uint8_t>& value) { return value.empty() ? "" : " " + Hex(value); },
                          [](const BACSTAC_BIT_STRING& value) { return BitsText(value); },
                          [](const BACSTAC_DATE& value) {
                              return fmt::format("{} {}, {}, (Day of Week = {})", MonthText(value.Month), value.Day,
                                                 value.Year, WeekdayText(value.Weekday));
                          },
                          [](const BACSTAC_TIME& value) { return TimeText(value); },
                          [](const BACSTAC_OBJECT_ID&) { return std::string(); },
                      },
                      tag.Value);
}

// ---- values in context tags, of which the decoder shows the octets only (clause 20.2), by a second hand

// The fewest octets that hold the number: for a signed one those that keep its sign.
std::string HexNumber(std::uint32_t value, bool isSigned) {
    unsigned octets = 4;
    const auto fits = [&](unsigned count) {
        const unsigned shift = 32 - 8 * count;
        return isSigned ? static_cast<std::int32_t>(value << shift) >> shift == static_cast<std::int32_t>(value)
                        : value << shift >> shift == value;
    };
    while (octets > 1 && fits(octets - 1))
        --octets;
    return fmt::format("{:08x}", value).substr(8 - 2 * octets);
}

std::string HexBits(const BACSTAC_BIT_STRING& bits) {
    std::vector<std::uint8_t> octets{static_cast<std::uint8_t>((8 - bits.BitCount % 8) % 8)};
    octets.resize(1 + (bits.BitCount + 7) / 8);
    for (unsigned bit = 0; bit < bits.BitCount; ++bit)
        if ((bits.Bits[bit / 8] >> bit % 8 & 1) != 0)
            octets[1 + bit / 8] |= static_cast<std::uint8_t>(0x80U >> bit % 8);
    return Hex(octets);
}

std::string HexContent(const WrittenTag& tag) {
    return std::visit(
        Overloaded{
            [](std::monostate) -> std::string { return ""; },
            [](bool value) -> std::string { return value ? "01" : "00"; },
            [](std::uint32_t value) { return HexNumber(value, false); },
            [](std::int32_t value) { return HexNumber(static_cast<std::uint32_t>(value), true); },
            [](float value) { return fmt::format("{:08x}", std::bit_cast<std::uint32_t>(value)); },
            [](double value) { return fmt::format("{:016x}", std::bit_cast<std::uint64_t>(value)); },
            [](const std::string& value) {
                return "00" + Hex({value.begin(), value.end()});
            },
            [](const std::vector<std::uint8_t>& value) { return Hex(value); },
            [](const BACSTAC_BIT_STRING& value) { return HexBits(value); },
            [](const BACSTAC_DATE& value) {
                return fmt::format("{:02x}{:02x}{:02x}{:02x}", value.Year - 1900,
                                   value.Month == BACSTAC_ANY_MONTH ? 255 : value.Month, value.Day,
                                   value.Weekday == BACSTAC_ANY_WEEKDAY ? 255 : value.Weekday);
            },
            [](const BACSTAC_TIME& value) {
                return fmt::format("{:02x}{:02x}{:02x}{:02x}", value.Hour, value.Minute, value.Second,
                                   value.Hundredths);
            },
            [](const BACSTAC_OBJECT_ID& value) { return fmt::format("{:08x}", value.Type << 22 | value.Instance); },
        },
        tag.Value);
}

// ---- tags, one a line

std::string Line(std::size_t offset, bool context, const std::string& number, const std::string& what) {
    return fmt::format("{} {} {} {}", offset, context ? "context" : "application", number, what);
}

std::vector<std::string> Lines(const std::vector<WrittenTag>& tags) {
    std::vector<std::string> lines;
    for (const WrittenTag& tag : tags)
        lines.push_back(Line(tag.Offset, tag.Context, std::to_string(tag.Number),
                             tag.What == WrittenTag::Kind::opening   ? "{"
                             : tag.What == WrittenTag::Kind::closing ? "}"
                                                                     : std::to_string(tag.Length)));
    return lines;
}

// A tag as the decoder shows it: its class, its number, then its length or what else stands there; the line of text in
// front of the class' own line tells the value.
struct DecodedTag {
    std::string Text; // as Lines has it
    std::string Label;
    std::string Octets;     // of the value, where it has a context tag
    std::size_t Behind = 0; // field that follows
};

DecodedTag ReadTag(const Frame& frame, std::size_t at) {
    constexpr const char* OPENING = "6";
    constexpr const char* CLOSING = "7";
    const Field& begin = frame.Fields[at];
    DecodedTag tag{"", at < 2 ? "" : frame.Fields[at - 2].Label, at < 2 ? "" : frame.Fields[at - 2].Octets, at + 1};
    std::string number;
    std::string what;
    for (; tag.Behind < frame.Fields.size(); ++tag.Behind) {
        const Field& field = frame.Fields[tag.Behind];
        if (field.Name.ends_with("_tag_number"))
            number = field.Value; // the extended one comes last
        else if (field.Name == "bacapp.LVT")
            what = field.Value;
        else if (field.Name == "bacapp.named_tag")
            what = field.Value == OPENING ? "{" : field.Value == CLOSING ? "}" : "extended";
        else
            break;
    }
    tag.Text = Line(begin.Position - VALUE_POSITION, begin.Value == "1", number, what);
    return tag;
}

std::vector<DecodedTag> TagsOf(const Frame& frame) {
    std::vector<DecodedTag> tags;
    for (std::size_t i = 0; i < frame.Fields.size(); ++i)
        if (frame.Fields[i].Name == "bacapp.tag_class" && frame.Fields[i].Position >= VALUE_POSITION)
            tags.push_back(ReadTag(frame, i));
    if (!tags.empty())
        tags.pop_back(); // the closing tag of the whole value
    return tags;
}

bool ExpectValue(const WrittenTag& tag, const Frame& frame, const DecodedTag& decoded) {
    std::string expected;
    std::string shown;
    if (tag.What != WrittenTag::Kind::primitive || (tag.Context && tag.Length == 0))
        return true; // there is nothing but the tag
    if (tag.Context) {
        expected = HexContent(tag);
        shown = decoded.Octets;
    } else if (const auto* id = std::get_if<BACSTAC_OBJECT_ID>(&tag.Value)) {
        expected = fmt::format("{} {}", id->Type, id->Instance);
        shown = frame.Fields.at(decoded.Behind).Value + " " + frame.Fields.at(decoded.Behind + 1).Value;
    } else {
        expected = DecoderText(tag);
        if (expected.empty())
            return true; // control characters, which the decoder shows in ways of its own
        shown = decoded.Label.substr(std::min(decoded.Label.size(), decoded.Label.find(": ") + 2));
    }
    EXPECT_EQ(shown, expected);
    return shown == expected;
}

// Whether the decoder agrees.
bool Compare(const Sample& sample, const Frame& frame) {
    const std::vector<DecodedTag> decoded = TagsOf(frame);
    std::vector<std::string> lines;
    for (const DecodedTag& tag : decoded)
        lines.push_back(tag.Text);
    const std::vector<std::string> expected = Lines(sample.Tags);
    EXPECT_EQ(lines, expected);
    if (lines != expected)
        return false;
    for (std::size_t i = 0; i < decoded.size(); ++i)
        if (!ExpectValue(sample.Tags[i], frame, decoded[i]))
            return false;
    return true;
}

// Frame n holds one element or more of a type, which all take their turns.
Sample MakeSample(std::size_t number, std::span<std::uint8_t> octets, std::size_t& size) {
    std::vector<const bacnet::TypeInfo*> types;
    for (const bacnet::TypeInfo& type : bacnet::AllTypes())
        if (type.Type != TYPE_RAW_STRING) // never sent as such
            types.push_back(&type);
    Sample sample{types[number % types.size()], static_cast<unsigned>(number), {}};
    do {
        sample.Tags.clear();
        bacnet::Writer writer(octets);
        bacnet::BeginReadPropertyAck(TARGET, writer);
        const std::size_t begin = writer.Size();
        ValueGenerator generator(writer, sample.Seed, &sample.Tags);
        for (unsigned i = 0; i <= sample.Seed % 3; ++i)
            generator.Element(*sample.Type);
        for (WrittenTag& tag : sample.Tags)
            tag.Offset -= begin;
        bacnet::EndReadPropertyAck(writer);
        size = writer.Overflow() ? octets.size() + 1 : writer.Size();
        sample.Seed += FRAMES; // another one, if this is too long
    } while (size > MAX_VALUE);
    return sample;
}

TEST(GeneratedFrames, AgreeWithAnIndependentDecoder) {
    if (!HasDecoder())
        GTEST_SKIP() << "tshark is not installed: nothing decodes the frames independently";
    Recording recording;
    std::vector<Sample> samples;
    std::vector<std::uint8_t> octets(4096);
    bacnet::Apdu header;
    header.Type = bacnet::PduType::complex_ack;
    header.Service = static_cast<std::uint8_t>(bacnet::ConfirmedService::readProperty);
    for (std::size_t i = 0; i < FRAMES; ++i) {
        std::size_t size = 0;
        samples.push_back(MakeSample(i, octets, size));
        header.InvokeId = static_cast<std::uint8_t>(i);
        recording.AddApdu(header, std::span(octets).first(size));
    }
    std::size_t decoded = 0;
    int disagreements = 0;
    recording.DecodeEach("bacapp", [&](const Frame& frame) {
        if (decoded >= FRAMES || disagreements > 5)
            return;
        const Sample& sample = samples[decoded++];
        if (!Compare(sample, frame)) {
            ++disagreements;
            ADD_FAILURE() << "frame " << decoded << ", " << sample.Type->Name << "\n" << frame.Text();
        }
    });
    EXPECT_EQ(decoded, FRAMES);
}

} // namespace
} // namespace interop
