#include "module/history/QilVfi.h"

#include "module/history/QilClient.h"

CQilVFI::~CQilVFI() {
    Close();
}

bool CQilVFI::Open(CQilClient& client, int mode, int option) {
    Close();
    m_kernel = &client.GetKernel();
    std::uint32_t channel = 0;
    m_lastResult = m_kernel->OpenHistory(client.GetHandle(), 0, mode, 0, option, channel);
    if (m_lastResult == QL_OK)
        m_handle = channel;
    return m_lastResult == QL_OK;
}

bool CQilVFI::Write(std::uint32_t count, const VfiRecord* records) {
    if (m_handle == 0) {
        m_lastResult = QL_NO_CHANNEL;
        return false;
    }
    std::int16_t word = -1;
    m_lastResult = m_kernel->WriteHistory(m_handle, 0, count, records, word);
    return m_lastResult == QL_OK;
}

bool CQilVFI::Flush() {
    if (m_handle == 0) {
        m_lastResult = QL_NO_CHANNEL;
        return false;
    }
    m_lastResult = m_kernel->FlushHistory(m_handle);
    return m_lastResult == QL_OK;
}

bool CQilVFI::Close() {
    if (m_handle == 0)
        return true;
    m_lastResult = m_kernel->CloseHistory(m_handle);
    m_handle = 0;
    return m_lastResult == QL_OK;
}
