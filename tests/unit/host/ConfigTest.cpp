#include "host/Config.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using Lines = std::vector<std::string>;
using testing::ElementsAre;

Config Good(const std::string& text) {
    Config config;
    std::vector<ConfigFault> faults;
    EXPECT_TRUE(ReadConfig(text, config, faults));
    for (const ConfigFault& fault : faults)
        ADD_FAILURE() << fault.line << ":" << fault.column << ": " << fault.text;
    return config;
}

// Every fault as "line:column: text".
Lines FaultsOf(const std::string& text) {
    Config config;
    std::vector<ConfigFault> faults;
    EXPECT_FALSE(ReadConfig(text, config, faults));
    Lines lines;
    for (const ConfigFault& fault : faults)
        lines.push_back(std::to_string(fault.line) + ":" + std::to_string(fault.column) + ": " + fault.text);
    return lines;
}

} // namespace

TEST(Config, AnEmptyFileGivesTheDefaults) {
    const Config config = Good("");
    EXPECT_EQ(config.identity.instance, 4194302U);
    EXPECT_EQ(config.identity.name, "bdc");
    EXPECT_EQ(config.identity.processIdentifier, 1U);
    EXPECT_EQ(config.station, "LOCAL");
    EXPECT_EQ(config.stationNumber, 1U);
    EXPECT_TRUE(config.stationActive);
    ASSERT_EQ(config.networks.size(), 1U);
    EXPECT_EQ(config.networks[0].number, 0U);
    EXPECT_EQ(config.networks[0].bind, "0.0.0.0");
    EXPECT_EQ(config.networks[0].port, 47808U);
    EXPECT_EQ(config.networks[0].broadcast, "");
    EXPECT_EQ(config.stack.apduTimeout, 3000U);
    EXPECT_EQ(config.stack.retries, 3U);
    EXPECT_EQ(config.stack.capture, "");
    EXPECT_EQ(config.stack.captureLimit, 64U);
    EXPECT_EQ(config.dataFolder, "");
    EXPECT_EQ(config.settingsFile, "settings.dat");
    EXPECT_EQ(config.directoryFile, "directory.dat");
    EXPECT_EQ(config.vendorNamesFile, "vendor-names.txt");
    EXPECT_EQ(config.transferChunk, 100U);
    EXPECT_TRUE(config.tags.empty());
}

