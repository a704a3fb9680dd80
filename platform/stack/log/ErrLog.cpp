#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "platform/stack/log/LogFiles.h"
#include "platform/stack/log/LogText.h"

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <deque>
#include <mutex>
#include <utility>

namespace {

using bacnet::log::HistoryFiles;
using bacnet::log::Megabyte;
using bacnet::log::NoLimit;
using bacnet::log::OnlineFile;
using Clock = spdlog::log_clock;

constexpr std::size_t pendingCapacity = 1000; // lines kept before a folder is known
constexpr const char* linePattern = "%Y-%m-%d %H:%M:%S.%e %L [%t] %v";

spdlog::level::level_enum LevelOf(CQilBAC_ErrLog::KIND kind) {
    switch (kind) {
    case CQilBAC_ErrLog::KIND_ERROR:
        return spdlog::level::err;
    case CQilBAC_ErrLog::KIND_DEBUG:
        return spdlog::level::debug;
    default:
        return spdlog::level::info;
    }
}

// The least level that a file takes. The online log takes debug lines one level earlier than the historical one, which
// has to hold many sessions.
spdlog::level::level_enum OnlineThreshold(CQilBAC_ErrLog::LEVEL level) {
    static constexpr spdlog::level::level_enum thresholds[] = {spdlog::level::debug, spdlog::level::debug,
                                                               spdlog::level::info, spdlog::level::err};
    return thresholds[level];
}

spdlog::level::level_enum HistoryThreshold(CQilBAC_ErrLog::LEVEL level) {
    static constexpr spdlog::level::level_enum thresholds[] = {spdlog::level::debug, spdlog::level::info,
                                                               spdlog::level::info, spdlog::level::err};
    return thresholds[level];
}

// Hands formatted lines to one of the files. The log's own lock guards it.
template <class File>
class FileSink : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
public:
    FileSink() { set_pattern(linePattern); }

    File Target;

protected:
    void sink_it_(const spdlog::details::log_msg& message) override {
        if (!Target.IsOpen())
            return;
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        const bool written = Target.Append({line.data(), line.size()});
        if (!written && !m_failing)
            std::fputs("The log cannot be written.\n", stderr);
        m_failing = !written;
    }
    void flush_() override {}

private:
    bool m_failing = false;
};

std::uint64_t LimitOf(bool limited, int amount, std::uint64_t unit) {
    return limited ? static_cast<std::uint64_t>(std::max(amount, 1)) * unit : NoLimit;
}

// Set while this thread is inside a sink: what the sink itself logs does not come back to it.
thread_local bool insideSink = false;

} // namespace

class CQilBAC_ErrLog::Impl {
public:
    Impl()
        : m_online(std::make_shared<FileSink<OnlineFile>>()), m_history(std::make_shared<FileSink<HistoryFiles>>()),
          m_logger("bacnet", {m_online, m_history}) {
        m_logger.set_level(spdlog::level::trace);
        m_logger.set_error_handler([](const std::string&) { std::fputs("The log cannot be written.\n", stderr); });
        m_online->Target.SetLimit(Megabyte);
        m_history->Target.SetLimits(m_historyLimit, m_sessionLimit);
        ApplyLevel(LEVEL_INFO);
    }

    bool Open(const std::string& folder) {
        const std::lock_guard lock(m_lock);
        const std::u8string path(folder.begin(), folder.end());
        m_folder = std::filesystem::path(path);
        m_open = true;
        const bool online = !m_onlineEnabled || m_online->Target.Open(m_folder);
        const bool history = !m_historyEnabled || m_history->Target.Open(m_folder);
        if (!online || !history) {
            CloseFiles();
            std::fprintf(stderr, "The log cannot be opened in %s.\n", folder.c_str());
            return false;
        }
        if (m_dropped != 0)
            m_logger.log(m_pending.front().Time, {}, spdlog::level::err,
                         std::to_string(m_dropped) + " earlier lines were not kept");
        for (const Line& line : m_pending)
            WriteOut(line);
        m_pending.clear();
        m_dropped = 0;
        return true;
    }

    void Close() {
        const std::lock_guard lock(m_lock);
        CloseFiles();
    }

    void Write(KIND kind, const std::string& text) {
        ToSink(kind, text);
        Line line{Clock::now(), kind, bacnet::log::EscapeLine(text)};
        const std::lock_guard lock(m_lock);
        if (m_open) {
            WriteOut(line);
            return;
        }
        if (m_pending.size() == pendingCapacity) {
            m_pending.pop_front();
            ++m_dropped;
        }
        m_pending.push_back(std::move(line));
    }

    void SetSink(std::shared_ptr<ISink> sink) {
        const std::lock_guard lock(m_sinkLock);
        m_sink = std::move(sink);
        m_hasSink.store(m_sink != nullptr);
    }

    void EnableLog(bool enable) {
        const std::lock_guard lock(m_lock);
        m_onlineEnabled = enable;
        Switch(m_online->Target, enable);
    }

    void EnableHisLog(bool enable) {
        const std::lock_guard lock(m_lock);
        m_historyEnabled = enable;
        Switch(m_history->Target, enable);
    }

    void SetLevel(LEVEL level) {
        const std::lock_guard lock(m_lock);
        ApplyLevel(std::min(level, LEVEL_LOW_INFO));
    }

    void SetFilter(unsigned short filter) {
        const std::lock_guard lock(m_lock);
        m_filter = filter;
    }

    void SetLogSizeLimit(bool limited, int megabytes) {
        const std::lock_guard lock(m_lock);
        m_online->Target.SetLimit(LimitOf(limited, megabytes, Megabyte));
    }

