// How far a transfer got within the trend in work, for a process that is killed. The state file gets a position when
// its trend is done, which can be thousands of blocks later; until then each block behind the first is noted here, with
// one small write that is not made durable. The next transfer takes the note over into the state file.
//
// The file stands beside the state file. It holds one line, "hash position name", and is removed when it has served. A
// line whose hash does not fit (the machine lost power while it was written) counts as none.
//
// Used on the transfer's thread.
#pragma once

#include "api/bacnet/Types.h"

#include <string>

class CHistoryState;

class CPositionJournal {
public:
    explicit CPositionJournal(const CHistoryState& state);
    CPositionJournal(const CPositionJournal&) = delete;
    CPositionJournal& operator=(const CPositionJournal&) = delete;
    ~CPositionJournal();

    // Saves the position that a transfer before this one left, if it is later than the one in the state file.
    void Recover();
    // The trend's blocks up to this position are stored.
    void Note(const std::string& objectName, const BACSTAC_DATE_TIME& position);
    // The state file has the position.
    void Clear();

private:
    const CHistoryState& m_state;
    const std::string m_path;
    int m_file = -1; // open while a note stands
    std::size_t m_size = 0;
};
