// CBACnetHistoryManager starts history transfers and knows how they stand. One exists, owned by the History tab.
//
// StartTransfer is called on the console thread only; the other operations on any thread. A transfer runs on a thread
// of its own, HistoryManagerTransfer; there is never more than one on a manager. Destroying the manager neither aborts
// a transfer nor waits for it: the transfer runs out on what it shares with the manager.
#pragma once

#include "module/history/HistoryServices.h"
#include "module/history/TransferState.h"

#include <cstdint>
#include <memory>
#include <string>

struct HistorySettings;

class CBACnetHistoryManager {
public:
    // Reads the last transfer time from the state file. settings is not owned; it is read under the module lock at the
    // start of each transfer, and outlives every thread of a transfer like the services.
    CBACnetHistoryManager(const HistorySettings* settings, const HistoryServices& services,
                          std::string statePath = HISTORY_STATE_PATH);
    CBACnetHistoryManager(const CBACnetHistoryManager&) = delete;
    CBACnetHistoryManager& operator=(const CBACnetHistoryManager&) = delete;
    virtual ~CBACnetHistoryManager();

    // Starts a transfer of what is requested, null for all that the settings name. Owns the request in every case.
    // False when a transfer runs already, which counts as one of its errors, and when no thread can be created.
    bool StartTransfer(bool manual, TransferRequest* request);
    // The transfer ends behind the block that it is reading.
    void Abort();
    bool IsRunning() const;

    const TransferStatus& GetStatus() const;
    SYSTEM_TIME GetLastTransferTime() const; // local; all zero: never

private:
    const HistorySettings* const m_settings;
    const HistoryServices m_services;
    const std::shared_ptr<CTransferState> m_state;
};

// Waits until no thread of any transfer is left in the process, for at most so many milliseconds. False: there is one.
// For whoever takes away what transfers work with. Any thread but a transfer's.
bool WaitForTransfers(std::uint32_t milliseconds);
