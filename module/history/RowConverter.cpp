#include "module/history/RowConverter.h"

#include "api/bacnet/BacGeneral.h"

#include <algorithm>
#include <cstdio>

namespace {

void SetNumber(VfiRecord& record, double value) {
    record.valueType = VFI_NUMBER;
    SetVfiValue(record, value);
}

void SetAnyValue(VfiRecord& record, const BACSTAC_PROPERTY_CONTENTS& value) {
    record.valueType = VFI_TEXT;
    record.text[0] = '\0';
    if (value.DataType >= 0) // what could not be decoded has no text
        CBacGeneral::PrintContents(record.text, sizeof record.text, value, OBJ_NO_TYPE, PROP_NO_PROPERTY,
                                   BACSTAC_NO_INDEX);
}

// False: the value is none to be stored, and the record stays as it was.
bool SetValue(VfiRecord& record, const TrendLogRecord& value, const BACSTAC_PROPERTY_CONTENTS& contents) {
    switch (value.datumType) {
    case BACSTAC_LOG_BOOLEAN:
        SetNumber(record, value.value.Boolean != 0 ? 1.0 : 0.0);
        return true;
    case BACSTAC_LOG_REAL:
        SetNumber(record, value.value.Real);
        return true;
    case BACSTAC_LOG_ENUMERATED:
        SetNumber(record, value.value.Enumerated);
        return true;
    case BACSTAC_LOG_UNSIGNED:
        SetNumber(record, value.value.Unsigned);
        return true;
    case BACSTAC_LOG_SIGNED:
        SetNumber(record, value.value.Signed);
        return true;
    case BACSTAC_LOG_BITSTRING:
        record.valueType = VFI_TEXT;
        CBacGeneral::PrintBitString(record.text, sizeof record.text, value.value.BitString, ENUM_NONE);
        return true;
    case BACSTAC_LOG_NULL:
        record.valueType = VFI_TEXT;
        std::snprintf(record.text, sizeof record.text, "null");
        return true;
    case BACSTAC_LOG_FAILURE:
        record.valueType = VFI_TEXT;
        std::snprintf(record.text, sizeof record.text, "(%d, %d)", static_cast<int>(value.value.Failure.Class),
                      static_cast<int>(value.value.Failure.Code));
        return true;
    case BACSTAC_LOG_ANY:
        SetAnyValue(record, AnyValue(contents, value.value.Any));
        return true;
    default: // a time change among them
        return false;
    }
}

// Devices that do not know the hundredths send 255 for them.
std::uint16_t Milliseconds(const BACSTAC_TIME& time) {
    return time.Hundredths < 100 ? static_cast<std::uint16_t>(time.Hundredths * 10) : std::uint16_t{0};
}

} // namespace

void CRowConverter::Convert(const CTrendRows& rows, const BACSTAC_PROPERTY_CONTENTS& contents,
                            CFixedArray<VfiRecord>& records) {
    for (std::size_t i = 0; i < rows.GetSize(); ++i)
        ConvertRow(rows[i], contents, records);
}

void CRowConverter::ConvertRow(TrendRow row, const BACSTAC_PROPERTY_CONTENTS& contents,
                               CFixedArray<VfiRecord>& records) {
    // One work area for the row: what a value does not set keeps what the value before it left. It begins as a number,
    // so that the status flags of a value that is not stored can be.
    VfiRecord record{};
    record.valueType = VFI_NUMBER;
    const std::size_t count = std::min(m_tags.size(), row.size());
    for (std::size_t i = 0; i < count; ++i) {
        const TrendLogRecord& value = row[i];
        const HistoryTagRecord& tag = m_tags[i];
        const bool stored = SetValue(record, value, contents);
        record.time = m_time.ToSeconds(value.timeStamp);
        record.milliseconds = Milliseconds(value.timeStamp.Time);
        if (stored && tag.tagId != NO_TAG) {
            record.tagId = tag.tagId;
            records.Append(record);
        }
        if (!value.hasStatus)
            continue;
        for (unsigned bit = 0; bit < STATUS_FLAG_COUNT; ++bit) {
            if (tag.statusTagIds[bit] == NO_TAG)
                continue;
            // The value type stays: the flags of a text value are text records with the bit in the number. Deliberate.
            SetVfiValue(record, CBacGeneral::TestBitStringBit(value.statusFlags, bit) ? 1.0 : 0.0);
            record.tagId = tag.statusTagIds[bit];
            records.Append(record);
        }
    }
}
