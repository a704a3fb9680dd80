#include "simulator/model/BackupProcedure.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::uint32_t STATUS_DOWNLOAD_IN_PROGRESS = 3;
constexpr std::uint32_t STATUS_BACKUP_IN_PROGRESS = 5;

constexpr PropertyError IN_PROGRESS{CLASS_DEVICE, CODE_CONFIGURATION_IN_PROGRESS};
constexpr PropertyError REQUEST_DENIED{CLASS_SERVICES, CODE_SERVICE_REQUEST_DENIED};
constexpr PropertyError INVALID_CONFIGURATION{CLASS_DEVICE, CODE_INVALID_CONFIGURATION_DATA};

LocalTime Seconds(std::uint32_t count) {
    return LocalTime{count} * HUNDREDTHS_PER_SECOND;
}

bool IsOfRestore(BackupState state) {
    return state == BackupState::preparingForRestore || state == BackupState::performingRestore;
}

} // namespace

// m_state is that of the beginning; time carries it on.
BackupState BackupProcedure::GetState(LocalTime uptime) const {
    const bool restore = IsOfRestore(m_state);
    if (!restore && m_state != BackupState::preparingForBackup)
        return m_state;
    if (uptime < m_ready)
        return m_state;
    if (m_config.FailureTimeout != 0 && uptime - std::max(m_used, m_ready) >= Seconds(m_config.FailureTimeout))
        return restore ? BackupState::restoreFailure : BackupState::backupFailure;
    return restore ? BackupState::performingRestore : BackupState::performingBackup;
}

bool BackupProcedure::IsPreparing(LocalTime uptime) const {
    const BackupState state = GetState(uptime);
    return state == BackupState::preparingForBackup || state == BackupState::preparingForRestore;
}

bool BackupProcedure::IsInProgress(LocalTime uptime) const {
    const BackupState state = GetState(uptime);
    return IsOfRestore(state) || state == BackupState::preparingForBackup || state == BackupState::performingBackup;
}

std::optional<std::uint32_t> BackupProcedure::SystemStatus(LocalTime uptime) const {
    if (IsInProgress(uptime))
        return IsOfRestore(m_state) ? STATUS_DOWNLOAD_IN_PROGRESS : STATUS_BACKUP_IN_PROGRESS;
    return uptime < m_done ? std::optional(m_lastStatus) : std::nullopt;
}

void BackupProcedure::Touch(LocalTime uptime) {
    m_used = uptime;
}

PropertyError BackupProcedure::Start(BackupState state, std::uint32_t seconds, LocalTime uptime) {
    if (IsInProgress(uptime))
        return IN_PROGRESS;
    m_state = state;
    m_ready = uptime + Seconds(seconds);
    m_used = uptime;
    m_done = 0;
    return {};
}

PropertyError BackupProcedure::End(BackupState expected, LocalTime uptime) {
    if (GetState(uptime) != expected)
        return IsPreparing(uptime) ? IN_PROGRESS : REQUEST_DENIED;
    m_lastStatus = *SystemStatus(uptime);
    m_state = BackupState::idle;
    m_done = uptime + Seconds(m_config.CompletionTime);
    return {};
}

PropertyError BackupProcedure::StartBackup(LocalTime uptime) {
    return Start(BackupState::preparingForBackup, m_config.BackupPreparation, uptime);
}

PropertyError BackupProcedure::EndBackup(LocalTime uptime) {
    return End(BackupState::performingBackup, uptime);
}

PropertyError BackupProcedure::StartRestore(LocalTime uptime) {
    return Start(BackupState::preparingForRestore, m_config.RestorePreparation, uptime);
}

PropertyError BackupProcedure::EndRestore(LocalTime uptime, bool valid) {
    const PropertyError error = End(BackupState::performingRestore, uptime);
    if (!error.Ok() || valid)
        return error;
    m_state = BackupState::restoreFailure;
    return INVALID_CONFIGURATION;
}

PropertyError BackupProcedure::AbortRestore(LocalTime uptime) {
    if (!IsInProgress(uptime) || !IsOfRestore(m_state))
        return REQUEST_DENIED;
    Reset();
    return {};
}

void BackupProcedure::Reset() {
    m_state = BackupState::idle;
    m_done = 0;
}

} // namespace sim
