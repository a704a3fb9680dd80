// The alarm configuration that the driver keeps and the console edits. Called from the console thread; the driver uses
// the same data on threads of its own, so what is returned by reference is changed only under the module lock.
#pragma once

#include "api/driver/AlarmDefinition.h"
#include "api/driver/AlarmRules.h"
#include "api/driver/EventFilter.h"

#include <vector>

class IAlarmConfig {
public:
    virtual ~IAlarmConfig() = default;

    // The table of rules, one alarm per object; never null.
    virtual AlarmRuleStore* GetRules() = 0;
    // The event filters in the order in which they are tried. The console replaces the list as a whole.
    virtual std::vector<CEventFilter>& GetEventFilters() = 0;
    // The alarm raised when a device stops answering.
    virtual AlarmDefinition& GetCommunicationError() = 0;
};

class ISystemAlarmDefinitions {
public:
    virtual ~ISystemAlarmDefinitions() = default;

    virtual AlarmDefinition& GetOutOfService() = 0;
    virtual AlarmDefinition& GetOverridden() = 0;
    virtual AlarmDefinition& GetDeviceRestart() = 0;
};
