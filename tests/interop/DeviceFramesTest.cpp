// Every service of the client against a simulated device, recorded and decoded: no frame of either side may have a mark
// of malformation, and each request gets the kind of answer that the client reports.
#include "api/bacnet/Enums.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/Museum.h"
#include "tests/interop/RecordedSite.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

namespace interop {
namespace {

using Lines = std::vector<std::string>;

constexpr BACSTAC_OBJECT_ID OUTPUT{OBJ_ANALOG_OUTPUT, 500};
constexpr BACSTAC_OBJECT_ID STREAM_FILE{OBJ_FILE, 1};
constexpr BACSTAC_OBJECT_ID RECORD_FILE{OBJ_FILE, 2};
constexpr BACSTAC_OBJECT_ID NEW_OBJECT{OBJ_ANALOG_VALUE, 900};
constexpr const char* PASSWORD = "filister";
// Types of answers, as the numbers of the standard.
constexpr const char* SIMPLE_ACK = "2";
constexpr const char* COMPLEX_ACK = "3";
constexpr const char* ERROR = "5";

class DeviceFrames : public RecordedSite {
protected:
    void Describe(sim::SimulatorConfig& site) override {
        sim::DeviceConfig& device = site.Devices[0];
        device.Password = PASSWORD;
        device.RestartMs = 1;
        device.EventsPerAnswer = 1;
        sim::ObjectConfig output;
        output.Id = OUTPUT;
        output.Description = "old";
        device.Objects.push_back(output);
        sim::ObjectConfig file;
        file.Id = STREAM_FILE;
        file.File.emplace();
        file.File->Octets = std::string(3000, 'x');
        device.Objects.push_back(file);
        file.Id = RECORD_FILE;
        file.File->OfRecords = true;
        file.File->Records = {"first", "", "the third record"};
        device.Objects.push_back(file);
        for (std::uint32_t instance = 1; instance <= 3; ++instance) {
            sim::ObjectConfig alarm;
            alarm.Id = {OBJ_ANALOG_INPUT, 600 + instance};
            alarm.IntrinsicReporting = true;
            alarm.Event.emplace();
            alarm.Event->State = instance;
            device.Objects.push_back(alarm);
        }
        sim::DeviceConfig& weak = site.Devices[1];
        weak.Segmentation = bacnet::Segmentation::both;
        sim::ObjectConfig texts;
        texts.Id = NEW_OBJECT;
        texts.Description = "old";
        weak.Objects.push_back(texts);
    }

    // "15 2": the service of each confirmed request, and the type of its (last) answer.
    Lines Exchanges() {
        Lines exchanges;
        for (const Frame& request : Requests(ANY_SERVICE)) {
            const std::vector<Frame> answers = Answers(request);
            exchanges.push_back(request.First("bacapp.confirmed_service") + " " +
                                (answers.empty() ? "none" : answers.back().First("bacapp.type")));
        }
        return exchanges;
    }
    static std::string Exchange(int service, const char* answer) { return std::to_string(service) + " " + answer; }

    BACSTAC_STATUS Write(const BACSTAC_OBJECT_ID& object, BACSTAC_PROPERTY_ID property, float value, int priority) {
        const BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
        return Client().WriteProperty(IP_DEVICE, object, property, BACSTAC_NO_INDEX, priority, contents, &m_error);
    }
    static BACSTAC_PROPERTY_VALUE Text(BACSTAC_PROPERTY_ID property, std::string& text) {
        return {property,
                BACSTAC_NO_INDEX,
                {TYPE_STRING, text.data(), static_cast<std::uint32_t>(text.size() + 1), 1},
                BACSTAC_NO_PRIORITY};
    }

