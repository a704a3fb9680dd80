// One misbehaviour of a device, and what the caller must see of it. The tables are in Entries*.cpp.
#pragma once

#include "tests/catalogue/Calls.h"
#include "tests/catalogue/RawPeers.h"

#include <string>
#include <vector>

namespace catalogue {

struct Entry {
    const char* Name;
    Call Ask;
    std::string Text; // the script; see FromText
    BACSTAC_STATUS Status;
    // What the call gave after BACSTAC_OK; the text of the failure otherwise, which local failures need not say again.
    std::string Expected = {};
    // Instead of Text, for what text cannot say.
    Script (*Make)() = nullptr;
};

using Table = std::vector<Entry>;

// The settings of the client that meets the devices.
inline constexpr std::uint32_t TIMEOUT_MS = 400; // of each of two attempts
inline constexpr std::uint32_t SEGMENT_TIMEOUT_MS = 150;
inline constexpr std::uint32_t ANSWER_TIMEOUT_MS = 3000;
inline constexpr std::uint32_t LONGEST_CALL_MS = 10000; // of any call of the catalogue, on a slow machine

Table VirtualLinkEntries();
Table NetworkEntries();
Table ApduEntries();
Table MatchingEntries();
Table FailureEntries();
Table TagEntries();
Table ValueEntries();
Table MultipleEntries();
Table ObjectListEntries();
Table SegmentEntries();
Table RangeEntries();
Table FileEntries();
Table SummaryEntries();
Table CommandEntries();
// Devices behind a router of their own.
Table RoutedEntries();
Table RoutedSegmentEntries();

} // namespace catalogue
