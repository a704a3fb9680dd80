// The console when something is wrong around it: settings that cannot be saved, triggers without an end.
#include "module/console/ConsoleState.h"
#include "module/console/GuiOperator.h"
#include "tests/gui/ConsoleFixture.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>

#include <malloc.h>

namespace {

using ::testing::ElementsAre;

class ConsoleFault : public ConsoleFixture {
protected:
    ConsoleFault() { consoleWiring.getOperator = CGuiOperator::Get; }
};

TEST_F(ConsoleFault, TheOperatorIsToldOnceOfASaveThatFailedAndTheConsoleLives) {
    Start();
    ShowWindow();
    m_driver.m_saveFailure = "The disk is full";
    {
        CDialogScript script(m_events);
        script.Press("Error", "OK");
        OnGui([] { CControls(ConsoleWindow()).Press("Save now"); });
        EXPECT_THAT(Settled(), ElementsAre("SaveSettings()", "Box(Error, The disk is full, error, OK)"));
        EXPECT_TRUE(IsVisible());
        script.Press("Error", "OK");
        OnGui([] { CControls(ConsoleWindow()).Press("OK"); });
        EXPECT_THAT(Settled(), ElementsAre("SaveSettings()", "Box(Error, The disk is full, error, OK)"));
        EXPECT_FALSE(IsVisible());
    }
    ShowWindow();
    m_driver.m_saveFailure.clear();
    OnGui([] { CControls(ConsoleWindow()).Press("Save now"); });
    EXPECT_THAT(Settled(), ElementsAre("SaveSettings()"));
}

TEST_F(ConsoleFault, ItsEndAsksNobodyAboutSettingsThatCannotBeSaved) {
    Start();
    m_driver.m_saveFailure = "The disk is full";
    EXPECT_TRUE(Stop());
    EXPECT_THAT(m_events.Take(), ElementsAre("~HistoryStarter()"));
}

// Takes ten seconds.
TEST_F(ConsoleFault, TenThousandEdgesASecondCostNothingWhileItIsHeldUpAndAreHandledInOrder) {
    constexpr int SECONDS = 10;
    constexpr int EDGES_A_MILLISECOND = 10;
    constexpr int EDGES = SECONDS * 1000 * EDGES_A_MILLISECOND;
    constexpr std::size_t MEMORY_LIMIT = EDGES * std::size_t{40};
    m_kernel.AddTag(1, "FLUSH", 1);
    m_kernel.AddTag(2, "NETWORK", 1);
    allPropPages.history.flushTag = "FLUSH";
    allPropPages.general.networkTags = {{3, "NETWORK"}};
    Start();
    BDCManager.SetupNetworks();
    Settled();

    std::promise<void> release;
    m_onTransfer = [held = release.get_future().share()](const BACSTAC_DEV_OBJ_REF*) { held.wait(); };
    BDCManager.OnTagChange(1, 0);
    BDCManager.OnTagChange(1, 1); // the console is held up in this transfer's start
    ASSERT_TRUE(Eventually([&] {
        const auto events = m_events.Get();
        return !events.empty() && events.back() == "StartTransfer(unattended, all)";
    }));
    m_events.Take();

    const std::size_t before = mallinfo2().uordblks;
    std::vector<std::chrono::nanoseconds> times;
    times.reserve(EDGES);
    const auto begin = Clock::now();
    for (int edge = 0; edge < EDGES; ++edge) {
        if (edge % EDGES_A_MILLISECOND == 0)
            std::this_thread::sleep_until(begin + Milliseconds(edge / EDGES_A_MILLISECOND));
        const auto start = Clock::now();
        BDCManager.OnTagChange(2, edge % 2 == 0 ? 0 : 1);
        times.push_back(Clock::now() - start);
    }
    m_events.Take(); // the fakes' lines
    const std::size_t after = mallinfo2().uordblks;
    EXPECT_LT(Since(begin), Milliseconds(SECONDS * 1000 + 5000)) << "the tags could not keep their pace";
    std::ranges::sort(times);
    EXPECT_LT(times[times.size() / 2], std::chrono::microseconds(100));
    EXPECT_LT(after, before + MEMORY_LIMIT); // sanitizers have a heap of their own, which this does not see

    release.set_value();
    const auto isSwitch = [](const std::string& event) {
        return event == "EnableNetwork(3)" || event == "DisableNetwork(3)";
    };
    CEventList::Lines switches;
    ASSERT_TRUE(Eventually([&] {
        std::ranges::copy_if(m_events.Take(), std::back_inserter(switches), isSwitch);
        return switches.size() == EDGES;
    })) << switches.size();
    for (int edge = 0; edge < EDGES; ++edge)
        ASSERT_EQ(switches[static_cast<std::size_t>(edge)], edge % 2 == 0 ? "DisableNetwork(3)" : "EnableNetwork(3)");
    for (const char* const trigger : {"FlushAllTrendLog", "EnableNetwork-3"})
        BDCManager.RegisterTriggerTag(trigger, nullptr, 0, 0);
}

} // namespace
