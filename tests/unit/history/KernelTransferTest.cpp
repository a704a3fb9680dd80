// A history transfer against the real kernel and a real store: what the transfer writes is what they take.
#include "api/bacnet/Enums.h"
#include "module/history/HistoryState.h"
#include "platform/historian/MemoryHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "tests/unit/history/TransferSite.h"

#include <chrono>
#include <thread>

namespace {

using testing::ElementsAre;

// Tells when a connection has taken the exit message.
class ExitKernel : public Kernel {
public:
    using Kernel::Kernel;
    QLResult ReceiveMessage(std::uint8_t handle, void* buffer, std::uint32_t timeout) override {
        const QLResult result = Kernel::ReceiveMessage(handle, buffer, timeout);
        std::uint16_t code = 0xFFFF;
        if (result == QL_OK || result == QL_MESSAGES_LOST)
            std::memcpy(&code, buffer, sizeof code);
        if (code == QL_MSG_EXIT)
            exitTaken = true;
        return result;
    }
    std::atomic<bool> exitTaken{false};
};

KernelSettings StationSettings() {
    KernelSettings settings;
    settings.stationName = "LOCAL";
    settings.stationNumber = 1;
    return settings;
}

class KernelTransfer : public testing::Test {
protected:
    KernelTransfer() {
        bacnet.AddDevice(1234);
        bacnet.SetProtocol(1234, 1, 14);
        settings.devices.push_back(std::make_unique<CDeviceSettings>());
        settings.devices[0]->device = "1234";
        AddTrend(1, "T1");
    }
    void AddTrend(unsigned instance, const std::string& name) {
        const BACSTAC_OBJECT_ID trend{OBJ_TREND_LOG, instance};
        bacnet.AddObject(1234, trend, name);
        BACSTAC_DEV_OBJ_PROP_REF reference{};
        reference.ObjectId = {OBJ_ANALOG_INPUT, instance};
        reference.Property = PROP_PRESENT_VALUE;
        reference.ArrayIndex = 0xFFFFFFFF;
        bacnet.SetValue(1234, trend, PROP_LOG_DEVICE_OBJECT_PROPERTY,
                        FakeValue::Of(TYPE_DEV_OBJ_PROP_REF, std::vector{reference}));
        settings.devices[0]->objects.push_back(name);
    }
    std::uint32_t AddTag(unsigned instance, BACSTAC_PROPERTY_ID property, std::int32_t bit, const std::string& name) {
        TagSettings tag;
        tag.name = name;
        tag.type = TAG_TYPE_ANALOG;
        CTag binding;
        EXPECT_EQ(kernel.AddTag(tag, binding.tagId), AddTagResult::Added);
        binding.device = 1234;
        binding.objectType = OBJ_ANALOG_INPUT;
        binding.objectInstance = instance;
        binding.property = property;
        binding.statusBit = bit;
        driver.m_tags.RegisterTag(binding);
        return 0x00010000 | binding.tagId;
    }
    std::uint32_t Transfer() {
        EXPECT_TRUE(manager.StartTransfer(false, nullptr));
        EXPECT_TRUE(WaitForTransfers(20000));
        return manager.GetStatus().Get().errorCount;
    }
    std::vector<VfiRecord> Stored(std::uint32_t tagId) {
        std::vector<VfiRecord> records;
        HistoryQuery query;
        query.tagId = tagId;
        HistoryError error;
        EXPECT_TRUE(store.Query(
            query,
            [&](const VfiRecord& record) {
                records.push_back(record);
                return true;
            },
            error));
        return records;
    }

