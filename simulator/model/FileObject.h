// A file object (clause 12.13): octets, or records of octets. Not thread-safe: the device that owns the object locks.
#pragma once

#include "simulator/Config.h"
#include "simulator/model/Object.h"

#include <string>
#include <string_view>
#include <vector>

namespace sim {

class FileObject final : public Object {
public:
    FileObject(BACSTAC_OBJECT_ID id, const FileConfig& config);

    bool IsOfRecords() const { return m_ofRecords; }
    std::string_view Octets() const { return m_octets; }                  // of a stream
    const std::vector<std::string>& Records() const { return m_records; } // of the other form
    std::uint32_t Size() const;                                           // in octets, in either form
    bool IsReadOnly() const { return m_readOnly; }

    // The device's own doing, or a client's after all checks: replaces or extends. A gap is filled with zeros. False,
    // and nothing is changed, when the file would become too big.
    bool WriteOctets(std::uint32_t start, std::string_view octets, LocalTime now);
    bool WriteRecords(std::uint32_t start, std::vector<std::string> records, LocalTime now);
    void SetOctets(std::string octets, LocalTime now);

    FileObject* AsFile() override { return this; }

protected:
    std::optional<PropertyError> Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                         bacnet::Writer& to) const override;
    std::span<const BACSTAC_PROPERTY_ID> Computed() const override;
    PropertyError Accept(const WriteCommand& command, LocalTime now) override;

private:
    void Changed(LocalTime now);
    bool Resize(std::uint32_t octets);
    bool ResizeRecords(std::uint32_t count);

    bool m_ofRecords;
    bool m_readOnly;
    std::uint32_t m_maxSize;
    std::string m_octets;
    std::vector<std::string> m_records;
    LocalTime m_modified;
    bool m_archived = false;
};

} // namespace sim
