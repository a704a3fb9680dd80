// AtomicReadFile (ANSI/ASHRAE 135 clause 14.1) and AtomicWriteFile (clause 14.2) in both access forms, both halves.
// Data stay where they are: spans refer to the octets they were decoded from. Any thread; no allocation.
#pragma once

#include "api/bacnet/Services.h"
#include "platform/stack/codec/Reader.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Writer;

struct FileReadRequest {
    BACSTAC_OBJECT_ID File{};
    BACSTAC_READ_FILE_SPEC Spec{};
};

// False, nothing written, for an access form that does not exist.
bool EncodeReadFile(const FileReadRequest& request, Writer& writer);
bool DecodeReadFile(std::span<const std::uint8_t> parameters, FileReadRequest& request);

// Data of a request to write or of an answer to read: octets, or records one behind the other.
struct FileData {
    std::uint32_t Access = BACSTAC_FILE_STREAM;
    std::int32_t Start = 0;
    std::span<const std::uint8_t> Stream;  // stream access
    std::uint32_t RecordCount = 0;         // record access, as claimed
    std::span<const std::uint8_t> Records; // record access: encoded, for NextRecord
};

// The next of the encoded records. False at the end and on a fault.
bool NextRecord(Reader& records, std::span<const std::uint8_t>& record);

void EncodeReadFileAck(bool endOfFile, const FileData& data, Writer& writer);
bool DecodeReadFileAck(std::span<const std::uint8_t> parameters, bool& endOfFile, FileData& data);

// False, nothing written, for an access form that does not exist.
bool EncodeWriteFile(const BACSTAC_OBJECT_ID& file, const BACSTAC_WRITE_FILE_SPEC& spec, Writer& writer);
bool DecodeWriteFile(std::span<const std::uint8_t> parameters, BACSTAC_OBJECT_ID& file, FileData& data);
void EncodeWriteFileAck(std::uint32_t access, std::int32_t start, Writer& writer);
bool DecodeWriteFileAck(std::span<const std::uint8_t> parameters, std::int32_t& start);

} // namespace bacnet
