// The state that lets a history transfer go on where the last one stopped: the position of each trend (the time stamp
// of the last log entry handled) and the end of the last transfer, in a private profile file.
//
//     [HistoryManager]
//     LastTransferTime=01/03/2026 12:05:00.500
//     [Trend position]
//     AHU 1 Temp=01/03/2026 11:45:00.000
//
// The day comes first, whatever the locale. A position's key is the trend's object name and nothing of its device: two
// devices with a trend of the same name share one position. That is the required form of the file.
//
// The transfer's thread uses it, and the console thread once when the manager is made. Nothing is held in memory.
// A file that cannot be read counts as empty.
#pragma once

#include "api/bacnet/BacGeneral.h"
#include "module/history/ProfileFile.h"

#include <string>

// Against the process's current directory.
inline constexpr const char* HISTORY_STATE_PATH = ".//BAC_Hist.ini";

class CHistoryState {
public:
    explicit CHistoryState(std::string path = HISTORY_STATE_PATH);

    const std::string& GetPath() const { return m_file.GetPath(); }

    // All zero: never. The weekday is 0. Of a value that cannot be parsed the fields behind the fault are zero.
    SYSTEM_TIME LoadLastTransferTime() const;
    // Only when the year is not 0. False when the file cannot be written.
    bool SaveLastTransferTime(const SYSTEM_TIME& time) const;

    // 1 January 1900, 00:00:00.00 when there is none. The weekday is 0 (unspecified).
    void LoadTrendPosition(const std::string& objectName, BACSTAC_DATE_TIME& position) const;
    // False when the file cannot be written: the old position stays. A position with year 0 is written as an empty
    // value, so that the next transfer starts anew.
    bool SaveTrendPosition(const std::string& objectName, const BACSTAC_DATE_TIME& position) const;

private:
    const CProfileFile m_file;
};

// The text's numbers as far as they go, the fields behind them zero; 1 January 1900 for an empty text.
BACSTAC_DATE_TIME ParsePosition(const std::string& text);
// "dd/mm/yyyy hh:mm:ss.mmm", empty when the year is 0.
std::string FormatPosition(const BACSTAC_DATE_TIME& position);
std::string FormatTransferTime(const SYSTEM_TIME& time);
