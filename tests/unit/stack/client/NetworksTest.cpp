// Several networks at once over real sockets, networks that are switched off, and how networks stand.
#include "api/bacnet/Dir.h"
#include "api/bacnet/Log.h"
#include "api/bacnet/PropertyValue.h"
#include "platform/stack/client/BacnetClient.h"
#include "simulator/Generate.h"
#include "simulator/Simulator.h"
#include "tests/support/Loopback.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/stack/client/Discovery.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <fstream>
#include <mutex>
#include <set>
#include <thread>

namespace {

using namespace std::chrono_literals;
using bacnet::TableRead;
using testing_support::LoopbackBlock;

class LogLines : public CQilBAC_ErrLog::ISink {
public:
    void OnLine(CQilBAC_ErrLog::KIND kind, const std::string& text) override {
        const std::lock_guard lock(m_lock);
        m_lines += (kind == CQilBAC_ErrLog::KIND_ERROR ? "E: " : "I: ") + text + "\n";
    }
    // Waits for a line that holds text.
    bool Has(const std::string& text) {
        for (int i = 0; i < 2500; ++i) {
            {
                const std::lock_guard lock(m_lock);
                if (m_lines.find(text) != std::string::npos)
                    return true;
            }
            std::this_thread::sleep_for(2ms);
        }
        return false;
    }

private:
    std::mutex m_lock;
    std::string m_lines;
};

// Records of a capture file, whole datagrams with their IP and UDP headers.
std::size_t CountCaptured(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(24);
    std::size_t count = 0;
    std::uint32_t header[4];
    while (file.read(reinterpret_cast<char*>(header), sizeof header)) {
        file.seekg(header[2], std::ios::cur);
        ++count;
    }
    return count;
}

class Networks : public testing::Test {
protected:
    ~Networks() override {
        m_client.reset();
        BACnet = nullptr;
    }
    // A site of two devices from this instance on, in a block.
    std::unique_ptr<sim::Simulator> Site(const LoopbackBlock& block, unsigned instance,
                                         std::vector<std::uint16_t> networks = {}) {
        sim::Counts counts;
        counts.Devices = 2;
        counts.Points = 3;
        counts.Trends = 0;
        counts.BaseInstance = instance;
        counts.FirstIp = block.Ip(10);
        counts.Port = block.Port();
        counts.Networks = std::move(networks);
        auto site = std::make_unique<sim::Simulator>(sim::GenerateConfig(counts));
        std::string failure;
        EXPECT_TRUE(site->Start(failure)) << failure;
        return site;
    }
    static bacnet::ClientPort Port(const LoopbackBlock& block, std::uint16_t network, unsigned host = 1) {
        bacnet::ClientPort port;
        port.Network = network;
        port.BindAddress = block.Text(host);
        port.UdpPort = block.Port();
        return port;
    }
    std::unique_ptr<bacnet::BacnetClient> Open(const bacnet::ClientConfig& config) {
        std::string failure;
        auto client = bacnet::BacnetClient::Open(config, failure);
        EXPECT_NE(client, nullptr) << failure;
        return client;
    }
    std::set<unsigned> Discover(std::uint16_t network, std::size_t count) {
        Discovery discovery;
        const int handle = m_client->RegisterIAMCallback(&discovery);
        const BACSTAC_ADDRESS destination{std::uint8_t(network != 0), 0, network, {}, 0};
        EXPECT_EQ(m_client->WhoIs(destination, 0, BACSTAC_MAX_INSTANCE), BACSTAC_OK);
        const auto devices = discovery.WaitFor(count);
        m_client->UnregisterIAMCallback(handle);
        return devices;
    }
    BACSTAC_STATUS Read(unsigned device) {
        char name[256] = {};
        return m_client->ReadProperty(device, {OBJ_DEVICE, device}, PROP_OBJECT_NAME, -1, name, sizeof name, nullptr);
    }

