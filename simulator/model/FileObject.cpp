#include "simulator/model/FileObject.h"

#include "platform/stack/codec/Reader.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace sim {

namespace {

constexpr std::uint32_t RECORD_ACCESS = 0;
constexpr std::uint32_t STREAM_ACCESS = 1;
constexpr std::uint32_t MAX_RECORDS = 1'000'000;

// The number of records stands last, since a stream does not have it.
constexpr BACSTAC_PROPERTY_ID COMPUTED[] = {PROP_FILE_SIZE, PROP_MODIFICATION_DATE,  PROP_ARCHIVE,
                                            PROP_READ_ONLY, PROP_FILE_ACCESS_METHOD, PROP_RECORD_COUNT};

std::uint64_t OctetsIn(const std::vector<std::string>& records) {
    return std::accumulate(records.begin(), records.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const std::string& record) { return sum + record.size(); });
}

} // namespace

FileObject::FileObject(BACSTAC_OBJECT_ID id, const FileConfig& config)
    : Object(id), m_ofRecords(config.OfRecords), m_readOnly(config.ReadOnly), m_maxSize(config.MaxSize),
      m_octets(config.Octets), m_records(config.Records), m_modified(config.Modified) {}

std::uint32_t FileObject::Size() const {
    return static_cast<std::uint32_t>(m_ofRecords ? OctetsIn(m_records) : m_octets.size());
}

void FileObject::Changed(LocalTime now) {
    m_modified = now;
    m_archived = false;
}

bool FileObject::WriteOctets(std::uint32_t start, std::string_view octets, LocalTime now) {
    const std::uint64_t end = std::uint64_t{start} + octets.size();
    if (end > m_maxSize)
        return false;
    if (end > m_octets.size())
        m_octets.resize(end);
    m_octets.replace(start, octets.size(), octets);
    Changed(now);
    return true;
}

bool FileObject::WriteRecords(std::uint32_t start, std::vector<std::string> records, LocalTime now) {
    const std::uint64_t end = std::uint64_t{start} + records.size();
    std::uint64_t size = OctetsIn(m_records) + OctetsIn(records);
    for (std::uint64_t i = start; i < std::min<std::uint64_t>(end, m_records.size()); ++i)
        size -= m_records[i].size();
    if (end > MAX_RECORDS || size > m_maxSize)
        return false;
    if (end > m_records.size())
        m_records.resize(end);
    std::move(records.begin(), records.end(), m_records.begin() + start);
    Changed(now);
    return true;
}

void FileObject::SetOctets(std::string octets, LocalTime now) {
    m_octets = std::move(octets);
    Changed(now);
}

bool FileObject::Resize(std::uint32_t octets) {
    if (octets > m_maxSize || (m_ofRecords && octets != 0))
        return false;
    if (m_ofRecords)
        m_records.clear();
    else
        m_octets.resize(octets);
    return true;
}

bool FileObject::ResizeRecords(std::uint32_t count) {
    if (count > MAX_RECORDS)
        return false;
    m_records.resize(count);
    return true;
}

std::optional<PropertyError> FileObject::Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                                 bacnet::Writer& to) const {
    const auto computed = Computed();
    if (std::find(computed.begin(), computed.end(), property) == computed.end())
        return std::nullopt;
    if (index != WHOLE)
        return NOT_AN_ARRAY;
    switch (property) {
    case PROP_FILE_SIZE:
        to.Unsigned(Size());
        break;
    case PROP_RECORD_COUNT:
        to.Unsigned(m_records.size());
        break;
    case PROP_MODIFICATION_DATE: {
        const BACSTAC_DATE_TIME time = ToDateTime(m_modified);
        to.Date(time.Date);
        to.Time(time.Time);
        break;
    }
    case PROP_ARCHIVE:
        to.Boolean(m_archived);
        break;
    case PROP_READ_ONLY:
        to.Boolean(m_readOnly);
        break;
    default:
        to.Enumerated(m_ofRecords ? RECORD_ACCESS : STREAM_ACCESS);
        break;
    }
    return PropertyError{};
}

std::span<const BACSTAC_PROPERTY_ID> FileObject::Computed() const {
    return std::span(COMPUTED).first(std::size(COMPUTED) - (m_ofRecords ? 0 : 1));
}

// Size and number of records cut the file or extend it; the size of a file of records can only become 0.
PropertyError FileObject::Accept(const WriteCommand& command, LocalTime now) {
    if (command.Index != WHOLE)
        return NOT_AN_ARRAY;
    bacnet::Reader in(command.Value);
    if (command.Property == PROP_ARCHIVE)
        return in.Boolean(m_archived) && in.AtEnd() ? PropertyError{} : INVALID_DATA_TYPE;
    if (command.Property != PROP_FILE_SIZE && command.Property != PROP_RECORD_COUNT)
        return WRITE_ACCESS_DENIED;
    if (m_readOnly)
        return WRITE_ACCESS_DENIED;
    std::uint32_t number = 0;
    if (!in.Unsigned(number) || !in.AtEnd())
        return INVALID_DATA_TYPE;
    if (!(command.Property == PROP_FILE_SIZE ? Resize(number) : ResizeRecords(number)))
        return VALUE_OUT_OF_RANGE;
    Changed(now);
    return {};
}

} // namespace sim
