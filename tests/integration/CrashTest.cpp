// A station that is killed at any moment of a transfer, and one that finds the disk full: a process of its own against
// devices of the test.
#include "tests/integration/ChildSite.h"
#include "tests/integration/StationParts.h"
#include "tests/support/Loopback.h"
#include "tests/unit/history/TemporaryFolder.h"
#include "tests/unit/host/Process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

namespace integration {
namespace {

constexpr int KILLED = 128 + SIGKILL;

class CrashTest : public ::testing::Test {
protected:
    void StartSite(std::uint32_t trends, std::uint64_t records) {
        m_trends = trends;
        m_site = MakeChildSite(m_block.Ip(10), m_block.Port(), trends, records);
        m_tags = PlanTags(m_site);
        m_simulator = std::make_unique<sim::Simulator>(m_site);
        std::string error;
        ASSERT_TRUE(m_simulator->Start(error)) << error;
    }
    std::vector<std::string> Command() const {
        return {BDC_STATION_PROCESS,
                m_folder.GetPath().string(),
                m_block.Text(1),
                std::to_string(m_block.Ip(10)),
                std::to_string(m_block.Port()),
                std::to_string(m_trends)};
    }
    sim::Device& Device() const { return m_simulator->GetDevice(0); }
    RecordLines Expected() const { return ExpectedRecords(*m_simulator, m_site, m_tags); }
    RecordLines Stored(bool all) const { return StoredRecords(m_folder.GetPath(), all); }

    testing_support::LoopbackBlock m_block;
    TemporaryFolder m_folder;
    std::uint32_t m_trends = 0;
    sim::SimulatorConfig m_site;
    std::vector<PlannedTag> m_tags;
    std::unique_ptr<sim::Simulator> m_simulator;
};

TEST_F(CrashTest, KillsLoseNothingAndRepeatAtMostOneBlockEach) {
    constexpr int KILLS = 40;
    StartSite(3, 4000);
    std::mt19937 random(2026);
    std::uniform_int_distribution<int> microseconds(0, 150'000);
    int kills = 0;
    for (int run = 0; kills < KILLS; ++run) {
        ASSERT_LT(run, 10 * KILLS);
        CProcess station(Command());
        ASSERT_TRUE(station.WaitForOutput("started")) << station.Output();
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        station.Signal(SIGKILL);
        const int result = station.Wait();
        ASSERT_TRUE(result == KILLED || result == 0) << result << ": " << station.Output();
        kills += result == KILLED ? 1 : 0;
        Device().GenerateAll(300); // so that there is always something left to do
        ASSERT_LE(Stored(true).size() - Stored(false).size(), static_cast<std::size_t>(kills) * CHILD_CHUNK);
    }
    CProcess last(Command());
    EXPECT_EQ(last.Wait(), 0) << last.Output();
    EXPECT_EQ(Difference(Expected(), Stored(false)), "");
    const std::size_t stored = Stored(true).size();
    CProcess another(Command());
    EXPECT_EQ(another.Wait(), 0) << another.Output();
    EXPECT_EQ(Stored(true).size(), stored) << "nothing was left to store";
}

TEST_F(CrashTest, AFullDiskKeepsThePosition) {
    StartSite(1, 4000);
    {
        auto command = Command();
        command.push_back("60000");
        CProcess station(command);
        EXPECT_EQ(station.Wait(), 3);
        EXPECT_EQ(station.Output(), "started\nE: History: Error writing to VFI\n");
    }
    const RecordLines stored = Stored(true);
    RecordLines expected = Expected();
    ASSERT_LT(stored.size(), expected.size());
    EXPECT_GT(stored.size(), 0U);
    expected.resize(stored.size());
    EXPECT_EQ(Difference(expected, stored), "");
    CProcess station(Command());
    EXPECT_EQ(station.Wait(), 0) << station.Output();
    EXPECT_EQ(Difference(Expected(), Stored(true)), "");
}

} // namespace
} // namespace integration