    BACSTAC_ERROR m_error{};
};

TEST_F(DeviceFrames, WritingOneAndMany) {
    EXPECT_EQ(Write(OUTPUT, PROP_PRESENT_VALUE, 21.5F, 8), BACSTAC_OK);
    EXPECT_EQ(Client().WritePropertyNull(IP_DEVICE, OUTPUT, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, 8, &m_error),
              BACSTAC_OK);
    EXPECT_EQ(Write(OUTPUT, PROP_STATUS_FLAGS, 1, BACSTAC_NO_PRIORITY), BACSTAC_STATUS_ERROR);
    std::string description = "Zürich";
    std::string name = "Valve";
    std::array values{Text(PROP_DESCRIPTION, description), Text(PROP_OBJECT_NAME, name)};
    EXPECT_EQ(
        Client().WritePropertyMultiple(IP_DEVICE, Client().GetDevAddr(IP_DEVICE), OUTPUT, values.data(), 2, &m_error),
        BACSTAC_OK);
    values[1].Property = PROP_OBJECT_TYPE;
    EXPECT_EQ(
        Client().WritePropertyMultiple(IP_DEVICE, Client().GetDevAddr(IP_DEVICE), OUTPUT, values.data(), 2, &m_error),
        BACSTAC_STATUS_ERROR);
    EXPECT_EQ(Exchanges(), (Lines{Exchange(15, SIMPLE_ACK), Exchange(15, SIMPLE_ACK), Exchange(15, ERROR),
                                  Exchange(16, SIMPLE_ACK), Exchange(16, ERROR)}));
}

TEST_F(DeviceFrames, ObjectsComeAndGo) {
    std::string name = "New";
    BACSTAC_PROPERTY_VALUE value = Text(PROP_OBJECT_NAME, name);
    const BACSTAC_OBJECT_SPECIFIER byIdentifier{1, NEW_OBJECT.Type, NEW_OBJECT.Instance};
    const BACSTAC_OBJECT_SPECIFIER byType{0, NEW_OBJECT.Type, 0};
    BACSTAC_OBJECT_ID made{};
    unsigned failed = 0;
    EXPECT_EQ(Client().CreateObject(IP_DEVICE, &byIdentifier, &value, 1, &made, &m_error, &failed), BACSTAC_OK);
    EXPECT_EQ(made, NEW_OBJECT);
    EXPECT_EQ(Client().CreateObject(IP_DEVICE, &byIdentifier, nullptr, 0, &made, &m_error, &failed),
              BACSTAC_STATUS_ERROR);
    value.Property = PROP_OBJECT_TYPE;
    EXPECT_EQ(Client().CreateObject(IP_DEVICE, &byType, &value, 1, &made, &m_error, &failed), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(failed, 1U);
    EXPECT_EQ(Client().CreateObject(IP_DEVICE, &byType, nullptr, 0, &made, &m_error, &failed), BACSTAC_OK);
    EXPECT_EQ(Client().DeleteObject(IP_DEVICE, &made, &m_error), BACSTAC_OK);
    EXPECT_EQ(Client().DeleteObject(IP_DEVICE, &made, &m_error), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(Exchanges(), (Lines{Exchange(10, COMPLEX_ACK), Exchange(10, ERROR), Exchange(10, ERROR),
                                  Exchange(10, COMPLEX_ACK), Exchange(11, SIMPLE_ACK), Exchange(11, ERROR)}));
}

TEST_F(DeviceFrames, FilesOfBothForms) {
    std::vector<std::uint8_t> octets(8192);
    BACSTAC_READ_FILE_RESULT result{};
    result.Stream = {octets.data(), 2000, 0};
    BACSTAC_READ_FILE_SPEC stream{BACSTAC_FILE_STREAM, 0, 1000};
    EXPECT_EQ(Client().ReadFile(IP_DEVICE, STREAM_FILE, &stream, &result, &m_error), BACSTAC_OK);
    EXPECT_EQ(result.Stream.Length, 1000U);
    result = {};
    result.Records.WorkBuffer = octets.data();
    result.Records.WorkSize = 8192;
    const BACSTAC_READ_FILE_SPEC records{BACSTAC_FILE_RECORD, 0, 3};
    EXPECT_EQ(Client().ReadFile(IP_DEVICE, RECORD_FILE, &records, &result, &m_error), BACSTAC_OK);
    EXPECT_EQ(result.Records.Count, 3U);
    EXPECT_EQ(Client().ReadFile(IP_DEVICE, STREAM_FILE, &records, &result, &m_error), BACSTAC_STATUS_ERROR);

    std::string data = "0123456789";
    BACSTAC_WRITE_FILE_SPEC write{};
    write.Access = BACSTAC_FILE_STREAM;
    write.Start = -1;
    write.Stream = {data.data(), 10, 10};
    BACSTAC_WRITE_FILE_RESULT written{};
    EXPECT_EQ(Client().WriteFile(IP_DEVICE, STREAM_FILE, &write, &written, &m_error), BACSTAC_OK);
    EXPECT_EQ(written.Start, 3000);
    const BACSTAC_BUFFER lines[] = {{data.data(), 4, 4}, {data.data() + 4, 6, 6}};
    write = {};
    write.Access = BACSTAC_FILE_RECORD;
    write.Start = 1;
    write.Records.Count = 2;
    write.Records.Buffers = lines;
    EXPECT_EQ(Client().WriteFile(IP_DEVICE, RECORD_FILE, &write, &written, &m_error), BACSTAC_OK);
    EXPECT_EQ(written.Start, 1);
    EXPECT_EQ(Exchanges(), (Lines{Exchange(6, COMPLEX_ACK), Exchange(6, COMPLEX_ACK), Exchange(6, ERROR),
                                  Exchange(7, COMPLEX_ACK), Exchange(7, COMPLEX_ACK)}));
}

TEST_F(DeviceFrames, AlarmsAndEvents) {
    BACSTAC_ALARM_SUMMARY alarms[10] = {};
    unsigned count = 0;
    EXPECT_EQ(Client().GetAlarmSummary(IP_DEVICE, alarms, 10, &count, &m_error), BACSTAC_OK);
    EXPECT_EQ(count, 3U);
    BACSTAC_ENROLLMENT_SUMMARY enrollments[10] = {};
    BACSTAC_ENROLLMENT_FILTER filter{};
    EXPECT_EQ(Client().GetEnrollmentSummary(IP_DEVICE, filter, enrollments, 10, &count, &m_error), BACSTAC_OK);
    EXPECT_GE(count, 3U);
    filter.Mask = BACSTAC_FILTER_EVENT_STATE | BACSTAC_FILTER_PRIORITY | BACSTAC_FILTER_EVENT_TYPE |
                  BACSTAC_FILTER_NOTIFICATION_CLASS;
    filter.EventState = 1;
    filter.EventType = 5;
    filter.MaxPriority = 255;
    filter.NotificationClass = 1;
    EXPECT_EQ(Client().GetEnrollmentSummary(IP_DEVICE, filter, enrollments, 10, &count, &m_error), BACSTAC_OK);
    BACSTAC_EVENT_SUMMARY events[10] = {};
    bool more = false;
    EXPECT_EQ(Client().GetEventInformation(IP_DEVICE, nullptr, events, 10, &count, &more, &m_error), BACSTAC_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_TRUE(more);
    EXPECT_EQ(Client().GetEventInformation(IP_DEVICE, &events[0].ObjectId, events, 10, &count, &more, &m_error),
              BACSTAC_OK);
    EXPECT_EQ(Exchanges(), (Lines{Exchange(3, COMPLEX_ACK), Exchange(4, COMPLEX_ACK), Exchange(4, COMPLEX_ACK),
                                  Exchange(29, COMPLEX_ACK), Exchange(29, COMPLEX_ACK)}));
}

TEST_F(DeviceFrames, ManagementOfADevice) {
    EXPECT_EQ(Client().DeviceCommControl(IP_DEVICE, 5, BACSTAC_DCC_DISABLE_INITIATION, PASSWORD, &m_error), BACSTAC_OK);
    EXPECT_EQ(Client().DeviceCommControl(IP_DEVICE, 0, BACSTAC_DCC_ENABLE, PASSWORD, &m_error), BACSTAC_OK);
    EXPECT_EQ(Client().DeviceCommControl(IP_DEVICE, 0, BACSTAC_DCC_ENABLE, "wrong", &m_error), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(Client().ReinitializeDevice(IP_DEVICE, BACSTAC_REINIT_WARMSTART, "", &m_error), BACSTAC_STATUS_ERROR);
    const unsigned device = IP_DEVICE;
    const BACSTAC_DATE_TIME time{{2026, 0, 11, 21, 6}, {14, 30, 5, 99}};
    EXPECT_EQ(Client().SynchronizeTime(false, time, &device, 1), BACSTAC_OK);
    EXPECT_EQ(Client().SynchronizeTime(true, time, &device, 1), BACSTAC_OK);
    EXPECT_EQ(Client().ReinitializeDevice(IP_DEVICE, BACSTAC_REINIT_WARMSTART, PASSWORD, &m_error), BACSTAC_OK);
    EXPECT_EQ(Exchanges(), (Lines{Exchange(17, SIMPLE_ACK), Exchange(17, SIMPLE_ACK), Exchange(17, ERROR),
                                  Exchange(20, ERROR), Exchange(20, SIMPLE_ACK)}));
    Lines unconfirmed;
    for (const Frame& frame : Frames())
        if (frame.First("bacapp.unconfirmed_service") == "6" || frame.First("bacapp.unconfirmed_service") == "9")
            unconfirmed.push_back(frame.First("bacapp.unconfirmed_service"));
    EXPECT_EQ(unconfirmed, (Lines{"6", "9"}));
}

TEST_F(DeviceFrames, EverythingAnObjectHas) {
    for (const BACSTAC_OBJECT_ID& object :
         {OUTPUT, STREAM_FILE, BACSTAC_OBJECT_ID{OBJ_DEVICE, IP_DEVICE}, BACSTAC_OBJECT_ID{OBJ_ANALOG_INPUT, 601}}) {
        std::vector<std::vector<std::uint8_t>> buffers(100, std::vector<std::uint8_t>(4096));
        std::vector<BACSTAC_READ_RESULT_ITEM> items(buffers.size());
        for (std::size_t i = 0; i < items.size(); ++i)
            items[i].Contents = {-1, buffers[i].data(), 4096, 0};
        auto count = static_cast<unsigned>(items.size());
        EXPECT_EQ(Client().ReadPropertyList(Client().GetDevAddr(IP_DEVICE), object, items.data(), &count, &m_error),
                  BACSTAC_OK);
        EXPECT_GT(count, 5U);
    }
    EXPECT_EQ(Exchanges(), Lines(4, Exchange(14, COMPLEX_ACK)));
}

// One object of every type of the standard, with values of every type that their properties have.
class MuseumFrames : public RecordedSite {
protected:
    static constexpr unsigned MUSEUM = 1002; // takes the place of the device that the other tests use
    void Describe(sim::SimulatorConfig& site) override {
        sim::DeviceConfig museum = sim::MuseumDevice(MUSEUM);
        museum.Ip = site.Devices[2].Ip;
        site.Devices[2] = std::move(museum);
    }
    // What the decoder does not read, or the museum does not say, as the standard has it.
    bool IsExempt(const Frame& frame) const override {
        static const std::set<std::string> EMPTY{"55", "258", "414", "481", "486", "488"};
        const std::string type = frame.First("bacapp.objectType");
        const std::string property = frame.First("bacapp.property_identifier");
        // Lists of constructed elements without any: the decoder wants to see the first one.
        if (EMPTY.count(property) != 0)
            return true;
        return false;
    }
};

TEST_F(MuseumFrames, EveryPropertyOfEveryType) {
    BACSTAC_ERROR error{};
    std::vector<BACSTAC_OBJECT_ID> objects(200);
    auto count = static_cast<unsigned>(objects.size());
    ASSERT_EQ(Client().ReadObjectList(Client().GetDevAddr(MUSEUM), objects.data(), &count, &error), BACSTAC_OK);
    objects.resize(count);
    EXPECT_GE(count, 63U);
    std::vector<std::uint8_t> buffer(BACSTAC_CONTENTS_SIZE);
    std::size_t read = 0;
    for (const BACSTAC_OBJECT_ID& object : objects)
        for (const BACSTAC_PROPERTY_ID property : bacnet::ObjectPropertyIds(object.Type)) {
            BACSTAC_PROPERTY_CONTENTS contents{-1, buffer.data(), BACSTAC_CONTENTS_SIZE, 0};
            read += Client().ReadProperty(MUSEUM, object, property, BACSTAC_NO_INDEX, contents, &error) == BACSTAC_OK;
        }
    EXPECT_GE(read, 2000U);
    EXPECT_GT(Frames().size(), 2 * read);
}

TEST_F(DeviceFrames, RequestsInSegments) {
    std::string text(600, 'x'); // the device takes APDUs of 206 octets
    std::array values{Text(PROP_DESCRIPTION, text)};
    EXPECT_EQ(Client().WritePropertyMultiple(WEAK_DEVICE, Client().GetDevAddr(WEAK_DEVICE), NEW_OBJECT, values.data(),
                                             1, &m_error),
              BACSTAC_OK);
    const auto segments = std::ranges::count_if(
        Requests(16), [](const Frame& frame) { return frame.First("bacapp.segmented_request") == "1"; });
    EXPECT_GE(segments, 4);
}

} // namespace
} // namespace interop