    LoopbackBlock m_blockA;
    LoopbackBlock m_blockB;
    std::unique_ptr<bacnet::BacnetClient> m_client;
};

TEST_F(Networks, DevicesOfSeveralPortsAreToldApart) {
    const auto first = Site(m_blockA, 1000, {7});
    const auto second = Site(m_blockB, 2000);
    bacnet::ClientConfig config;
    config.Ports = {Port(m_blockA, 1), Port(m_blockB, 2)};
    m_client = Open(config);
    ASSERT_NE(m_client, nullptr);
    EXPECT_EQ(Discover(BACSTAC_ALL_NETWORKS, 6), (std::set<unsigned>{1000, 1001, 1002, 1003, 2000, 2001}));
    std::vector<unsigned> devices;
    m_client->GetDevLst(devices, 1);
    EXPECT_EQ(devices, (std::vector<unsigned>{1000, 1001}));
    m_client->GetDevLst(devices, 2);
    EXPECT_EQ(devices, (std::vector<unsigned>{2000, 2001}));
    m_client->GetDevLst(devices, 7);
    EXPECT_EQ(devices, (std::vector<unsigned>{1002, 1003}));
    std::map<unsigned short, bool> networks;
    m_client->GetNetLst(networks);
    EXPECT_EQ(networks, (std::map<unsigned short, bool>{{1, false}, {2, false}, {7, true}}));
    for (const unsigned device : {1000U, 1001U, 1002U, 1003U, 2000U, 2001U})
        EXPECT_EQ(Read(device), BACSTAC_OK) << device;
    EXPECT_EQ(Discover(2, 2), (std::set<unsigned>{2000, 2001})) << "one network alone";
}

TEST_F(Networks, WhatIsSwitchedOffIsSentNothing) {
    const auto first = Site(m_blockA, 1000, {7});
    const auto second = Site(m_blockB, 2000);
    const CTempFolder folder;
    bacnet::ClientConfig config;
    config.Ports = {Port(m_blockA, 1), Port(m_blockB, 2)};
    config.CaptureFile = folder.File("traffic.pcap");
    m_client = Open(config);
    ASSERT_NE(m_client, nullptr);
    Discover(BACSTAC_ALL_NETWORKS, 6);
    EXPECT_EQ(Read(1000), BACSTAC_OK);
    EXPECT_TRUE(m_client->IsDeviceEnabled(1000));
    EXPECT_FALSE(m_client->IsDeviceEnabled(4711)) << "nobody";

    for (const auto network : std::initializer_list<unsigned short>{1, 7}) {
        EXPECT_TRUE(m_client->DisableNetwork(network));
        EXPECT_FALSE(m_client->IsNetworkEnabled(network));
    }
    EXPECT_FALSE(m_client->IsDeviceEnabled(1000));
    EXPECT_FALSE(m_client->IsDeviceEnabled(1002));
    EXPECT_TRUE(m_client->IsDeviceEnabled(2000));
    const std::size_t before = CountCaptured(config.CaptureFile);
    const auto begun = std::chrono::steady_clock::now();
    for (const unsigned device : {1000U, 1001U, 1002U, 1003U}) {
        EXPECT_EQ(Read(device), BACSTAC_STATUS_DISABLED) << device;
        const BACSTAC_OBJECT_ID object{OBJ_ANALOG_INPUT, 1};
        EXPECT_EQ(m_client->DeleteObject(device, &object, nullptr), BACSTAC_STATUS_DISABLED);
        const BACSTAC_ADDRESS address = m_client->GetDevAddr(device);
        unsigned count = 0;
        EXPECT_EQ(m_client->ReadObjectList(address, nullptr, &count, nullptr), BACSTAC_STATUS_DISABLED);
        CPropertyContents contents(1024, nullptr);
        EXPECT_EQ(m_client->ReadProperty(address, {OBJ_DEVICE, device}, PROP_OBJECT_NAME, -1, contents, nullptr),
                  BACSTAC_STATUS_DISABLED)
            << "by its address too";
    }
    EXPECT_EQ(m_client->WhoIs({1, 0, 7, {}, 0}, 0, 10), BACSTAC_STATUS_DISABLED);
    std::vector<unsigned> devices;
    std::map<unsigned short, bool> networks;
    m_client->GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    m_client->GetNetLst(networks);
    EXPECT_EQ(devices.size(), 6U) << "they are known all the same";
    EXPECT_EQ(networks.size(), 3U);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 1s);
    EXPECT_EQ(CountCaptured(config.CaptureFile), before);

    EXPECT_EQ(Read(2000), BACSTAC_OK) << "the others are not touched";
    EXPECT_EQ(CountCaptured(config.CaptureFile), before + 2) << "request and answer";
    EXPECT_TRUE(m_client->EnableNetwork(7));
    EXPECT_EQ(Read(1002), BACSTAC_OK);
    EXPECT_EQ(Read(1000), BACSTAC_STATUS_DISABLED);
}

