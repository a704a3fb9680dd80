// AtomicReadFile and AtomicWriteFile.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/RequestBuffer.h"
#include "platform/stack/services/FileAccess.h"

#include <cstring>

namespace bacnet {

namespace {

BACSTAC_STATUS TakeStream(const FileData& data, bool endOfFile, BACSTAC_BUFFER& stream) {
    // No octets and no end of file would keep a caller asking for ever.
    if (data.Stream.empty() && !endOfFile)
        return BACSTAC_STATUS_INVALID_ANSWER;
    if (data.Stream.size() > stream.Capacity)
        return BACSTAC_STATUS_BUFFER_TOO_SMALL;
    if (!data.Stream.empty())
        std::memcpy(stream.Data, data.Stream.data(), data.Stream.size());
    stream.Length = static_cast<std::uint32_t>(data.Stream.size());
    return BACSTAC_OK;
}

// Descriptors from the start of the work buffer, the records behind all of them.
BACSTAC_STATUS TakeRecords(const FileData& data, bool endOfFile, void* work, std::uint32_t size, std::uint32_t& count) {
    Reader counting(data.Records);
    std::span<const std::uint8_t> record;
    std::uint64_t octets = 0;
    std::uint32_t records = 0;
    for (; NextRecord(counting, record); ++records)
        octets += record.size();
    if (!counting.Ok() || (records == 0 && !endOfFile))
        return BACSTAC_STATUS_INVALID_ANSWER;
    if (std::uint64_t{records} * sizeof(BACSTAC_BUFFER) + octets > size)
        return BACSTAC_STATUS_BUFFER_TOO_SMALL;
    auto* descriptor = static_cast<char*>(work);
    auto* at = descriptor + records * sizeof(BACSTAC_BUFFER);
    Reader reader(data.Records);
    while (NextRecord(reader, record)) {
        const auto length = static_cast<std::uint32_t>(record.size());
        const BACSTAC_BUFFER buffer{at, length, length};
        std::memcpy(descriptor, &buffer, sizeof buffer); // the work buffer may not be aligned
        descriptor += sizeof buffer;
        if (length != 0)
            std::memcpy(at, record.data(), length);
        at += length;
    }
    count = records;
    return BACSTAC_OK;
}

} // namespace

BACSTAC_STATUS BacnetClient::ReadFile(unsigned device, BACSTAC_OBJECT_ID const& object,
                                      BACSTAC_READ_FILE_SPEC const* spec, BACSTAC_READ_FILE_RESULT* result,
                                      BACSTAC_ERROR* error) {
    RequestBuffer request;
    if (spec == nullptr || result == nullptr || !EncodeReadFile({object, *spec}, request.Out))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    Peer peer;
    BACSTAC_STATUS status = FindPeer(device, peer);
    if (status != BACSTAC_OK)
        return status;
    AnswerBuffer answer;
    status = Exchange(peer, ConfirmedService::atomicReadFile, request.Out.Written(), answer, error);
    if (status != BACSTAC_OK)
        return status;
    bool endOfFile = false;
    FileData data;
    if (!DecodeReadFileAck(answer.Octets(), endOfFile, data) || data.Access != spec->Access)
        return BACSTAC_STATUS_INVALID_ANSWER;
    status = data.Access == BACSTAC_FILE_STREAM ? TakeStream(data, endOfFile, result->Stream)
                                                : TakeRecords(data, endOfFile, result->Records.WorkBuffer,
                                                              result->Records.WorkSize, result->Records.Count);
    if (status != BACSTAC_OK)
        return status;
    result->EndOfFile = endOfFile ? 1 : 0;
    result->Start = data.Start;
    return BACSTAC_OK;
}

BACSTAC_STATUS BacnetClient::WriteFile(unsigned device, BACSTAC_OBJECT_ID const& object,
                                       BACSTAC_WRITE_FILE_SPEC const* spec, BACSTAC_WRITE_FILE_RESULT* result,
                                       BACSTAC_ERROR* error) {
    RequestBuffer request;
    if (spec == nullptr || !EncodeWriteFile(object, *spec, request.Out))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    if (request.Out.Overflow())
        return BACSTAC_STATUS_TOO_LONG;
    Peer peer;
    BACSTAC_STATUS status = FindPeer(device, peer);
    if (status != BACSTAC_OK)
        return status;
    AnswerBuffer answer;
    status = Exchange(peer, ConfirmedService::atomicWriteFile, request.Out.Written(), answer, error);
    std::int32_t start = 0;
    if (status == BACSTAC_OK && !DecodeWriteFileAck(answer.Octets(), start))
        return BACSTAC_STATUS_INVALID_ANSWER;
    if (status == BACSTAC_OK && result != nullptr)
        result->Start = start;
    return status;
}

} // namespace bacnet
