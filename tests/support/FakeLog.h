// Takes the place of the driver's log: linking this file defines LogInf, LogErr and LogDebugInfo. While a CFakeLog
// lives, its list receives each line as "I: text", "E: text" or "D: text"; otherwise lines are dropped.
#pragma once

#include "tests/support/EventList.h"

#include <functional>
#include <string>

class CFakeLog {
public:
    explicit CFakeLog(CEventList& events);
    ~CFakeLog();
    CFakeLog(const CFakeLog&) = delete;
    CFakeLog& operator=(const CFakeLog&) = delete;

    // Called in front of each event, on its thread and with no lock held. Set while nothing is logged.
    std::function<void(const std::string& event)> m_onEvent;

    // For what takes the place of other parts of the log.
    static void Add(const std::string& event);
};
