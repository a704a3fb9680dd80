// Clients that other people wrote read simulated devices: what they make of our encoding, value by value.
#include "simulator/Generate.h"
#include "simulator/Simulator.h"
#include "simulator/model/Standard.h"
#include "tests/interop/NodePeer.h"
#include "tests/support/Loopback.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace interop {
namespace {

using nlohmann::json;
using sim::OBJ_SCHEDULE;
using sim::PROP_DATE_LIST;
using sim::PROP_EFFECTIVE_PERIOD;
using sim::PROP_WEEKLY_SCHEDULE;
using sim::Value;

constexpr unsigned DEVICE = 1000;
constexpr unsigned ROUTED_DEVICE = 1001;
constexpr BACSTAC_OBJECT_ID POINT{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_OBJECT_ID TARGET{OBJ_ANALOG_VALUE, 2}; // the same properties, with values to be written over
constexpr BACSTAC_OBJECT_ID OUTPUT{OBJ_ANALOG_OUTPUT, 3};
constexpr BACSTAC_OBJECT_ID SCHEDULE{OBJ_SCHEDULE, 4};
constexpr BACSTAC_OBJECT_ID CALENDAR{OBJ_CALENDAR, 5};
constexpr BACSTAC_PROPERTY_ID FIRST = 600; // of the properties below: the standard has no types for these numbers

// What a package is known to read amiss; the other one reads the same octets right.
enum class Misread {
    never,
    long_strings, // node-bacnet does not find the end of strings whose length takes more than one octet
    months,       // node-bacnet takes the numbers of months for those of JavaScript, which begin at 0
};

struct Example {
    Value Ours;
    json Theirs; // the list of values, as tests/interop/node/values.js puts them
    Misread ByNodeBacnet = Misread::never;
};

json One(int type, json value) {
    return json::array({{{"type", type}, {"value", std::move(value)}}});
}

// At most four octets with that of the character set.
Value Text(std::uint8_t characterSet, std::vector<std::uint8_t> octets) {
    octets.insert(octets.begin(), {static_cast<std::uint8_t>(0x70 + octets.size() + 1), characterSet});
    return Value::Encoded(octets);
}

std::vector<Example> Examples() {
    std::vector<Example> examples{
        {Value::Null(), One(0, nullptr)},
        {Value::Boolean(true), One(1, true)},
        {Value::Boolean(false), One(1, false)},
    };
    for (const std::uint32_t number : {0U, 1U, 255U, 256U, 65535U, 65536U, 16777215U, 16777216U, 4294967295U}) {
        examples.push_back({Value::Unsigned(number), One(2, number)});
        examples.push_back({Value::Enumerated(number), One(9, number)});
    }
    for (const std::int32_t number : {0, -1, 127, -128, 128, -129, 32767, -32768, 32768, -32769, 8388607, -8388608,
                                      8388608, -8388609, 2147483647, INT32_MIN})
        examples.push_back({Value::Signed(number), One(3, number)});
    for (const float number : {0.0F, 21.5F, -1.0F / 3, 3.4028235e38F, 1e-45F})
        examples.push_back({Value::Real(number), One(4, number)});
    for (const double number : {0.0, 1.0 / 3, -1.7976931348623157e308, 5e-324})
        examples.push_back({Value::Double(number), One(5, number)});
    // 4 octets of content fit the tag, 5 to 253 have a length octet, more have two behind it.
    for (const std::size_t size : {0U, 1U, 4U, 5U, 253U, 254U, 300U}) {
        const std::vector<std::uint8_t> octets(size, 0xA5);
        const std::string text(size, 'x');
        const auto misread = [](std::size_t length) { return length < 254 ? Misread::never : Misread::long_strings; };
        examples.push_back({Value::OctetString(octets), One(6, octets), misread(size)});
        examples.push_back({Value::String(text), One(7, text), misread(size + 1)});
    }
    examples.push_back({Value::String("Zürich 21 °C, 温度"), One(7, "Zürich 21 °C, 温度")});
    examples.push_back({Text(4, {0x00, 0xFC}), // UCS-2
                        json::array({{{"type", 7}, {"value", "ü"}, {"encoding", 4}}})});
    examples.push_back({Text(5, {'Z', 0xFC}), // ISO 8859-1
                        json::array({{{"type", 7}, {"value", "Zü"}, {"encoding", 5}}})});
    examples.push_back({Value::BitString(4, {0, 2}), One(8, "1010")});
    examples.push_back({Value::BitString(8, {7}), One(8, "00000001")});
    examples.push_back({Value::BitString(17, {0, 16}), One(8, "10000000000000001")});
    examples.push_back({Value::BitString(0, {}), One(8, "")});
    examples.push_back({Value::Date({2026, 0, 11, 21, 6}), One(10, "2026-11-21"), Misread::months});
    examples.push_back({Value::Date({2000, 0, 2, 29, 2}), One(10, "2000-02-29"), Misread::months});
    examples.push_back({Value::Time({23, 59, 58, 99}), One(11, "23:59:58.99")});
    examples.push_back({Value::Time({0, 0, 0, 0}), One(11, "00:00:00.00")});
    for (const BACSTAC_OBJECT_ID id :
         {BACSTAC_OBJECT_ID{0, 0}, {8, 4194302}, {1023, 4194303}, {512, 1}, {511, 2097152}})
        examples.push_back({Value::ObjectId(id), One(12, std::to_string(id.Type) + ":" + std::to_string(id.Instance))});
    const std::vector<Value> mixed{Value::Real(1.5F), Value::Null(), Value::Unsigned(7)};
    const json mixedTheirs =
        json::array({{{"type", 4}, {"value", 1.5}}, {{"type", 0}, {"value", nullptr}}, {{"type", 2}, {"value", 7}}});
    examples.push_back({Value::Array(mixed), mixedTheirs});
    examples.push_back({Value::List(mixed), mixedTheirs});
    examples.push_back({Value::List({}), json::array()});
    return examples;
}

// Of the same type as an example, and another value.
Value Blank(const Value& example) {
    switch (example.Wire()[0] >> 4) { // application tag
    case 1:
        return Value::Boolean(example == Value::Boolean(false));
    case 2:
        return Value::Unsigned(99);
    case 3:
        return Value::Signed(99);
    case 4:
        return Value::Real(99);
    case 5:
        return Value::Double(99);
    case 6:
        return Value::OctetString(std::vector<std::uint8_t>{99, 99});
    case 7:
        return Value::String("blank");
    case 8:
        return Value::BitString(3, {2});
    case 9:
        return Value::Enumerated(99);
    case 10:
        return Value::Date({1999, 0, 1, 1, 5});
    case 11:
        return Value::Time({1, 1, 1, 1});
    case 12:
        return Value::ObjectId({9, 9});
    default:
        return Value::Null();
    }
}

bool IsWritten(const Example& example) {
    return example.Ours.GetShape() == sim::Shape::single && example.Ours != Value::Null();
}

// Monday 21.0 at 8:00 and nothing from 18:30 on, Sunday 1 (enumerated) at 6:00; the year 2026.
sim::ObjectConfig Schedule() {
    using Octets = std::vector<std::uint8_t>;
    const Value empty = Value::Encoded(Octets{0x0E, 0x0F});
    const Value monday =
        Value::Encoded(Octets{0x0E, 0xB4, 8, 0, 0, 0, 0x44, 0x41, 0xA8, 0, 0, 0xB4, 18, 30, 0, 0, 0x00, 0x0F});
    const Value sunday = Value::Encoded(Octets{0x0E, 0xB4, 6, 0, 0, 0, 0x91, 1, 0x0F});
    sim::ObjectConfig schedule;
    schedule.Id = SCHEDULE;
    schedule.Properties.emplace_back(
        PROP_WEEKLY_SCHEDULE, Value::Array(std::vector<Value>{monday, empty, empty, empty, empty, empty, sunday}));
    schedule.Properties.emplace_back(PROP_EFFECTIVE_PERIOD,
                                     Value::Encoded(Octets{0xA4, 126, 1, 1, 255, 0xA4, 126, 12, 31, 255}));
    return schedule;
}

// Christmas Eve, the days up to New Year, and the last Friday of each month.
sim::ObjectConfig Calendar() {
    using Octets = std::vector<std::uint8_t>;
    sim::ObjectConfig calendar;
    calendar.Id = CALENDAR;
    calendar.Properties.emplace_back(
        PROP_DATE_LIST, Value::List(std::vector<Value>{
                            Value::Encoded(Octets{0x0C, 126, 12, 24, 255}),
                            Value::Encoded(Octets{0x1E, 0xA4, 126, 12, 25, 255, 0xA4, 126, 12, 31, 255, 0x1F}),
                            Value::Encoded(Octets{0x2B, 255, 6, 5}),
                        }));
    return calendar;
}

class PackageClient : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ASSERT_EQ(WhyNoPeers(), "");
        sim::Counts counts;
        counts.FirstIp = m_block.Ip(10);
        counts.Port = m_block.Port();
        counts.Trends = 0;
        counts.Networks = {7};
        counts.RoutedDevices = 1;
        sim::SimulatorConfig site = sim::GenerateConfig(counts);
        site.IAm = sim::IAmMode::unicast; // the packages receive on one address only
        sim::ObjectConfig point;
        point.Id = POINT;
        point.Name = "Room 1";
        BACSTAC_PROPERTY_ID property = FIRST;
        for (const Example& example : m_examples)
            point.Properties.emplace_back(property++, example.Ours);
        site.Devices.at(0).Objects.push_back(point);
        sim::ObjectConfig target;
        target.Id = TARGET;
        for (const auto& [id, value] : point.Properties)
            if (value.GetShape() == sim::Shape::single)
                target.Properties.emplace_back(id, Blank(value));
        site.Devices.at(0).Objects.push_back(target);
        sim::ObjectConfig output;
        output.Id = OUTPUT;
        site.Devices.at(0).Objects.push_back(output);
        site.Devices.at(0).Objects.push_back(Schedule());
        site.Devices.at(0).Objects.push_back(Calendar());
        site.Routers.at(0).Networks.at(0).Devices.at(0).Objects.push_back(point);
        m_simulator = std::make_unique<sim::Simulator>(std::move(site));
        std::string failure;
        ASSERT_TRUE(m_simulator->Start(failure)) << failure;
    }

