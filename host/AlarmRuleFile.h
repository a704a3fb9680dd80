// The driver's table of alarm rules in a JSON file of its own, replaced whole with each change. Any thread.
#pragma once

#include "api/driver/AlarmRules.h"

#include <map>
#include <mutex>
#include <string>

class CAlarmRuleFile : public AlarmRuleStore {
public:
    // A file that is missing or damaged gives an empty table; a damaged one is put aside as PATH.damaged by the first
    // change.
    explicit CAlarmRuleFile(std::string path);

    void Reload() override;
    bool Find(const AlarmRuleKey& key, AlarmDefinition& definition) override;
    void Set(const AlarmRuleKey& key, const AlarmDefinition& definition) override;
    bool Remove(const AlarmRuleKey& key) override;
    const char* GetFileName() override;
    std::filesystem::file_time_type GetFileTime() override;
    std::map<AlarmRuleKey, AlarmDefinition> GetAll() override;

private:
    void Read();  // both with m_lock held
    void Write(); // a failure is logged; the table in memory holds

    const std::string m_path;
    std::mutex m_lock;
    std::map<AlarmRuleKey, AlarmDefinition> m_rules; // these are guarded by m_lock
    std::filesystem::file_time_type m_time{};
    bool m_isDamaged = false;
};
