// The services that write, create, manage, transfer files and list alarms, through the client.
#include "api/bacnet/Enums.h"
#include "api/bacnet/Log.h"
#include "api/bacnet/Requests.h"
#include "tests/unit/stack/client/ClientFixture.h"

#include <cstddef>
#include <cstring>

namespace {

constexpr BACSTAC_OBJECT_ID analogValue{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_OBJECT_ID file{OBJ_FILE, 1};

class CommandsTest : public ClientFixture {
protected:
    // Answers every request: SimpleACK, or a ComplexACK with these parameters.
    void Accept() {
        Serve(1, [](const Octets& request) { return std::vector<Octets>{Octets{0x20, request.at(2), request.at(3)}}; });
    }
    void AnswerWith(const std::string& parameters) {
        Serve(1,
              [octets = Hex(parameters)](const Octets& request) { return std::vector<Octets>{Ack(request, octets)}; });
    }
    // Service choice and parameters of the last request.
    std::string Last() { return m_link->RequestsTo(1).back().substr(9); }

    BACSTAC_ERROR m_error{};
};

TEST_F(CommandsTest, WritesWithAndWithoutPriority) {
    Accept();
    float value = 180.0F;
    const BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
    EXPECT_EQ(m_client->WriteProperty(DeviceAt(1), analogValue, 85, -1, -1, contents, &m_error), BACSTAC_OK);
    EXPECT_EQ(Last(), "0F 0C 00 80 00 01 19 55 3E 44 43 34 00 00 3F");
    EXPECT_EQ(m_client->WriteProperty(DeviceAt(1), analogValue, 85, -1, 8, contents, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "0F 0C 00 80 00 01 19 55 3E 44 43 34 00 00 3F 49 08");
    EXPECT_EQ(m_client->WritePropertyNull(DeviceAt(1), analogValue, 85, -1, 16, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "0F 0C 00 80 00 01 19 55 3E 00 3F 49 10");
    m_link->TakeSent();
    for (const int priority : {0, 17, -2})
        EXPECT_EQ(m_client->WriteProperty(DeviceAt(1), analogValue, 85, -1, priority, contents, nullptr),
                  BACSTAC_STATUS_INVALID_ARGUMENT);
    const BACSTAC_PROPERTY_CONTENTS nothing{TYPE_NONE, nullptr, 0, 0};
    EXPECT_EQ(m_client->WriteProperty(DeviceAt(1), analogValue, 85, -1, -1, nothing, nullptr),
              BACSTAC_STATUS_INVALID_ARGUMENT);
    std::string text(3000, 'x');
    const BACSTAC_PROPERTY_CONTENTS tooLong{TYPE_STRING, text.data(), static_cast<std::uint32_t>(text.size() + 1), 1};
    EXPECT_EQ(m_client->WriteProperty(DeviceAt(1), analogValue, 77, -1, -1, tooLong, nullptr), BACSTAC_STATUS_TOO_LONG);
    EXPECT_EQ(m_client->WriteProperty(77, analogValue, 85, -1, -1, contents, nullptr), BACSTAC_STATUS_UNKNOWN_DEVICE);
    EXPECT_TRUE(m_link->TakeSent().empty());
    ServeAlways(1, "50 00 0F 91 02 91 28"); // property, write-access-denied
    EXPECT_EQ(m_client->WriteProperty(DeviceAt(1), analogValue, 85, -1, -1, contents, &m_error), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(m_error.Code, 40U);
}

TEST_F(CommandsTest, WritesManyPropertiesOfOneObject) {
    Accept();
    float value = 67.0F;
    BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
    CWPMRequest request(2);
    EXPECT_TRUE(request.Append(85, -1, contents, 8));
    EXPECT_FALSE(request.IsFull());
    EXPECT_TRUE(request.Append(104, -1, contents, -1));
    EXPECT_TRUE(request.IsFull());
    EXPECT_FALSE(request.Append(104, -1, contents, -1));
    EXPECT_TRUE(request.Execute(DeviceAt(1), Address(1), analogValue));
    EXPECT_EQ(Last(), "10 0C 00 80 00 01 1E 09 55 2E 44 42 86 00 00 2F 39 08 09 68 2E 44 42 86 00 00 2F 1F");
    // [0]{ property, write-access-denied } [1]{ object, property }
    ServeAlways(1, "50 00 10 0E 91 02 91 28 0F 1E 0C 00 80 00 01 19 68 1F");
    EXPECT_FALSE(request.Execute(DeviceAt(1), Address(1), analogValue));
    EXPECT_EQ(request.Status, BACSTAC_STATUS_ERROR);
    EXPECT_EQ(request.Error.Code, 40U);
    request.Clear();
    EXPECT_EQ(request.GetItemCnt(), 0U);
}

TEST_F(CommandsTest, WritesOneByOneToADeviceWithoutMultipleWrites) {
    int writes = 0;
    Serve(1, [&writes](const Octets& request) {
        if (Service(request) == 16)
            return std::vector<Octets>{Octets{0x60, request.at(2), 9}};
        if (++writes == 2)
            return std::vector<Octets>{WithId(Hex("50 00 0F 91 02 91 28"), request)};
        return std::vector<Octets>{Octets{0x20, request.at(2), request.at(3)}};
    });
    float value = 67.0F;
    BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
    CWPMRequest request(3);
    for (const BACSTAC_PROPERTY_ID property : {85U, 104U, 22U})
        request.Append(property, -1, contents, -1);
    EXPECT_FALSE(request.Execute(DeviceAt(1), Address(1), analogValue));
    EXPECT_EQ(request.Error.Code, 40U);
    EXPECT_EQ(writes, 2) << "up to the first that fails";
}

TEST_F(CommandsTest, WritesInHalvesWhatIsTooMuchForADevice) {
    for (const char* refusal : {"71 00 01", "71 00 04", "60 00 06"}) {
        SCOPED_TRACE(refusal);
        std::string written;
        Serve(1, [&](const Octets& request) {
            EXPECT_EQ(Service(request), 16);
            const std::string parameters = ToHex(Parameters(request));
            // two values at the most: each ends in its closing tag 2
            if (parameters.size() > 3 * (5 + 2 * 9 + 2))
                return std::vector<Octets>{WithId(Hex(refusal), request)};
            for (const char* property : {"09 55", "09 68", "09 16", "09 2D", "09 41"})
                if (parameters.find(property) != std::string::npos)
                    written += std::string(property + 3) + " ";
            return std::vector<Octets>{Octets{0x20, request.at(2), request.at(3)}};
        });
        float value = 67.0F;
        BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
        CWPMRequest request(5);
        for (const BACSTAC_PROPERTY_ID property : {0x55U, 0x68U, 0x16U, 0x2DU, 0x41U})
            request.Append(property, -1, contents, -1);
        EXPECT_TRUE(request.Execute(DeviceAt(1), Address(1), analogValue));
        EXPECT_EQ(written, "55 68 16 2D 41 ") << "in their order, each once";
    }
}

TEST_F(CommandsTest, NeverRepeatsAWriteInPartsAfterSilence) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    float value = 67.0F;
    BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
    CWPMRequest request(2);
    request.Append(85, -1, contents, -1);
    request.Append(104, -1, contents, -1);
    m_link->TakeSent();
    EXPECT_FALSE(request.Execute(DeviceAt(1), Address(1), analogValue));
    EXPECT_EQ(request.Status, BACSTAC_STATUS_TIMEOUT);
    EXPECT_EQ(m_link->RequestsTo(1).size(), Retries + 1U);
}

TEST_F(CommandsTest, CreatesAndDeletesObjects) {
    AnswerWith("C4 02 80 00 0D");
    std::uint32_t method = 1;
    const BACSTAC_PROPERTY_VALUE value{41, -1, {TYPE_ENUMERATED, &method, sizeof method, 1}, -1};
    const BACSTAC_OBJECT_SPECIFIER byType{0, OBJ_FILE, 99};
    BACSTAC_OBJECT_ID created{};
    unsigned firstFailed = 7;
    EXPECT_EQ(m_client->CreateObject(DeviceAt(1), &byType, nullptr, 0, &created, &m_error, &firstFailed), BACSTAC_OK);
    EXPECT_EQ(Last(), "0A 0E 09 0A 0F");
    EXPECT_EQ(created, (BACSTAC_OBJECT_ID{10, 13}));
    EXPECT_EQ(firstFailed, 0U);
    const BACSTAC_OBJECT_SPECIFIER byId{1, OBJ_FILE, 13};
    EXPECT_EQ(m_client->CreateObject(DeviceAt(1), &byId, &value, 1, nullptr, nullptr, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "0A 0E 1C 02 80 00 0D 0F 1E 09 29 2E 91 01 2F 1F");
    ServeAlways(1, "50 00 0A 0E 91 02 91 25 0F 19 01");
    EXPECT_EQ(m_client->CreateObject(DeviceAt(1), &byId, &value, 1, nullptr, &m_error, &firstFailed),
              BACSTAC_STATUS_ERROR);
    EXPECT_EQ(firstFailed, 1U);
    EXPECT_EQ(m_error.Code, 37U);
    ServeAlways(1, "50 00 0A 91 01 91 17");
    EXPECT_EQ(m_client->CreateObject(DeviceAt(1), &byId, &value, 1, nullptr, nullptr, &firstFailed),
              BACSTAC_STATUS_ERROR);
    EXPECT_EQ(firstFailed, 0U);
    EXPECT_EQ(m_client->CreateObject(DeviceAt(1), nullptr, nullptr, 0, nullptr, nullptr, nullptr),
              BACSTAC_STATUS_INVALID_ARGUMENT);

    Accept();
    EXPECT_EQ(m_client->DeleteObject(DeviceAt(1), &file, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "0B C4 02 80 00 01");
    EXPECT_EQ(m_client->DeleteObject(DeviceAt(1), nullptr, nullptr), BACSTAC_STATUS_INVALID_ARGUMENT);
}

TEST_F(CommandsTest, ManagesDevices) {
    Accept();
    EXPECT_EQ(m_client->DeviceCommControl(DeviceAt(1), 0, BACSTAC_DCC_DISABLE, "", nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "11 19 01");
    EXPECT_EQ(m_client->DeviceCommControl(DeviceAt(1), 5, BACSTAC_DCC_DISABLE_INITIATION, "pw", nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "11 09 05 19 02 2B 00 70 77");
    EXPECT_EQ(m_client->DeviceCommControl(DeviceAt(1), 0, BACSTAC_DCC_ENABLE, nullptr, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "11 19 00");
    EXPECT_EQ(m_client->DeviceCommControl(DeviceAt(1), 65536, BACSTAC_DCC_ENABLE, nullptr, nullptr),
              BACSTAC_STATUS_INVALID_ARGUMENT);
    for (const std::uint32_t state : {0U, 1U, 2U, 3U, 4U, 5U, 6U}) {
        EXPECT_EQ(m_client->ReinitializeDevice(DeviceAt(1), static_cast<BACSTAC_REINIT_TYPE>(state), "", nullptr),
                  BACSTAC_OK);
        EXPECT_EQ(Last(), "14 09 0" + std::to_string(state));
    }
    EXPECT_EQ(m_client->ReinitializeDevice(DeviceAt(1), BACSTAC_REINIT_WARMSTART, "pw", nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "14 09 01 1B 00 70 77");
}

TEST_F(CommandsTest, SendsPasswordsAsUtf8OfAnyLength) {
    Accept();
    EXPECT_EQ(m_client->ReinitializeDevice(DeviceAt(1), BACSTAC_REINIT_COLDSTART, "T\xC3\xBCr", nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "14 09 00 1D 05 00 54 C3 BC 72");
    // The standard's 20 characters are the device's business.
    const std::string longer(21, 'x');
    EXPECT_EQ(m_client->DeviceCommControl(DeviceAt(1), 0, BACSTAC_DCC_ENABLE, longer.c_str(), nullptr), BACSTAC_OK);
    std::string octets;
    for (std::size_t i = 0; i < longer.size(); ++i)
        octets += " 78";
    EXPECT_EQ(Last(), "11 19 00 2D 16 00" + octets);
}

TEST_F(CommandsTest, SynchronizesTheListedDevicesOnly) {
    Know(1);
    Know(2);
    const BACSTAC_DATE_TIME time{{1992, 0, 11, 17, 0}, {22, 45, 30, 70}};
    EXPECT_EQ(m_client->SynchronizeTime(false, time, nullptr, 0), BACSTAC_OK);
    EXPECT_TRUE(m_link->TakeSent().empty()) << "never a broadcast";
    const unsigned devices[] = {DeviceAt(1), 77, DeviceAt(2)};
    EXPECT_EQ(m_client->SynchronizeTime(false, time, devices, 3), BACSTAC_STATUS_UNKNOWN_DEVICE);
    auto sent = m_link->TakeSent();
    ASSERT_EQ(sent.size(), 2U) << "an unknown device does not keep the others from theirs";
    EXPECT_EQ(sent[0].Destination, ScriptedLink::Mac(1));
    EXPECT_EQ(sent[1].Destination, ScriptedLink::Mac(2));
    EXPECT_EQ(ToHex(sent[0].Npdu), "01 00 10 06 A4 5C 0B 11 02 B4 16 2D 1E 46");
    EXPECT_EQ(m_client->SynchronizeTime(true, time, devices, 1), BACSTAC_OK);
    EXPECT_EQ(ToHex(m_link->TakeSent().at(0).Npdu), "01 00 10 09 A4 5C 0B 11 02 B4 16 2D 1E 46");
    EXPECT_EQ(m_client->SynchronizeTime(true, time, nullptr, 1), BACSTAC_STATUS_INVALID_ARGUMENT);
}

TEST_F(CommandsTest, ReadsTheTimeOfADevice) {
    const std::string head = "0C 02 00 00 65 1E ";
    const std::string date = "29 38 4E A4 7E 03 01 07 4F ";
    const std::string clock = "29 39 4E B4 0C 1E 00 00 4F ";
    const std::string west = "29 77 4E 31 C4 4F "; // -60: an hour east
    const std::string summer = "29 18 4E 11 4F ";
    AnswerWith(head + date + clock + west + summer + date + "1F");
    BACSTAC_DATE_TIME time{};
    int offset = 5;
    ASSERT_TRUE(m_client->ReadDeviceTime(DeviceAt(1), time, offset));
    EXPECT_EQ(time.Date.Year, 2026);
    EXPECT_EQ(time.Date.Month, 3U);
    EXPECT_EQ(time.Time.Hour, 12);
    EXPECT_EQ(offset, 120) << "east of UTC, with daylight saving";

    offset = 5;
    AnswerWith(head + date + clock + "29 77 5E 91 02 91 20 5F 29 18 5E 91 02 91 20 5F " + date + "1F");
    ASSERT_TRUE(m_client->ReadDeviceTime(DeviceAt(1), time, offset));
    EXPECT_EQ(offset, 5) << "left alone when the device has none";

    AnswerWith(head + "29 38 5E 91 02 91 20 5F " + clock + west + summer + date + "1F");
    EXPECT_FALSE(m_client->ReadDeviceTime(DeviceAt(1), time, offset)) << "no date";
    EXPECT_FALSE(m_client->ReadDeviceTime(77, time, offset));
}

TEST_F(CommandsTest, ReadsTheTimeAgainWhenMidnightPasses) {
    int requests = 0;
    Serve(1, [&requests](const Octets& request) {
        const bool midnight = ++requests == 1;
        return std::vector<Octets>{
            Ack(request, Hex("0C 02 00 00 65 1E 29 38 4E A4 7E 03 " + std::string(midnight ? "01" : "02") +
                             " FF 4F 29 39 4E B4 00 00 00 00 4F 29 38 4E A4 7E 03 02 FF 4F 1F"))};
    });
    BACSTAC_DATE_TIME time{};
    int offset = 0;
    ASSERT_TRUE(m_client->ReadDeviceTime(DeviceAt(1), time, offset));
    EXPECT_EQ(requests, 2);
    EXPECT_EQ(time.Date.Day, 2U);
}

// ---- files

TEST_F(CommandsTest, ReadsAFileAsAStream) {
    AnswerWith("11 0E 31 05 63 61 62 63 0F");
    char buffer[3] = {};
    const BACSTAC_READ_FILE_SPEC spec{BACSTAC_FILE_STREAM, 5, 3};
    BACSTAC_READ_FILE_RESULT result{};
    result.Stream = {buffer, sizeof buffer, 0};
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, &m_error), BACSTAC_OK);
    EXPECT_EQ(Last(), "06 C4 02 80 00 01 0E 31 05 21 03 0F");
    EXPECT_EQ(result.EndOfFile, 1);
    EXPECT_EQ(result.Start, 5);
    EXPECT_EQ(result.Stream.Length, 3U);
    EXPECT_EQ(std::memcmp(buffer, "abc", 3), 0);
    result.Stream.Capacity = 2;
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, nullptr), BACSTAC_STATUS_BUFFER_TOO_SMALL);
    AnswerWith("10 0E 31 05 60 0F");
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, nullptr), BACSTAC_STATUS_INVALID_ANSWER)
        << "nothing, and not the end: that would go on for ever";
    AnswerWith("11 0E 31 05 60 0F");
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, nullptr), BACSTAC_OK);
    EXPECT_EQ(result.Stream.Length, 0U);
    AnswerWith("11 1E 31 05 21 01 61 61 1F");
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, nullptr), BACSTAC_STATUS_INVALID_ANSWER)
        << "of the other form";
}

TEST_F(CommandsTest, ReadsAFileByRecords) {
    AnswerWith("10 1E 31 05 21 02 62 61 62 61 63 1F");
    alignas(BACSTAC_BUFFER) char work[2 * sizeof(BACSTAC_BUFFER) + 3];
    const BACSTAC_READ_FILE_SPEC spec{BACSTAC_FILE_RECORD, 5, 2};
    BACSTAC_READ_FILE_RESULT result{};
    result.Records = {0, work, sizeof work};
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, nullptr), BACSTAC_OK);
    ASSERT_EQ(result.Records.Count, 2U);
    const auto* records = reinterpret_cast<const BACSTAC_BUFFER*>(work);
    EXPECT_EQ(std::string(static_cast<const char*>(records[0].Data), records[0].Length), "ab");
    EXPECT_EQ(std::string(static_cast<const char*>(records[1].Data), records[1].Length), "c");
    result.Records = {0, work, sizeof work - 1};
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, nullptr), BACSTAC_STATUS_BUFFER_TOO_SMALL);
    AnswerWith("10 1E 31 05 21 00 1F");
    EXPECT_EQ(m_client->ReadFile(DeviceAt(1), file, &spec, &result, nullptr), BACSTAC_STATUS_INVALID_ANSWER);
}

