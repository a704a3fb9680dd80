// read, write, relinquish, create and delete.
#include "api/bacnet/Enums.h"
#include "tests/unit/host/bacnet/CommandSite.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::json;
using testing::HasSubstr;

class PropertyCommands : public Commands {};
INSTANTIATE_TEST_SUITE_P(Ways, PropertyCommands, BOTH_WAYS, WayName);

TEST_P(PropertyCommands, ReadTakesADeviceByInstanceAndByAddress) {
    const std::string line = "present-value                    21.5\n";
    EXPECT_EQ(Output({"read", "1000", "analog-input:1", "present-value"}), line);
    EXPECT_EQ(Output({"read", "1000", "ai,1", "pv"}), line);
    EXPECT_EQ(Output({"read", AddressText(1), "0:1", "85"}), line);
    EXPECT_EQ(Output({"read", "7001", "dev:7001", "name"}), "object-name                      Room\n");
    EXPECT_EQ(Output({"read", "7:21", "dev:7001", "name"}), "object-name                      Room\n");
}

TEST_P(PropertyCommands, ReadShowsSeveralPropertiesAndAll) {
    EXPECT_EQ(Output({"read", "1000", "ai:1", "pv", "units", "status-flags"}),
              "present-value                    21.5\n"
              "units                            degrees-celsius\n"
              "status-flags                     {}\n");
    const std::string all = Output({"read", "1000", "ao:1", "all"});
    EXPECT_THAT(all, HasSubstr("object-name                      Valve\n"));
    EXPECT_THAT(all, HasSubstr("priority-array                   {null, "));
    EXPECT_EQ(Output({"read", "1000", "ao:1", "pa[0]"}), "priority-array[0]                16\n");
}

TEST_F(CommandSite, ReadShowsAllPropertiesOfADeviceWithoutMultipleReads) {
    m_config.Devices[0].LacksServices.push_back(bacnet::ConfirmedService::readPropertyMultiple);
    m_config.Devices[1].LacksServices.push_back(bacnet::ConfirmedService::readPropertyMultiple);
    m_config.Devices[1].ProtocolRevision = 2; // and without a list of properties
    m_config.Devices[1].Objects = {m_config.Devices[0].Objects[0]};
    StartSite();
    for (const char* device : {"1000", "2000"}) {
        const std::string all = Output({"read", device, "ai:1", "all"});
        EXPECT_THAT(all, HasSubstr("object-name                      Supply temperature\n"));
        EXPECT_THAT(all, HasSubstr("present-value                    21.5\n"));
        EXPECT_THAT(all, HasSubstr("units                            degrees-celsius\n"));
    }
}

TEST_P(PropertyCommands, ReadGivesTypedJson) {
    const Json result = RunJson({"read", "1000", "ai:1", "pv", "units", "name", "out-of-service", "object-identifier"});
    ASSERT_EQ(result["properties"].size(), 5U) << result;
    EXPECT_EQ(result["properties"][0], (Json{{"device", 1000},
                                             {"object", "analog-input:1"},
                                             {"property", "present-value"},
                                             {"type", "real"},
                                             {"value", 21.5},
                                             {"text", "21.5"}}));
    EXPECT_EQ(result["properties"][1]["value"], 62);
    EXPECT_EQ(result["properties"][1]["text"], "degrees-celsius");
    EXPECT_EQ(result["properties"][2]["value"], "Supply temperature");
    EXPECT_EQ(result["properties"][3]["value"], false);
    EXPECT_EQ(result["properties"][4]["value"], "analog-input:1");
    const Json array = RunJson({"read", "1000", "dev:1000", "object-list"});
    EXPECT_EQ(array["properties"][0]["value"][0], "device:1000");
    EXPECT_EQ(array["properties"][0]["value"].size(), 8U);
}

TEST_P(PropertyCommands, ReadShowsTheOctetsOfAValueThatNobodyKnows) {
    const std::uint8_t wire[] = {0x2E, 0x44, 0x3F, 0x80, 0x00, 0x00, 0x2F}; // [2] { real 1.0 }
    Device(1000).SetProperty({OBJ_ANALOG_VALUE, 1}, 600, sim::Value::Encoded(wire));
    EXPECT_EQ(Output({"read", "1000", "av:1", "600"}), "600                              2e443f8000002f\n");
    const Json read = RunJson({"read", "1000", "av:1", "600"})["properties"][0];
    EXPECT_EQ(Output({"read", "1000", "av:1", "units", "600"}),
              "units                            degrees-celsius\n600                              2e443f8000002f\n");
    EXPECT_EQ(read["type"], "encoded");
    EXPECT_EQ(read["value"], "2e443f8000002f");
}