    json Run(const json& steps) {
        const json results = RunSteps(GetParam(), m_block.Text(2), m_block.Port(), steps);
        EXPECT_EQ(results.size(), steps.size());
        return results;
    }
    std::string Device() const { return m_block.Text(10); }
    std::string RoutedDevice() const { return m_block.Text(11) + "/7:1"; }
    json Read(const std::string& to, BACSTAC_PROPERTY_ID property) const {
        return {{"do", "read"}, {"to", to}, {"type", POINT.Type}, {"instance", POINT.Instance}, {"property", property}};
    }
    json ReadMultiple(const std::string& to, std::size_t count) const {
        json properties = json::array();
        for (std::size_t i = 0; i < count; ++i)
            properties.push_back({{"id", FIRST + i}});
        return {{"do", "readMultiple"},
                {"to", to},
                {"objects", {{{"type", POINT.Type}, {"instance", POINT.Instance}, {"properties", properties}}}}};
    }
    bool IsNodeBacnet() const { return std::string(GetParam()) == "node-bacnet"; }
    json Expected(const Example& example) const {
        json expected = example.Theirs;
        if (!IsNodeBacnet() || example.ByNodeBacnet == Misread::never)
            return expected;
        if (example.ByNodeBacnet == Misread::long_strings)
            return {{"failure", "INVALID_DECODING"}};
        std::string date = expected[0]["value"];
        const int month = std::stoi(date.substr(5, 2)) % 12 + 1;
        expected[0]["value"] = date.replace(5, 2, (month < 10 ? "0" : "") + std::to_string(month));
        return expected;
    }
    // Of an answer to ReadMultiple.
    void ExpectExamples(const json& answer, std::size_t count) const {
        ASSERT_TRUE(answer.contains("2:1")) << answer;
        const json& values = answer["2:1"];
        EXPECT_EQ(values.size(), count);
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_EQ(values.value(std::to_string(FIRST + i), json()), Expected(m_examples[i]))
                << "property " << FIRST + i;
    }
    // What the device holds now, octet by octet.
    std::optional<Value> Held(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property) const {
        return m_simulator->FindDevice(DEVICE)->GetProperty(object, property);
    }

