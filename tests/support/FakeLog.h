// Takes the place of the driver's log: linking this file defines LogInf, LogErr and LogDebugInfo. While a CFakeLog
// lives, its list receives each line as "I: text", "E: text" or "D: text"; otherwise lines are dropped.
#pragma once

#include "tests/support/EventList.h"

class CFakeLog {
public:
    explicit CFakeLog(CEventList& events);
    ~CFakeLog();
    CFakeLog(const CFakeLog&) = delete;
    CFakeLog& operator=(const CFakeLog&) = delete;

    // For what takes the place of other parts of the log.
    static void Add(const std::string& event);
};
