// Every confirmed service on devices that refuse it in each way: the same status with and without an error record, the
// detail in its words, and text for people.
#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Requests.h"
#include "tests/unit/stack/client/ClientFixture.h"

#include <functional>

namespace {

using namespace bacnet;

constexpr BACSTAC_OBJECT_ID object{OBJ_ANALOG_INPUT, 5};

class Polls : public CAsyncCallBack {
public:
    void OnWaitStart() override {}
    int OnWaitPoll() override { return 1; }
    void OnWaitEnd() override {}
};

class NullErrorTest : public ClientFixture {
protected:
    using Call = std::function<BACSTAC_STATUS(BACSTAC_ERROR* error)>;
    struct Named {
        const char* Name;
        Call Service;
    };

    // Every service that takes an error record, on device 1.
    std::vector<Named> Services() {
        const unsigned device = DeviceAt(1);
        BacnetClient& client = *m_client;
        return {
            {"ReadProperty, buffer",
             [&, device](auto* error) {
                 float value = 0;
                 return client.ReadProperty(device, object, 85, -1, &value, sizeof value, error);
             }},
            {"ReadProperty, contents",
             [&, device](auto* error) {
                 CPropertyContents contents;
                 return client.ReadProperty(device, object, 85, -1, contents, error);
             }},
            {"ReadProperty, address",
             [&](auto* error) {
                 CPropertyContents contents;
                 return client.ReadProperty(Address(1), object, 85, -1, contents, error);
             }},
            {"AsyncReadProperty",
             [&, device](auto* error) {
                 CPropertyContents contents;
                 Polls polls;
                 return client.AsyncReadProperty(device, object, 85, -1, contents, error, polls);
             }},
            {"ReadPropertyList",
             [&](auto* error) {
                 BACSTAC_READ_RESULT_ITEM item{};
                 unsigned count = 1;
                 return client.ReadPropertyList(Address(1), object, &item, &count, error);
             }},
            {"ReadObjectList, count",
             [&](auto* error) {
                 unsigned count = 0;
                 return client.ReadObjectList(Address(1), nullptr, &count, error);
             }},
            {"ReadObjectList",
             [&](auto* error) {
                 BACSTAC_OBJECT_ID list[4];
                 unsigned count = 4;
                 return client.ReadObjectList(Address(1), list, &count, error);
             }},
            {"ReadRange",
             [&, device](auto* error) {
                 CPropertyContents contents;
                 return client.ReadRange(device, {OBJ_TREND_LOG, 1}, PROP_LOG_BUFFER, -1, nullptr, nullptr, &contents,
                                         error, nullptr);
             }},
            {"ReadPropertyConditional",
             [&, device](auto* error) {
                 BACSTAC_READ_CON_INFO info{};
                 BACSTAC_RPC_RESULT result{};
                 return client.ReadPropertyConditional(device, &info, &result, error);
             }},
            {"WriteProperty",
             [&, device](auto* error) {
                 float value = 1;
                 return client.WriteProperty(device, object, 85, -1, -1, {TYPE_REAL, &value, sizeof value, 1}, error);
             }},
            {"WritePropertyNull",
             [&, device](auto* error) { return client.WritePropertyNull(device, object, 85, -1, 8, error); }},
            {"CreateObject",
             [&, device](auto* error) {
                 const BACSTAC_OBJECT_SPECIFIER specifier{0, OBJ_ANALOG_INPUT, 0};
                 return client.CreateObject(device, &specifier, nullptr, 0, nullptr, error, nullptr);
             }},
            {"DeleteObject", [&, device](auto* error) { return client.DeleteObject(device, &object, error); }},
            {"DeviceCommControl",
             [&, device](auto* error) { return client.DeviceCommControl(device, 1, BACSTAC_DCC_DISABLE, "", error); }},
            {"ReinitializeDevice",
             [&, device](auto* error) {
                 return client.ReinitializeDevice(device, BACSTAC_REINIT_WARMSTART, nullptr, error);
             }},
            {"ReadFile",
             [&, device](auto* error) {
                 BACSTAC_READ_FILE_SPEC spec{};
                 spec.Access = BACSTAC_FILE_STREAM;
                 BACSTAC_READ_FILE_RESULT result{};
                 return client.ReadFile(device, {10, 1}, &spec, &result, error);
             }},
            {"WriteFile",
             [&, device](auto* error) {
                 BACSTAC_WRITE_FILE_SPEC spec{};
                 spec.Access = BACSTAC_FILE_STREAM;
                 return client.WriteFile(device, {10, 1}, &spec, nullptr, error);
             }},
            {"GetAlarmSummary",
             [&, device](auto* error) {
                 BACSTAC_ALARM_SUMMARY entry{};
                 unsigned count = 0;
                 return client.GetAlarmSummary(device, &entry, 1, &count, error);
             }},
            {"GetEnrollmentSummary",
             [&, device](auto* error) {
                 BACSTAC_ENROLLMENT_SUMMARY entry{};
                 unsigned count = 0;
                 return client.GetEnrollmentSummary(device, {}, &entry, 1, &count, error);
             }},
            {"GetEventInformation",
             [&, device](auto* error) {
                 BACSTAC_EVENT_SUMMARY entry{};
                 unsigned count = 0;
                 bool more = false;
                 return client.GetEventInformation(device, nullptr, &entry, 1, &count, &more, error);
             }},
        };
    }

