#include "tests/support/FakeLog.h"

#include "api/bacnet/Log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

std::mutex g_mutex;
CFakeLog* g_log = nullptr;      // g_mutex
CEventList* g_events = nullptr; // g_mutex; its list

void AddLine(const char* kind, const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string line(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(line.data(), line.size(), format, arguments);
    line.pop_back();
    CFakeLog::Add(kind + line);
}

} // namespace

CFakeLog::CFakeLog(CEventList& events) {
    const std::lock_guard lock(g_mutex);
    g_log = this;
    g_events = &events;
}

CFakeLog::~CFakeLog() {
    const std::lock_guard lock(g_mutex);
    g_log = nullptr;
    g_events = nullptr;
}

void CFakeLog::Add(const std::string& event) {
    std::function<void(const std::string&)> hook;
    {
        const std::lock_guard lock(g_mutex);
        if (g_log)
            hook = g_log->m_onEvent;
    }
    if (hook)
        hook(event);
    const std::lock_guard lock(g_mutex);
    if (g_events)
        g_events->Add(event);
}

void LogInf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    AddLine("I: ", format, arguments);
    va_end(arguments);
}

void LogErr(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    AddLine("E: ", format, arguments);
    va_end(arguments);
}

void LogDebugInfo(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    AddLine("D: ", format, arguments);
    va_end(arguments);
}