TEST_F(CommandsTest, WritesFilesInBothForms) {
    AnswerWith("09 1E");
    char data[] = "abc";
    BACSTAC_WRITE_FILE_SPEC stream{};
    stream.Access = BACSTAC_FILE_STREAM;
    stream.Start = 30;
    stream.Stream = {data, 0, 3};
    BACSTAC_WRITE_FILE_RESULT result{};
    EXPECT_EQ(m_client->WriteFile(DeviceAt(1), file, &stream, &result, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "07 C4 02 80 00 01 0E 31 1E 63 61 62 63 0F");
    EXPECT_EQ(result.Start, 30);
    const BACSTAC_BUFFER buffer{data, 0, 2};
    BACSTAC_WRITE_FILE_SPEC records{};
    records.Access = BACSTAC_FILE_RECORD;
    records.Start = 1;
    records.Records = {1, &buffer};
    EXPECT_EQ(m_client->WriteFile(DeviceAt(1), file, &records, nullptr, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "07 C4 02 80 00 01 1E 31 01 21 01 62 61 62 1F");
    std::string much(2000, 'x');
    stream.Stream = {much.data(), 0, 2000};
    EXPECT_EQ(m_client->WriteFile(DeviceAt(1), file, &stream, nullptr, nullptr), BACSTAC_STATUS_TOO_LONG);
}

// ---- alarms

TEST_F(CommandsTest, ListsAlarms) {
    AnswerWith("C4 00 00 00 02 91 03 82 05 60 C4 00 00 00 03 91 04 82 05 E0");
    BACSTAC_ALARM_SUMMARY summaries[3]{};
    unsigned count = 9;
    EXPECT_EQ(m_client->GetAlarmSummary(DeviceAt(1), summaries, 3, &count, &m_error), BACSTAC_OK);
    EXPECT_EQ(Last(), "03");
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(summaries[1].AlarmState, 4U);
    EXPECT_EQ(m_client->GetAlarmSummary(DeviceAt(1), summaries, 1, &count, nullptr), BACSTAC_OK) << "cut, not failed";
    EXPECT_EQ(count, 1U);
    AnswerWith("");
    EXPECT_EQ(m_client->GetAlarmSummary(DeviceAt(1), summaries, 3, &count, nullptr), BACSTAC_OK);
    EXPECT_EQ(count, 0U);
    AnswerWith("C4 00 00");
    EXPECT_EQ(m_client->GetAlarmSummary(DeviceAt(1), summaries, 3, &count, nullptr), BACSTAC_STATUS_INVALID_ANSWER);
}

TEST_F(CommandsTest, ListsEnrollments) {
    AnswerWith("C4 00 00 00 02 91 01 91 03 21 64 21 04");
    BACSTAC_ENROLLMENT_FILTER filter{};
    BACSTAC_ENROLLMENT_SUMMARY summary{};
    unsigned count = 0;
    EXPECT_EQ(m_client->GetEnrollmentSummary(DeviceAt(1), filter, &summary, 1, &count, nullptr), BACSTAC_OK);
    EXPECT_EQ(Last(), "04 09 00");
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(summary.NotificationClass, 4U);
}

TEST_F(CommandsTest, SaysOnceInTheLogThatASummaryWasCut) {
    class Sink : public CQilBAC_ErrLog::ISink {
    public:
        void OnLine(CQilBAC_ErrLog::KIND, const std::string& text) override { Lines.push_back(text); }
        std::vector<std::string> Lines;
    };
    const std::string alarm = "C4 00 00 00 02 91 03 82 05 60 ";
    AnswerWith(alarm + alarm + alarm);
    const auto sink = std::make_shared<Sink>();
    CQilBAC_ErrLog::Instance().SetSink(sink);
    BACSTAC_ALARM_SUMMARY summary{};
    unsigned count = 0;
    EXPECT_EQ(m_client->GetAlarmSummary(DeviceAt(1), &summary, 1, &count, &m_error), BACSTAC_OK);
    CQilBAC_ErrLog::Instance().SetSink(nullptr);
    EXPECT_EQ(count, 1U);
    ASSERT_EQ(sink->Lines.size(), 1U);
    EXPECT_NE(sink->Lines[0].find("device 101 has more entries than the 1"), std::string::npos) << sink->Lines[0];
}

class Events : public CEventInfoService {
public:
    using CEventInfoService::CEventInfoService;
    std::string Seen;

protected:
    void OnEvent(BACSTAC_EVENT_SUMMARY const& event) override { Seen += std::to_string(event.ObjectId.Instance) + " "; }
};

std::string EventOf(unsigned instance) {
    return "0C 00 00 00 0" + std::to_string(instance) +
           " 19 03 2A 05 60 3E 19 01 19 02 19 03 3F 49 00 5A 05 E0 6E 21 0F 21 0F 21 14 6F ";
}

TEST_F(CommandsTest, FollowsThePagesOfEvents) {
    Serve(1, [](const Octets& request) {
        const std::string after = ToHex(Parameters(request));
        if (after.empty())
            return std::vector<Octets>{Ack(request, Hex("0E " + EventOf(1) + EventOf(2) + "0F 19 01"))};
        EXPECT_EQ(after, "0C 00 00 00 02");
        return std::vector<Octets>{Ack(request, Hex("0E " + EventOf(3) + "0F 19 00"))};
    });
    Events events(100);
    EXPECT_EQ(events.Call(DeviceAt(1)), BACSTAC_OK);
    EXPECT_EQ(events.Seen, "1 2 3 ");
}

TEST_F(CommandsTest, GoesOnAfterTheLastEventThatFits) {
    Serve(1, [](const Octets& request) {
        const Octets after = Parameters(request);
        const unsigned next = after.empty() ? 1U : after.back() + 1U;
        std::string entries;
        for (unsigned i = next; i <= 5; ++i)
            entries += EventOf(i);
        return std::vector<Octets>{Ack(request, Hex("0E " + entries + "0F 19 00"))};
    });
    Events events(2);
    EXPECT_EQ(events.Call(DeviceAt(1)), BACSTAC_OK);
    EXPECT_EQ(events.Seen, "1 2 3 4 5 ");
}

TEST_F(CommandsTest, EndsWhenADeviceNeverEndsItsEvents) {
    AnswerWith("0E " + EventOf(1) + "0F 19 01");
    Events same(100);
    EXPECT_EQ(same.Call(DeviceAt(1)), BACSTAC_OK);
    EXPECT_EQ(same.Seen, "1 ");
    Serve(1, [](const Octets& request) { // 1 2, 3, 1 2, 3, ...
        const Octets after = Parameters(request);
        const bool even = !after.empty() && after.back() == 2;
        return std::vector<Octets>{
            Ack(request, Hex("0E " + (even ? EventOf(3) : EventOf(1) + EventOf(2)) + "0F 19 01"))};
    });
    Events circle(100);
    EXPECT_EQ(circle.Call(DeviceAt(1)), BACSTAC_OK);
    EXPECT_EQ(circle.Seen, "1 2 3 ");
    AnswerWith("0E 0F 19 01");
    Events none(100);
    EXPECT_EQ(none.Call(DeviceAt(1)), BACSTAC_OK);
    ServeAlways(1, "60 00 09");
    EXPECT_EQ(none.Call(DeviceAt(1)), BACSTAC_STATUS_REJECT);
    EXPECT_EQ(none.Status, BACSTAC_STATUS_REJECT);
    EXPECT_EQ(none.Error.Class, 9U);
}

TEST_F(CommandsTest, ReadsConditionally) {
    AnswerWith("0C 00 00 00 05 1E 29 55 4E 44 42 90 99 9A 4F 29 67 5E 91 02 91 20 5F 1F "
               "0C 00 00 00 06 1E 29 55 4E 44 42 90 99 9A 4F 1F");
    const BACSTAC_READ_CON_INFO info{2, 0, nullptr, 0, nullptr};
    alignas(std::max_align_t) char buffer[4096];
    BACSTAC_RPC_RESULT result{buffer, sizeof buffer, 0};
    EXPECT_EQ(m_client->ReadPropertyConditional(DeviceAt(1), &info, &result, &m_error), BACSTAC_OK);
    EXPECT_EQ(Last(), "0D 0E 09 02 0F");
    ASSERT_EQ(result.Count, 2U);
    const BACSTAC_RPC_OBJECT* const objects = RpcObjects(result);
    EXPECT_EQ(objects[0].ObjectId.Instance, 5U);
    ASSERT_EQ(objects[0].ItemCount, 2U);
    ASSERT_EQ(objects[1].ItemCount, 1U);
    EXPECT_EQ(objects[0].Items[0].Success, 1);
    EXPECT_EQ(objects[0].Items[1].Success, 0);
    EXPECT_EQ(objects[0].Items[1].Error.Kind, 2U);
    EXPECT_EQ(objects[0].Items[1].Error.Code, 32U);
    float value = 0;
    std::memcpy(&value, objects[1].Items[0].Contents.Buffer, sizeof value);
    EXPECT_FLOAT_EQ(value, 72.3F);
    EXPECT_NE(objects[0].Items[0].Contents.Buffer, objects[1].Items[0].Contents.Buffer);
}

TEST_F(CommandsTest, CutsWhatIsSelectedAtTheEndOfAnObject) {
    AnswerWith("0C 00 00 00 05 1E 29 55 4E 44 42 90 99 9A 4F 29 67 5E 91 02 91 20 5F 1F "
               "0C 00 00 00 06 1E 29 55 4E 44 42 90 99 9A 4F 1F");
    const BACSTAC_READ_CON_INFO info{2, 0, nullptr, 0, nullptr};
    unsigned last = 0;
    for (std::uint32_t size = 0; size < 1024; ++size) {
        const auto buffer = std::make_unique<char[]>(size); // of its own, so that a sanitizer sees any overrun
        BACSTAC_RPC_RESULT result{buffer.get(), size, 7};
        ASSERT_EQ(m_client->ReadPropertyConditional(DeviceAt(1), &info, &result, nullptr), BACSTAC_OK) << size;
        ASSERT_GE(result.Count, last) << size;
        last = result.Count;
        for (unsigned i = 0; i < result.Count; ++i)
            ASSERT_EQ(RpcObjects(result)[i].ItemCount, i == 0 ? 2U : 1U);
    }
    EXPECT_EQ(last, 2U);
}

TEST_F(CommandsTest, SelectsObjectsWithoutTheirProperties) {
    AnswerWith("0C 00 00 00 05 0C 00 00 00 06 1E 1F 0C 00 00 00 07");
    const BACSTAC_READ_CON_INFO info{2, 0, nullptr, 0, nullptr};
    alignas(std::max_align_t) char buffer[256];
    BACSTAC_RPC_RESULT result{buffer, sizeof buffer, 0};
    EXPECT_EQ(m_client->ReadPropertyConditional(DeviceAt(1), &info, &result, nullptr), BACSTAC_OK);
    ASSERT_EQ(result.Count, 3U);
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(RpcObjects(result)[i].ObjectId.Instance, 5 + i);
        EXPECT_EQ(RpcObjects(result)[i].ItemCount, 0U);
    }
    AnswerWith("0C 00 00 00 05 1E 29 55 4E 44 42");
    EXPECT_EQ(m_client->ReadPropertyConditional(DeviceAt(1), &info, &result, nullptr), BACSTAC_STATUS_INVALID_ANSWER);
    EXPECT_EQ(result.Count, 0U);
}

} // namespace
