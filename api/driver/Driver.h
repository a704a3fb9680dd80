// What the console needs of the field driver that loads it. The driver implements it and outlives the console's run.
//
// The operations may be called from the console thread and from the console's workers at any time; text that is
// returned by reference stays valid until the driver changes it on the thread of the call. Text is in the narrow code
// page (UTF-8).
#pragma once

#include <cstdint>
#include <string>

class CTagList;
class IAlarmConfig;
class IBacnetIdentity;
class IHistoryObserver;
class IQLProgramCore;
class IQLUserManagement;
class ISystemAlarmDefinitions;
class IUserAccess;

class CDriver {
public:
    virtual ~CDriver() = default;

    // Display name: the console's title, and with blanks turned into "_" the name of its icon.
    virtual const char* GetName() = 0;
    // Called after "Save now" and OK, on the console thread without the module lock, once the tabs have written
    // allPropPages. No exception may leave it.
    virtual void SaveSettings() = 0;
    // What the last SaveSettings could not store and why, for the operator; empty when all is stored. Asked on the same
    // thread, right behind it.
    virtual std::string GetSaveFailure() { return {}; }
    // The driver's tag table, filled by the driver, which owns it.
    virtual CTagList& GetTagList() = 0;
    // Alarm rules, event filters and the communication-error alarm.
    virtual IAlarmConfig& GetAlarmConfig() = 0;
    // The out-of-service, overridden and device-restart alarms.
    virtual ISystemAlarmDefinitions& GetSystemAlarmDefinitions() = 0;
    // This station's BACnet identity.
    virtual IBacnetIdentity& GetIdentity() = 0;
    // The object window group's name and its choices.
    virtual IUserAccess& GetUserAccess() = 0;
    // First argument of every kernel tag operation.
    virtual std::uint8_t GetGateId() = 0;
    // True when the driver started warm: subscriptions, event registration and the alarm list were skipped.
    virtual bool IsWarmStart() = 0;
    // Records to ask for in one ReadRange, 1..32767.
    virtual int GetTransferChunk() = 0;
    // The kernel that the driver is connected to.
    virtual IQLProgramCore& GetKernel() = 0;
    // The product's users, for the login in front of the console.
    virtual IQLUserManagement& GetUserManagement() = 0;
    // Receives the history transfer's status at its start, with every object, with every error and at its end; null for
    // nobody.
    virtual IHistoryObserver* GetHistoryObserver() { return nullptr; }
};
