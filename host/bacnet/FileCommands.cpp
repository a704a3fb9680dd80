// file get and file put, as the steps that the process with the BACnet port does: what the file is, and one chunk of
// it. The loop over the chunks and the file on this side are the command's own (FileTransfer.h).
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "base/NumberText.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/FileTransfer.h"
#include "host/bacnet/HexText.h"
#include "host/bacnet/ValueJson.h"
#include "platform/stack/client/BacnetClient.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstring>
#include <limits>

using Json = nlohmann::ordered_json;

namespace {

constexpr BACSTAC_PROPERTY_ID FILE_ACCESS_METHOD = 41;
constexpr BACSTAC_PROPERTY_ID FILE_SIZE = 42;
constexpr std::uint32_t ACCESS_IS_RECORD = 0; // BACnetFileAccessMethod
constexpr unsigned LARGEST_APDU = 1476;
constexpr unsigned SMALLEST_APDU = 50;
constexpr unsigned CHUNK_OVERHEAD = 24; // octets of an AtomicWriteFile request besides the data

bool TakeFile(CBacnetCall& call, unsigned& device, BACSTAC_OBJECT_ID& file) {
    std::int64_t instance = 0;
    if (!call.TakeNumber("instance", 0, BACSTAC_MAX_INSTANCE, instance) || !call.TakeDevice(device))
        return false;
    file = {OBJ_FILE, static_cast<std::uint32_t>(instance)};
    return true;
}

// The property that holds how long a file is, in octets or in records.
BACSTAC_PROPERTY_ID LengthProperty(bool isRecords) {
    return isRecords ? PROP_RECORD_COUNT : FILE_SIZE;
}

// otherwise: where the device does not tell.
std::uint32_t ReadNumber(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object,
                         BACSTAC_PROPERTY_ID property, std::uint32_t otherwise) {
    std::uint32_t value = 0;
    const BACSTAC_STATUS status =
        call.Stack().ReadProperty(device, object, property, BACSTAC_NO_INDEX, &value, sizeof value, nullptr);
    return status == BACSTAC_OK ? value : otherwise;
}

ControlReply Describe(CBacnetCall& call) {
    unsigned device = 0;
    BACSTAC_OBJECT_ID file{};
    if (!TakeFile(call, device, file))
        return call.Failure();
    std::uint32_t method = 0;
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status =
        call.Stack().ReadProperty(device, file, FILE_ACCESS_METHOD, BACSTAC_NO_INDEX, &method, sizeof method, &error);
    if (!call.Succeeded(status, error, PointName(device, file)))
        return call.Failure();
    const bool isRecords = method == ACCESS_IS_RECORD;
    const std::uint32_t apdu =
        std::clamp(ReadNumber(call, device, {OBJ_DEVICE, device}, PROP_MAX_APDU_LENGTH_ACCEPTED, SMALLEST_APDU),
                   SMALLEST_APDU, LARGEST_APDU);
    return call.Done({{"device", device},
                      {"records", isRecords},
                      {"size", ReadNumber(call, device, file, LengthProperty(isRecords), 0)},
                      {"chunk", apdu - CHUNK_OVERHEAD}});
}

ControlReply ReadChunk(CBacnetCall& call) {
    unsigned device = 0;
    BACSTAC_OBJECT_ID file{};
    std::int64_t start = 0;
    std::int64_t count = 0;
    if (!TakeFile(call, device, file) ||
        !call.TakeNumber("start", 0, std::numeric_limits<std::int32_t>::max(), start) ||
        !call.TakeNumber("count", 1, FILE_CHUNK_LIMIT, count))
        return call.Failure();
    const bool isRecords = call.Has("records");
    const BACSTAC_READ_FILE_SPEC spec{isRecords ? BACSTAC_FILE_RECORD : BACSTAC_FILE_STREAM,
                                      static_cast<std::int32_t>(start), static_cast<std::uint32_t>(count)};
    std::vector<std::uint8_t> buffer(BACSTAC_CONTENTS_SIZE);
    BACSTAC_READ_FILE_RESULT result{};
    if (isRecords)
        result.Records = {0, buffer.data(), BACSTAC_CONTENTS_SIZE};
    else
        result.Stream = {buffer.data(), BACSTAC_CONTENTS_SIZE, 0};
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status = call.Stack().ReadFile(device, file, &spec, &result, &error);
    if (!call.Succeeded(status, error, PointName(device, file)))
        return call.Failure();
    Json data = Json::array();
    if (!isRecords)
        data.push_back(HexText(result.Stream.Data, result.Stream.Length));
    for (std::uint32_t i = 0; isRecords && i < result.Records.Count; ++i) {
        BACSTAC_BUFFER record{};
        std::memcpy(&record, static_cast<const std::uint8_t*>(result.Records.WorkBuffer) + i * sizeof record,
                    sizeof record);
        data.push_back(HexText(record.Data, record.Length));
    }
    return call.Done({{"data", data}, {"end", result.EndOfFile != 0}});
}

ControlReply WriteChunk(CBacnetCall& call) {
    unsigned device = 0;
    BACSTAC_OBJECT_ID file{};
    std::int64_t start = 0;
    if (!TakeFile(call, device, file) || !call.TakeNumber("start", 0, std::numeric_limits<std::int32_t>::max(), start))
        return call.Failure();
    std::string octets;
    if (!ParseHex(call.Text("data"), octets) || octets.size() > static_cast<std::size_t>(FILE_CHUNK_LIMIT))
        return call.Refuse("the data are no hexadecimal pairs"), call.Failure();
    const auto length = static_cast<std::uint32_t>(octets.size());
    const BACSTAC_BUFFER buffer{octets.data(), length, length};
    BACSTAC_WRITE_FILE_SPEC spec{};
    spec.Start = static_cast<std::int32_t>(start);
    if (call.Has("records")) {
        spec.Access = BACSTAC_FILE_RECORD;
        spec.Records = {1, &buffer};
    } else {
        spec.Access = BACSTAC_FILE_STREAM;
        spec.Stream = buffer;
    }
    BACSTAC_ERROR error{};
    BACSTAC_WRITE_FILE_RESULT result{};
    const BACSTAC_STATUS status = call.Stack().WriteFile(device, file, &spec, &result, &error);
    if (!call.Succeeded(status, error, PointName(device, file)))
        return call.Failure();
    return call.Done({{"start", result.Start}});
}

// Cuts off what a longer file had behind its new end: of octets, or of records.
ControlReply SetSize(CBacnetCall& call) {
    unsigned device = 0;
    BACSTAC_OBJECT_ID file{};
    std::int64_t size = 0;
    if (!TakeFile(call, device, file) || !call.TakeNumber("size", 0, std::numeric_limits<std::uint32_t>::max(), size))
        return call.Failure();
    auto value = static_cast<std::uint32_t>(size);
    const BACSTAC_PROPERTY_CONTENTS contents{TYPE_UNSIGNED, &value, sizeof value, 1};
    const BACSTAC_PROPERTY_ID property = LengthProperty(call.Has("records"));
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status =
        call.Stack().WriteProperty(device, file, property, BACSTAC_NO_INDEX, BACSTAC_NO_PRIORITY, contents, &error);
    if (!call.Succeeded(status, error, PointName(device, file, property, BACSTAC_NO_INDEX)))
        return call.Failure();
    return call.Done(Json::object());
}

constexpr BacnetCommand COMMANDS[] = {
    {"file", "describe", nullptr, {}, nullptr, Describe},
    {"file", "read-chunk", nullptr, {}, nullptr, ReadChunk},
    {"file", "write-chunk", nullptr, {}, nullptr, WriteChunk},
    {"file", "set-size", nullptr, {}, nullptr, SetSize},
};

} // namespace

std::span<const BacnetCommand> FileCommands() {
    return COMMANDS;
}
