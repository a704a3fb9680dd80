#include "platform/historian/HistoryRecords.h"

#include "base/Utf8.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint16_t MAX_MILLISECONDS = 999;

const char* Fault(const VfiRecord& record) {
    if (record.valueType != VFI_NUMBER && record.valueType != VFI_TEXT) {
        return "unknown value type";
    }
    if (record.milliseconds > MAX_MILLISECONDS) {
        return "more than 999 milliseconds";
    }
    if (record.valueType == VFI_TEXT && std::memchr(record.text, 0, sizeof record.text) == nullptr) {
        return "text without an end";
    }
    return nullptr;
}

} // namespace

bool CheckRecords(std::span<const VfiRecord> records, HistoryError& error) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (const char* fault = Fault(records[i])) {
            error.text = "record " + std::to_string(i) + ": " + fault;
            error.recordIndex = i;
            return false;
        }
    }
    return true;
}

std::string_view RecordText(const VfiRecord& record) {
    const char* end = std::find(std::begin(record.text), std::end(record.text), '\0');
    return {record.text, static_cast<std::size_t>(end - record.text)};
}

VfiRecord StoredForm(const VfiRecord& record) {
    VfiRecord stored = record;
    const std::size_t length = record.valueType == VFI_TEXT ? RecordText(record).size() : 0;
    std::memset(stored.text + length, 0, sizeof stored.text - length);
    return stored;
}

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = FirstUtf8(bytes).length;
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

bool RepetitionFilter::Repeats(const VfiRecord& record) {
    if (record.time != m_time || record.milliseconds != m_milliseconds) {
        m_seen.clear();
        m_time = record.time;
        m_milliseconds = record.milliseconds;
    }
    // Type and value stand side by side in the record; -0.0 and the kinds of NaN are told apart, as they are stored.
    const auto* bytes = reinterpret_cast<const char*>(&record) + offsetof(VfiRecord, valueType);
    std::string key(bytes, offsetof(VfiRecord, text) - offsetof(VfiRecord, valueType));
    key += RecordText(record);
    return !m_seen.insert(std::move(key)).second;
}
