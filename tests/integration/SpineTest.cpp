// The main job from end to end, with the loadable module: a tag goes from 0 to 1 in the kernel, the driver's thread
// hands the change to the console, the console's thread starts the transfer, and the records of simulated devices land
// in the historian.
#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "tests/integration/StationParts.h"
#include "tests/support/Loopback.h"
#include "tests/unit/history/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

namespace integration {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;

constexpr const char* FLUSH_TAG = "Flush";
constexpr std::uint32_t TIMEOUT = 60'000;

// The driver's connection to the kernel, and the thread that hands tag changes to the console.
class MessageThread {
public:
    explicit MessageThread(StationParts& parts) : m_kernel(parts.GetKernel()) {
        EXPECT_EQ(m_kernel.Connect("Driver", 1, 0, m_handle), QL_OK);
        parts.Driver().m_gateId = m_handle;
        m_thread = std::thread([this] { Run(); });
    }
    ~MessageThread() {
        m_kernel.Disconnect(m_handle);
        m_thread.join();
    }
    MessageThread(const MessageThread&) = delete;
    MessageThread& operator=(const MessageThread&) = delete;

private:
    void Run() {
        alignas(8) unsigned char buffer[QL_MESSAGE_SIZE];
        while (m_kernel.ReceiveMessage(m_handle, buffer, TIMEOUT) == QL_OK) {
            QLTagChangeMessage message;
            std::memcpy(&message, buffer, sizeof message);
            if (message.code == QL_MSG_TAG_CHANGE)
                BDCManager.OnTagChange(message.tagId, message.value);
        }
    }

    Kernel& m_kernel;
    std::uint8_t m_handle = 0;
    std::thread m_thread;
};

class SpineTest : public ::testing::Test {
protected:
    SpineTest() {
        sim::Counts counts;
        counts.BaseInstance = 1234;
        counts.FirstIp = m_block.Ip(10);
        counts.Port = m_block.Port();
        counts.Devices = 2;
        counts.Trends = 2;
        counts.Multiples = 1;
        counts.Networks = {7};
        counts.RoutedDevices = 1;
        counts.Records = 250;
        m_site = MakeSite(counts);
        m_tags = PlanTags(m_site, StatusTags::all);
        m_simulator = std::make_unique<sim::Simulator>(m_site);
        std::string error;
        EXPECT_TRUE(m_simulator->Start(error)) << error;

        m_before = std::filesystem::current_path();
        std::filesystem::current_path(m_folder.GetPath()); // of the state file
        StationSettings settings;
        settings.folder = m_folder.GetPath();
        settings.bindAddress = m_block.Text(1);
        m_parts = std::make_unique<StationParts>(m_site, m_tags, settings);
        BACnet = &m_parts->Client();
        TagSettings flush;
        flush.name = FLUSH_TAG;
        flush.type = TAG_TYPE_DIGITAL;
        flush.value = 0.0;
        EXPECT_EQ(m_parts->GetKernel().AddTag(flush, m_flushId), AddTagResult::Added);
        m_messages = std::make_unique<MessageThread>(*m_parts);
    }
    ~SpineTest() override {
        if (BDCManager.IsRunning()) {
            BDCManager.InitiateShutdownW();
            EXPECT_TRUE(BDCManager.WaitEnd(TIMEOUT));
        }
        m_messages.reset();
        // The thread of a transfer may still be on its way out of the kernel when its last line was seen.
        static auto* const kept = new std::vector<std::unique_ptr<StationParts>>;
        kept->push_back(std::move(m_parts));
        std::filesystem::current_path(m_before);
    }

