#include "module/history/TransferState.h"

#include "api/driver/HistoryObserver.h"
#include "module/console/Guarded.h"

namespace {

constexpr const char* LINE_PREFIX = "History: ";

} // namespace

CTransferState::CTransferState(CDriver& driver, std::string statePath)
    : file(std::move(statePath)), m_driver(driver), m_lastTransferTime(file.LoadLastTransferTime()) {}

SYSTEM_TIME CTransferState::GetLastTransferTime() const {
    const std::lock_guard lock(m_timeMutex);
    return m_lastTransferTime;
}

void CTransferState::SetLastTransferTime(const SYSTEM_TIME& time) {
    const std::lock_guard lock(m_timeMutex);
    m_lastTransferTime = time;
}

void CTransferState::Info(const std::string& text) {
    CBacGeneral::LogInf(LINE_PREFIX + text);
}

void CTransferState::Error(const std::string& text) {
    CBacGeneral::LogErr(LINE_PREFIX + text);
    status.AddError(text);
    Publish();
}

void CTransferState::Publish() {
    const std::lock_guard lock(m_publishMutex);
    if (!m_isObserved)
        return;
    m_isObserved = RunGuarded("History: the driver's observer", [this] { Tell(m_driver.GetHistoryObserver()); });
}

void CTransferState::Tell(IHistoryObserver* observer) {
    if (observer == nullptr)
        return;
    TransferStatus::VALUES values = status.Get();
    HistoryStatus told;
    told.running = running;
    told.total = values.total;
    told.current = values.current;
    told.device = std::move(values.device);
    told.object = std::move(values.object);
    told.errorCount = values.errorCount;
    told.lastError = std::move(values.lastError);
    told.lastTransferTime = FormatTransferTime(GetLastTransferTime());
    observer->OnHistoryStatus(told);
}
