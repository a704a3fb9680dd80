#include "host/AlarmJson.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

// One visitor writes and one reads, so that the members are named once.
class CWriter {
public:
    explicit CWriter(Json& json) : m_json(json) {}
    template <class T>
    void operator()(const char* name, const T& value) {
        m_json[name] = value;
    }

private:
    Json& m_json;
};

class CReader {
public:
    explicit CReader(const Json& json) : m_json(json) {}
    template <class T>
    void operator()(const char* name, T& value) {
        const auto found = m_json.find(name);
        if (found == m_json.end())
            return;
        try {
            value = found->get<T>();
        } catch (const Json::exception&) { // of another kind: the default stays
        }
    }

private:
    const Json& m_json;
};

template <class Alarm, class Visitor>
void VisitAlarm(Alarm& alarm, Visitor visit) {
    visit("text", alarm.text);
    visit("family", alarm.family);
    visit("helpFile", alarm.helpFile);
    visit("severity", alarm.severity);
    visit("zoneNumber", alarm.zoneNumber);
    visit("accessList", alarm.accessList);
    visit("targetFlags", alarm.targetFlags);
    visit("attributeFlags", alarm.attributeFlags);
    visit("actionFlags", alarm.actionFlags);
    visit("userFields", alarm.userFields);
    visit("image", alarm.image);
    visit("zoneName", alarm.zoneName);
    visit("window", alarm.window);
    visit("context", alarm.context);
    visit("macroStarted", alarm.macroStarted);
    visit("macroAcknowledged", alarm.macroAcknowledged);
    visit("macroEnded", alarm.macroEnded);
    visit("alertList", alarm.alertList);
    visit("printFile", alarm.printFile);
    visit("voiceFile", alarm.voiceFile);
    visit("synthesizedText", alarm.synthesizedText);
    visit("kept", alarm.kept);
}

template <class Filter, class Visitor>
void VisitFilter(Filter& filter, Visitor visit) {
    visit("objectNameMask", filter.objectNameMask);
    visit("objectType", filter.objectType);
    visit("priorityFrom", filter.priorityFrom);
    visit("priorityTo", filter.priorityTo);
    visit("eventType", filter.eventType);
    visit("eventState", filter.eventState);
    visit("notifyType", filter.notifyType);
    visit("notificationClass", filter.notificationClass);
    visit("alarm", filter.alarm);
}

} // namespace

void to_json(Json& json, const AlarmDefinition& alarm) {
    json = Json::object();
    VisitAlarm(alarm, CWriter(json));
}

void from_json(const Json& json, AlarmDefinition& alarm) {
    VisitAlarm(alarm, CReader(json));
}

void to_json(Json& json, const CEventFilter& filter) {
    json = Json::object();
    VisitFilter(filter, CWriter(json));
}

void from_json(const Json& json, CEventFilter& filter) {
    VisitFilter(filter, CReader(json));
}