    void StartConsole() {
        BDCManager.Lock();
        allPropPages = AllPropPages();
        allPropPages.history = m_parts->Settings();
        allPropPages.history.flushTag = FLUSH_TAG;
        BDCManager.Unlock();
        BDCManager.Start(&m_parts->Driver(), TIMEOUT);
    }
    void SetFlushTag(double value) { EXPECT_EQ(m_parts->GetKernel().SetTagValue(m_flushId, value), QL_OK); }
    // The lines up to the end of the transfer that has been asked for.
    CEventList::Lines WaitForTransfer() {
        const auto begin = std::chrono::steady_clock::now();
        const auto hasEnded = [&] {
            return std::ranges::count(m_parts->Lines().Get(), "T: HistoryManagerTransfer: end of thread") != 0;
        };
        while (!hasEnded() && std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(TIMEOUT))
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        return m_parts->Lines().Take();
    }
    RecordLines Stored() const { return StoredRecords(m_folder.GetPath()); }
    RecordLines Expected() const { return ExpectedRecords(*m_simulator, m_site, m_tags); }

    testing_support::LoopbackBlock m_block;
    TemporaryFolder m_folder;
    std::filesystem::path m_before;
    sim::SimulatorConfig m_site;
    std::vector<PlannedTag> m_tags;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<StationParts> m_parts;
    std::unique_ptr<MessageThread> m_messages;
    std::uint32_t m_flushId = 0;
};

TEST_F(SpineTest, ARisingTagBringsTheRecordsOfTheDevicesIntoTheHistorian) {
    StartConsole();
    EXPECT_THAT(m_parts->Lines().Get(), Contains("D: BACnet: Info, RegisterTriggerTag(FlushAllTrendLog), Trigger tag "
                                                 "Flush inserted"));
    SetFlushTag(1);
    const CEventList::Lines lines = WaitForTransfer();
    EXPECT_THAT(
        lines, IsSupersetOf({"D: BACnet: Info, Triggering up FlushAllTrendLog", "I: Transfer request for all trend-log",
                             "I: History: Start of transfer", "I: History: End of transfer"}));
    EXPECT_EQ(Difference(Expected(), Stored()), "");

    // The falling edge starts nothing; the next rising one brings what came since.
    for (std::size_t i = 0; i < m_simulator->DeviceCount(); ++i)
        m_simulator->GetDevice(i).GenerateAll(12);
    SetFlushTag(0);
    SetFlushTag(1);
    const CEventList::Lines next = WaitForTransfer();
    EXPECT_EQ(std::ranges::count(next, "I: Transfer request for all trend-log"), 1);
    EXPECT_EQ(Difference(Expected(), Stored()), "");
}

TEST_F(SpineTest, ATransferOfOneObjectIsAskedForThroughTheConsole) {
    StartConsole();
    BDCManager.StartHistoryTransfer(NewTransferRequest(1235, OBJ_TREND_LOG, 2));
    const CEventList::Lines lines = WaitForTransfer();
    EXPECT_THAT(lines,
                IsSupersetOf({"I: Transfer request for trend-log (1235, (20, 2))", "I: History: Skipping 1235 Trend 1",
                              "I: History: No more items for 1235 Trend 2"}));
    EXPECT_THAT(lines, Not(Contains("I: History: Transfer for device 1234")));
    EXPECT_EQ(Stored().size(), 250U * 5) << "the values and four status flags of each";
}

// A transfer that a shutdown of the console leaves behind runs out on its own, and loses nothing.
TEST_F(SpineTest, AShutdownDuringATransferLosesNothing) {
    StartConsole();
    m_simulator->GetDevice(0).SetFault(sim::Fault::Slow(20));
    SetFlushTag(1);
    const auto begin = std::chrono::steady_clock::now();
    while (std::ranges::count(m_parts->Lines().Get(), "I: History: Reading 100 records from trend 1234 Trend 1") == 0 &&
           std::chrono::steady_clock::now() - begin < std::chrono::seconds(20))
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    BDCManager.InitiateShutdownW();
    EXPECT_TRUE(BDCManager.WaitEnd(TIMEOUT));
    WaitForTransfer();
    m_simulator->GetDevice(0).ClearFaults();

    SetFlushTag(0);
    StartConsole();
    SetFlushTag(1);
    WaitForTransfer();
    RecordLines stored = Stored();
    stored.erase(std::unique(stored.begin(), stored.end()), stored.end());
    EXPECT_EQ(Difference(Expected(), stored), "");
}

} // namespace
} // namespace integration
