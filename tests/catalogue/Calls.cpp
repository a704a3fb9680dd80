#include "tests/catalogue/Calls.h"

#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Requests.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace catalogue {

namespace {

constexpr BACSTAC_OBJECT_ID point{OBJ_ANALOG_INPUT, 5};
constexpr BACSTAC_OBJECT_ID file{10, 1};

std::string Text(const BACSTAC_PROPERTY_CONTENTS& contents) {
    if (contents.DataType < 0)
        return "undecoded";
    if (contents.DataType == TYPE_REAL && contents.ElementCount == 1) {
        char text[32];
        std::snprintf(text, sizeof text, "%.1f", *static_cast<const float*>(contents.Buffer));
        return text;
    }
    if (contents.DataType == TYPE_STRING)
        return "\"" + std::string(static_cast<const char*>(contents.Buffer)) + "\"";
    return "type " + std::to_string(contents.DataType) + " x" + std::to_string(contents.ElementCount);
}

std::string Text(const BACSTAC_OBJECT_ID& object) {
    return std::to_string(object.Type) + ":" + std::to_string(object.Instance);
}

class PatientPolls : public CAsyncCallBack {
public:
    void OnWaitStart() override { ++Starts; }
    int OnWaitPoll() override { return 1; }
    void OnWaitEnd() override { ++Ends; }
    int Starts = 0;
    int Ends = 0;
};

class CountedEvents : public CEventInfoService {
public:
    CountedEvents() : CEventInfoService(4) {}
    int Events = 0;

protected:
    void OnEvent(BACSTAC_EVENT_SUMMARY const&) override { ++Events; }
};

} // namespace

Outcome ReadProperty(const Target& target) {
    Outcome outcome;
    CPropertyContents contents;
    outcome.Status = target.Client.ReadProperty(target.Device, point, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, contents,
                                                &outcome.Error);
    outcome.Result = Text(contents);
    return outcome;
}

Outcome ReadPropertyBuffer(const Target& target) {
    Outcome outcome;
    std::array<float, 3> values{-1, -1, -1};
    outcome.Status = target.Client.ReadProperty(target.Device, point, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, &values[1],
                                                sizeof values[1], &outcome.Error);
    const bool overrun = values[0] != -1 || values[2] != -1;
    outcome.Result = overrun ? "overrun" : Text({TYPE_REAL, &values[1], sizeof values[1], 1});
    return outcome;
}

Outcome ReadPropertyAsync(const Target& target) {
    Outcome outcome;
    CPropertyContents contents;
    PatientPolls polls;
    outcome.Status = target.Client.AsyncReadProperty(target.Device, point, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX,
                                                     contents, &outcome.Error, polls);
    outcome.Result = polls.Starts == 1 && polls.Ends == 1 ? Text(contents) : "not one start and end";
    return outcome;
}

Outcome ReadMultiple(const Target& target) {
    CRPMRequest request(2);
    char name[32] = {};
    float value = 0;
    request.Append(PROP_OBJECT_NAME, BACSTAC_NO_INDEX, name, sizeof name);
    request.Append(PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, &value, sizeof value);
    request.Execute(target.Device, target.Address, point);
    Outcome outcome{request.Status, request.Error, {}};
    outcome.Result = std::string(request.GetResult(0)->Success != 0 ? name : "-") + " " +
                     (request.GetResult(1)->Success != 0 ? Text(request.GetResult(1)->Contents) : "-");
    return outcome;
}

Outcome ReadPropertyList(const Target& target) {
    Outcome outcome;
    constexpr unsigned capacity = 40;
    std::vector<CPropertyContents> buffers(capacity, CPropertyContents(512));
    std::vector<BACSTAC_READ_RESULT_ITEM> items;
    items.reserve(capacity);
    for (CPropertyContents& contents : buffers)
        items.push_back({0, 0, 0, contents, {}});
    unsigned count = capacity;
    outcome.Status = target.Client.ReadPropertyList(target.Address, point, items.data(), &count, &outcome.Error);
    for (unsigned i = 0; i < count; ++i)
        outcome.Result += (i != 0 ? " " : "") + std::to_string(items[i].Property) + (items[i].Success != 0 ? "" : "-");
    return outcome;
}