    static std::string Octets(const Value& value) {
        std::string text;
        for (const std::uint8_t octet : value.Wire())
            text += fmt::format("{:02X}", octet);
        return text;
    }
    void ExpectHeld(std::size_t index) const {
        const Example& example = m_examples[index];
        // node-bacnet also writes the numbers of months as JavaScript has them.
        if (!IsWritten(example) || (IsNodeBacnet() && example.ByNodeBacnet == Misread::months))
            return;
        const auto held = Held(TARGET, static_cast<BACSTAC_PROPERTY_ID>(FIRST + index));
        ASSERT_TRUE(held) << "property " << FIRST + index;
        // Both packages give this number, the smallest of three octets, a fourth one.
        const bool isLonger = example.Ours == Value::Signed(-8388608);
        EXPECT_EQ(Octets(*held), isLonger ? "34FF800000" : Octets(example.Ours)) << "property " << FIRST + index;
    }

    const std::vector<Example> m_examples = Examples();
    testing_support::LoopbackBlock m_block;
    std::unique_ptr<sim::Simulator> m_simulator;
};

TEST_P(PackageClient, FindsTheDevices) {
    const json results = Run(json::array({{{"do", "whoIs"}, {"low", 1000}, {"high", 1999}, {"count", 2}}}));
    EXPECT_EQ(results[0], json::array({DEVICE, ROUTED_DEVICE}));
}

