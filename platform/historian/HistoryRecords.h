// What every implementation of HistoryStore shares: which records may be stored, the form they are stored in, and when
// two records are the same. Pure functions and a value class, for any thread.
#pragma once

#include "api/kernel/HistoryStore.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_set>

// True when every record of the block can be stored. Otherwise error names the first record at fault and why.
bool CheckRecords(std::span<const VfiRecord> records, HistoryError& error);

// The text of a VFI_TEXT record that CheckRecords let pass, without the NUL.
std::string_view RecordText(const VfiRecord& record);

// The record as a store gives it back: a number has no text, and the bytes behind a text's NUL are zero. A text keeps
// its value: the status records of a text value carry their bit there.
VfiRecord StoredForm(const VfiRecord& record);

// True when the bytes are well-formed UTF-8 (RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF).
bool IsUtf8(std::string_view bytes);

// Finds the records of one tag that repeat another one in every field. They must come in ascending (time,
// milliseconds), as a query gives them: only the records of one instant are remembered.
class RepetitionFilter {
public:
    // record must be in its stored form.
    bool Repeats(const VfiRecord& record);

private:
    std::uint32_t m_time = 0;
    std::uint16_t m_milliseconds = 0;
    std::unordered_set<std::string> m_seen; // value type, value bits and text of the records of this instant
};