    void SetHisLogSizeLimit(bool limited, int megabytes) {
        const std::lock_guard lock(m_lock);
        m_historyLimit = LimitOf(limited, megabytes, Megabyte);
        m_history->Target.SetLimits(m_historyLimit, m_sessionLimit);
    }

    void SetHisLogSessionLimit(bool limited, int sessions) {
        const std::lock_guard lock(m_lock);
        m_sessionLimit = LimitOf(limited, sessions, 1);
        m_history->Target.SetLimits(m_historyLimit, m_sessionLimit);
    }

private:
    struct Line {
        Clock::time_point Time;
        KIND Kind;
        std::string Text; // escaped
    };

    void ToSink(KIND kind, const std::string& text) {
        if (!m_hasSink.load() || insideSink)
            return;
        const std::lock_guard lock(m_sinkLock);
        if (!m_sink)
            return;
        insideSink = true;
        m_sink->OnLine(kind, text);
        insideSink = false;
    }

    // Categories of the filter: bit 0 information, 1 errors, 2 debug lines; the others have no lines yet.
    void WriteOut(const Line& line) {
        if (((m_filter >> line.Kind) & 1U) != 0)
            m_logger.log(line.Time, {}, LevelOf(line.Kind), line.Text);
    }

    template <class File>
    void Switch(File& file, bool enable) {
        if (!enable)
            file.Close();
        else if (m_open && !file.IsOpen() && !file.Open(m_folder))
            std::fputs("The log cannot be opened.\n", stderr);
    }

    void ApplyLevel(LEVEL level) {
        m_online->set_level(OnlineThreshold(level));
        m_history->set_level(HistoryThreshold(level));
    }

    void CloseFiles() {
        m_online->Target.Close();
        m_history->Target.Close();
        m_open = false;
    }

    std::mutex m_lock; // guards all below up to the sink
    std::shared_ptr<FileSink<OnlineFile>> m_online;
    std::shared_ptr<FileSink<HistoryFiles>> m_history;
    spdlog::logger m_logger;
    std::filesystem::path m_folder;
    std::deque<Line> m_pending;
    std::uint64_t m_dropped = 0;
    std::uint64_t m_historyLimit = 10 * Megabyte;
    std::uint64_t m_sessionLimit = NoLimit;
    unsigned m_filter = 0xFFFF;
    bool m_open = false;
    bool m_onlineEnabled = true;
    bool m_historyEnabled = true;

    std::mutex m_sinkLock; // held while the sink is called
    std::shared_ptr<ISink> m_sink;
    std::atomic<bool> m_hasSink{false};
};

CQilBAC_ErrLog::CQilBAC_ErrLog() : m_impl(std::make_unique<Impl>()) {}
CQilBAC_ErrLog::~CQilBAC_ErrLog() = default;

bool CQilBAC_ErrLog::Open(const std::string& folder) {
    return m_impl->Open(folder);
}
void CQilBAC_ErrLog::Close() {
    m_impl->Close();
}
void CQilBAC_ErrLog::Write(KIND kind, const std::string& text) {
    m_impl->Write(kind, text);
}
void CQilBAC_ErrLog::SetSink(std::shared_ptr<ISink> sink) {
    m_impl->SetSink(std::move(sink));
}
void CQilBAC_ErrLog::EnableLog(bool enable) {
    m_impl->EnableLog(enable);
}
void CQilBAC_ErrLog::EnableHisLog(bool enable) {
    m_impl->EnableHisLog(enable);
}
void CQilBAC_ErrLog::SetLevel(LEVEL level) {
    m_impl->SetLevel(level);
}
void CQilBAC_ErrLog::SetFilter(unsigned short filter) {
    m_impl->SetFilter(filter);
}
void CQilBAC_ErrLog::SetLogSizeLimit(bool limited, int megabytes) {
    m_impl->SetLogSizeLimit(limited, megabytes);
}
void CQilBAC_ErrLog::SetHisLogSizeLimit(bool limited, int megabytes) {
    m_impl->SetHisLogSizeLimit(limited, megabytes);
}
void CQilBAC_ErrLog::SetHisLogSessionLimit(bool limited, int sessions) {
    m_impl->SetHisLogSessionLimit(limited, sessions);
}

CQilBAC_ErrLog& CQilBAC_ErrLog::Instance() {
    // Never destroyed: an abandoned worker may still log while the process ends.
    static CQilBAC_ErrLog* const log = new CQilBAC_ErrLog;
    return *log;
}

void LogInf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    CQilBAC_ErrLog::Instance().Write(CQilBAC_ErrLog::KIND_INFORMATION, bacnet::log::FormatLine(format, arguments));
    va_end(arguments);
}

void LogErr(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    CQilBAC_ErrLog::Instance().Write(CQilBAC_ErrLog::KIND_ERROR, bacnet::log::FormatLine(format, arguments));
    va_end(arguments);
}

void LogDebugInfo(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    CQilBAC_ErrLog::Instance().Write(CQilBAC_ErrLog::KIND_DEBUG, bacnet::log::FormatLine(format, arguments));
    va_end(arguments);
}

void CBacGeneral::LogInf(const std::string& text) {
    CQilBAC_ErrLog::Instance().Write(CQilBAC_ErrLog::KIND_INFORMATION, text);
}

void CBacGeneral::LogErr(const std::string& text) {
    CQilBAC_ErrLog::Instance().Write(CQilBAC_ErrLog::KIND_ERROR, text);
}

CQilBAC_ErrLog& CBacGeneral::Log() {
    return CQilBAC_ErrLog::Instance();
}