TEST_P(PackageClient, ReadsEveryKindOfValue) {
    json steps = json::array();
    for (std::size_t i = 0; i < m_examples.size(); ++i)
        steps.push_back(Read(Device(), static_cast<BACSTAC_PROPERTY_ID>(FIRST + i)));
    const json results = Run(steps);
    for (std::size_t i = 0; i < m_examples.size(); ++i)
        EXPECT_EQ(results.at(i), Expected(m_examples[i])) << "property " << FIRST + i;
}

TEST_P(PackageClient, ReadsManyValuesAtOnce) {
    constexpr std::size_t COUNT = 40; // they fit into one APDU
    const json results = Run(json::array({ReadMultiple(Device(), COUNT)}));
    ExpectExamples(results[0], COUNT);
}

TEST_P(PackageClient, ReadsAnswersInSegments) {
    const json results = Run(json::array({ReadMultiple(Device(), m_examples.size())}));
    if (IsNodeBacnet()) // puts the segments together and then waits for the first of them again
        EXPECT_EQ(results[0], json({{"failure", "ERR_TIMEOUT"}}));
    else
        ExpectExamples(results[0], m_examples.size());
    EXPECT_GT(m_simulator->GetStats()[sim::Counter::segments], 1U);
}

TEST_P(PackageClient, ReadsThroughARouter) {
    const json results = Run(json::array({Read(RoutedDevice(), PROP_OBJECT_NAME), ReadMultiple(RoutedDevice(), 20)}));
    EXPECT_EQ(results[0], One(7, "Room 1"));
    ExpectExamples(results[1], 20);
}

