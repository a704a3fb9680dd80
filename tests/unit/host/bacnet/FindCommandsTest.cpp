// discover, scan and list.
#include "tests/unit/host/bacnet/CommandSite.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::json;
using testing::HasSubstr;

class FindCommands : public Commands {};
INSTANTIATE_TEST_SUITE_P(Ways, FindCommands, BOTH_WAYS, WayName);

TEST_P(FindCommands, DiscoverFindsEveryDevice) {
    const Json found = RunJson({"discover", "--wait", "1"});
    ASSERT_EQ(found["count"], 3) << found;
    EXPECT_EQ(found["devices"][0], (Json{{"device", 1000},
                                         {"address", AddressText(1)},
                                         {"network", 0},
                                         {"vendor", 999},
                                         {"name", ""},
                                         {"duplicate", false}}));
    EXPECT_EQ(found["devices"][1]["device"], 2000);
    EXPECT_EQ(found["devices"][2]["address"], "7/21");
    EXPECT_EQ(found["devices"][2]["network"], 7);
    EXPECT_EQ(RunJson({"discover", "--wait", "1", "--range", "1500", "2000"})["devices"].size(), 1U);
    EXPECT_EQ(RunJson({"discover", "--wait", "1", "--network", "7"})["devices"][0]["device"], 7001);
    EXPECT_EQ(RunJson({"discover", "--wait", "0", "--range", "5", "6"}),
              (Json{{"devices", Json::array()}, {"count", 0}}));
    EXPECT_THAT(Output({"discover", "--wait", "1"}), HasSubstr("   7001  7/21                     vendor 999"));
}

TEST_P(FindCommands, DiscoverRefusesAWrongRange) {
    for (const Words& words : {Words{"discover", "--range", "6", "5"}, Words{"discover", "--range", "0", "4194304"},
                               Words{"discover", "--range", "x", "5"}, Words{"discover", "--network", "65536"},
                               Words{"discover", "--wait", "-1"}, Words{"discover", "--range", "5"}})
        EXPECT_EQ(Run(words).code, 2) << testing::PrintToString(words);
}

TEST_P(FindCommands, ScanPutsDevicesIntoTheDirectoryAndListShowsThem) {
    const Json scanned = RunJson({"scan", "1000", AddressText(2)});
    ASSERT_EQ(scanned["devices"].size(), 2U) << scanned;
    EXPECT_EQ(scanned["devices"][0]["name"], "Air handling unit");
    EXPECT_EQ(scanned["devices"][0]["objects"], 8);
    EXPECT_EQ(scanned["devices"][1]["device"], 2000);
    EXPECT_EQ(scanned["directory"], m_data.File("directory.dat"));
    EXPECT_TRUE(m_data.Has("directory.dat"));

    const Json listed = RunJson({"list"});
    ASSERT_GE(listed["entries"].size(), 2U) << listed;
    EXPECT_EQ(listed["entries"][0]["name"], "Air handling unit");
    EXPECT_EQ(listed["entries"][1]["name"], "Boiler");
    const std::string objects = Output({"list", "1000"});
    EXPECT_THAT(objects, HasSubstr("analog-input:1                   Supply temperature\n"));
    EXPECT_THAT(objects, HasSubstr("device:1000                      Air handling unit\n"));
    EXPECT_EQ(Output({"list", "1000", "tl"}), "trend-log:1                      Supply log\n");
    EXPECT_EQ(RunJson({"list", "1000", "9"})["count"], 0);
}

TEST_P(FindCommands, ScanGoesOnBehindADeviceThatIsMissing) {
    const ProcessResult result = Run({"scan", "999", "2000"});
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.output, HasSubstr("Boiler"));
    EXPECT_EQ(result.errors, "device 999 is not known and does not answer Who-Is\nbdc: 1 of 2 failed\n");
    EXPECT_EQ(Run({"scan", "999"}).code, 1);
    EXPECT_EQ(Run({"scan", "2000", "boiler"}).code, 2);
}

TEST_P(FindCommands, ScanReadsOldDevicesObjectByObject) {
    m_simulator->Stop();
    m_config.Devices[0].LacksServices.push_back(bacnet::ConfirmedService::readPropertyMultiple);
    m_config.Devices[0].MaxApdu = 128;
    m_config.Devices[0].Segmentation = bacnet::Segmentation::none;
    m_simulator = std::make_unique<sim::Simulator>(m_config);
    std::string error;
    ASSERT_TRUE(m_simulator->Start(error)) << error;
    EXPECT_THAT(Output({"scan", "1000"}), HasSubstr("8 objects  Air handling unit"));
    EXPECT_THAT(Output({"list", "1000"}), HasSubstr("binary-output:1                  Fan\n"));
}

TEST_P(FindCommands, ListKnowsOnlyWhatIsInTheDirectory) {
    const ProcessResult result = Run({"list", "4000"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors, "bdc: device 4000 is not in the directory\n");
    EXPECT_EQ(Run({"list", "x"}).code, 2);
    EXPECT_EQ(m_simulator->GetStats().Requests(), 0U);
}

TEST_F(CommandSite, ListNeedsNoPort) {
    StartSite();
    Output({"scan", "1000"});
    m_data.Put("bdc.toml", "[[network]]\nbind = \"192.0.2.1\"\n"); // not an address of this machine
    EXPECT_THAT(Output({"list"}), HasSubstr("Air handling unit"));
    const ProcessResult read = Run({"read", "1000", "ai:1", "pv"});
    EXPECT_EQ(read.code, 1);
    EXPECT_THAT(read.errors, HasSubstr("192.0.2.1"));
}

TEST_F(CommandSite, TwoDevicesWithOneInstanceAreBothShown) {
    m_config.IAm = sim::IAmMode::unicast;
    StartSite();
    sim::SimulatorConfig second = m_config;
    second.Routers.clear();
    second.Devices.resize(1);
    second.Devices[0].Ip = m_block.Ip(9);
    sim::Simulator intruder(second);
    std::string error;
    ASSERT_TRUE(intruder.Start(error)) << error;
    const Json found = RunJson({"discover", "--wait", "1", "--range", "1000", "1000"});
    ASSERT_EQ(found["devices"].size(), 2U) << found;
    EXPECT_EQ(found["devices"][0]["duplicate"], true);
    EXPECT_EQ(found["devices"][1]["address"], AddressText(9));
    EXPECT_THAT(Output({"discover", "--wait", "1"}), HasSubstr("(instance is used twice)"));
}

TEST_F(CommandSite, WithoutAnInstanceTheFolderIsTouchedByScansOnly) {
    StartSite();
    Output({"read", "1000", "ai:1", "pv"});
    EXPECT_FALSE(m_data.Has("bdc.lock"));
    EXPECT_FALSE(m_data.Has("log"));
    Output({"scan", "1000"});
    EXPECT_TRUE(m_data.Has("bdc.lock"));
}
