// The client over real UDP on the loopback network, against simulated devices: straight ahead, behind a router, and
// weak ones.
#include "tests/support/Loopback.h"
#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Requests.h"
#include "platform/stack/client/BacnetClient.h"
#include "simulator/Generate.h"
#include "simulator/Simulator.h"
#include "tests/support/AllocationCounter.h"
#include "tests/unit/stack/client/Discovery.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <set>

namespace {

using namespace std::chrono_literals;

constexpr BACSTAC_OBJECT_ID firstTrend{OBJ_TREND_LOG, 1};

class LoopbackTest : public testing::Test {
protected:
    LoopbackTest() {
        m_counts.Devices = 3;
        m_counts.Points = 10;
        m_counts.Trends = 2;
        m_counts.Multiples = 1;
        m_counts.Records = 250;
        m_counts.FirstIp = m_block.Ip(10);
        m_counts.Port = m_block.Port();
        m_counts.Networks = {7};
    }
    ~LoopbackTest() override {
        m_client.reset();
        BACnet = nullptr;
    }

    // Starts the simulation, after change had a look at it, and the client, and waits until all devices are known.
    template <class Change>
    void Start(Change change) {
        sim::SimulatorConfig config = sim::GenerateConfig(m_counts);
        change(config);
        m_simulator = std::make_unique<sim::Simulator>(std::move(config));
        std::string failure;
        ASSERT_TRUE(m_simulator->Start(failure)) << failure;
        bacnet::ClientConfig client;
        bacnet::ClientPort port;
        port.BindAddress = m_block.Text(1);
        port.UdpPort = m_block.Port();
        client.Ports.push_back(port);
        client.Transactions = m_settings;
        m_client = bacnet::BacnetClient::Open(client, failure);
        ASSERT_NE(m_client, nullptr) << failure;
        BACnet = m_client.get();
        Discovery discovery;
        const int handle = m_client->RegisterIAMCallback(&discovery);
        const BACSTAC_ADDRESS everybody{1, 0, BACSTAC_ALL_NETWORKS, {}, 0};
        ASSERT_EQ(m_client->WhoIs(everybody, 0, BACSTAC_MAX_INSTANCE), BACSTAC_OK);
        EXPECT_EQ(discovery.WaitFor(m_simulator->DeviceCount()).size(), m_simulator->DeviceCount());
        m_client->UnregisterIAMCallback(handle);
    }
    void Start() {
        Start([](sim::SimulatorConfig&) {});
    }

    std::string NameOf(unsigned device, BACSTAC_OBJECT_ID object) {
        char name[256] = {};
        const BACSTAC_STATUS status =
            m_client->ReadProperty(device, object, PROP_OBJECT_NAME, -1, name, sizeof name, nullptr);
        return status == BACSTAC_OK ? name : "status " + std::to_string(status);
    }
    std::vector<BACSTAC_OBJECT_ID> ObjectsOf(unsigned device) {
        const BACSTAC_ADDRESS address = m_client->GetDevAddr(device);
        unsigned count = 0;
        EXPECT_EQ(m_client->ReadObjectList(address, nullptr, &count, nullptr), BACSTAC_OK);
        std::vector<BACSTAC_OBJECT_ID> objects(count);
        EXPECT_EQ(m_client->ReadObjectList(address, objects.data(), &count, nullptr), BACSTAC_OK);
        objects.resize(count);
        return objects;
    }

