#include "module/console/ConsolePages.h"

#include "module/console/Anchors.h"
#include "module/console/NotifyIcon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

using testing::ElementsAre;

TEST(ConsolePages, AreWalkedAroundTheEnds) {
    EXPECT_EQ(NextPage(PAGE_GENERAL), PAGE_LOG_FILE);
    EXPECT_EQ(NextPage(PAGE_REPORTS), PAGE_GENERAL);
    EXPECT_EQ(PreviousPage(PAGE_REPORTS), PAGE_BACKUP);
    EXPECT_EQ(PreviousPage(PAGE_GENERAL), PAGE_REPORTS);
}

TEST(ConsolePages, AreAllDestroyedAndAllSavedButTheAlarmRules) {
    const std::set<int> destroyed(PAGES_IN_DESTROY_ORDER.begin(), PAGES_IN_DESTROY_ORDER.end());
    std::set<int> saved(PAGES_IN_SAVE_ORDER.begin(), PAGES_IN_SAVE_ORDER.end());
    EXPECT_EQ(destroyed.size(), PAGE_COUNT);
    EXPECT_FALSE(saved.contains(PAGE_ALARM_RULES));
    saved.insert(PAGE_ALARM_RULES);
    EXPECT_EQ(saved, destroyed);
}

TEST(Anchors, MoveStretchOrLeaveAlone) {
    EXPECT_EQ(Anchored(Anchor::None, {10, 20}, 5), (Extent{10, 20}));
    EXPECT_EQ(Anchored(Anchor::Move, {10, 20}, 5), (Extent{15, 20}));
    EXPECT_EQ(Anchored(Anchor::Stretch, {10, 20}, 5), (Extent{10, 25}));
    EXPECT_EQ(Anchored(Anchor::Stretch, {10, 20}, -5), (Extent{10, 15}));
}

namespace {

class RecordingTray : public ITray {
public:
    void Add(std::uint32_t id, const std::string& tooltip) override {
        calls.push_back("Add(" + std::to_string(id) + ", " + tooltip + ")");
    }
    void ShowBalloon(const TrayBalloon& balloon) override {
        calls.push_back("Balloon(" + balloon.title + ", " + balloon.text + ", " + std::to_string(balloon.timeout) +
                        ")");
    }
    void Remove() override { calls.push_back("Remove()"); }
    std::vector<std::string> calls;
};

} // namespace

TEST(NotifyIcon, ShowsItsBalloonWithTheIconAndGoesOnce) {
    RecordingTray tray;
    {
        CNotifyIcon icon(tray);
        icon.SetTooltip("BACnet configuration console - BAC 1");
        icon.SetBalloon({"title", "text", BalloonIcon::Warning, 10000});
        icon.Remove();
        EXPECT_EQ(tray.calls.size(), 0U);
        icon.Add(1);
        EXPECT_TRUE(icon.IsAdded());
    }
    EXPECT_THAT(tray.calls,
                ElementsAre("Add(1, BACnet configuration console - BAC 1)", "Balloon(title, text, 10000)", "Remove()"));
}

TEST(NotifyIcon, CutsTextsAsTheSystemDoesAtACharacter) {
    RecordingTray tray;
    CNotifyIcon icon(tray);
    const std::string face = "\xF0\x9F\x98\x80"; // two units
    icon.SetTooltip(std::string(126, 'x') + face);
    icon.SetBalloon({std::string(100, 't'), std::string(254, 'b') + "\xC3\xA9" + "z", BalloonIcon::Warning, 0});
    icon.Add(2);
    EXPECT_THAT(tray.calls,
                ElementsAre("Add(2, " + std::string(126, 'x') + ")",
                            "Balloon(" + std::string(63, 't') + ", " + std::string(254, 'b') + "\xC3\xA9" + ", 0)"));
}
