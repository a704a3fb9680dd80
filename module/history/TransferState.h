// All that a history transfer shares with the manager that started it. Both own it: a transfer whose manager is gone
// runs out on its own. Any thread may call any operation unless it says otherwise.
#pragma once

#include "api/bacnet/BacGeneral.h"
#include "api/driver/Driver.h"
#include "module/history/HistoryState.h"
#include "module/history/TransferLog.h"
#include "module/history/TransferStatus.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

// What to transfer; null means all that the settings name, an object instance of -1 all objects of the device. Of the
// object only the instance counts, its type is read by nothing but the log.
using TransferRequest = BACSTAC_DEV_OBJ_REF;

class IHistoryObserver;

class CTransferState : public ITransferLog {
public:
    // Reads the last transfer time from the state file.
    CTransferState(CDriver& driver, std::string statePath);

    TransferStatus status;
    const CHistoryState file;
    std::atomic<bool> running{false};
    std::atomic<bool> abort{false};
    // The transfer's while one is running, of the thread that starts one otherwise.
    std::unique_ptr<TransferRequest> request;
    bool manual = false; // stored by a start, read by nothing

    SYSTEM_TIME GetLastTransferTime() const;
    void SetLastTransferTime(const SYSTEM_TIME& time);

    void Info(const std::string& text) override;
    void Error(const std::string& text) override;
    // Tells the driver's observer how things stand, one call at a time.
    void Publish();

private:
    void Tell(IHistoryObserver* observer);

    CDriver& m_driver;
    mutable std::mutex m_timeMutex;
    SYSTEM_TIME m_lastTransferTime; // m_timeMutex
    std::mutex m_publishMutex;      // held over the observer's call
    bool m_isObserved = true;       // m_publishMutex; until the observer throws
};