TEST_P(PackageClient, ReadsElementsOfArrays) {
    const std::string to = Device();
    json steps = json::array();
    for (const int index : {0, 1, 2, 7})
        steps.push_back({{"do", "read"},
                         {"to", to},
                         {"type", OBJ_DEVICE},
                         {"instance", DEVICE},
                         {"property", PROP_OBJECT_LIST},
                         {"index", index}});
    const json results = Run(steps);
    EXPECT_EQ(results[0], One(2, 6));
    EXPECT_EQ(results[1], One(12, "8:1000"));
    EXPECT_EQ(results[2], One(12, "2:1"));
    EXPECT_EQ(results[3], json({{"error", "2:42"}})) << "property, invalid array index";
}

TEST_P(PackageClient, LearnsWhyAReadFails) {
    json missing = Read(Device(), PROP_PRESENT_VALUE);
    missing["instance"] = 99;
    json entries = ReadMultiple(Device(), 1);
    entries["objects"][0]["properties"].push_back({{"id", 5000}});
    const json results = Run(json::array({missing, Read(Device(), 5000), entries}));
    EXPECT_EQ(results[0], json({{"error", "1:31"}})) << "object, unknown object";
    EXPECT_EQ(results[1], json({{"error", "2:32"}})) << "property, unknown property";
    EXPECT_EQ(results[2]["2:1"]["5000"], json::array({{{"error", "2:32"}}}));
    EXPECT_EQ(results[2]["2:1"]["600"], One(0, nullptr));

    m_simulator->FindDevice(DEVICE)->SetFault(sim::Fault::Reject(9));
    EXPECT_EQ(Run(json::array({Read(Device(), 600)}))[0], json({{"reason", 9}}));
    m_simulator->FindDevice(DEVICE)->SetFault(sim::Fault::Abort(4));
    EXPECT_EQ(Run(json::array({Read(Device(), 600)}))[0], json({{"reason", 4}}));
}

TEST_P(PackageClient, WritesEveryKindOfValue) {
    json steps = json::array();
    for (std::size_t i = 0; i < m_examples.size(); ++i)
        if (IsWritten(m_examples[i]))
            steps.push_back({{"do", "write"},
                             {"to", Device()},
                             {"type", TARGET.Type},
                             {"instance", TARGET.Instance},
                             {"property", FIRST + i},
                             {"values", m_examples[i].Theirs}});
    const json results = Run(steps);
    for (const json& result : results)
        EXPECT_EQ(result, "done");
    for (std::size_t i = 0; i < m_examples.size(); ++i)
        ExpectHeld(i);
}

TEST_P(PackageClient, WritesManyValuesAtOnce) {
    json properties = json::array();
    for (std::size_t i = 0; i < 40; ++i)
        if (IsWritten(m_examples[i]))
            properties.push_back({{"id", FIRST + i}, {"values", m_examples[i].Theirs}});
    json objects = json::array({{{"type", TARGET.Type}, {"instance", TARGET.Instance}, {"properties", properties}}});
    objects.push_back({{"type", OUTPUT.Type},
                       {"instance", OUTPUT.Instance},
                       {"properties", {{{"id", PROP_PRESENT_VALUE}, {"priority", 9}, {"values", One(4, 21.5)}}}}});
    const json results = Run(json::array({{{"do", "writeMultiple"}, {"to", Device()}, {"objects", objects}}}));
    EXPECT_EQ(results[0], "done");
    for (std::size_t i = 0; i < 40; ++i)
        ExpectHeld(i);
    EXPECT_EQ(Held(OUTPUT, PROP_PRESENT_VALUE), Value::Real(21.5F));
}