TEST_F(Networks, LookingThingsUpSendsNothing) {
    const auto site = Site(m_blockA, 1000, {7});
    const CTempFolder folder;
    bacnet::ClientConfig config;
    config.Ports = {Port(m_blockA, 0)};
    config.CaptureFile = folder.File("traffic.pcap");
    m_client = Open(config);
    ASSERT_NE(m_client, nullptr);
    Discover(BACSTAC_ALL_NETWORKS, 4);
    CBACnetDir directory;
    CBACnetDev device;
    device.SetInst(1000);
    device.SetName("AHU");
    device.SetAddr(m_client->GetDevAddr(1000));
    for (const BACSTAC_OBJECT_ID& id : {BACSTAC_OBJECT_ID{OBJ_ANALOG_INPUT, 1}, BACSTAC_OBJECT_ID{OBJ_ANALOG_INPUT, 2},
                                        BACSTAC_OBJECT_ID{OBJ_TREND_LOG, 1}}) {
        CBACnetObj object;
        object.SetId(id);
        object.SetName("object");
        device.AddObj(object);
    }
    EXPECT_TRUE(directory.AddDev(device));
    CBacGeneral::SetDirFileName(folder.File("directory.dat"));
    EXPECT_TRUE(directory.Save(CBacGeneral::GetDirFileName()));

    const std::size_t before = CountCaptured(config.CaptureFile);
    EXPECT_GT(before, 0U);
    EXPECT_TRUE(m_client->LoadDir());
    std::vector<unsigned> devices;
    m_client->GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    EXPECT_EQ(devices, (std::vector<unsigned>{1000, 1001, 1002, 1003}));
    m_client->GetDevLst(devices, 4711);
    EXPECT_TRUE(devices.empty());
    std::vector<BACSTAC_OBJECT_ID> objects;
    m_client->GetObjLst(1000, objects, BACSTAC_OBJECT_TYPE(-1));
    EXPECT_EQ(objects.size(), 3U) << "of all types";
    m_client->GetObjLst(1000, objects, OBJ_TREND_LOG);
    EXPECT_EQ(objects, (std::vector<BACSTAC_OBJECT_ID>{{OBJ_TREND_LOG, 1}}));
    std::string name;
    EXPECT_TRUE(m_client->GetDevName(1000, name));
    EXPECT_EQ(name, "AHU");
    EXPECT_TRUE(m_client->GetObjName(1000, {OBJ_ANALOG_INPUT, 2}, name));
    std::map<unsigned short, bool> networks;
    m_client->GetNetLst(networks);
    EXPECT_TRUE(m_client->FindDev(1003));
    EXPECT_EQ(m_client->GetDevAddr(1002), (BACSTAC_ADDRESS{1, 0, 7, {1}, 1}));
    EXPECT_NE(m_client->GetDevVendorId(1001), 0U);
    EXPECT_TRUE(m_client->IsNetworkEnabled(7));
    EXPECT_EQ(CountCaptured(config.CaptureFile), before);
}

TEST_F(Networks, ADeviceThatNoDirectoryHasIsReadByItsAddress) {
    const auto site = Site(m_blockA, 1000, {7});
    bacnet::ClientConfig config;
    config.Ports = {Port(m_blockA, 0)};
    m_client = Open(config);
    ASSERT_NE(m_client, nullptr);
    const auto name = [this](const BACSTAC_ADDRESS& address, unsigned device) {
        CPropertyContents contents(1024, nullptr);
        const BACSTAC_STATUS status =
            m_client->ReadProperty(address, {OBJ_DEVICE, device}, PROP_OBJECT_IDENTIFIER, -1, contents, nullptr);
        char text[128];
        CBacGeneral::PrintContents(text, sizeof text, contents, OBJ_DEVICE, PROP_OBJECT_IDENTIFIER, -1);
        return std::to_string(status) + " " + text;
    };
    BACSTAC_ADDRESS local{0, 0, 0, {}, 6};
    const bacnet::MacAddress mac = bacnet::ToMac({m_blockA.Ip(10), m_blockA.Port()});
    std::memcpy(local.Mac, mac.Data(), 6);
    EXPECT_NE(name(local, 1000).find("1000"), std::string::npos) << name(local, 1000);
    // Behind a router that has not been heard of: it is asked for. One octet of MAC, as on MS/TP.
    EXPECT_TRUE(m_client->Networks().Routers().empty());
    const BACSTAC_ADDRESS remote{1, 0, 7, {1}, 1};
    EXPECT_NE(name(remote, 1002).find("1002"), std::string::npos) << name(remote, 1002);
    const auto routers = m_client->Networks().Routers();
    ASSERT_EQ(routers.size(), 1U);
    EXPECT_EQ(routers[0].Network, 7);
    EXPECT_TRUE(routers[0].Announced);
    EXPECT_EQ(routers[0].Router, m_blockA.Text(12) + ":" + std::to_string(m_blockA.Port()));
    std::string text;
    CBACnetDir::AddrToStr(remote, text);
    EXPECT_FALSE(text.empty());
    char printed[64] = {};
    EXPECT_GT(CBacGeneral::PrintAddress(printed, sizeof printed, remote), 0);
    EXPECT_FALSE(m_client->FindDev(1002)) << "and nothing was learnt about devices";
}

