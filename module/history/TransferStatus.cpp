#include "module/history/TransferStatus.h"

std::uint32_t TransferStatus::VALUES::GetPercent() const {
    return total == 0 ? 0 : static_cast<std::uint32_t>(std::uint64_t{current} * 100 / total);
}

void TransferStatus::Reset() {
    const std::lock_guard lock(m_mutex);
    m_values = {};
}

void TransferStatus::SetTotal(std::uint32_t total) {
    const std::lock_guard lock(m_mutex);
    m_values.total = total;
}

void TransferStatus::BeginObject(const std::string& device, const std::string& object) {
    const std::lock_guard lock(m_mutex);
    m_values.device = device;
    m_values.object = object;
    ++m_values.current;
}

void TransferStatus::AddError(const std::string& text) {
    const std::lock_guard lock(m_mutex);
    ++m_values.errorCount;
    m_values.lastError = text;
}

TransferStatus::VALUES TransferStatus::Get() const {
    const std::lock_guard lock(m_mutex);
    return m_values;
}
