#include "tests/support/FakeDriver.h"

bool CFakeAlarmRules::Find(const AlarmRuleKey& key, AlarmDefinition& definition) {
    const auto it = m_rules.find(key);
    if (it == m_rules.end())
        return false;
    definition = it->second;
    return true;
}

const char* CFakeDriver::GetName() {
    Call("GetName");
    return m_name.c_str();
}