TEST_F(Networks, AnUnfindableNetworkEndsTheCallInItsTime) {
    bacnet::ClientConfig config;
    config.Ports = {Port(m_blockA, 0)};
    config.Transactions.RouterWaitMs = 200;
    m_client = Open(config);
    ASSERT_NE(m_client, nullptr);
    CPropertyContents contents(1024, nullptr);
    const BACSTAC_STATUS status = m_client->ReadProperty(BACSTAC_ADDRESS{1, 0, 99, {1}, 1}, {OBJ_DEVICE, 5},
                                                         PROP_OBJECT_NAME, -1, contents, nullptr);
    EXPECT_NE(status, BACSTAC_OK);
    EXPECT_STRNE(CBacGeneral::GetStatusString(status), "");
}

TEST_F(Networks, AForeignStationFindsDevicesThroughABbmd) {
    const auto log = std::make_shared<LogLines>();
    CQilBAC_ErrLog::Instance().SetSink(log);
    const auto site = Site(m_blockA, 1000);
    bacnet::ClientConfig home;
    home.Ports = {Port(m_blockA, 0)};
    home.Ports[0].Bbmd = bacnet::BbmdSettings{};
    const auto bbmd = Open(home);
    bacnet::ClientConfig away;
    away.Ports = {Port(m_blockB, 0)};
    away.Ports[0].Foreign = bacnet::ForeignSettings{{m_blockA.Ip(1), m_blockA.Port()}, 60};
    m_client = Open(away);
    ASSERT_NE(m_client, nullptr);
    EXPECT_EQ(Discover(0, 2), (std::set<unsigned>{1000, 1001})) << "its local broadcast is made over there";
    EXPECT_EQ(Read(1000), BACSTAC_OK);
    const std::string bbmdText = m_blockA.Text(1) + ":" + std::to_string(m_blockA.Port());
    EXPECT_TRUE(log->Has("I: Registered as a foreign device with " + bbmdText));

    const bacnet::BipAddress device{m_blockA.Ip(1), m_blockA.Port()};
    const auto tables = m_client->Networks().ReadBroadcastTables(0, device, 2000ms);
    EXPECT_EQ(tables.DistributionRead, TableRead::done);
    EXPECT_EQ(tables.Distribution, std::vector<bacnet::BdtEntry>{{device}});
    EXPECT_EQ(tables.ForeignRead, TableRead::done);
    ASSERT_EQ(tables.Foreign.size(), 1U);
    EXPECT_EQ(tables.Foreign[0].Address, (bacnet::BipAddress{m_blockB.Ip(1), m_blockB.Port()}));
    EXPECT_EQ(m_client->Networks().ReadBroadcastTables(1, device, 1ms).DistributionRead, TableRead::failed)
        << "no such port";

    const auto here = m_client->Networks().Ports();
    ASSERT_EQ(here.size(), 1U);
    EXPECT_EQ(here[0].Address, m_blockB.Text(1) + ":" + std::to_string(m_blockB.Port()));
    EXPECT_EQ(here[0].Broadcasting.Registration, bacnet::ForeignRegistration::State::registered);
    const auto there = bbmd->Networks().Ports();
    ASSERT_EQ(there.size(), 1U);
    EXPECT_TRUE(there[0].Broadcasting.IsBbmd);
    EXPECT_EQ(there[0].Broadcasting.ForeignDevices.size(), 1U);
    CQilBAC_ErrLog::Instance().SetSink(nullptr);
}

TEST_F(Networks, ARefusedRegistrationIsLoggedAndWhoIsFails) {
    const auto log = std::make_shared<LogLines>();
    CQilBAC_ErrLog::Instance().SetSink(log);
    bacnet::ClientConfig home;
    home.Ports = {Port(m_blockA, 0)};
    const auto stranger = Open(home); // no broadcast management device
    bacnet::ClientConfig away;
    away.Ports = {Port(m_blockB, 0)};
    away.Ports[0].Foreign = bacnet::ForeignSettings{{m_blockA.Ip(1), m_blockA.Port()}, 60};
    m_client = Open(away);
    ASSERT_NE(m_client, nullptr);
    const std::string text = m_blockA.Text(1) + ":" + std::to_string(m_blockA.Port());
    EXPECT_TRUE(log->Has("E: " + text + " refuses this station as a foreign device: no broadcasts are sent"));
    EXPECT_NE(m_client->WhoIs({}, 0, BACSTAC_MAX_INSTANCE), BACSTAC_OK);
    EXPECT_EQ(m_client->Networks().Ports()[0].Broadcasting.Registration, bacnet::ForeignRegistration::State::refused);
    EXPECT_GE(m_client->Networks().Ports()[0].Refused, 1U);
    CQilBAC_ErrLog::Instance().SetSink(nullptr);
}

} // namespace