TEST_P(PackageClient, CommandsAndRelinquishesAnOutput) {
    const json value{{"to", Device()}, {"type", OUTPUT.Type}, {"instance", OUTPUT.Instance}, {"property", 85}};
    const auto step = [&](const char* what, json more) {
        more["do"] = what;
        more.update(value);
        return more;
    };
    const auto slot = [&](int priority) {
        json read = step("read", {{"index", priority}});
        read["property"] = sim::PROP_PRIORITY_ARRAY;
        return read;
    };
    const json results = Run(json::array({
        step("write", {{"priority", 12}, {"values", One(4, 12.0)}}),
        step("write", {{"priority", 8}, {"values", One(4, 8.0)}}),
        step("read", json::object()),
        slot(8),
        slot(16),
        step("write", {{"priority", 8}, {"values", One(0, nullptr)}}),
        step("read", json::object()),
        step("write", {{"values", One(9, 1)}}),
    }));
    EXPECT_EQ(results[0], "done");
    EXPECT_EQ(results[1], "done");
    EXPECT_EQ(results[2], One(4, 8.0));
    EXPECT_EQ(results[3], One(4, 8.0));
    EXPECT_EQ(results[4], One(0, nullptr));
    EXPECT_EQ(results[5], "done");
    EXPECT_EQ(results[6], One(4, 12.0));
    EXPECT_EQ(results[7], json({{"error", "2:9"}})) << "property, invalid data type";
}

// Values with a structure, which only one of the packages takes apart.
class StructureClient : public PackageClient {};

json Raw(int month, int day) {
    return {{"year", 126}, {"month", month}, {"day", day}, {"wday", 255}};
}

TEST_P(StructureClient, ReadsASchedule) {
    const auto read = [&](BACSTAC_PROPERTY_ID property) -> json {
        return {{"do", "read"}, {"to", Device()}, {"type", OBJ_SCHEDULE}, {"instance", 4}, {"property", property}};
    };
    const json results = Run(json::array({read(PROP_WEEKLY_SCHEDULE), read(PROP_EFFECTIVE_PERIOD)}));
    const json& week = results[0][0]["value"];
    ASSERT_EQ(week.size(), 7U) << results;
    ASSERT_EQ(week[0].size(), 2U);
    EXPECT_EQ(week[0][0]["time"]["value"], "1900-01-01T08:00:00.000Z");
    EXPECT_EQ(week[0][0]["value"]["type"], 4);
    EXPECT_EQ(week[0][0]["value"]["value"], 21);
    EXPECT_EQ(week[0][1]["time"]["value"], "1900-01-01T18:30:00.000Z");
    EXPECT_EQ(week[0][1]["value"]["type"], 0);
    for (int day = 1; day < 6; ++day)
        EXPECT_EQ(week[day], json::array());
    ASSERT_EQ(week[6].size(), 1U);
    EXPECT_EQ(week[6][0]["value"]["type"], 9);
    EXPECT_EQ(week[6][0]["value"]["value"], 1);
    const json& period = results[1][0]["value"];
    EXPECT_EQ(period[0]["raw"], Raw(1, 1));
    EXPECT_EQ(period[1]["raw"], Raw(12, 31));
}

TEST_P(StructureClient, ReadsACalendar) {
    const json results = Run(json::array(
        {{{"do", "read"}, {"to", Device()}, {"type", OBJ_CALENDAR}, {"instance", 5}, {"property", PROP_DATE_LIST}}}));
    const json& entries = results[0][0]["value"];
    ASSERT_EQ(entries.size(), 3U) << results;
    EXPECT_EQ(entries[0]["raw"], Raw(12, 24));
    EXPECT_EQ(entries[1]["value"][0]["raw"], Raw(12, 25));
    EXPECT_EQ(entries[1]["value"][1]["raw"], Raw(12, 31));
    EXPECT_EQ(entries[2]["value"], json({{"month", 255}, {"week", 6}, {"wday", 5}}));
}

INSTANTIATE_TEST_SUITE_P(Packages, StructureClient, testing::Values("@bacnet-js/client"),
                         [](const auto&) { return std::string("js"); });

INSTANTIATE_TEST_SUITE_P(Packages, PackageClient, testing::Values("node-bacnet", "@bacnet-js/client"),
                         [](const auto& package) { return std::string(package.index == 0 ? "node" : "js"); });

} // namespace
} // namespace interop