    CEventList events;
    MemoryHistoryStore store;
    ExitKernel kernel{StationSettings(), store};
    CFakeBacnet bacnet{events};
    CFakeDriver driver{events, kernel};
    StandingClock clock;
    CountedLock lock;
    TemporaryFolder folder;
    HistorySettings settings;
    CBACnetHistoryManager manager{&settings, HistoryServices{bacnet, driver, lock, clock},
                                  folder.GetFile("BAC_Hist.ini")};
};

TEST_F(KernelTransfer, StoresEveryKindOfRecord) {
    const std::uint32_t value = AddTag(1, PROP_PRESENT_VALUE, TAG_WHOLE_VALUE, "TK");
    const std::uint32_t flag = AddTag(1, PROP_STATUS_FLAGS, 1, "TK.fault");
    bacnet.AddLogEntries(
        1234, {OBJ_TREND_LOG, 1},
        {RealEntry(Minute(1), 1.5F), Entry(Minute(2), BACSTAC_LOG_NULL),
         WithStatus(Entry(Minute(3), BACSTAC_LOG_TIME_CHANGE, RealValue(3600)), {false, true, false, false}),
         WithStatus(Entry(Minute(4), BACSTAC_LOG_FAILURE, FailureValue(1, 31)), {false, true, false, false}),
         AnyEntry(Minute(5), FakeValue::Unsigned(7)), RealEntry(Time(2026, 6, 10, 1, 0, 0, 255), 2)});
    EXPECT_EQ(Transfer(), 0U);
    const auto values = Stored(value);
    ASSERT_EQ(values.size(), 5U);
    EXPECT_EQ(VfiValue(values[0]), 1.5);
    EXPECT_STREQ(values[1].text, "null");
    EXPECT_STREQ(values[2].text, "(1, 31)");
    EXPECT_EQ(VfiValue(values[4]), 2.0);
    ASSERT_EQ(Stored(flag).size(), 2U);
    EXPECT_EQ(VfiValue(Stored(flag)[0]), 1.0);
    EXPECT_EQ(Transfer(), 0U);
    EXPECT_EQ(Stored(value).size(), 5U);
}

TEST_F(KernelTransfer, MovesOnThroughABlockWithoutATag) {
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 1}, Minutes(1, 3));
    EXPECT_EQ(Transfer(), 1U);
    EXPECT_EQ(manager.GetStatus().Get().lastError.rfind("No corresponding tag for ", 0), 0U);
    BACSTAC_DATE_TIME position;
    CHistoryState(folder.GetFile("BAC_Hist.ini")).LoadTrendPosition("T1", position);
    EXPECT_TRUE(Same(position, Minute(3)));
}

TEST_F(KernelTransfer, LeavesAPassiveStationAlone) {
    kernel.SetStationActive(false);
    EXPECT_EQ(Transfer(), 1U);
    EXPECT_EQ(manager.GetStatus().Get().lastError, "Transfer aborted because station is passive");
    EXPECT_THAT(events.Get(), ElementsAre());
}

TEST_F(KernelTransfer, EndsBehindTheTrendInWorkWhenTheKernelShutsDown) {
    const std::uint32_t first = AddTag(1, PROP_PRESENT_VALUE, TAG_WHOLE_VALUE, "TK1");
    const std::uint32_t second = AddTag(2, PROP_PRESENT_VALUE, TAG_WHOLE_VALUE, "TK2");
    AddTrend(2, "T2");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 1}, Minutes(1, 30));
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 2}, Minutes(1, 30));
    driver.m_transferChunk = 10;
    bacnet.OnCall([&](const std::string& event) {
        if (event.rfind("ReadRange", 0) != 0 || kernel.exitTaken)
            return;
        kernel.ShutDown();
        while (!kernel.exitTaken)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::milliseconds(100)); // the receive thread sets its flag
    });
    EXPECT_EQ(Transfer(), 0U);
    EXPECT_EQ(Stored(first).size(), 30U);
    EXPECT_EQ(Stored(second).size(), 0U);
    EXPECT_EQ(manager.GetLastTransferTime().Year, 2026);
    EXPECT_EQ(Transfer(), 1U);
    EXPECT_EQ(manager.GetStatus().Get().lastError, "Connection failure");
}

} // namespace
