#include "platform/stack/services/FileAccess.h"

#include "platform/stack/codec/Writer.h"

namespace bacnet {

namespace {

// Context tags of the two access forms, the same in every message.
constexpr unsigned streamTag = 0;
constexpr unsigned recordTag = 1;

std::span<const std::uint8_t> OctetsOf(const BACSTAC_BUFFER& buffer) {
    return {static_cast<const std::uint8_t*>(buffer.Data), buffer.Length};
}

bool DecodeFileData(Reader& reader, FileData& data) {
    data = {};
    if (reader.IsOpening(streamTag)) {
        reader.Open(streamTag);
        reader.Signed(data.Start);
        reader.OctetString(data.Stream);
        return reader.Close(streamTag);
    }
    std::span<const std::uint8_t> content;
    if (!reader.Enclosed(recordTag, content))
        return false;
    data.Access = BACSTAC_FILE_RECORD;
    Reader records(content);
    if (!records.Signed(data.Start) || !records.Unsigned(data.RecordCount))
        return reader.Fail(DecodeError::unexpected);
    data.Records = records.Rest();
    return true;
}

} // namespace

bool EncodeReadFile(const FileReadRequest& request, Writer& writer) {
    if (request.Spec.Access != BACSTAC_FILE_STREAM && request.Spec.Access != BACSTAC_FILE_RECORD)
        return false;
    const unsigned tag = request.Spec.Access == BACSTAC_FILE_STREAM ? streamTag : recordTag;
    writer.ObjectId(request.File);
    writer.Opening(tag);
    writer.Signed(request.Spec.Start);
    writer.Unsigned(request.Spec.Count);
    writer.Closing(tag);
    return true;
}

bool DecodeReadFile(std::span<const std::uint8_t> parameters, FileReadRequest& request) {
    Reader reader(parameters);
    FileReadRequest decoded;
    reader.ObjectId(decoded.File);
    const bool stream = reader.IsOpening(streamTag);
    const unsigned tag = stream ? streamTag : recordTag;
    decoded.Spec.Access = stream ? BACSTAC_FILE_STREAM : BACSTAC_FILE_RECORD;
    reader.Open(tag);
    reader.Signed(decoded.Spec.Start);
    reader.Unsigned(decoded.Spec.Count);
    reader.Close(tag);
    if (!reader.Ok() || !reader.AtEnd())
        return false;
    request = decoded;
    return true;
}

bool NextRecord(Reader& records, std::span<const std::uint8_t>& record) {
    return !records.AtEnd() && records.OctetString(record);
}

void EncodeReadFileAck(bool endOfFile, const FileData& data, Writer& writer) {
    writer.Boolean(endOfFile);
    const bool stream = data.Access == BACSTAC_FILE_STREAM;
    writer.Opening(stream ? streamTag : recordTag);
    writer.Signed(data.Start);
    if (stream) {
        writer.OctetString(data.Stream);
    } else {
        writer.Unsigned(data.RecordCount);
        writer.Octets(data.Records);
    }
    writer.Closing(stream ? streamTag : recordTag);
}

bool DecodeReadFileAck(std::span<const std::uint8_t> parameters, bool& endOfFile, FileData& data) {
    Reader reader(parameters);
    return reader.Boolean(endOfFile) && DecodeFileData(reader, data) && reader.AtEnd();
}

bool EncodeWriteFile(const BACSTAC_OBJECT_ID& file, const BACSTAC_WRITE_FILE_SPEC& spec, Writer& writer) {
    if (spec.Access != BACSTAC_FILE_STREAM && spec.Access != BACSTAC_FILE_RECORD)
        return false;
    const bool stream = spec.Access == BACSTAC_FILE_STREAM;
    writer.ObjectId(file);
    writer.Opening(stream ? streamTag : recordTag);
    writer.Signed(spec.Start);
    if (stream) {
        writer.OctetString(OctetsOf(spec.Stream));
    } else {
        writer.Unsigned(spec.Records.Count);
        for (std::uint32_t i = 0; i < spec.Records.Count && !writer.Overflow(); ++i)
            writer.OctetString(OctetsOf(spec.Records.Buffers[i]));
    }
    writer.Closing(stream ? streamTag : recordTag);
    return true;
}

bool DecodeWriteFile(std::span<const std::uint8_t> parameters, BACSTAC_OBJECT_ID& file, FileData& data) {
    Reader reader(parameters);
    return reader.ObjectId(file) && DecodeFileData(reader, data) && reader.AtEnd();
}

void EncodeWriteFileAck(std::uint32_t access, std::int32_t start, Writer& writer) {
    writer.Signed(start, static_cast<int>(access == BACSTAC_FILE_STREAM ? streamTag : recordTag));
}

bool DecodeWriteFileAck(std::span<const std::uint8_t> parameters, std::int32_t& start) {
    Reader reader(parameters);
    const unsigned tag = reader.IsContext(streamTag) ? streamTag : recordTag;
    return reader.Signed(start, static_cast<int>(tag)) && reader.AtEnd();
}

} // namespace bacnet
