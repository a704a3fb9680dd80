// The table of alarm rules: one alarm definition per BACnet object, kept by the driver in a file of its own. The
// console edits it in place, each change taking effect at once, while the driver reads it on threads of its own: the
// store is safe for that.
#pragma once

#include "api/bacnet/Types.h"
#include "api/driver/AlarmDefinition.h"

#include <compare>
#include <cstdint>
#include <filesystem>
#include <map>

struct AlarmRuleKey {
    std::uint32_t device = 0;
    BACSTAC_OBJECT_ID object{};

    friend auto operator<=>(const AlarmRuleKey&, const AlarmRuleKey&) = default;
};

class AlarmRuleStore {
public:
    virtual ~AlarmRuleStore() = default;

    // Reads the file again.
    virtual void Reload() = 0;
    // True, with the definition, when the rule exists.
    virtual bool Find(const AlarmRuleKey& key, AlarmDefinition& definition) = 0;
    // Inserts or replaces.
    virtual void Set(const AlarmRuleKey& key, const AlarmDefinition& definition) = 0;
    // True when a rule was removed.
    virtual bool Remove(const AlarmRuleKey& key) = 0;
    virtual const char* GetFileName() = 0;
    // The file's modification time as the store last read or wrote it: another time on disk means that somebody else
    // wrote.
    virtual std::filesystem::file_time_type GetFileTime() = 0;
    // A copy of all rules.
    virtual std::map<AlarmRuleKey, AlarmDefinition> GetAll() = 0;
};
