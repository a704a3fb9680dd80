// The console's pages: their labels and the three orders in which the console works through them.
#pragma once

#include <array>
#include <cstddef>

// In the order of the tabs, which is that of their creation. The help context of a page is its number plus 1.
enum CONSOLE_PAGE : int {
    PAGE_GENERAL,
    PAGE_LOG_FILE,
    PAGE_TIME_SYNC,
    PAGE_ALARM_RULES,
    PAGE_EVENT_FILTERS,
    PAGE_BROWSER,
    PAGE_HISTORY,
    PAGE_BACKUP,
    PAGE_REPORTS,
};
inline constexpr std::size_t PAGE_COUNT = 9;
inline constexpr int NO_PAGE = -1;

inline constexpr std::array<const char*, PAGE_COUNT> PAGE_LABELS{"General",     "Log file",      "Time synchronization",
                                                                 "Alarm rules", "Event filters", "Browser",
                                                                 "History",     "Backup",        "Reports"};

// The alarm rules are not among them: their editors apply at once. The reports come last, and may fail.
inline constexpr std::array<CONSOLE_PAGE, 8> PAGES_IN_SAVE_ORDER{PAGE_LOG_FILE,      PAGE_TIME_SYNC, PAGE_BROWSER,
                                                                 PAGE_EVENT_FILTERS, PAGE_HISTORY,   PAGE_GENERAL,
                                                                 PAGE_BACKUP,        PAGE_REPORTS};

inline constexpr std::array<CONSOLE_PAGE, PAGE_COUNT> PAGES_IN_DESTROY_ORDER{
    PAGE_ALARM_RULES,   PAGE_REPORTS,   PAGE_BACKUP,   PAGE_HISTORY, PAGE_BROWSER,
    PAGE_EVENT_FILTERS, PAGE_TIME_SYNC, PAGE_LOG_FILE, PAGE_GENERAL};

// The page behind or before one, around the ends.
constexpr int NextPage(int page) {
    return page + 1 < static_cast<int>(PAGE_COUNT) ? page + 1 : 0;
}
constexpr int PreviousPage(int page) {
    return page > 0 ? page - 1 : static_cast<int>(PAGE_COUNT) - 1;
}
