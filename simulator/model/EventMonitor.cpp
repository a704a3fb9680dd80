#include "simulator/model/EventMonitor.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/schema/Enumerations.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/services/ServiceChoice.h"
#include "simulator/model/Destination.h"
#include "simulator/model/Device.h"
#include "simulator/model/Reference.h"

#include <algorithm>

namespace sim {

namespace {

constexpr unsigned MAX_STEPS = 4;                    // of one object at once: out of a fault, to an alarm
constexpr unsigned REVISION_RELIABILITY_EVENTS = 13; // faults are told as changes of reliability

// What follows from transitions, and so does not cause any of the same object.
constexpr BACSTAC_PROPERTY_ID CONSEQUENCES[] = {PROP_EVENT_STATE, PROP_ACKED_TRANSITIONS, PROP_EVENT_TIME_STAMPS,
                                                PROP_STATUS_FLAGS, PROP_EVENT_MESSAGE_TEXTS};

// What an object reports by that has no present value.
struct Monitored {
    BACSTAC_OBJECT_TYPE Type;
    BACSTAC_PROPERTY_ID Property;
};

constexpr Monitored MONITORED[] = {
    {OBJ_LOOP, PROP_CONTROLLED_VARIABLE_VALUE},
    {OBJ_TREND_LOG, PROP_TOTAL_RECORD_COUNT},
    {OBJ_EVENT_LOG, PROP_TOTAL_RECORD_COUNT},
    {OBJ_TREND_LOG_MULTIPLE, PROP_TOTAL_RECORD_COUNT},
};

BACSTAC_PROPERTY_ID MonitoredOf(BACSTAC_OBJECT_TYPE type) {
    for (const Monitored& known : MONITORED)
        if (known.Type == type)
            return known.Property;
    return PROP_PRESENT_VALUE;
}

bool IsConsequence(BACSTAC_PROPERTY_ID property) {
    return std::find(std::begin(CONSEQUENCES), std::end(CONSEQUENCES), property) != std::end(CONSEQUENCES);
}

std::uint32_t UnsignedOf(const Object& object, BACSTAC_PROPERTY_ID property, std::uint32_t otherwise) {
    const Value* value = object.Find(property);
    std::uint32_t number = 0;
    return value != nullptr && bacnet::Reader(value->Wire()).Unsigned(number) ? number : otherwise;
}

std::uint32_t ReliabilityOf(const Object& object) {
    const Value* value = object.Find(PROP_RELIABILITY);
    std::uint32_t number = 0;
    if (value != nullptr)
        bacnet::Reader(value->Wire()).Enumerated(number);
    return number;
}

bool IsDetecting(const Object& object) {
    const Value* enabled = object.Find(PROP_EVENT_DETECTION_ENABLE);
    return enabled == nullptr || *enabled == Value::Boolean(true);
}

BACSTAC_BIT_STRING FlagsOf(const Object* object) {
    BACSTAC_BIT_STRING flags{};
    flags.BitCount = 4;
    if (const Value* value = object == nullptr ? nullptr : object->Find(PROP_STATUS_FLAGS))
        bacnet::Reader(value->Wire()).BitString(flags);
    return flags;
}

// By which objects of the type report on their own; null for a type that does not.
const EventAlgorithm* OwnAlgorithm(BACSTAC_OBJECT_ID id) {
    const bacnet::ObjectTypeInfo* type = bacnet::FindObjectType(id.Type);
    return type == nullptr || type->EventType < 0 ? nullptr
                                                  : FindAlgorithm(static_cast<std::uint32_t>(type->EventType));
}

std::string TextElement(const Object& object, BACSTAC_PROPERTY_ID property, std::uint32_t index) {
    const Value* texts = object.Find(property);
    return texts != nullptr && index < texts->Count() ? TextIn(texts->Element(index)) : std::string();
}

// What Event_Message_Texts_Config says, else the name and the state.
std::string MessageFor(const Object& object, Transition transition, std::uint32_t state) {
    std::string text = TextElement(object, PROP_EVENT_MESSAGE_TEXTS_CONFIG, static_cast<std::uint32_t>(transition));
    if (!text.empty())
        return text;
    const char* name = bacnet::FindEnumName(ENUM_EVENT_STATE, state);
    const Value* own = object.Find(PROP_OBJECT_NAME);
    return (own == nullptr ? std::string() : TextIn(own->Wire()) + ": ") +
           (name != nullptr ? name : "state " + std::to_string(state));
}

} // namespace

// ---- what there is to watch

void EventMonitor::FindObjects() {
    std::vector<Source> sources;
    std::vector<BACSTAC_OBJECT_ID> added;
    m_enrollments.clear();
    for (const BACSTAC_OBJECT_ID& id : m_device.Objects()) {
        const bool isEnrollment = id.Type == OBJ_EVENT_ENROLLMENT;
        if (m_device.Find(id)->Find(PROP_EVENT_ENABLE) == nullptr || (!isEnrollment && OwnAlgorithm(id) == nullptr))
            continue;
        const Source* known = FindSource(id);
        sources.push_back(known != nullptr ? *known : Source{id, {}, {}, false, EVENT_NORMAL, 0});
        if (known == nullptr)
            added.push_back(id);
        if (isEnrollment)
            m_enrollments.push_back(id);
    }
    std::ranges::sort(sources, {}, &Source::Id);
    m_sources = std::move(sources);
    m_waiting = static_cast<std::size_t>(std::ranges::count(m_sources, true, &Source::Waits));
    for (const BACSTAC_OBJECT_ID& id : added) {
        Source& source = *FindSource(id);
        const auto status = StatusOf(*m_device.Find(id));
        if (const auto reading = Read(*m_device.Find(id)))
            Watch(source, *reading);
        if (status && status->State == EVENT_NORMAL)
            Evaluate(source);
    }
}

EventMonitor::Source* EventMonitor::FindSource(BACSTAC_OBJECT_ID id) {
    const auto at = std::ranges::lower_bound(m_sources, id, {}, &Source::Id);
    return at == m_sources.end() || at->Id != id ? nullptr : &*at;
}

void EventMonitor::SetWaits(Source& source, bool waits) {
    m_waiting = m_waiting + (waits ? 1 : 0) - (source.Waits ? 1 : 0);
    source.Waits = waits;
}

void EventMonitor::Watch(Source& source, const Reading& reading) const {
    source.Watched.clear();
    if (source.Id.Type != OBJ_EVENT_ENROLLMENT)
        return;
    bacnet::Reader in(reading.Inputs.Reference.Wire());
    if (const auto monitored = ReadReference(in))
        source.Watched.push_back(monitored->ObjectId);
    if (reading.Terms.Other)
        source.Watched.push_back(reading.Terms.Other->ObjectId);
}

void EventMonitor::OnChange(Object& object, BACSTAC_PROPERTY_ID property) {
    if (object.Id().Type == OBJ_EVENT_ENROLLMENT && property == PROP_EVENT_PARAMETERS)
        FollowParameters(object);
    if (Source* own = FindSource(object.Id()); own != nullptr && !IsConsequence(property))
        Evaluate(*own);
    for (const BACSTAC_OBJECT_ID& id : m_enrollments) {
        Source& source = *FindSource(id);
        if (std::ranges::find(source.Watched, object.Id()) != source.Watched.end())
            Evaluate(source);
    }
}

// The type of an enrollment is that of its parameters.
void EventMonitor::FollowParameters(Object& enrollment) const {
    bacnet::Tag tag;
    if (bacnet::Reader(enrollment.Find(PROP_EVENT_PARAMETERS)->Wire()).PeekTag(tag))
        m_device.Update(enrollment, PROP_EVENT_TYPE, Value::Enumerated(tag.Number));
}

void EventMonitor::OnTime() {
    if (!IsWaiting())
        return;
    for (Source& source : m_sources)
        if (source.Waits && m_device.Uptime() >= source.DueAt)
            Evaluate(source);
}

// ---- readings

// A property as it is now, computed ones included; nothing of what is not there or of another device.
Value EventMonitor::Get(const BACSTAC_DEV_OBJ_PROP_REF& reference) const {
    const Object* object = m_device.IsOwn(reference) ? m_device.Find(reference.ObjectId) : nullptr;
    std::uint8_t octets[512];
    bacnet::Writer writer(octets);
    if (object == nullptr || !object->Read(reference.Property, reference.ArrayIndex, writer).Ok() || writer.Overflow())
        return {};
    return Value::Encoded(writer.Written());
}

void EventMonitor::Monitor(const BACSTAC_DEV_OBJ_PROP_REF& reference, Reading& reading) const {
    EventInputs& inputs = reading.Inputs;
    BACSTAC_DEV_OBJ_PROP_REF counted = reference;
    if (reference.Property == PROP_LOG_BUFFER) // itself it is no value
        counted.Property = PROP_TOTAL_RECORD_COUNT;
    inputs.Monitored = Get(counted);
    inputs.Reference = Value::Reference(reference);
    inputs.StatusFlags = FlagsOf(m_device.Find(reference.ObjectId));
    if (reading.Terms.Other)
        inputs.Other = Get(*reading.Terms.Other);
}

std::optional<EventMonitor::Reading> EventMonitor::ReadOwn(const Object& object) const {
    Reading reading;
    reading.Algorithm = OwnAlgorithm(object.Id());
    if (reading.Algorithm == nullptr || !reading.Algorithm->ReadObject(object, reading.Terms))
        return std::nullopt;
    reading.Terms.TimeDelay = UnsignedOf(object, PROP_TIME_DELAY, 0);
    const BACSTAC_PROPERTY_ID property = MonitoredOf(object.Id().Type);
    Monitor({object.Id(), property == PROP_TOTAL_RECORD_COUNT ? PROP_LOG_BUFFER : property, WHOLE, 0, {}}, reading);
    return reading;
}

// The choice of the parameters, whose context tag it is, tells the algorithm.
std::optional<EventMonitor::Reading> EventMonitor::ReadEnrollment(const Object& object) const {
    const Value* parameters = object.Find(PROP_EVENT_PARAMETERS);
    const Value* reference = object.Find(PROP_OBJECT_PROPERTY_REFERENCE);
    if (parameters == nullptr || reference == nullptr)
        return std::nullopt;
    bacnet::Reader in(parameters->Wire());
    bacnet::Tag tag;
    Reading reading;
    reading.Algorithm = in.ReadTag(tag) && tag.Kind == bacnet::TagKind::opening ? FindAlgorithm(tag.Number) : nullptr;
    const auto monitored = ReadReference(reference->Wire());
    if (reading.Algorithm == nullptr || !monitored || !reading.Algorithm->ReadParameters(in, reading.Terms))
        return std::nullopt;
    Monitor(*monitored, reading);
    return reading;
}

std::optional<EventMonitor::Reading> EventMonitor::Read(const Object& object) const {
    auto reading = object.Id().Type == OBJ_EVENT_ENROLLMENT ? ReadEnrollment(object) : ReadOwn(object);
    if (!reading)
        return reading;
    reading->Terms.TimeDelayNormal = UnsignedOf(object, PROP_TIME_DELAY_NORMAL, reading->Terms.TimeDelay);
    reading->Inputs.Reliability = ReliabilityOf(object);
    // What cannot be read is neither good nor bad.
    return reading->Inputs.Monitored.Wire().empty() ? std::nullopt : reading;
}

// ---- transitions

void EventMonitor::Evaluate(Source& source) {
    for (unsigned i = 0; i < MAX_STEPS && EvaluateOnce(source); ++i) {}
}

// True after a transition: then there may be another.
bool EventMonitor::EvaluateOnce(Source& source) {
    Object& object = *m_device.Find(source.Id);
    auto reading = Read(object);
    const auto status = StatusOf(object);
    const bool waited = source.Waits;
    SetWaits(source, false);
    if (!reading || !status)
        return false;
    Watch(source, *reading);
    if (source.Last.Wire().empty())
        source.Last = reading->Inputs.Monitored; // the first time it is looked at
    if (!IsDetecting(object)) {
        if (status->State != EVENT_NORMAL)
            EnterState(object, EVENT_NORMAL, false, m_device.Now());
        return false;
    }
    const EventAlgorithm& algorithm = *reading->Algorithm;
    reading->Inputs.Last = source.Last;
    const bool isFault = reading->Inputs.Reliability != 0;
    const bool ofFault = isFault || status->State == EVENT_FAULT;
    const std::uint32_t wanted = isFault   ? EVENT_FAULT
                                 : ofFault ? EVENT_NORMAL
                                           : algorithm.Judge(reading->Terms, reading->Inputs, status->State);
    const bool stays = wanted == status->State;
    if (stays &&
        (ofFault || algorithm.Repeats == nullptr || !algorithm.Repeats(reading->Terms, reading->Inputs, status->State)))
        return false;
    if (!waited || source.Wanted != wanted) {
        const bool backToNormal = wanted == EVENT_NORMAL && !stays;
        const std::uint32_t delay = ofFault        ? 0
                                    : backToNormal ? reading->Terms.TimeDelayNormal
                                                   : reading->Terms.TimeDelay;
        source.Wanted = wanted;
        source.DueAt = m_device.Uptime() + delay * HUNDREDTHS_PER_SECOND;
    }
    if (m_device.Uptime() < source.DueAt) {
        SetWaits(source, true);
        return false;
    }
    source.Last = reading->Inputs.Monitored;
    Change(object, wanted, &*reading);
    return true;
}

void EventMonitor::Enter(Object& object, std::uint32_t state) {
    AddEventProperties(object);
    auto reading = Read(object);
    if (Source* source = FindSource(object.Id()))
        SetWaits(*source, false);
    Change(object, state, reading ? &*reading : nullptr);
}

// reading: null when nothing is known but the state.
void EventMonitor::Change(Object& object, std::uint32_t state, Reading* reading) {
    const EventStatus before = *StatusOf(object);
    const Transition transition = TransitionTo(state);
    const auto number = static_cast<std::uint32_t>(transition);
    const NotificationClass notifications = m_device.ClassOf(before.NotificationClass, nullptr, 0);
    Notification event;
    event.Device = m_device.Id();
    event.Object = object.Id();
    event.Time = m_device.Now();
    event.Class = before.NotificationClass;
    event.Priority = notifications.Priorities[number];
    event.Type = before.Type;
    event.Text = MessageFor(object, transition, state);
    event.NotifyType = before.NotifyType;
    event.AckRequired = (notifications.AckRequired >> number & 1U) != 0;
    event.From = before.State;
    event.To = state;
    EnterState(object, state, event.AckRequired, event.Time);
    if (const Value* texts = object.Find(PROP_EVENT_MESSAGE_TEXTS); texts != nullptr && number < texts->Count())
        object.Set(PROP_EVENT_MESSAGE_TEXTS, texts->WithElement(number, Value::String(event.Text).Wire()));
    const bool ofFault = before.State == EVENT_FAULT || state == EVENT_FAULT;
    if (ofFault && m_device.Config().ProtocolRevision >= REVISION_RELIABILITY_EVENTS)
        event.Type = TYPE_CHANGE_OF_RELIABILITY;
    if (reading != nullptr)
        event.Values = ValuesOf(*reading, object, event);
    Publish(event, transition, (before.Enabled >> number & 1U) != 0);
    for (const BACSTAC_PROPERTY_ID property : {PROP_EVENT_STATE, PROP_STATUS_FLAGS})
        m_device.NoteValue(object.Id(), property);
}

// With the status flags as they have become.
std::string EventMonitor::ValuesOf(Reading& reading, const Object& object, const Notification& event) const {
    bacnet::Reader in(reading.Inputs.Reference.Wire());
    const auto monitored = ReadReference(in);
    const Object* flagged = monitored ? m_device.Find(monitored->ObjectId) : nullptr;
    reading.Inputs.StatusFlags = FlagsOf(flagged != nullptr ? flagged : &object);
    const std::uint32_t exceeded = event.To == EVENT_NORMAL ? event.From : event.To;
    return EncodeValues(event.Type, [&](bacnet::Writer& to) {
        if (event.Type == TYPE_CHANGE_OF_RELIABILITY)
            PutReliability(reading.Inputs, to);
        else
            reading.Algorithm->PutValues(reading.Terms, reading.Inputs, exceeded, to);
    });
}

void EventMonitor::Acknowledge(Object& object, Transition transition, const std::string& by) {
    const EventStatus status = *StatusOf(object);
    sim::Acknowledge(object, transition);
    const auto number = static_cast<std::uint32_t>(transition);
    Notification event;
    event.Device = m_device.Id();
    event.Object = object.Id();
    event.Time = m_device.Now();
    event.Class = status.NotificationClass;
    event.Priority = m_device.ClassOf(status.NotificationClass, nullptr, 0).Priorities[number];
    event.Type = status.Type;
    event.Text = by.empty() ? "acknowledged" : "acknowledged by " + by;
    event.NotifyType = NOTIFY_ACK;
    event.To = status.State;
    Publish(event, transition, true);
    m_device.NoteValue(object.Id(), PROP_ACKED_TRANSITIONS);
}

// Event logs record what happens whether or not it is to be sent.
void EventMonitor::Publish(const Notification& event, Transition transition, bool enabled) {
    m_device.LogEvent(ToRecord(event));
    const Object* notifications = m_device.FindClass(event.Class);
    const Value* recipients = notifications == nullptr ? nullptr : notifications->Find(PROP_RECIPIENT_LIST);
    if (!enabled || recipients == nullptr)
        return;
    const BACSTAC_DATE_TIME now = ToDateTime(event.Time);
    for (std::uint32_t i = 0; i < recipients->Count(); ++i) {
        const auto destination = ReadDestination(recipients->Element(i));
        if (!destination || !destination->IsValidAt(now) ||
            (destination->Transitions >> static_cast<unsigned>(transition) & 1U) == 0)
            continue;
        Notification own = event;
        own.Process = destination->Process;
        const auto service = destination->Confirmed
                                 ? static_cast<std::uint8_t>(bacnet::ConfirmedService::confirmedEventNotification)
                                 : static_cast<std::uint8_t>(bacnet::UnconfirmedService::unconfirmedEventNotification);
        m_device.Post({destination->Recipient, destination->Confirmed, service, Encode(own)});
    }
}

} // namespace sim
