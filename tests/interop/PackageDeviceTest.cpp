// Our client against a device that other people's stack serves.
#include "api/bacnet/Enums.h"
#include "platform/stack/client/BacnetClient.h"
#include "tests/interop/NodePeer.h"
#include "tests/support/Loopback.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace interop {
namespace {

using nlohmann::json;

constexpr unsigned DEVICE = 77;
constexpr BACSTAC_OBJECT_ID DEVICE_OBJECT{OBJ_DEVICE, DEVICE};
constexpr BACSTAC_OBJECT_ID POINT{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_PROPERTY_ID FIRST = 600; // no property of the standard: a value tells its type itself

struct Example {
    json Theirs;
    std::string Ours; // the type, and the value as it is printed
};

json One(int type, json value) {
    return json::array({{{"type", type}, {"value", std::move(value)}}});
}

std::vector<Example> Examples() {
    const std::string text(300, 'x');
    return {
        {One(1, true), "1 true"},
        {One(1, false), "1 false"},
        {One(2, 0), "2 0"},
        {One(2, 4294967295U), "2 4294967295"},
        {One(3, -129), "3 -129"},
        {One(3, INT32_MIN), "3 -2147483648"},
        {One(4, 21.5), "4 21.5"},
        {One(5, -0.25), "5 -0.25"},
        {One(7, "Zürich 21 °C"), "13 Zürich 21 °C"},
        {One(7, text), "13 " + text},
        {json::array({{{"type", 7}, {"value", "Zü"}, {"encoding", 4}}}), "13 Zü"},
        {json::array({{{"type", 7}, {"value", "Zü"}, {"encoding", 5}}}), "13 Zü"},
        {One(9, 70000), "9 70000"},
        {One(11, "23:59:58.99"), "11 23:59:58.99"},
        {One(12, "8:4194302"), "12 (device, 4194302)"},
    };
}

json Objects() {
    json point{{"75", One(12, "0:1")}, {"77", One(7, "Room 1")}, {"79", One(9, 0)},
               {"85", One(4, 21.5)},   {"111", One(8, "0100")},  {"117", One(9, 62)}};
    BACSTAC_PROPERTY_ID property = FIRST;
    for (const Example& example : Examples())
        point[std::to_string(property++)] = example.Theirs;
    json list = json::array();
    for (const char* object : {"8:77", "0:1", "2:5"})
        list.push_back({{"type", 12}, {"value", object}});
    return {{"8:77", {{"75", One(12, "8:77")}, {"76", list}, {"77", One(7, "Their device")}, {"79", One(9, 8)}}},
            {"0:1", point}};
}

class PackageDevice : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ASSERT_EQ(WhyNoPeers(), "");
        m_device = std::make_unique<NodeDevice>(GetParam(), m_block.Text(2), m_block.Port(), DEVICE, Objects());
        ASSERT_TRUE(m_device->Started());
        bacnet::ClientConfig config;
        config.Ports.push_back({0, m_block.Text(1), m_block.Port(), "127.255.255.255"});
        config.Transactions.TimeoutMs = 2000;
        std::string failure;
        m_client = bacnet::BacnetClient::Open(config, failure);
        ASSERT_NE(m_client, nullptr) << failure;
        // The packages listen on the address they are bound to only, so the question goes there.
        ASSERT_EQ(m_client->WhoIs(Address(), DEVICE, DEVICE), BACSTAC_OK);
        for (int wait = 0; wait < 500 && !m_client->FindDev(DEVICE); ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        ASSERT_TRUE(m_client->FindDev(DEVICE));
    }
    BACSTAC_ADDRESS Address() const {
        const std::uint32_t ip = m_block.Ip(2);
        const std::uint16_t port = m_block.Port();
        const auto octet = [](std::uint32_t value) { return static_cast<std::uint8_t>(value); };
        return {0,
                0,
                0,
                {octet(ip >> 24), octet(ip >> 16), octet(ip >> 8), octet(ip), octet(port >> 8U), octet(port), 0},
                6};
    }
    std::string Text(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_PROPERTY_ID property) const {
        char text[1024];
        CBacGeneral::PrintContents(text, sizeof text, contents, POINT.Type, property, BACSTAC_NO_INDEX);
        return std::to_string(contents.DataType) + " " + text;
    }
    // Type and printed value, or what went wrong.
    std::string Read(const BACSTAC_OBJECT_ID& object, BACSTAC_PROPERTY_ID property, int index = BACSTAC_NO_INDEX) {
        std::vector<std::uint8_t> buffer(BACSTAC_CONTENTS_SIZE);
        BACSTAC_PROPERTY_CONTENTS contents{-1, buffer.data(), BACSTAC_CONTENTS_SIZE, 0};
        BACSTAC_ERROR error{};
        const BACSTAC_STATUS status = m_client->ReadProperty(DEVICE, object, property, index, contents, &error);
        return status == BACSTAC_OK ? Text(contents, property) : Failure(status, error);
    }
    static std::string Failure(BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
        return "status " + std::to_string(status) + " " + std::to_string(error.Class) + ":" +
               std::to_string(error.Code);
    }

    const std::vector<Example> m_examples = Examples();
    testing_support::LoopbackBlock m_block;
    std::unique_ptr<NodeDevice> m_device;
    std::unique_ptr<bacnet::BacnetClient> m_client;
};

TEST_P(PackageDevice, IsFoundAsItSaysItIs) {
    std::vector<unsigned> devices;
    m_client->GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    EXPECT_EQ(devices, std::vector<unsigned>{DEVICE});
    EXPECT_EQ(m_client->GetDevAddr(DEVICE), Address());
    EXPECT_EQ(m_client->GetDevVendorId(DEVICE), 999U);
}

TEST_P(PackageDevice, GivesEveryKindOfValue) {
    for (std::size_t i = 0; i < m_examples.size(); ++i)
        EXPECT_EQ(Read(POINT, static_cast<BACSTAC_PROPERTY_ID>(FIRST + i)), m_examples[i].Ours) << m_examples[i].Theirs;
    float value = 0;
    EXPECT_EQ(
        m_client->ReadProperty(DEVICE, POINT, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, &value, sizeof value, nullptr),
        BACSTAC_OK);
    EXPECT_EQ(value, 21.5F);
}

TEST_P(PackageDevice, GivesManyValuesAtOnce) {
    constexpr unsigned SIZE = 4096;
    const std::size_t count = m_examples.size() + 2;
    std::vector<std::vector<std::uint8_t>> buffers(count, std::vector<std::uint8_t>(SIZE));
    std::vector<BACSTAC_READ_RESULT_ITEM> items(count);
    std::vector<BACSTAC_OBJECT_ID> objects(count, POINT);
    for (std::size_t i = 0; i < count; ++i) {
        items[i].Property = static_cast<BACSTAC_PROPERTY_ID>(FIRST + i);
        items[i].ArrayIndex = BACSTAC_NO_INDEX;
        items[i].Contents = {-1, buffers[i].data(), SIZE, 0};
    }
    items[count - 2].Property = PROP_DESCRIPTION; // is not there
    objects[count - 1] = DEVICE_OBJECT;
    items[count - 1].Property = PROP_OBJECT_NAME;
    BACSTAC_ERROR error{};
    ASSERT_EQ(m_client->ReadPropertyMultiple(DEVICE, Address(), objects.data(), items.data(),
                                             static_cast<unsigned>(count), &error),
              BACSTAC_OK)
        << error.Class << ":" << error.Code;
    for (std::size_t i = 0; i < m_examples.size(); ++i) {
        ASSERT_TRUE(items[i].Success) << m_examples[i].Theirs;
        EXPECT_EQ(Text(items[i].Contents, items[i].Property), m_examples[i].Ours) << m_examples[i].Theirs;
    }
    EXPECT_FALSE(items[count - 2].Success);
    EXPECT_EQ(Text(items[count - 1].Contents, PROP_OBJECT_NAME), "13 Their device");
}

TEST_P(PackageDevice, GivesAllProperties) {
    constexpr unsigned SIZE = 4096;
    std::vector<std::vector<std::uint8_t>> buffers(64, std::vector<std::uint8_t>(SIZE));
    std::vector<BACSTAC_READ_RESULT_ITEM> items(buffers.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].Contents = {-1, buffers[i].data(), SIZE, 0};
    auto count = static_cast<unsigned>(items.size());
    BACSTAC_ERROR error{};
    ASSERT_EQ(m_client->ReadPropertyList(Address(), POINT, items.data(), &count, &error), BACSTAC_OK)
        << error.Class << ":" << error.Code;
    EXPECT_EQ(count, 6 + m_examples.size());
    std::vector<std::string> values;
    for (unsigned i = 0; i < count; ++i)
        if (items[i].Property >= FIRST)
            values.push_back(Text(items[i].Contents, items[i].Property));
    std::vector<std::string> expected;
    for (const Example& example : m_examples)
        expected.push_back(example.Ours);
    EXPECT_EQ(values, expected);
}

TEST_P(PackageDevice, GivesItsObjectList) {
    BACSTAC_OBJECT_ID objects[10] = {};
    unsigned count = 10;
    BACSTAC_ERROR error{};
    ASSERT_EQ(m_client->ReadObjectList(Address(), objects, &count, &error), BACSTAC_OK) << error.Code;
    ASSERT_EQ(count, 3U);
    EXPECT_EQ(objects[0], DEVICE_OBJECT);
    EXPECT_EQ(objects[1], POINT);
    EXPECT_EQ(objects[2], (BACSTAC_OBJECT_ID{OBJ_ANALOG_VALUE, 5}));
    EXPECT_EQ(Read(DEVICE_OBJECT, PROP_OBJECT_LIST, 0), "2 3");
    EXPECT_EQ(Read(DEVICE_OBJECT, PROP_OBJECT_LIST, 2), "12 (analog-input, 1)");
    EXPECT_EQ(Read(DEVICE_OBJECT, PROP_OBJECT_LIST, 4), "status 64 2:42");
}

TEST_P(PackageDevice, SaysWhatItDoesNotHave) {
    EXPECT_EQ(Read({OBJ_ANALOG_INPUT, 9}, PROP_PRESENT_VALUE), "status 64 1:31");
    EXPECT_EQ(Read(POINT, PROP_DESCRIPTION), "status 64 2:32");
}

TEST_P(PackageDevice, KeepsWhatIsWritten) {
    float value = -7.75F;
    BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
    BACSTAC_ERROR error{};
    EXPECT_EQ(m_client->WriteProperty(DEVICE, POINT, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, 8, contents, &error),
              BACSTAC_OK);
    EXPECT_EQ(Read(POINT, PROP_PRESENT_VALUE), "4 -7.75");
    EXPECT_EQ(m_client->WriteProperty(DEVICE, POINT, PROP_DESCRIPTION, BACSTAC_NO_INDEX, BACSTAC_NO_PRIORITY, contents,
                                      &error),
              BACSTAC_STATUS_ERROR);
    EXPECT_EQ(error.Code, 32U);
    EXPECT_EQ(m_client->WritePropertyNull(DEVICE, POINT, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, 8, &error), BACSTAC_OK);
    EXPECT_EQ(Read(POINT, PROP_PRESENT_VALUE), "0 null");
}

INSTANTIATE_TEST_SUITE_P(Packages, PackageDevice, testing::Values("node-bacnet", "@bacnet-js/client"),
                         [](const auto& package) { return std::string(package.index == 0 ? "node" : "js"); });

} // namespace
} // namespace interop