TEST_P(PropertyCommands, ReadTellsWhatADeviceRefuses) {
    const ProcessResult object = Run({"read", "1000", "ai:99", "pv"});
    EXPECT_EQ(object.code, 1);
    EXPECT_EQ(object.output, "");
    EXPECT_EQ(object.errors, "bdc: device 1000, analog-input:99, present-value: error: unknown-object (object)\n");
    const ProcessResult some = Run({"read", "1000", "ai:1", "pv", "9999"});
    EXPECT_EQ(some.code, 3);
    EXPECT_EQ(some.output, "present-value                    21.5\n");
    EXPECT_EQ(some.errors, "9999                             error: unknown-property (property)\nbdc: 1 of 2 failed\n");
    const ProcessResult none = Run({"read", "1000", "ai:1", "9998", "9999"});
    EXPECT_EQ(none.code, 1);
    const ProcessResult json = Run({"read", "1000", "ai:99", "pv", "--json"});
    EXPECT_EQ(json.code, 1);
    EXPECT_EQ(Json::parse(json.output)["error"],
              "device 1000, analog-input:99, present-value: error: unknown-object (object)");
}

TEST_P(PropertyCommands, ReadTellsThatADeviceIsSilent) {
    const ProcessResult unknown = Run({"read", "999", "ai:1", "pv"});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_EQ(unknown.errors, "bdc: device 999 is not known and does not answer Who-Is\n");
    const ProcessResult nobody = Run({"read", AddressText(99), "ai:1", "pv"});
    EXPECT_EQ(nobody.code, 1);
    EXPECT_THAT(nobody.errors, HasSubstr("bdc: " + AddressText(99) + ": "));
    EXPECT_THAT(Run({"read", "9:1", "ai:1", "pv"}).errors, HasSubstr("bdc: 9/1: "));
}

TEST_P(PropertyCommands, WrongWordsAreWrongUsageAndSendNothing) {
    const std::vector<Words> wrong{{"read", "1000", "ai:1"},
                                   {"read", "boiler", "ai:1", "pv"},
                                   {"read", "1000", "axe:1", "pv"},
                                   {"read", "1000", "ai:1", "pv", "presentvalue"},
                                   {"read", "1000", "ai:1", "pa[x]"},
                                   {"write", "1000", "av:1", "pv"},
                                   {"write", "1000", "av:1", "pv", "warm"},
                                   {"write", "1000", "av:1", "pv", "1", "--priority", "17"},
                                   {"write", "1000", "av:1", "pv", "1", "--type", "fluid"},
                                   {"relinquish", "1000", "ao1"},
                                   {"create", "1000", "av:1", "pv:3"},
                                   {"delete", "1000", "av"}};
    for (const Words& words : wrong) {
        const ProcessResult result = Run(words);
        EXPECT_EQ(result.code, 2) << testing::PrintToString(words);
        EXPECT_NE(result.errors, "") << testing::PrintToString(words);
        EXPECT_EQ(result.output, "") << testing::PrintToString(words);
    }
    EXPECT_EQ(m_simulator->GetStats().Requests(), 0U);
    EXPECT_EQ(Run({"write", "1000", "bo:1", "pv", "on"}).errors,
              "bdc: present-value: \"on\" is not one of inactive, active, or a number\n");
}

TEST_P(PropertyCommands, WriteTakesWhatReadShows) {
    Device(1000).SetProperty({OBJ_ANALOG_VALUE, 1}, 486, sim::Value::Array({})); // tags
    const std::string tags = R"([{"name":"room","value":{"character-string":"21G"}},{"name":"id","value":null}])";
    Output({"write", "1000", "av:1", "tags", tags});
    const Json read = RunJson({"read", "1000", "av:1", "tags"})["properties"][0];
    EXPECT_EQ(read["value"], Json::parse(tags));
    EXPECT_EQ(read["text"], "{{name=room, value=21G}, {name=id, value=none}}");
    Output({"write", "1000", "av:1", "tags", "[" + read["value"][1].dump() + "]"});
    EXPECT_EQ(Output({"read", "1000", "av:1", "tags"}), "tags                             {name=id, value=none}\n");
    EXPECT_EQ(Run({"write", "1000", "av:1", "tags", "room"}).code, 2);
}

