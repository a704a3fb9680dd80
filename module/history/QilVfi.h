// CQilVFI, one open channel into the historical store on a client's connection. One thread uses a channel. Operations
// return true exactly when the kernel answered 0, and keep its answer in GetLastResult; they neither log nor throw.
#pragma once

#include "api/kernel/QLProgramCore.h"

#include <cstdint>

class CQilClient;

// Modes of Open.
inline constexpr int QIL_VFI_APPEND = 2;

class CQilVFI {
public:
    CQilVFI() = default;
    CQilVFI(const CQilVFI&) = delete;
    CQilVFI& operator=(const CQilVFI&) = delete;
    virtual ~CQilVFI(); // Close()

    // The client stays connected while the channel is open. A channel that is open already is closed first.
    bool Open(CQilClient& client, int mode, int option);
    // Stores the block, all of it or nothing. The kernel takes what it needs before it returns.
    bool Write(std::uint32_t count, const VfiRecord* records);
    bool Flush();
    // True at once when closed; the handle is gone whatever the kernel answers.
    bool Close();

    std::uint32_t GetHandle() const { return m_handle; } // 0 when closed
    QLResult GetLastResult() const { return m_lastResult; }

private:
    IQLProgramCore* m_kernel = nullptr; // of the client of the last Open
    std::uint32_t m_handle = 0;
    QLResult m_lastResult = QL_OK;
};