TEST(Config, ReadsEveryField) {
    const Config config = Good(R"(
[identity]
instance = 17
name = "Züri Süd"
description = "Control room"
location = "Cellar"
vendor_id = 999
vendor_name = "Example"
local_network = 5
process_identifier = 4294967295
groups = ["HVAC", "Lighting"]
[station]
name = ""
number = 3
active = false
[[network]]
number = 5
bind = "127.1.2.3"
port = 47809
broadcast = "127.255.255.255"
[[network]]
number = 6
[stack]
apdu_timeout_ms = 250
retries = 0
capture = "site.pcap"
capture_limit_mb = 4096
[data]
folder = "/var/lib/site"
[settings]
file = "a.dat"
[directory]
file = "b.xml"
vendor_names = "c.txt"
[history]
transfer_chunk = 32767
[[device]]
instance = 1001
text = "cp932"
[[tag]]
name = "AHU1 Supply"
type = "analog"
initial = -2.5
description = "Supply air"
unit = "°C"
history = true
history_copy = true
bacnet = { device = 1000, type = "analog-input", instance = 3, property = "present-value", index = 2, cov = true }
[[tag]]
name = "AHU1 Fault"
type = "digital"
initial = 1
bacnet = { device = 1000, type = 0, instance = 3, status_bit = 1 }
[[tag]]
name = "Note"
type = "text"
initial = "none"
[[tag]]
name = "Pulses"
type = "counter"
initial = 12
)");
    EXPECT_EQ(config.identity.instance, 17U);
    EXPECT_EQ(config.identity.name, "Züri Süd");
    EXPECT_EQ(config.identity.description, "Control room");
    EXPECT_EQ(config.identity.location, "Cellar");
    EXPECT_EQ(config.identity.vendorId, 999U);
    EXPECT_EQ(config.identity.vendorName, "Example");
    EXPECT_EQ(config.identity.localNetwork, 5U);
    EXPECT_EQ(config.identity.processIdentifier, 4294967295U);
    EXPECT_THAT(config.identity.groups, ElementsAre("HVAC", "Lighting"));
    EXPECT_EQ(config.station, "");
    EXPECT_EQ(config.stationNumber, 3U);
    EXPECT_FALSE(config.stationActive);
    ASSERT_EQ(config.networks.size(), 2U);
    EXPECT_EQ(config.networks[0].bind, "127.1.2.3");
    EXPECT_EQ(config.networks[0].port, 47809U);
    EXPECT_EQ(config.networks[0].broadcast, "127.255.255.255");
    EXPECT_EQ(config.networks[1].number, 6U);
    EXPECT_EQ(config.stack.apduTimeout, 250U);
    EXPECT_EQ(config.stack.retries, 0U);
    EXPECT_EQ(config.stack.capture, "site.pcap");
    EXPECT_EQ(config.stack.captureLimit, 4096U);
    EXPECT_EQ(config.dataFolder, "/var/lib/site");
    EXPECT_EQ(config.settingsFile, "a.dat");
    EXPECT_EQ(config.directoryFile, "b.xml");
    EXPECT_EQ(config.vendorNamesFile, "c.txt");
    ASSERT_EQ(config.devices.size(), 1U);
    EXPECT_EQ(config.devices[0].instance, 1001U);
    EXPECT_EQ(config.devices[0].text, "cp932");
    EXPECT_EQ(config.transferChunk, 32767U);

    ASSERT_EQ(config.tags.size(), 4U);
    const TagConfig& supply = config.tags[0];
    EXPECT_EQ(supply.type, TAG_TYPE_ANALOG);
    EXPECT_EQ(supply.initial, -2.5);
    EXPECT_EQ(supply.unit, "°C");
    EXPECT_TRUE(supply.history && supply.historyCopy);
    ASSERT_TRUE(supply.bacnet);
    EXPECT_EQ(supply.bacnet->device, 1000U);
    EXPECT_EQ(supply.bacnet->objectType, 0U);
    EXPECT_EQ(supply.bacnet->objectInstance, 3U);
    EXPECT_EQ(supply.bacnet->property, 85U);
    EXPECT_EQ(supply.bacnet->index, 2U);
    EXPECT_EQ(supply.bacnet->statusBit, -1);
    EXPECT_TRUE(supply.bacnet->cov);
    const TagConfig& fault = config.tags[1];
    EXPECT_EQ(fault.type, TAG_TYPE_DIGITAL);
    EXPECT_EQ(fault.initial, 1.0);
    ASSERT_TRUE(fault.bacnet);
    EXPECT_EQ(fault.bacnet->property, 111U);
    EXPECT_EQ(fault.bacnet->index, 0xFFFFFFFFU);
    EXPECT_EQ(fault.bacnet->statusBit, 1);
    EXPECT_EQ(config.tags[2].type, TAG_TYPE_TEXT);
    EXPECT_EQ(config.tags[2].initialText, "none");
    EXPECT_EQ(config.tags[3].type, TAG_TYPE_COUNTER);
    EXPECT_EQ(config.tags[3].initial, 12.0);
}

TEST(Config, SaysWhereTheSyntaxBreaks) {
    const Lines faults = FaultsOf("[identity]\ninstance = = 3\n");
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].rfind("2:", 0), 0U) << faults[0];
}

TEST(Config, FindsEveryFaultInTheOrderOfTheFile) {
    EXPECT_THAT(FaultsOf("[identity]\n"
                         "instanse = 3\n"
                         "instance = 4194303\n"
                         "[stack]\n"
                         "retries = \"3\"\n"
                         "[history]\n"
                         "  transfer_chunk = 0\n"),
                ElementsAre("2:1: [identity]: unknown key \"instanse\"",
                            "3:12: [identity]: \"instance\" must be a whole number from 0 to 4194302",
                            "5:11: [stack]: \"retries\" must be a whole number from 0 to 10",
                            "7:20: [history]: \"transfer_chunk\" must be a whole number from 1 to 32767"));
}

TEST(Config, RefusesDevicesTwiceAndUnknownEncodings) {
    EXPECT_THAT(FaultsOf("[[device]]\ntext = \"klingon\"\ninstance = 5\n[[device]]\ninstance = 5\n[[device]]\n"),
                ElementsAre("2:8: [[device]]: \"text\" names no encoding that is known here",
                            "5:12: [[device]]: \"instance\" is that of an earlier device",
                            "6:1: [[device]]: \"instance\" is missing"));
}

