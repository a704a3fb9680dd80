#include "platform/stack/services/FileAccess.h"

#include "simulator/model/FileObject.h"
#include "simulator/server/Handlers.h"
#include "simulator/server/Quirks.h"

#include <algorithm>

namespace sim {

namespace {

using bacnet::FileData;

constexpr PropertyError NOT_A_FILE{CLASS_SERVICES, CODE_INCONSISTENT_OBJECT_TYPE};
constexpr PropertyError WRONG_ACCESS{CLASS_SERVICES, CODE_INVALID_FILE_ACCESS_METHOD};
constexpr PropertyError WRONG_START{CLASS_SERVICES, CODE_INVALID_FILE_START_POSITION};
constexpr PropertyError ACCESS_DENIED{CLASS_SERVICES, CODE_FILE_ACCESS_DENIED};
constexpr PropertyError FILE_FULL{CLASS_SERVICES, CODE_FILE_FULL};
constexpr std::int32_t APPEND = -1;

std::span<const std::uint8_t> AsOctets(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string AsText(std::span<const std::uint8_t> octets) {
    return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

// The file, if the request may do what it wants with it.
FileObject* FindFile(const ServiceCall& call, BACSTAC_OBJECT_ID id, std::uint32_t access, PropertyError& error) {
    Object* object = call.Dut.Find(id);
    FileObject* file = object == nullptr ? nullptr : object->AsFile();
    if (object == nullptr)
        error = UNKNOWN_OBJECT;
    else if (file == nullptr)
        error = NOT_A_FILE;
    else if (file->IsOfRecords() != (access == BACSTAC_FILE_RECORD))
        error = WRONG_ACCESS;
    if (error.Ok())
        error = call.Dut.UseFile(id);
    return error.Ok() ? file : nullptr;
}

Outcome AnswerWith(const ServiceCall& call, bool endOfFile, const FileData& data) {
    bacnet::Writer writer = AnswerWriter(call);
    bacnet::EncodeReadFileAck(endOfFile, data, writer);
    return Written(writer, call.Room);
}

Outcome ReadStream(const ServiceCall& call, const FileObject& file, const BACSTAC_READ_FILE_SPEC& spec) {
    const std::string_view all = file.Octets();
    if (spec.Start < 0 || static_cast<std::uint32_t>(spec.Start) > all.size())
        return Outcome::Error(WRONG_START);
    FileData data;
    data.Start = spec.Start;
    data.Stream = AsOctets(all.substr(static_cast<std::size_t>(spec.Start), spec.Count));
    return AnswerWith(call, static_cast<std::size_t>(spec.Start) + data.Stream.size() == all.size(), data);
}

Outcome ReadRecords(const ServiceCall& call, const FileObject& file, const BACSTAC_READ_FILE_SPEC& spec) {
    const auto& all = file.Records();
    if (spec.Start < 0 || static_cast<std::uint32_t>(spec.Start) > all.size())
        return Outcome::Error(WRONG_START);
    const auto begin = static_cast<std::size_t>(spec.Start);
    const std::size_t end = begin + std::min<std::size_t>(spec.Count, all.size() - begin);
    bacnet::Writer records(call.Memory.Items);
    for (std::size_t i = begin; i < end; ++i)
        records.OctetString(AsOctets(all[i]));
    if (records.Overflow())
        return TooLong(call.Room);
    FileData data;
    data.Access = BACSTAC_FILE_RECORD;
    data.Start = spec.Start;
    data.RecordCount = Told(call.Dut, static_cast<std::uint32_t>(end - begin));
    data.Records = records.Written();
    return AnswerWith(call, end == all.size(), data);
}

// False when the records are not as many as they are said to be.
bool TakeRecords(const FileData& data, std::vector<std::string>& records) {
    bacnet::Reader in(data.Records);
    std::span<const std::uint8_t> record;
    while (bacnet::NextRecord(in, record))
        records.push_back(AsText(record));
    return in.Ok() && records.size() == data.RecordCount;
}

} // namespace

Outcome AtomicReadFile(const ServiceCall& call) {
    bacnet::FileReadRequest request;
    if (!bacnet::DecodeReadFile(call.Parameters, request))
        return Malformed(call.Parameters);
    PropertyError error;
    const FileObject* file = FindFile(call, request.File, request.Spec.Access, error);
    if (file == nullptr)
        return Outcome::Error(error);
    if (call.Dut.GetQuirks().EmptyFiles) {
        FileData nothing;
        nothing.Access = request.Spec.Access;
        nothing.Start = request.Spec.Start;
        return AnswerWith(call, false, nothing);
    }
    return file->IsOfRecords() ? ReadRecords(call, *file, request.Spec) : ReadStream(call, *file, request.Spec);
}

Outcome AtomicWriteFile(const ServiceCall& call) {
    BACSTAC_OBJECT_ID id{};
    FileData data;
    std::vector<std::string> records;
    if (!bacnet::DecodeWriteFile(call.Parameters, id, data) ||
        (data.Access == BACSTAC_FILE_RECORD && !TakeRecords(data, records)))
        return Malformed(call.Parameters);
    PropertyError error;
    FileObject* file = FindFile(call, id, data.Access, error);
    if (file == nullptr)
        return Outcome::Error(error);
    if (file->IsReadOnly())
        return Outcome::Error(ACCESS_DENIED);
    if (data.Start < APPEND)
        return Outcome::Error(WRONG_START);
    const std::size_t end = file->IsOfRecords() ? file->Records().size() : file->Octets().size();
    const auto start = data.Start == APPEND ? static_cast<std::uint32_t>(end) : static_cast<std::uint32_t>(data.Start);
    const bool written = file->IsOfRecords() ? file->WriteRecords(start, std::move(records), call.Dut.Now())
                                             : file->WriteOctets(start, AsText(data.Stream), call.Dut.Now());
    if (!written)
        return Outcome::Error(FILE_FULL);
    bacnet::Writer writer = AnswerWriter(call);
    bacnet::EncodeWriteFileAck(data.Access, static_cast<std::int32_t>(start), writer);
    return Written(writer, call.Room);
}

} // namespace sim
