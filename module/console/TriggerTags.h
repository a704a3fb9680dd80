// Trigger tags: digital tags of the kernel whose change between 0 and not 0 starts a job of the console.
//
// Registrations come from the console thread, tag changes from the driver's threads. The table has a mutex of its own
// that is held for look-ups only, never across a call to the kernel, logging or posting: the kernel may answer a
// registration with a tag change, on this or on another thread, before it returns.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class CDriver;
class IMessageSink;
class IQLProgramCore;

// The start value is neither 0 nor a plausible digital value, and edges depend on it: a tag that is set when it is
// registered fires nothing, so no job starts because the system came up; a tag that is 0 fires its falling edge, which
// switches off a network whose control tag is 0.
inline constexpr double TRIGGER_START_VALUE = -1.0;

struct CTriggerTag {
    std::string name; // unique, such as "BackupDevices"
    double value = TRIGGER_START_VALUE;
    std::uint32_t message = 0;
    std::int32_t lParam = 0;
};

class CTriggerTable {
public:
    using Map = std::map<std::uint32_t, CTriggerTag>; // by tag id: a tag serves one trigger

    CTriggerTable() = default;
    CTriggerTable(const CTriggerTable& other);
    CTriggerTable& operator=(const CTriggerTable& other);

    // Binds the trigger `name` to a tag, message and parameter, after removing what had this name. With a null or empty
    // tag name it only removes. False, with a line in the log, when the tag is unknown, serves another trigger, or the
    // kernel refuses change messages; in the last case the trigger stays and acts on changes that are reported all the
    // same. driver may be null: no tag is known then.
    bool Register(CDriver* driver, IMessageSink& sink, const char* name, const char* tagName, unsigned message,
                  std::int32_t lParam);
    // Takes a tag's new value, and on an edge logs it and posts the trigger's message. Short and without blocking work;
    // nothing is allocated unless there is an edge. What is not a number counts as not 0.
    void OnTagChange(IMessageSink& sink, std::uint32_t tagId, double value);

    // The trigger of exactly this name, or End. Only valid while no other thread registers a trigger.
    Map::iterator FindTriggerTag(const char* name);
    Map::iterator End() { return m_triggers.end(); }

private:
    Map::iterator Find(std::string_view name); // needs m_mutex
    void Remove(IQLProgramCore* kernel, std::uint8_t gate, const char* name);

    mutable std::mutex m_mutex;
    Map m_triggers;                                               // m_mutex
    std::set<std::pair<std::string_view, std::uint32_t>> m_names; // m_mutex; the names in m_triggers, with their ids
    std::unordered_map<std::uint32_t, CTriggerTag*> m_byTag; // m_mutex; m_triggers for the driver's many tag changes
};

// Names of the tags that can be triggers, the digital ones, in the kernel's order.
std::vector<std::string> EnumDigitalTags(IQLProgramCore& kernel, std::uint8_t gate);