TEST(Config, RefusesUnknownSectionsAndWrongKinds) {
    EXPECT_THAT(FaultsOf("[identiti]\n"), ElementsAre("1:2: file: unknown key \"identiti\""));
    EXPECT_THAT(FaultsOf("identity = 3\n"), ElementsAre("1:12: file: \"identity\" must be a table: [identity]"));
    EXPECT_THAT(FaultsOf("[network]\nport = 1\n"),
                ElementsAre("1:1: file: \"network\" must be a list of tables: [[network]]"));
    EXPECT_THAT(FaultsOf("[station]\nactive = 1\n"), ElementsAre("2:10: [station]: \"active\" must be true or false"));
    EXPECT_THAT(FaultsOf("[identity]\nname = 7\n"), ElementsAre("2:8: [identity]: \"name\" must be text"));
    EXPECT_THAT(FaultsOf("[identity]\ngroups = [1]\n"),
                ElementsAre("2:10: [identity]: \"groups\" must be a list of names"));
}

TEST(Config, RefusesTextThatWouldNotFit) {
    EXPECT_THAT(FaultsOf("[station]\nname = \"sixteen bytes ab\"\n"),
                ElementsAre("2:8: [station]: \"name\" is longer than 15 bytes"));
    EXPECT_THAT(FaultsOf("[[tag]]\nname = \"" + std::string(48, 'x') + "\"\n"),
                ElementsAre("2:8: [[tag]]: \"name\" is longer than 47 bytes",
                            "2:8: [[tag]]: \"name\" must not be empty nor hold a colon"));
    EXPECT_EQ(FaultsOf("[[tag]]\nname = \"a\\u0007\"\n").front(), "2:8: [[tag]]: \"name\" holds a control character");
    Good("[[tag]]\nname = \"" + std::string(47, 'x') + "\"\n");
}

TEST(Config, RefusesAddressesThatAreNone) {
    EXPECT_THAT(FaultsOf("[[network]]\nbind = \"127.0.0\"\nport = 65536\nbroadcast = \"all\"\n"),
                ElementsAre("2:8: [[network]]: \"bind\" must be an IPv4 address",
                            "3:8: [[network]]: \"port\" must be a whole number from 1 to 65535",
                            "4:13: [[network]]: \"broadcast\" must be an IPv4 address"));
}

TEST(Config, RefusesTwoNetworksOfOneNumber) {
    EXPECT_THAT(FaultsOf("[[network]]\nnumber = 3\n[[network]]\nnumber = 3\n"),
                ElementsAre("4:10: [[network]]: \"number\" 3 is given twice"));
    EXPECT_THAT(FaultsOf("[[network]]\n[[network]]\nport = 47809\n"),
                ElementsAre("2:1: [[network]]: \"number\" is missing"));
}

TEST(Config, ReadsWhatAPortDoesAboutBroadcasts) {
    const Config config = Good(R"(
[[network]]
foreign = { bbmd = "10.1.1.1" }
[[network]]
number = 2
foreign = { bbmd = "10.1.1.1:47809", ttl = 10 }
[[network]]
number = 3
bind = "127.0.0.1"
bbmd = {}
[[network]]
number = 4
bind = "127.0.0.2"
[network.bbmd]
table = ["10.1.1.1", "10.2.1.1:47809/255.255.255.0"]
foreign_devices = 0
accept_write = true
)");
    ASSERT_EQ(config.networks.size(), 4U);
    ASSERT_TRUE(config.networks[0].foreign);
    EXPECT_FALSE(config.networks[0].bbmd);
    EXPECT_EQ(config.networks[0].foreign->Bbmd, (bacnet::BipAddress{0x0A010101, 47808}));
    EXPECT_EQ(config.networks[0].foreign->TimeToLive, 300);
    EXPECT_EQ(config.networks[1].foreign->Bbmd.Port, 47809);
    EXPECT_EQ(config.networks[1].foreign->TimeToLive, 10);
    ASSERT_TRUE(config.networks[2].bbmd);
    EXPECT_TRUE(config.networks[2].bbmd->Table.empty());
    EXPECT_EQ(config.networks[2].bbmd->ForeignDevices, 64U);
    EXPECT_FALSE(config.networks[2].bbmd->AcceptWrite);
    ASSERT_TRUE(config.networks[3].bbmd);
    EXPECT_EQ(config.networks[3].bbmd->Table,
              (std::vector<bacnet::BdtEntry>{{{0x0A010101, 47808}}, {{0x0A020101, 47809}, 0xFFFFFF00}}));
    EXPECT_EQ(config.networks[3].bbmd->ForeignDevices, 0U);
    EXPECT_TRUE(config.networks[3].bbmd->AcceptWrite);
}