    testing_support::LoopbackBlock m_block;
    sim::Counts m_counts;
    bacnet::TransactionSettings m_settings;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<bacnet::BacnetClient> m_client;
};

TEST_F(LoopbackTest, FindsAllDevicesAndTheNetworkBehindTheRouter) {
    Start();
    std::vector<unsigned> devices;
    m_client->GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    EXPECT_EQ(devices, (std::vector<unsigned>{1000, 1001, 1002, 1003, 1004}));
    m_client->GetDevLst(devices, 7);
    EXPECT_EQ(devices, (std::vector<unsigned>{1003, 1004}));
    EXPECT_EQ(m_client->GetDevAddr(1003), (BACSTAC_ADDRESS{1, 0, 7, {1}, 1}));
    std::map<unsigned short, bool> networks;
    m_client->GetNetLst(networks);
    EXPECT_EQ(networks, (std::map<unsigned short, bool>{{0, false}, {7, true}}));
}

TEST_F(LoopbackTest, ReadsFromEveryDevice) {
    Start();
    for (unsigned device = 1000; device <= 1004; ++device) {
        const std::string name = NameOf(device, {OBJ_DEVICE, device});
        EXPECT_EQ(name.find("status"), std::string::npos) << name;
        const auto objects = ObjectsOf(device);
        EXPECT_EQ(objects.size(), 14U) << "the device, 10 points, 2 trend logs and one multiple";
        for (const BACSTAC_OBJECT_ID& object : objects)
            EXPECT_EQ(NameOf(device, object).find("status"), std::string::npos);
    }
}

TEST_F(LoopbackTest, ReadsWithoutTakingMemory) {
    Start();
    const BACSTAC_OBJECT_ID point = sim::PointId(0, false);
    std::uint8_t buffer[16];
    const auto read = [&] {
        return m_client->ReadProperty(1000, point, PROP_PRESENT_VALUE, -1, buffer, sizeof buffer, nullptr);
    };
    ASSERT_EQ(read(), BACSTAC_OK);
    const CAllocationCounter counter;
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(read(), BACSTAC_OK);
    EXPECT_EQ(counter.GetCount(), 0U);
}

// Reads a log block by block, as the history does: each block continues where the last record of the former was.
TEST_F(LoopbackTest, FollowsATrendLogByTime) {
    for (const std::uint32_t revision : {14U, 2U}) {
        SCOPED_TRACE(revision);
        m_counts.ProtocolRevision = revision;
        Start();
        for (const BACSTAC_OBJECT_ID log : {firstTrend, BACSTAC_OBJECT_ID{OBJ_TREND_LOG_MULTIPLE, 1}}) {
            BACSTAC_READ_RANGE_SPEC spec{};
            spec.Kind = revision >= 4 ? BACSTAC_RANGE_BY_TIME : BACSTAC_RANGE_BY_TIME_2001;
            spec.ByTime.Reference.Date = {1900, 0, 1, 1, 0};
            spec.ByTime.Count = 100;
            unsigned records = 0;
            std::string counts;
            for (bool more = true; more;) {
                BACSTAC_BIT_STRING flags{};
                CPropertyContents contents;
                unsigned first = 0;
                ASSERT_EQ(
                    m_client->ReadRange(1000, log, PROP_LOG_BUFFER, -1, &spec, &flags, &contents, nullptr, &first),
                    BACSTAC_OK);
                ASSERT_NE(contents.ElementCount, 0U);
                EXPECT_EQ(first, revision >= 4 ? records + 1 : 0U);
                records += contents.ElementCount;
                counts += std::to_string(contents.ElementCount) + " ";
                const std::size_t size =
                    log.Type == OBJ_TREND_LOG ? sizeof(BACSTAC_LOG_RECORD) : sizeof(BACSTAC_LOG_MULTIPLE_RECORD);
                const char* const last = static_cast<const char*>(contents.Buffer) + (contents.ElementCount - 1) * size;
                std::memcpy(&spec.ByTime.Reference, last, sizeof spec.ByTime.Reference);
                more = !CBacGeneral::TestBitStringBit(flags, BACSTAC_RANGE_LAST_ITEM);
            }
            EXPECT_EQ(counts, "100 100 50 ");
        }
        m_client.reset();
        m_simulator.reset();
    }
}

TEST_F(LoopbackTest, ReadsALogWhoseAnswerNeedsManySegments) {
    Start([](sim::SimulatorConfig& config) { config.Devices[0].MaxApdu = 50; });
    CPropertyContents contents;
    BACSTAC_READ_RANGE_SPEC spec{};
    spec.Kind = BACSTAC_RANGE_BY_POSITION;
    spec.ByIndex = {1, 250};
    ASSERT_EQ(m_client->ReadRange(1000, firstTrend, PROP_LOG_BUFFER, -1, &spec, nullptr, &contents, nullptr, nullptr),
              BACSTAC_OK);
    EXPECT_EQ(contents.ElementCount, 250U);
    spec.ByIndex = {250, -5};
    ASSERT_EQ(m_client->ReadRange(1000, firstTrend, PROP_LOG_BUFFER, -1, &spec, nullptr, &contents, nullptr, nullptr),
              BACSTAC_OK);
    EXPECT_EQ(contents.ElementCount, 5U) << "backwards";
    spec.Kind = BACSTAC_RANGE_BY_SEQUENCE;
    unsigned first = 0;
    ASSERT_EQ(m_client->ReadRange(1000, firstTrend, PROP_LOG_BUFFER, -1, &spec, nullptr, &contents, nullptr, &first),
              BACSTAC_OK);
    EXPECT_EQ(contents.ElementCount, 5U);
    EXPECT_EQ(first, 246U) << "of the oldest record of the answer, not of the reference";
}

TEST_F(LoopbackTest, WritesAndReadsBackWhatNeedsManySegments) {
    Start([](sim::SimulatorConfig& config) {
        for (sim::DeviceConfig* device : {&config.Devices[0], &config.Routers[0].Networks[0].Devices[0]}) {
            device->MaxApdu = 50;
            device->Segmentation = bacnet::Segmentation::both;
            device->MaxSegments = 400;
        }
    });
    std::string text(15000, ' '); // more than 256 segments
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char>('a' + i % 25);
    const BACSTAC_PROPERTY_CONTENTS contents{TYPE_STRING, text.data(), static_cast<unsigned>(text.size() + 1), 1};
    for (const unsigned device : {1000U, 1003U}) { // near, and behind a router
        SCOPED_TRACE(device);
        const BACSTAC_OBJECT_ID point = sim::PointId(0, false);
        ASSERT_EQ(m_client->WriteProperty(device, point, PROP_OBJECT_NAME, -1, -1, contents, nullptr), BACSTAC_OK);
        std::string read(20000, '\0');
        ASSERT_EQ(m_client->ReadProperty(device, point, PROP_OBJECT_NAME, -1, read.data(),
                                         static_cast<unsigned>(read.size()), nullptr),
                  BACSTAC_OK);
        EXPECT_EQ(read.c_str(), text);
    }
    // The next device takes none.
    EXPECT_EQ(m_client->WriteProperty(1001, sim::PointId(0, false), PROP_OBJECT_NAME, -1, -1, contents, nullptr),
              BACSTAC_STATUS_TOO_LONG);
}

TEST_F(LoopbackTest, ManagesWithDevicesThatCannotDoMuch) {
    Start([](sim::SimulatorConfig& config) {
        config.Devices[0].MaxApdu = 50;
        config.Devices[0].Segmentation = bacnet::Segmentation::none;
        config.Devices[1].MaxApdu = 128;
        config.Devices[1].Segmentation = bacnet::Segmentation::none;
        config.Devices[1].LacksServices = {bacnet::ConfirmedService::readPropertyMultiple};
    });
    for (const unsigned device : {1000U, 1001U}) {
        SCOPED_TRACE(device);
        const auto objects = ObjectsOf(device);
        const auto all = ObjectsOf(1002);
        ASSERT_EQ(objects.size(), all.size());
        EXPECT_TRUE(std::equal(objects.begin() + 1, objects.end(), all.begin() + 1)) << "but for the device object";
        CRPMRequest request(3);
        char name[256] = {};
        char description[256] = {};
        char nothing[256] = {};
        request.Append(PROP_OBJECT_NAME, -1, name, sizeof name);
        request.Append(PROP_DESCRIPTION, -1, description, sizeof description);
        request.Append(87, 0, nothing, sizeof nothing);
        ASSERT_TRUE(request.Execute(device, m_client->GetDevAddr(device), firstTrend));
        EXPECT_EQ(request.GetResult(0)->Success, 1);
        EXPECT_EQ(request.GetResult(2)->Success, 0);
        EXPECT_EQ(name, NameOf(device, firstTrend));
    }
}

TEST_F(LoopbackTest, ReadsAllPropertiesOfAnObject) {
    Start();
    std::vector<CPropertyContents> buffers(100, CPropertyContents(4096));
    std::vector<BACSTAC_READ_RESULT_ITEM> items;
    for (CPropertyContents& contents : buffers)
        items.push_back({0, 0, 0, contents, {}});
    for (const unsigned device : {1000U, 1003U}) {
        unsigned count = 100;
        ASSERT_EQ(m_client->ReadPropertyList(m_client->GetDevAddr(device), {OBJ_DEVICE, device}, items.data(), &count,
                                             nullptr),
                  BACSTAC_OK);
        EXPECT_GT(count, 15U);
        for (unsigned i = 0; i < count; ++i)
            EXPECT_EQ(items[i].Success, 1) << "property " << items[i].Property;
    }
}

TEST_F(LoopbackTest, SurvivesADeviceThatGoesSilent) {
    m_settings.TimeoutMs = 100;
    m_settings.Retries = 1;
    Start();
    m_simulator->GetDevice(1).SetFault(sim::Fault::Silent());
    EXPECT_EQ(NameOf(1001, {OBJ_DEVICE, 1001}), "status 1");
    EXPECT_EQ(NameOf(1000, {OBJ_DEVICE, 1000}).find("status"), std::string::npos);
}

} // namespace