    // Gives each service the answer, which stands without its service choice where that is an Error's.
    void ExpectEverywhere(BACSTAC_STATUS expected, const BACSTAC_ERROR& detail) {
        for (const Named& each : Services()) {
            SCOPED_TRACE(each.Name);
            BACSTAC_ERROR error{};
            EXPECT_EQ(each.Service(&error), expected);
            EXPECT_EQ(error.Kind, detail.Kind);
            EXPECT_EQ(error.Class, detail.Class);
            EXPECT_EQ(error.Code, detail.Code);
            EXPECT_EQ(each.Service(nullptr), expected) << "without an error record";
            const std::string text = CBacGeneral::GetErrorText(expected, &error);
            EXPECT_NE(text, "");
            EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << text;
        }
    }
};

TEST_F(NullErrorTest, AnErrorIsToldWithItsClassAndCode) {
    Serve(1, [](const Octets& request) {
        // object, unknown-object: in [0] and with an element number or a reference where the service has more to tell
        const bool creates = Service(request) == 10;
        Octets answer = creates ? Hex("50 00 0A 0E 91 01 91 1F 0F 19 00") : Hex("50 00 00 91 01 91 1F");
        answer[2] = Service(request);
        return std::vector<Octets>{WithId(answer, request)};
    });
    ExpectEverywhere(BACSTAC_STATUS_ERROR, {2, 1, 31});
}

TEST_F(NullErrorTest, ARejectIsToldWithItsReason) {
    ServeAlways(1, "60 00 09");
    ExpectEverywhere(BACSTAC_STATUS_REJECT, {1, 9, 0});
}

TEST_F(NullErrorTest, AnAbortIsToldWithItsReason) {
    ServeAlways(1, "71 00 04");
    ExpectEverywhere(BACSTAC_STATUS_ABORT, {1, 4, 0});
}

TEST_F(NullErrorTest, ASimpleAckIsNoAnswerToAQuestion) {
    Serve(1, [](const Octets& request) { return std::vector<Octets>{Octets{0x20, request.at(2), request.at(3)}}; });
    for (const Named& each : Services()) {
        const std::string name = each.Name;
        const bool command = name.starts_with("WriteProperty") || name == "DeleteObject" ||
                             name == "DeviceCommControl" || name == "ReinitializeDevice";
        // A list of no alarms is empty.
        const bool list = name == "GetAlarmSummary" || name == "GetEnrollmentSummary" || name == "ReadPropertyList" ||
                          name == "ReadPropertyConditional";
        EXPECT_EQ(each.Service(nullptr), command || list ? BACSTAC_OK : BACSTAC_STATUS_INVALID_ANSWER) << name;
    }
}

TEST_F(NullErrorTest, SilenceIsATimeOutAndNoRefusal) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    ExpectEverywhere(BACSTAC_STATUS_TIMEOUT, {});
    EXPECT_STRNE(CBacGeneral::GetStatusString(BACSTAC_STATUS_TIMEOUT), "");
}

TEST_F(NullErrorTest, ADisabledNetworkIsToldAtOnce) {
    ServeAlways(1, "60 00 09");
    m_client->DisableNetwork(0);
    m_link->TakeSent();
    ExpectEverywhere(BACSTAC_STATUS_DISABLED, {});
    EXPECT_TRUE(m_link->TakeSent().empty());
}

} // namespace
