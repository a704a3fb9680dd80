// The log's settings as events, "SetLogSizeLimit(1, 5)", in the list of the CFakeLog that lives.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "tests/support/FakeLog.h"

class CQilBAC_ErrLog::Impl {};

CQilBAC_ErrLog::CQilBAC_ErrLog() = default;
CQilBAC_ErrLog::~CQilBAC_ErrLog() = default;

namespace {

void Call(const std::string& text) {
    CFakeLog::Add(text);
}

std::string Limit(const char* name, bool limited, int limit) {
    return std::string(name) + "(" + (limited ? "true" : "false") + ", " + std::to_string(limit) + ")";
}

} // namespace

void CQilBAC_ErrLog::EnableLog(bool enable) {
    Call(enable ? "EnableLog(true)" : "EnableLog(false)");
}
void CQilBAC_ErrLog::EnableHisLog(bool enable) {
    Call(enable ? "EnableHisLog(true)" : "EnableHisLog(false)");
}
void CQilBAC_ErrLog::SetLevel(LEVEL level) {
    Call("SetLevel(" + std::to_string(level) + ")");
}
void CQilBAC_ErrLog::SetFilter(unsigned short filter) {
    Call("SetFilter(" + std::to_string(filter) + ")");
}
void CQilBAC_ErrLog::SetLogSizeLimit(bool limited, int megabytes) {
    Call(Limit("SetLogSizeLimit", limited, megabytes));
}
void CQilBAC_ErrLog::SetHisLogSizeLimit(bool limited, int megabytes) {
    Call(Limit("SetHisLogSizeLimit", limited, megabytes));
}
void CQilBAC_ErrLog::SetHisLogSessionLimit(bool limited, int sessions) {
    Call(Limit("SetHisLogSessionLimit", limited, sessions));
}

CQilBAC_ErrLog& CBacGeneral::Log() {
    static CQilBAC_ErrLog log;
    return log;
}
