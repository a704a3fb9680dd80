// readrange: the records of a log, or a part of any list.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "base/NumberText.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/LogRecordJson.h"
#include "host/bacnet/PointText.h"
#include "host/bacnet/ValueJson.h"
#include "host/bacnet/ValueText.h"
#include "platform/stack/client/BacnetClient.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <vector>

using Json = nlohmann::ordered_json;

namespace {

constexpr std::int64_t MAX_COUNT = 1000000; // that can be asked for
constexpr std::int64_t ONE_REQUEST = 32767; // what the count of a request can say

// What was asked for, and where the next request goes on.
struct Range {
    BACSTAC_OBJECT_ID object{};
    PropertyText property{PROP_LOG_BUFFER, BACSTAC_NO_INDEX};
    std::uint32_t kind = BACSTAC_RANGE_BY_POSITION;
    std::uint32_t reference = 1; // position or sequence number
    BACSTAC_DATE_TIME time{};
    std::int64_t count = std::numeric_limits<std::int64_t>::max(); // still wanted; negative: backwards
};

bool TakeReference(CBacnetCall& call, const char* key, std::uint32_t kind, Range& range) {
    if (!call.Has(key))
        return true;
    const auto number = ParseU32(call.Text(key));
    if (!number)
        return call.Refuse("--" + std::string(key) + " is a number from 0 to 4294967295, not \"" + call.Text(key) +
                           "\"");
    range.kind = kind;
    range.reference = *number;
    return true;
}

bool TakeRange(CBacnetCall& call, Range& range) {
    if (call.Has("position") + call.Has("sequence") + call.Has("time") > 1)
        return call.Refuse("give one of --position, --sequence and --time");
    if (!call.TakeObject(range.object) ||
        (call.Has("property") && !call.TakeProperty(call.Text("property"), range.property)) ||
        !TakeReference(call, "position", BACSTAC_RANGE_BY_POSITION, range) ||
        !TakeReference(call, "sequence", BACSTAC_RANGE_BY_SEQUENCE, range) ||
        !call.TakeNumber("count", -MAX_COUNT, MAX_COUNT, range.count))
        return false;
    if (range.count == 0)
        return call.Refuse("--count is not 0; a negative one goes backwards");
    if (!call.Has("time"))
        return true;
    range.kind = BACSTAC_RANGE_BY_TIME;
    return (ParseDateTime(call.Text("time"), range.time) || ParseDate(call.Text("time"), range.time.Date)) ||
           call.Refuse("\"" + call.Text("time") + "\" is no time: give it as 2026-11-21 or 2026-11-21 14:30:00");
}

bool IsByTime(const Range& range) {
    return range.kind == BACSTAC_RANGE_BY_TIME || range.kind == BACSTAC_RANGE_BY_TIME_2001;
}

BACSTAC_READ_RANGE_SPEC SpecOf(const Range& range) {
    const auto count = static_cast<std::int32_t>(std::clamp(range.count, -ONE_REQUEST, ONE_REQUEST));
    BACSTAC_READ_RANGE_SPEC spec{};
    spec.Kind = range.kind;
    if (IsByTime(range))
        spec.ByTime = {range.time, count};
    else
        spec.ByIndex = {range.reference, count};
    return spec;
}

enum class Next : std::uint8_t {
    End,
    Block,
    Unreachable // there are more records, and no way to ask for them
};

// Behind a block with the time of its outermost record as the new reference; false when that does not get ahead.
bool GoOnByTime(Range& range, const Json& outermost) {
    BACSTAC_DATE_TIME time{};
    if (!ParseDateTime(outermost.value("time", std::string()), time) || Compare(time, range.time) == COMPARE_EQUAL)
        return false;
    range.time = time;
    return true;
}

// Behind a block of records, whose first one has this sequence number (0: the device told none).
Next GoOn(Range& range, const std::vector<Json>& rows, std::uint32_t firstSequence) {
    const bool isForward = range.count > 0;
    const auto received = static_cast<std::uint32_t>(rows.size());
    range.count += isForward ? -std::int64_t{received} : std::int64_t{received};
    if (range.count == 0)
        return Next::End;
    if (received == 0)
        return Next::Unreachable;
    if (range.kind == BACSTAC_RANGE_BY_POSITION) {
        if (!isForward && range.reference <= received)
            return Next::End;
        range.reference = isForward ? range.reference + received : range.reference - received;
        return Next::Block;
    }
    if (firstSequence == 0)
        return IsByTime(range) && GoOnByTime(range, isForward ? rows.back() : rows.front()) ? Next::Block
                                                                                            : Next::Unreachable;
    range.kind = BACSTAC_RANGE_BY_SEQUENCE;
    range.reference = isForward ? firstSequence + received : firstSequence - 1;
    return range.reference != 0 ? Next::Block : Next::End;
}

struct Answer {
    BACSTAC_BIT_STRING flags{};
    BACSTAC_ERROR error{};
    unsigned firstSequence = 0;
};

// Devices before protocol revision 4 know the time in its older form only.
BACSTAC_STATUS Ask(CBacnetCall& call, unsigned device, Range& range, BACSTAC_PROPERTY_CONTENTS& contents,
                   Answer& answer) {
    const BACSTAC_READ_RANGE_SPEC spec = SpecOf(range);
    const auto& [property, index] = range.property;
    answer = {};
    const BACSTAC_STATUS status = call.Stack().ReadRange(device, range.object, property, index, &spec, &answer.flags,
                                                         &contents, &answer.error, &answer.firstSequence);
    if (status < BACSTAC_STATUS_ERROR || range.kind != BACSTAC_RANGE_BY_TIME)
        return status;
    range.kind = BACSTAC_RANGE_BY_TIME_2001;
    return Ask(call, device, range, contents, answer);
}

// The rows of one answer, and where it goes on.
bool ReadBlock(CBacnetCall& call, unsigned device, Range& range, CValueBuffer& buffer, std::vector<Json>& rows,
               Next& next) {
    BACSTAC_PROPERTY_CONTENTS contents = buffer.Contents();
    Answer answer;
    BACSTAC_STATUS status = Ask(call, device, range, contents, answer);
    if (status == BACSTAC_OK && contents.DataType == TYPE_RAW)
        status = BACSTAC_STATUS_INVALID_ANSWER;
    const auto& [property, index] = range.property;
    if (!call.Succeeded(status, answer.error, PointName(device, range.object, property, index)))
        return false;
    const Json records = LogRecords(contents, range.object.Type, property);
    const auto count = static_cast<std::uint32_t>(records.size());
    std::uint32_t number = answer.firstSequence;
    if (range.kind == BACSTAC_RANGE_BY_POSITION)
        number = range.count > 0 ? range.reference : range.reference - std::min(range.reference, count) + 1;
    rows.clear();
    for (const Json& record : records) {
        rows.push_back({{"number", number == 0 ? Json(nullptr) : Json(number++)}});
        rows.back().update(record);
    }
    next = CBacGeneral::TestBitStringBit(answer.flags, BACSTAC_RANGE_MORE_ITEMS)
               ? GoOn(range, rows, answer.firstSequence)
               : Next::End;
    return true;
}

// Backwards from nowhere is from the newest record; its position, or 0 when there is none.
bool TakeNewest(CBacnetCall& call, unsigned device, Range& range) {
    if (range.property.property != PROP_LOG_BUFFER)
        return call.Refuse("a negative --count of a list needs --position");
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status = call.Stack().ReadProperty(device, range.object, PROP_RECORD_COUNT, BACSTAC_NO_INDEX,
                                                            &range.reference, sizeof range.reference, &error);
    return call.Succeeded(status, error, PointName(device, range.object, PROP_RECORD_COUNT, BACSTAC_NO_INDEX));
}

bool Print(CBacnetCall& call, const std::vector<Json>& rows) {
    return std::all_of(rows.begin(), rows.end(), [&](const Json& row) { return call.Row(row); });
}

ControlReply ReadRange(CBacnetCall& call) {
    Range range;
    unsigned device = 0;
    if (!TakeRange(call, range) || !call.TakeDevice(device))
        return call.Failure();
    const bool isForward = range.count > 0;
    const bool hasReference = call.Has("position") || call.Has("sequence") || call.Has("time");
    if (!isForward && !hasReference && !TakeNewest(call, device, range))
        return call.Failure();
    CValueBuffer buffer;
    std::size_t total = 0;
    std::vector<std::vector<Json>> blocks; // backwards the newest come first, but are printed last
    Next next = range.reference == 0 && !hasReference ? Next::End : Next::Block;
    while (next == Next::Block) {
        std::vector<Json> rows;
        if (!ReadBlock(call, device, range, buffer, rows, next) || (isForward && !Print(call, rows)))
            return call.Failure();
        total += rows.size();
        if (!isForward)
            blocks.push_back(std::move(rows));
    }
    for (; !blocks.empty(); blocks.pop_back()) {
        if (!Print(call, blocks.back()))
            return call.Failure();
    }
    const ControlReply reply = call.Done({{"count", total}});
    if (next == Next::Unreachable)
        return {EXIT_PARTLY, "the device has more records, but gives no way to go on to them", reply.result};
    return reply;
}

std::string RecordLine(const Json& row) {
    std::string line = fmt::format("{:>10}  ", MemberText(row, "number"));
    if (row.contains("time"))
        line += fmt::format("{}  {:<11} ", MemberText(row, "time"), MemberText(row, "kind"));
    line += MemberText(row, "value");
    const std::string status = MemberText(row, "status");
    return status == "-" || status == "{}" ? line : line + "  " + status;
}

constexpr CommandOption RANGE_OPTIONS[] = {
    DEVICE_ARGUMENT,
    OBJECT_ARGUMENT,
    {"PROPERTY", "property", "Another list than log-buffer"},
    {"--position", "position", "From this place in the buffer on; 1 is the oldest record (1)"},
    {"--sequence", "sequence", "From this sequence number on"},
    {"--time", "time", "From behind this time on: 2026-11-21 or \"2026-11-21 14:30:00\", the device's local time"},
    {"--count", "count",
     "So many records (all); a negative number goes backwards from the reference, or from the newest record"},
};

constexpr const char* RANGE_COLUMNS[] = {"number", "time", "kind", "value", "status"};

constexpr BacnetCommand COMMANDS[] = {
    {nullptr, "readrange", "Reads the records of a log, or a part of a list", RANGE_OPTIONS, "records", ReadRange,
     RecordLine, nullptr, RANGE_COLUMNS},
};

} // namespace

std::span<const BacnetCommand> RangeCommands() {
    return COMMANDS;
}