Outcome CountObjects(const Target& target) {
    Outcome outcome;
    unsigned count = 77;
    outcome.Status = target.Client.ReadObjectList(target.Address, nullptr, &count, &outcome.Error);
    outcome.Result = std::to_string(count);
    return outcome;
}

Outcome ListObjects(const Target& target) {
    Outcome outcome;
    BACSTAC_OBJECT_ID objects[10];
    unsigned count = 10;
    outcome.Status = target.Client.ReadObjectList(target.Address, objects, &count, &outcome.Error);
    for (unsigned i = 0; i < count; ++i)
        outcome.Result += (i != 0 ? " " : "") + Text(objects[i]);
    return outcome;
}

Outcome ReadRange(const Target& target) {
    Outcome outcome;
    CPropertyContents contents;
    BACSTAC_READ_RANGE_SPEC spec{};
    spec.Kind = BACSTAC_RANGE_BY_POSITION;
    spec.ByIndex = {1, 10};
    BACSTAC_BIT_STRING flags{};
    unsigned first = 0;
    outcome.Status = target.Client.ReadRange(target.Device, {OBJ_TREND_LOG, 1}, PROP_LOG_BUFFER, BACSTAC_NO_INDEX,
                                             &spec, &flags, &contents, &outcome.Error, &first);
    outcome.Result = std::to_string(contents.ElementCount) + " records from " + std::to_string(first);
    static constexpr const char* names[] = {" first", " last", " more"};
    for (unsigned bit = 0; bit < 3; ++bit)
        if (CBacGeneral::TestBitStringBit(flags, bit))
            outcome.Result += names[bit];
    return outcome;
}

Outcome ReadConditional(const Target& target) {
    Outcome outcome;
    alignas(std::max_align_t) std::array<char, 640> buffer{};
    BACSTAC_READ_CON_INFO info{};
    BACSTAC_RPC_RESULT result{buffer.data(), buffer.size(), 0};
    outcome.Status = target.Client.ReadPropertyConditional(target.Device, &info, &result, &outcome.Error);
    unsigned items = 0;
    for (unsigned i = 0; i < result.Count; ++i)
        items += RpcObjects(result)[i].ItemCount;
    outcome.Result = std::to_string(result.Count) + " objects, " + std::to_string(items) + " items";
    return outcome;
}

Outcome WriteProperty(const Target& target) {
    Outcome outcome;
    float value = 67.0F;
    outcome.Status = target.Client.WriteProperty(target.Device, point, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, 8,
                                                 {TYPE_REAL, &value, sizeof value, 1}, &outcome.Error);
    outcome.Result = "written";
    return outcome;
}

Outcome WriteMultiple(const Target& target) {
    float value = 67.0F;
    BACSTAC_PROPERTY_CONTENTS contents{TYPE_REAL, &value, sizeof value, 1};
    CWPMRequest request(2);
    request.Append(PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, contents, 8);
    request.Append(22, BACSTAC_NO_INDEX, contents, BACSTAC_NO_PRIORITY);
    request.Execute(target.Device, target.Address, point);
    return {request.Status, request.Error, "written"};
}

Outcome CreateObject(const Target& target) {
    Outcome outcome;
    const BACSTAC_OBJECT_SPECIFIER specifier{0, OBJ_ANALOG_INPUT, 0};
    float value = 67.0F;
    const BACSTAC_PROPERTY_VALUE initial{
        PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, {TYPE_REAL, &value, sizeof value, 1}, -1};
    BACSTAC_OBJECT_ID created{99, 99};
    unsigned failed = 77;
    outcome.Status =
        target.Client.CreateObject(target.Device, &specifier, &initial, 1, &created, &outcome.Error, &failed);
    outcome.Result = outcome.Status == BACSTAC_OK ? Text(created) : "element " + std::to_string(failed);
    return outcome;
}

