// The driver's log. Any thread may call any of these at any time. Text is UTF-8; control characters are escaped in the
// file. Names, paths and texts of devices are arguments, never formats.
#pragma once

#include "api/bacnet/Export.h"

#include <cstdint>
#include <memory>
#include <string>

BCN_API void LogInf(const char* format, ...) BCN_PRINTF(1, 2);
BCN_API void LogErr(const char* format, ...) BCN_PRINTF(1, 2);
BCN_API void LogDebugInfo(const char* format, ...) BCN_PRINTF(1, 2);

// The object behind them. Until a folder is given lines are kept in memory (a bounded number) and written then.
class BCN_API CQilBAC_ErrLog {
public:
    // What is written: trace everything; normal debug lines to the online log only; info no debug lines; low info
    // errors only.
    enum LEVEL : unsigned { LEVEL_TRACE = 0, LEVEL_NORMAL = 1, LEVEL_INFO = 2, LEVEL_LOW_INFO = 3 };
    enum KIND : unsigned { KIND_INFORMATION, KIND_ERROR, KIND_DEBUG };

    // Receives every line that is logged, before level and filter, on the thread that logs.
    class ISink {
    public:
        virtual ~ISink() = default;
        virtual void OnLine(KIND kind, const std::string& text) = 0;
    };

    CQilBAC_ErrLog();
    ~CQilBAC_ErrLog();
    CQilBAC_ErrLog(const CQilBAC_ErrLog&) = delete;
    CQilBAC_ErrLog& operator=(const CQilBAC_ErrLog&) = delete;

    // Opens the files in a folder, UTF-8 path; false when that fails (the reason is in the log of errors on stderr).
    bool Open(const std::string& folder);
    void Close();
    void Write(KIND kind, const std::string& text);
    // null removes the sink; waits until no call into the old one is under way.
    void SetSink(std::shared_ptr<ISink> sink);

    void EnableLog(bool enable);
    void EnableHisLog(bool enable);
    void SetLevel(LEVEL level); // a value out of range is clamped
    // Categories that are written: bit 0 information, bit 1 errors, bit 2 debug lines; the other bits have no lines.
    void SetFilter(unsigned short filter);
    // Limits below 1 count as 1.
    void SetLogSizeLimit(bool limited, int megabytes);
    void SetHisLogSizeLimit(bool limited, int megabytes);
    void SetHisLogSessionLimit(bool limited, int sessions);

    // The process's one log, used by the functions above; lives until the process ends.
    static CQilBAC_ErrLog& Instance();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};
