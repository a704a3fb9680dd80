#include "simulator/Generate.h"

#include "simulator/model/Device.h"

#include <gtest/gtest.h>

#include <set>

namespace sim {
namespace {

LocalTime Noon() {
    return 0;
}

std::string Text(const std::vector<LogRecord>& records) {
    std::string text;
    for (const LogRecord& record : records) {
        text += std::to_string(record.Time) + ":";
        for (const LogDatum& datum : record.Data)
            text += std::to_string(datum.Kind) + "," + std::to_string(datum.Value.Unsigned) + " ";
        text += record.StatusFlags ? std::to_string(*record.StatusFlags) + ";" : ";";
    }
    return text;
}

TEST(Generate, MakesWhatWasCounted) {
    Counts counts;
    counts.Devices = 3;
    counts.Trends = 7;
    counts.Multiples = 2;
    counts.Records = 50;
    counts.Networks = {5, 6};
    counts.RoutedDevices = 2;
    const SimulatorConfig config = GenerateConfig(counts);
    ASSERT_EQ(config.Devices.size(), 3U);
    ASSERT_EQ(config.Routers.size(), 1U);
    ASSERT_EQ(config.Routers[0].Networks.size(), 2U);
    EXPECT_EQ(config.Routers[0].Networks[1].Devices.back().Instance, 1006U);
    const Device device(config.Devices[0], Noon);
    unsigned trends = 0;
    unsigned multiples = 0;
    for (const BACSTAC_OBJECT_ID& id : device.ObjectList()) {
        trends += id.Type == OBJ_TREND_LOG ? 1 : 0;
        multiples += id.Type == OBJ_TREND_LOG_MULTIPLE ? 1 : 0;
        if (id.Type == OBJ_TREND_LOG || id.Type == OBJ_TREND_LOG_MULTIPLE) {
            EXPECT_EQ(device.Records(id).size(), 50U);
        }
    }
    EXPECT_EQ(trends, 7U);
    EXPECT_EQ(multiples, 2U);
    EXPECT_EQ(device.ObjectList().size(), 1U + 7 + 7 + 2);
}

TEST(Generate, LogsReferToPointsThatTheDeviceHas) {
    Counts counts;
    counts.Trends = 12;
    counts.Multiples = 3;
    counts.Members = 5;
    const SimulatorConfig config = GenerateConfig(counts);
    const Device device(config.Devices[0], Noon);
    const auto objects = device.ObjectList();
    const std::set<BACSTAC_OBJECT_ID> present(objects.begin(), objects.end());
    for (const ObjectConfig& object : config.Devices[0].Objects) {
        if (!object.Log)
            continue;
        EXPECT_EQ(object.Log->References.size(), object.Log->Generator->Kinds.size());
        for (const BACSTAC_DEV_OBJ_PROP_REF& reference : object.Log->References)
            EXPECT_TRUE(present.contains(reference.ObjectId));
    }
}

TEST(Generate, NamesAreUniqueOverAllDevices) {
    Counts counts;
    counts.Devices = 5;
    counts.Trends = 6;
    counts.Multiples = 2;
    std::set<std::string> names;
    for (const DeviceConfig& device : GenerateConfig(counts).Devices)
        for (const ObjectConfig& object : device.Objects)
            EXPECT_TRUE(names.insert(object.Name).second) << object.Name;
}

TEST(Generate, AnotherRunWithMoreRecordsHasTheSameEarlierOnes) {
    Counts counts;
    counts.Records = 40;
    counts.Multiples = 1;
    const Device first(GenerateConfig(counts).Devices[0], Noon);
    counts.Records = 60;
    const Device second(GenerateConfig(counts).Devices[0], Noon);
    for (const BACSTAC_OBJECT_ID id : {BACSTAC_OBJECT_ID{OBJ_TREND_LOG, 1}, {OBJ_TREND_LOG_MULTIPLE, 1}}) {
        auto records = second.Records(id);
        ASSERT_EQ(records.size(), 60U);
        records.resize(40);
        EXPECT_EQ(Text(first.Records(id)), Text(records));
    }
}

TEST(Generate, DevicesAndLogsHaveDifferentContents) {
    Counts counts;
    counts.Devices = 2;
    counts.Trends = 8;
    const SimulatorConfig config = GenerateConfig(counts);
    std::set<std::string> contents;
    for (const DeviceConfig& device : config.Devices) {
        const Device built(device, Noon);
        for (std::uint32_t i = 1; i <= 8; ++i)
            contents.insert(Text(built.Records({OBJ_TREND_LOG, i})));
    }
    EXPECT_EQ(contents.size(), 16U);
}

TEST(Generate, AddressesLeaveOutTheEndsOfABlock) {
    EXPECT_EQ(NextIp(0x7F0100FE), 0x7F010101U);
    EXPECT_EQ(NextIp(0x7F010001), 0x7F010002U);
    Counts counts;
    counts.Devices = 1000;
    counts.Trends = 0;
    std::set<std::uint32_t> addresses;
    for (const DeviceConfig& device : GenerateConfig(counts).Devices) {
        EXPECT_NE(device.Ip & 0xFF, 0U);
        EXPECT_NE(device.Ip & 0xFF, 255U);
        addresses.insert(device.Ip);
    }
    EXPECT_EQ(addresses.size(), 1000U);
}

TEST(Generate, ManyRecordsNeedNoMemory) {
    Counts counts;
    counts.Trends = 20;
    counts.Records = 50'000'000;
    const Device device(GenerateConfig(counts).Devices[0], Noon);
    EXPECT_EQ(device.TotalRecordCount({OBJ_TREND_LOG, 20}), 50'000'000U);
}

TEST(Generate, MuseumsFollowTheOthers) {
    Counts counts;
    counts.Devices = 2;
    counts.Museums = 1;
    const SimulatorConfig config = GenerateConfig(counts);
    ASSERT_EQ(config.Devices.size(), 3U);
    EXPECT_EQ(config.Devices[2].Instance, 1002U);
    EXPECT_EQ(config.Devices[2].Ip, 0x7F010003U);
    const Device museum(config.Devices[2], Noon);
    EXPECT_GT(museum.ObjectList().size(), 62U);
}

TEST(Generate, OnlyRealMeansAnalogInputs) {
    for (std::uint32_t i = 0; i < 10; ++i) {
        EXPECT_EQ(PointId(i, true), (BACSTAC_OBJECT_ID{OBJ_ANALOG_INPUT, i + 1}));
        EXPECT_EQ(PointKind(i, true), BACSTAC_LOG_REAL);
    }
    std::set<BACSTAC_OBJECT_ID> ids;
    for (std::uint32_t i = 0; i < 100; ++i)
        EXPECT_TRUE(ids.insert(PointId(i, false)).second);
}

} // namespace
} // namespace sim