Outcome DeleteObject(const Target& target) {
    Outcome outcome;
    outcome.Status = target.Client.DeleteObject(target.Device, &point, &outcome.Error);
    outcome.Result = "done";
    return outcome;
}

Outcome Communication(const Target& target) {
    Outcome outcome;
    outcome.Status = target.Client.DeviceCommControl(target.Device, 5, BACSTAC_DCC_DISABLE, "secret", &outcome.Error);
    outcome.Result = "done";
    return outcome;
}

Outcome Reinitialize(const Target& target) {
    Outcome outcome;
    outcome.Status = target.Client.ReinitializeDevice(target.Device, BACSTAC_REINIT_WARMSTART, "", &outcome.Error);
    outcome.Result = "done";
    return outcome;
}

Outcome ReadFileStream(const Target& target) {
    Outcome outcome;
    std::array<char, 16> octets{};
    BACSTAC_READ_FILE_SPEC spec{BACSTAC_FILE_STREAM, 0, 16};
    BACSTAC_READ_FILE_RESULT result{};
    result.Stream = {octets.data(), 16, 0};
    outcome.Status = target.Client.ReadFile(target.Device, file, &spec, &result, &outcome.Error);
    outcome.Result = std::to_string(result.Stream.Length) + " octets at " + std::to_string(result.Start) +
                     (result.EndOfFile != 0 ? ", end" : "");
    return outcome;
}

Outcome ReadFileRecords(const Target& target) {
    Outcome outcome;
    std::array<char, 256> work{};
    BACSTAC_READ_FILE_SPEC spec{BACSTAC_FILE_RECORD, 0, 2};
    BACSTAC_READ_FILE_RESULT result{};
    result.Records = {0, work.data(), work.size()};
    outcome.Status = target.Client.ReadFile(target.Device, file, &spec, &result, &outcome.Error);
    outcome.Result = std::to_string(result.Records.Count) + " records at " + std::to_string(result.Start) +
                     (result.EndOfFile != 0 ? ", end" : "");
    return outcome;
}

Outcome WriteFile(const Target& target) {
    Outcome outcome;
    std::array<char, 4> octets{1, 2, 3, 4};
    BACSTAC_WRITE_FILE_SPEC spec{};
    spec.Access = BACSTAC_FILE_STREAM;
    spec.Stream = {octets.data(), 4, 4};
    BACSTAC_WRITE_FILE_RESULT result{};
    outcome.Status = target.Client.WriteFile(target.Device, file, &spec, &result, &outcome.Error);
    outcome.Result = "at " + std::to_string(result.Start);
    return outcome;
}

Outcome AlarmSummary(const Target& target) {
    Outcome outcome;
    std::array<BACSTAC_ALARM_SUMMARY, 4> alarms{};
    unsigned count = 77;
    outcome.Status = target.Client.GetAlarmSummary(target.Device, alarms.data(), 4, &count, &outcome.Error);
    outcome.Result = std::to_string(count) + " alarms";
    return outcome;
}

Outcome EnrollmentSummary(const Target& target) {
    Outcome outcome;
    std::array<BACSTAC_ENROLLMENT_SUMMARY, 4> enrollments{};
    unsigned count = 77;
    outcome.Status =
        target.Client.GetEnrollmentSummary(target.Device, {}, enrollments.data(), 4, &count, &outcome.Error);
    outcome.Result = std::to_string(count) + " enrollments";
    return outcome;
}

Outcome EventInformation(const Target& target) {
    CountedEvents events;
    events.Call(target.Device);
    return {events.Status, events.Error, std::to_string(events.Events) + " events"};
}

Outcome DeviceTime(const Target& target) {
    Outcome outcome;
    BACSTAC_DATE_TIME time{};
    int offset = 0;
    if (!target.Client.ReadDeviceTime(target.Device, time, offset))
        outcome.Status = BACSTAC_STATUS_INVALID_ANSWER;
    outcome.Result =
        std::to_string(time.Time.Hour) + ":" + std::to_string(time.Time.Minute) + " " + std::to_string(offset);
    return outcome;
}

} // namespace catalogue