TEST(Config, RefusesBroadcastSettingsThatCannotWork) {
    EXPECT_THAT(FaultsOf("[[network]]\nforeign = { ttl = 9 }\n"),
                ElementsAre("2:11: [foreign]: \"bbmd\" is missing",
                            "2:19: [foreign]: \"ttl\" must be a whole number from 10 to 65535"));
    EXPECT_THAT(FaultsOf("[[network]]\nforeign = { bbmd = \"bbmd.example\" }\n"),
                ElementsAre("2:20: [foreign]: \"bbmd\" must be an IPv4 address, with or without a port"));
    EXPECT_THAT(FaultsOf("[[network]]\nbbmd = { foreign_devices = 129 }\n"),
                ElementsAre("2:8: [[network]]: \"bbmd\" needs \"bind\" to be one address of this machine",
                            "2:28: [bbmd]: \"foreign_devices\" must be a whole number from 0 to 128"));
    EXPECT_THAT(FaultsOf("[[network]]\nbind = \"127.0.0.1\"\nforeign = { bbmd = \"10.1.1.1\" }\nbbmd = {}\n"),
                ElementsAre("4:8: [[network]]: \"bbmd\" and \"foreign\" exclude each other"));
    for (const char* entry : {"", "10.1.1", "10.1.1.1/24", "10.1.1.1/255.0.255.0", "10.1.1.1:0", "10.1.1.1/"})
        EXPECT_THAT(
            FaultsOf("[[network]]\nbind = \"127.0.0.1\"\nbbmd = { table = [\"" + std::string(entry) + "\"] }\n"),
            ElementsAre("3:19: [bbmd]: \"table\" holds \"" + std::string(entry) +
                        "\", which is not ADDRESS[:PORT][/MASK]"));
    EXPECT_THAT(FaultsOf("[[network]]\nbind = \"127.0.0.1\"\nbbmd = { table = 3 }\n"),
                ElementsAre("3:18: [bbmd]: \"table\" must be a list of addresses"));
}

TEST(Config, RefusesFilesOutsideTheDataFolder) {
    for (const char* name : {"", ".", "..", "../x", "/etc/x", "a/b"})
        EXPECT_EQ(FaultsOf("[settings]\nfile = \"" + std::string(name) + "\"\n").size(), 1U) << name;
}

TEST(Config, RefusesACaptureThatCouldOverwriteOtherFiles) {
    for (const char* name : {"history.db", ".pcap", "site.PCAP", "../site.pcap", "/tmp/site.pcap", "a/b.pcap"})
        EXPECT_THAT(FaultsOf("[stack]\ncapture = \"" + std::string(name) + "\"\n"),
                    ElementsAre("2:11: [stack]: \"capture\" must be the name of a file in the data folder, without a "
                                "path and ending in .pcap"));
    EXPECT_EQ(Good("[stack]\ncapture = \"\"\n").stack.capture, "");
    EXPECT_THAT(FaultsOf("[stack]\ncapture_limit_mb = 0\n"),
                ElementsAre("2:20: [stack]: \"capture_limit_mb\" must be a whole number from 1 to 4096"));
}

TEST(Config, RefusesTagsThatMakeNoSense) {
    EXPECT_THAT(FaultsOf("[[tag]]\ntype = \"analog\"\n"), ElementsAre("1:1: [[tag]]: \"name\" is missing"));
    EXPECT_THAT(FaultsOf("[[tag]]\nname = \"A\"\n[[tag]]\nname = \"A\"\n"),
                ElementsAre("4:8: [[tag]]: \"name\" \"A\" is given twice"));
    EXPECT_THAT(FaultsOf("[[tag]]\nname = \"A\"\ntype = \"float\"\n"),
                ElementsAre("3:8: [[tag]]: \"type\" must be \"analog\", \"counter\", \"digital\" or \"text\""));
    EXPECT_THAT(FaultsOf("[[tag]]\nname = \"A\"\ntype = \"digital\"\ninitial = 2\n"),
                ElementsAre("4:11: [[tag]]: \"initial\" of a digital tag is 0 or 1"));
    EXPECT_THAT(FaultsOf("[[tag]]\nname = \"A\"\ninitial = nan\n"),
                ElementsAre("3:11: [[tag]]: \"initial\" must be a number"));
}

