#include "host/StationStore.h"
#include "host/AlarmRuleFile.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

IdentityConfig Identity() {
    IdentityConfig config;
    config.instance = 17;
    config.name = "Configured";
    config.localNetwork = 5;
    config.processIdentifier = 9;
    config.groups = {"HVAC", "Lighting"};
    return config;
}

AlarmDefinition Alarm(const std::string& text) {
    AlarmDefinition alarm;
    alarm.text = text;
    alarm.severity = 0xFFFF;
    alarm.targetFlags = 0xFFFFFFFF;
    alarm.attributeFlags = 0xFF;
    alarm.userFields = {"a", "b", "", "d", "e"};
    alarm.zoneName = "";
    alarm.synthesizedText = false;
    alarm.kept = 3;
    return alarm;
}

} // namespace

TEST(StationStore, BeginsWithTheConfiguration) {
    const CTempFolder folder;
    CStationStore store(folder.File("station.json"), Identity());
    std::string error;
    EXPECT_TRUE(store.Load(error)) << error;
    EXPECT_EQ(store.GetDeviceInstance(), 17U);
    EXPECT_EQ(store.GetDeviceName(), "Configured");
    EXPECT_EQ(store.GetLocalNetworkNumber(), 5U);
    EXPECT_EQ(store.GetProcessIdentifier(), 9U);
    EXPECT_EQ(store.GetGroupName(), "HVAC");
    EXPECT_EQ(store.GetGroupNames(), (std::vector<std::string>{"HVAC", "Lighting"}));
    EXPECT_TRUE(store.EventFilters().empty());
}

TEST(StationStore, AsksForTheNumberOfTheNetworkOnlyWhereNoneIsConfigured) {
    const CTempFolder folder;
    CStationStore configured(folder.File("configured.json"), Identity());
    configured.SetNetworkNumberSource([] { return std::uint16_t{12}; });
    EXPECT_EQ(configured.GetLocalNetworkNumber(), 5U);
    CStationStore store(folder.File("station.json"), IdentityConfig());
    EXPECT_EQ(store.GetLocalNetworkNumber(), 0U);
    store.SetNetworkNumberSource([] { return std::uint16_t{12}; });
    EXPECT_EQ(store.GetLocalNetworkNumber(), 12U);
}

TEST(StationStore, KeepsWhatWasChanged) {
    const CTempFolder folder;
    std::string error;
    CEventFilter filter;
    filter.objectNameMask = "AI*";
    filter.objectType = 3;
    filter.priorityTo = 200;
    filter.alarm = Alarm("filter");
    {
        CStationStore store(folder.File("station.json"), Identity());
        store.SetDeviceInstance(4194302);
        store.SetDeviceName("Zürich \"Süd\"");
        store.SetProcessIdentifier(0xFFFFFFFF);
        store.SetGroupName("Lighting");
        store.EventFilters() = {CEventFilter(), filter};
        store.CommunicationError() = Alarm("communication");
        store.GetOutOfService() = Alarm("service");
        store.GetOverridden() = Alarm("overridden");
        store.GetDeviceRestart() = Alarm("restart");
        ASSERT_TRUE(store.Save(error)) << error;
    }
    CStationStore store(folder.File("station.json"), Identity());
    ASSERT_TRUE(store.Load(error)) << error;
    EXPECT_EQ(store.GetDeviceInstance(), 4194302U);
    EXPECT_EQ(store.GetDeviceName(), "Zürich \"Süd\"");
    EXPECT_EQ(store.GetProcessIdentifier(), 0xFFFFFFFFU);
    EXPECT_EQ(store.GetGroupName(), "Lighting");
    EXPECT_EQ(store.EventFilters(), (std::vector<CEventFilter>{CEventFilter(), filter}));
    EXPECT_EQ(store.CommunicationError(), Alarm("communication"));
    EXPECT_EQ(store.GetOutOfService(), Alarm("service"));
    EXPECT_EQ(store.GetOverridden(), Alarm("overridden"));
    EXPECT_EQ(store.GetDeviceRestart(), Alarm("restart"));
}

TEST(StationStore, WritesOnlyWhatHasChanged) {
    const CTempFolder folder;
    CStationStore store(folder.File("station.json"), Identity());
    std::string error;
    ASSERT_TRUE(store.Save(error)) << error;
    std::filesystem::remove(folder.File("station.json"));
    ASSERT_TRUE(store.Save(error)) << error;
    EXPECT_FALSE(folder.Has("station.json"));
    store.SetDeviceName("x");
    ASSERT_TRUE(store.Save(error)) << error;
    EXPECT_TRUE(folder.Has("station.json"));
}

