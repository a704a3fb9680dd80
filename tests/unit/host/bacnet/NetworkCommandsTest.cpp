// router list and bbmd show.
#include "tests/unit/host/bacnet/CommandSite.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::json;
using testing::HasSubstr;

class NetworkCommands : public Commands {};
INSTANTIATE_TEST_SUITE_P(Ways, NetworkCommands, BOTH_WAYS, WayName);

TEST_P(NetworkCommands, RouterListShowsWhoAnnouncesItself) {
    const Json routers = RunJson({"router", "list", "--wait", "1"});
    ASSERT_EQ(routers["count"], 1) << routers;
    EXPECT_EQ(routers["routers"][0], (Json{{"network", 7},
                                           {"router", AddressText(3)},
                                           {"port", AddressText(250)},
                                           {"announced", true},
                                           {"busy", false},
                                           {"max_apdu", nullptr}}));
    EXPECT_THAT(Output({"router", "list", "--wait", "1"}), testing::StartsWith("    7  " + AddressText(3)));
    EXPECT_EQ(Run({"router", "list", "--wait", "61"}).code, 2);
}

TEST_P(NetworkCommands, BbmdShowTellsHowTheOwnPortsStand) {
    EXPECT_EQ(RunJson({"bbmd", "show"})["entries"],
              (Json::array({Json{{"station", AddressText(250)}, {"role", "none"}}})));
    EXPECT_EQ(Output({"bbmd", "show"}), AddressText(250) + "  takes no part in broadcast management\n");
}

TEST_P(NetworkCommands, BbmdShowRefusesWrongWords) {
    EXPECT_EQ(Run({"bbmd", "show", "boiler"}).code, 2);
    EXPECT_EQ(Run({"bbmd", "show", "10.0.0.5", "--network", "x"}).code, 2);
    const ProcessResult result = Run({"bbmd", "show", "10.0.0.5", "--network", "77"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors, "bdc: no BACnet/IP port on network 77\n");
}

// A running instance is the broadcast management device; a station beside it asks.
TEST_F(CommandSite, BbmdShowReadsTheTablesOfAnotherStation) {
    StartSite();
    const std::string port = "\nport = " + std::to_string(m_block.Port()) + "\nbroadcast = \"127.255.255.255\"\n";
    m_data.Put("bdc.toml", "[[network]]\nbind = \"" + m_block.Text(250) + "\"" + port + "bbmd = {table = [\"" +
                               AddressText(251) + "\"]}\n");
    StartInstance();
    EXPECT_THAT(Output({"bbmd", "show"}), HasSubstr(AddressText(250) + "  bbmd\n"));

    const CTempFolder folder;
    folder.Put("bdc.toml", "[[network]]\nbind = \"" + m_block.Text(240) + "\"" + port);
    const Words command{"bbmd", "show", AddressText(250), "--data", folder.Path()};
    const ProcessResult result = RunBdc(command);
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("distribution " + AddressText(250)));
    EXPECT_THAT(result.output, HasSubstr("distribution " + AddressText(251)));
    const ProcessResult nobody = RunBdc({"bbmd", "show", AddressText(1), "--data", folder.Path()});
    EXPECT_EQ(nobody.code, 1);
    EXPECT_EQ(nobody.errors, "bdc: " + AddressText(1) + ": refused: it is no broadcast management device\n");
}