TEST(Config, RefusesReferencesThatPointNowhere) {
    EXPECT_THAT(FaultsOf("[[tag]]\nname = \"A\"\nbacnet = { device = 1, instance = 2 }\n"),
                ElementsAre("3:10: [bacnet]: \"type\" is missing"));
    EXPECT_THAT(FaultsOf("[[tag]]\nname = \"A\"\nbacnet = { device = 1, type = \"analogue\", instance = 2 }\n"),
                ElementsAre("3:31: [bacnet]: \"type\" \"analogue\" is not a name that is known here; give its number"));
    EXPECT_THAT(
        FaultsOf(
            "[[tag]]\nname = \"A\"\nbacnet = { device = 1, type = 0, instance = 2, property = 85, status_bit = 2 }\n"),
        ElementsAre("3:76: [bacnet]: \"status_bit\" goes with the property status-flags only"));
    EXPECT_EQ(FaultsOf("[[tag]]\nname = \"A\"\nbacnet = 3\n").size(), 1U);
}

TEST(Config, ReportsABoundedNumberOfFaults) {
    std::string text = "[identity]\n";
    for (int i = 0; i < 1000; ++i)
        text += "key" + std::to_string(i) + " = 1\n";
    EXPECT_EQ(FaultsOf(text).size(), 20U);
}

TEST(Config, NeverTakesAFileThatWasCutInsideAValue) {
    const std::string whole = "[identity]\ninstance = 17\nname = \"x\"\n[[tag]]\nname = \"A\"\nbacnet = { device = 1, "
                              "type = 0, instance = 2 }\n";
    Config config;
    std::vector<ConfigFault> faults;
    int refused = 0;
    for (std::size_t cut = 0; cut < whole.size(); ++cut)
        refused += ReadConfig(whole.substr(0, cut), config, faults) ? 0 : 1;
    EXPECT_GT(refused, 60); // and none of them crashed
}

TEST(Config, TheDocumentedFileIsOne) {
    std::ostringstream page;
    page << std::ifstream(BDC_SOURCE_DIR "/docs/configuration.md").rdbuf();
    const std::string text = page.str();
    const std::size_t begin = text.find("```toml\n");
    ASSERT_NE(begin, std::string::npos);
    const Config config = Good(text.substr(begin + 8, text.find("```", begin + 8) - begin - 8));
    EXPECT_EQ(config.identity.instance, Config().identity.instance);
    EXPECT_EQ(config.transferChunk, Config().transferChunk);
    EXPECT_EQ(config.tags.size(), 3U);
}

TEST(ConfigFile, NamesFileLineAndColumn) {
    const CTempFolder folder;
    folder.Put("bdc.toml", "[stack]\nretries = 11\n");
    Config config;
    Lines errors;
    EXPECT_FALSE(LoadConfig(folder.File("bdc.toml"), config, errors));
    EXPECT_THAT(errors, ElementsAre(folder.File("bdc.toml") +
                                    ":2:11: [stack]: \"retries\" must be a whole number from 0 to 10"));
}

TEST(ConfigFile, SaysWhyItCannotBeRead) {
    const CTempFolder folder;
    Config config;
    Lines errors;
    EXPECT_FALSE(LoadConfig(folder.File("none.toml"), config, errors));
    EXPECT_THAT(errors, ElementsAre(folder.File("none.toml") + ": cannot be opened: No such file or directory"));
    EXPECT_FALSE(LoadConfig(folder.Path(), config, errors));
    EXPECT_THAT(errors, ElementsAre(folder.Path() + ": is not a regular file"));
}

TEST(ConfigFile, TakesARelativeDataFolderAgainstItsOwn) {
    const CTempFolder folder;
    folder.Put("bdc.toml", "[data]\nfolder = \"state/x\"\n");
    Config config;
    Lines errors;
    ASSERT_TRUE(LoadConfig(folder.File("bdc.toml"), config, errors));
    EXPECT_EQ(config.dataFolder, folder.File("state/x"));
}