TEST(StationStore, EveryCutOfTheFileIsPutAsideAndChangesNothing) {
    const CTempFolder folder;
    std::string error;
    {
        CStationStore store(folder.File("station.json"), Identity());
        store.SetDeviceName("changed");
        ASSERT_TRUE(store.Save(error)) << error;
    }
    const std::string whole = folder.Get("station.json");
    for (std::size_t cut = 0; cut + 1 < whole.size(); cut += 7) {
        folder.Put("station.json", whole.substr(0, cut));
        CStationStore store(folder.File("station.json"), Identity());
        ASSERT_FALSE(store.Load(error)) << "cut at " << cut;
        ASSERT_EQ(store.GetDeviceName(), "Configured");
        ASSERT_EQ(folder.Get("station.json.damaged"), whole.substr(0, cut));
        ASSERT_FALSE(folder.Has("station.json"));
    }
}

TEST(StationStore, RefusesMembersOfAnotherKind) {
    const CTempFolder folder;
    for (const char* text : {"[]", "3", R"({"identity":3})", R"({"identity":{"instance":"x"}})", R"({"group":1})",
                             R"({"identity":{"instance":4194303}})", R"({"eventFilters":{"a":1}})"}) {
        folder.Put("station.json", text);
        CStationStore store(folder.File("station.json"), Identity());
        std::string error;
        EXPECT_FALSE(store.Load(error)) << text;
        EXPECT_EQ(store.GetDeviceInstance(), 17U);
    }
}

TEST(AlarmRuleFile, KeepsItsRules) {
    const CTempFolder folder;
    const AlarmRuleKey first{17, {0, 4194303}};
    const AlarmRuleKey second{0xFFFFFFFF, {1023, 1}};
    {
        CAlarmRuleFile rules(folder.File("rules.json"));
        EXPECT_TRUE(rules.GetAll().empty());
        rules.Set(first, Alarm("one"));
        rules.Set(second, Alarm("two"));
        rules.Set(first, Alarm("one again"));
    }
    CAlarmRuleFile rules(folder.File("rules.json"));
    AlarmDefinition found;
    ASSERT_TRUE(rules.Find(first, found));
    EXPECT_EQ(found, Alarm("one again"));
    EXPECT_TRUE(rules.Remove(second));
    EXPECT_FALSE(rules.Remove(second));
    EXPECT_FALSE(rules.Find(second, found));
    EXPECT_EQ(CAlarmRuleFile(folder.File("rules.json")).GetAll().size(), 1U);
    EXPECT_EQ(rules.GetFileTime(), std::filesystem::last_write_time(folder.File("rules.json")));
    EXPECT_EQ(rules.GetFileName(), folder.File("rules.json"));
}

TEST(AlarmRuleFile, ReloadTakesWhatSomebodyElseWrote) {
    const CTempFolder folder;
    CAlarmRuleFile mine(folder.File("rules.json"));
    CAlarmRuleFile other(folder.File("rules.json"));
    other.Set({1, {2, 3}}, Alarm("x"));
    EXPECT_TRUE(mine.GetAll().empty());
    mine.Reload();
    EXPECT_EQ(mine.GetAll().size(), 1U);
}

TEST(AlarmRuleFile, ADamagedFileIsKeptAside) {
    const CTempFolder folder;
    folder.Put("rules.json", "[{\"device\":1");
    CAlarmRuleFile rules(folder.File("rules.json"));
    EXPECT_TRUE(rules.GetAll().empty());
    EXPECT_EQ(folder.Get("rules.json"), "[{\"device\":1") << "reading alone changes nothing";
    rules.Set({1, {2, 3}}, Alarm("x"));
    EXPECT_EQ(folder.Get("rules.json.damaged"), "[{\"device\":1");
    EXPECT_EQ(CAlarmRuleFile(folder.File("rules.json")).GetAll().size(), 1U);
}

TEST(StationStore, TellsOfEachChangeOfTheIdentity) {
    const CTempFolder folder;
    CStationStore store(folder.File("station.json"), {});
    std::vector<std::string> told;
    store.SetIdentityListener(
        [&] { told.push_back(std::to_string(store.GetDeviceInstance()) + " " + store.GetDeviceName()); });
    store.SetDeviceInstance(17);
    store.SetDeviceInstance(17);
    store.SetDeviceName("Cellar");
    store.SetDeviceName("Cellar");
    store.SetProcessIdentifier(9);
    store.SetIdentityListener(nullptr);
    store.SetDeviceName("Roof");
    EXPECT_EQ(told, (std::vector<std::string>{"17 bdc", "17 Cellar"}));
}
