// The backup and restore procedure (clause 19.1) as a device goes through it. Knows no clock: uptime is given, in
// hundredths of a second, and only grows. Not thread-safe: the device locks.
#pragma once

#include "simulator/Config.h"
#include "simulator/model/Object.h"

namespace sim {

// Backup_And_Restore_State.
enum class BackupState : std::uint32_t {
    idle = 0,
    preparingForBackup = 1,
    preparingForRestore = 2,
    performingBackup = 3,
    performingRestore = 4,
    backupFailure = 5,
    restoreFailure = 6,
};

class BackupProcedure {
public:
    explicit BackupProcedure(const BackupConfig& config) : m_config(config) {}

    // Each refuses what does not fit the present state.
    PropertyError StartBackup(LocalTime uptime);
    PropertyError EndBackup(LocalTime uptime);
    PropertyError StartRestore(LocalTime uptime);
    PropertyError EndRestore(LocalTime uptime, bool valid); // valid: what was restored can be used
    PropertyError AbortRestore(LocalTime uptime);
    void Reset(); // the device restarts

    BackupState GetState(LocalTime uptime) const;
    bool IsInProgress(LocalTime uptime) const;
    // While it prepares itself the device is busy: the files cannot be used.
    bool IsPreparing(LocalTime uptime) const;
    // System_Status as the procedure has it; nothing when it leaves it alone.
    std::optional<std::uint32_t> SystemStatus(LocalTime uptime) const;
    // A file was used: the time after which the device gives the procedure up begins anew.
    void Touch(LocalTime uptime);
    void SetFailureTimeout(std::uint32_t seconds) { m_config.FailureTimeout = seconds; }

    const BackupConfig& Config() const { return m_config; }

private:
    PropertyError Start(BackupState state, std::uint32_t seconds, LocalTime uptime);
    PropertyError End(BackupState expected, LocalTime uptime);

    BackupConfig m_config;
    BackupState m_state = BackupState::idle; // preparing, until m_ready; and the last result
    LocalTime m_ready = 0;                   // preparation ends
    LocalTime m_used = 0;                    // a file was used last
    LocalTime m_done = 0;                    // the device is itself again
    std::uint32_t m_lastStatus = 0;          // until then
};

} // namespace sim