TEST_P(PropertyCommands, WriteAndRelinquishGoThroughThePriorities) {
    Output({"write", "1000", "bo:1", "pv", "active", "--priority", "8"});
    EXPECT_EQ(Output({"read", "1000", "bo:1", "pv", "pa[8]"}),
              "present-value                    active\npriority-array[8]                active\n");
    Output({"write", "1000", "bo:1", "pv", "inactive"});
    EXPECT_EQ(Output({"read", "1000", "bo:1", "pa[16]"}), "priority-array[16]               inactive\n");
    EXPECT_EQ(Output({"read", "1000", "bo:1", "pv"}), "present-value                    active\n");
    Output({"relinquish", "1000", "bo:1", "--priority", "8"});
    EXPECT_EQ(Output({"read", "1000", "bo:1", "pv", "pa[8]"}),
              "present-value                    inactive\npriority-array[8]                null\n");
    Output({"write", "1000", "bo:1", "pv", "null"});
    EXPECT_EQ(Output({"read", "1000", "bo:1", "pa[16]"}), "priority-array[16]               null\n");
}

TEST_P(PropertyCommands, WriteTakesTheTypeOfTheProperty) {
    Output({"write", "1000", "av:1", "pv", "-1.5"});
    EXPECT_EQ(Output({"read", "1000", "av:1", "pv"}), "present-value                    -1.5\n");
    Output({"write", "1000", "av:1", "name", "Set point, raised"});
    EXPECT_EQ(Output({"read", "1000", "av:1", "name"}), "object-name                      Set point, raised\n");
    Output({"write", "1000", "av:1", "oos", "true"});
    Output({"write", "1000", "av:1", "units", "percent"});
    EXPECT_EQ(Output({"read", "1000", "av:1", "oos", "units"}),
              "out-of-service                   true\nunits                            percent\n");
}

// No table knows a proprietary property: what it holds says of which type it is.
TEST_P(PropertyCommands, WriteAsksTheDeviceWhereTheStandardSaysNothing) {
    constexpr BACSTAC_PROPERTY_ID PROPRIETARY = 600;
    Device(1000).SetProperty({OBJ_ANALOG_VALUE, 1}, PROPRIETARY, sim::Value::Double(1.25));
    Output({"write", "1000", "av:1", "600", "7"});
    EXPECT_EQ(Device(1000).GetProperty({OBJ_ANALOG_VALUE, 1}, PROPRIETARY), sim::Value::Double(7));
    EXPECT_EQ(Run({"write", "1000", "av:1", "600", "text"}).code, 2);
    const ProcessResult refused = Run({"write", "1000", "av:1", "600", "7", "--type", "unsigned"});
    EXPECT_EQ(refused.code, 1) << "the simulated device keeps the type";
    EXPECT_EQ(Run({"write", "1000", "av:1", "601", "7"}).errors,
              "bdc: device 1000, analog-value:1, 601: error: unknown-property (property)\n");
}

TEST_P(PropertyCommands, WriteTellsWhatADeviceRefuses) {
    const ProcessResult result = Run({"write", "1000", "ai:1", "object-identifier", "ai:2"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors,
              "bdc: device 1000, analog-input:1, object-identifier: error: write-access-denied (property)\n");
}

TEST_P(PropertyCommands, CreateAndDeleteObjects) {
    EXPECT_EQ(Output({"create", "1000", "analog-value:7", "name=Boiler", "pv=21.5"}), "analog-value:7\n");
    EXPECT_EQ(Output({"read", "1000", "av:7", "name", "pv"}),
              "object-name                      Boiler\npresent-value                    21.5\n");
    EXPECT_EQ(RunJson({"create", "1000", "av"}), (Json{{"device", 1000}, {"object", "analog-value:2"}}));
    const ProcessResult again = Run({"create", "1000", "av:7"});
    EXPECT_EQ(again.code, 1);
    EXPECT_EQ(again.errors, "bdc: device 1000, analog-value:7: error: object-identifier-already-exists (object)\n");
    const ProcessResult value = Run({"create", "1000", "av:8", "pv=1", "9999=1"});
    EXPECT_EQ(value.code, 1);
    EXPECT_THAT(value.errors, HasSubstr("analog-value:8, initial value of 9999: error: "));
    Output({"delete", "1000", "av:7"});
    const ProcessResult gone = Run({"delete", "1000", "av:7"});
    EXPECT_EQ(gone.code, 1);
    EXPECT_EQ(gone.errors, "bdc: device 1000, analog-value:7: error: unknown-object (object)\n");
}
