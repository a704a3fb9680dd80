#include "simulator/model/Subscriptions.h"

#include "platform/stack/services/ServiceChoice.h"
#include "simulator/model/Destination.h"
#include "simulator/model/Device.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr std::size_t MAX_SUBSCRIPTIONS = 1000;
constexpr std::size_t MAX_VALUE = 1400; // octets; what is longer does not fit a notification

// What a subscription to an object is about; its status flags come with it.
BACSTAC_PROPERTY_REF PropertyOf(const CovRequest& request) {
    return request.Property.value_or(BACSTAC_PROPERTY_REF{PROP_PRESENT_VALUE, WHOLE});
}

bool IsSameSubscription(const CovRequest& a, const CovRequest& b) {
    const auto same = [](const auto& x, const auto& y) {
        return x.has_value() == y.has_value() && (!x || (x->Property == y->Property && x->ArrayIndex == y->ArrayIndex));
    };
    return a.Process == b.Process && a.Object == b.Object && same(a.Property, b.Property) &&
           IsSame(a.Subscriber, b.Subscriber);
}

Value Read(const Object& object, BACSTAC_PROPERTY_REF property) {
    std::uint8_t octets[MAX_VALUE];
    bacnet::Writer writer(octets);
    const bool read = object.Read(property.Property, property.ArrayIndex, writer).Ok() && !writer.Overflow();
    return read ? Value::Encoded(writer.Written()) : Value();
}

Value FlagsOf(const Object& object) {
    const Value* flags = object.Find(PROP_STATUS_FLAGS);
    return flags == nullptr ? Value() : *flags;
}

bool IsReal(const Value& value) {
    const int tag = PrimitiveTagOf(value.Wire());
    return tag == bacnet::TAG_REAL || tag == bacnet::TAG_DOUBLE;
}

double NumberOf(const Value& value) {
    return NumberIn(value.Wire()).value_or(0);
}

double IncrementOf(const CovRequest& request, const Object& object) {
    if (request.Increment)
        return *request.Increment;
    const Value* own = object.Find(PROP_COV_INCREMENT);
    return own == nullptr ? 0 : NumberOf(*own);
}

void PutProperty(bacnet::Writer& to, BACSTAC_PROPERTY_REF property, const Value& value) {
    to.Enumerated(property.Property, 0);
    if (property.ArrayIndex != WHOLE)
        to.Unsigned(property.ArrayIndex, 1);
    to.Opening(2);
    to.Octets(value.Wire());
    to.Closing(2);
}

void PutRecipient(bacnet::Writer& to, const BACSTAC_RECIPIENT& recipient) {
    constexpr unsigned ADDRESS = 1;
    to.Opening(ADDRESS);
    to.Unsigned(recipient.Address.Network);
    to.OctetString(std::span(recipient.Address.Mac, recipient.Address.MacLength));
    to.Closing(ADDRESS);
}

} // namespace

PropertyError Subscriptions::Check(const CovRequest& request) const {
    const Object* object = m_device.Find(request.Object);
    if (object == nullptr)
        return UNKNOWN_OBJECT;
    if (!request.Property &&
        (object->Find(PROP_PRESENT_VALUE) == nullptr || object->Find(PROP_STATUS_FLAGS) == nullptr))
        return {CLASS_OBJECT, CODE_OPTIONAL_FUNCTIONALITY_NOT_SUPPORTED};
    if (!object->Has(PropertyOf(request).Property))
        return UNKNOWN_PROPERTY;
    if (Read(*object, PropertyOf(request)).Wire().empty())
        return {CLASS_PROPERTY, CODE_NOT_COV_PROPERTY};
    return {};
}

PropertyError Subscriptions::Subscribe(const CovRequest& request) {
    const PropertyError error = Check(request);
    if (!error.Ok())
        return error;
    Cancel(request);
    if (m_subscriptions.size() >= MAX_SUBSCRIPTIONS)
        return {CLASS_RESOURCES, CODE_NO_SPACE_TO_ADD_LIST_ELEMENT};
    const LocalTime ends = request.Lifetime == 0 ? 0 : m_device.Uptime() + request.Lifetime * HUNDREDTHS_PER_SECOND;
    m_subscriptions.push_back({request, ends, {}, {}});
    Tell(m_subscriptions.back(), *m_device.Find(request.Object));
    return {};
}

void Subscriptions::Cancel(const CovRequest& request) {
    std::erase_if(m_subscriptions,
                  [&](const Subscription& present) { return IsSameSubscription(present.What, request); });
}

bool Subscriptions::IsWaiting() const {
    return std::any_of(m_subscriptions.begin(), m_subscriptions.end(),
                       [](const Subscription& s) { return s.Ends != 0; });
}

void Subscriptions::FindObjects() {
    std::erase_if(m_subscriptions, [this](const Subscription& s) { return m_device.Find(s.What.Object) == nullptr; });
}

void Subscriptions::OnTime() {
    std::erase_if(m_subscriptions,
                  [now = m_device.Uptime()](const Subscription& s) { return s.Ends != 0 && s.Ends <= now; });
}

void Subscriptions::OnChange(const Object& object) {
    for (Subscription& subscription : m_subscriptions) {
        if (subscription.What.Object != object.Id())
            continue;
        const Value value = Read(object, PropertyOf(subscription.What));
        const bool counts = IsReal(value) && IsReal(subscription.Told);
        const bool moved =
            counts ? std::abs(NumberOf(value) - NumberOf(subscription.Told)) >= IncrementOf(subscription.What, object)
                   : true;
        if ((moved && value != subscription.Told) || FlagsOf(object) != subscription.ToldFlags)
            Tell(subscription, object);
    }
}

std::uint32_t Subscriptions::Remaining(const Subscription& subscription) const {
    const LocalTime left = (subscription.Ends - m_device.Uptime()) / HUNDREDTHS_PER_SECOND;
    return subscription.Ends == 0 ? 0 : static_cast<std::uint32_t>(std::max<LocalTime>(left, 1));
}

void Subscriptions::Tell(Subscription& subscription, const Object& object) {
    const CovRequest& what = subscription.What;
    subscription.Told = Read(object, PropertyOf(what));
    subscription.ToldFlags = FlagsOf(object);
    std::string octets(MAX_VALUE + 100, '\0');
    bacnet::Writer to({reinterpret_cast<std::uint8_t*>(octets.data()), octets.size()});
    to.Unsigned(what.Process, 0);
    to.ObjectId(m_device.Id(), 1);
    to.ObjectId(what.Object, 2);
    to.Unsigned(Remaining(subscription), 3);
    to.Opening(4);
    PutProperty(to, PropertyOf(what), subscription.Told);
    if (!subscription.ToldFlags.Wire().empty() && PropertyOf(what).Property != PROP_STATUS_FLAGS)
        PutProperty(to, {PROP_STATUS_FLAGS, WHOLE}, subscription.ToldFlags);
    to.Closing(4);
    octets.resize(to.Size());
    const auto service = what.Confirmed
                             ? static_cast<std::uint8_t>(bacnet::ConfirmedService::confirmedCovNotification)
                             : static_cast<std::uint8_t>(bacnet::UnconfirmedService::unconfirmedCovNotification);
    m_device.Post({what.Subscriber, what.Confirmed, service, std::move(octets)});
}

void Subscriptions::Write(bacnet::Writer& to) const {
    for (const Subscription& subscription : m_subscriptions) {
        const CovRequest& what = subscription.What;
        to.Opening(0);
        to.Opening(0);
        PutRecipient(to, what.Subscriber);
        to.Closing(0);
        to.Unsigned(what.Process, 1);
        to.Closing(0);
        to.Opening(1);
        to.ObjectId(what.Object, 0);
        to.Enumerated(PropertyOf(what).Property, 1);
        if (PropertyOf(what).ArrayIndex != WHOLE)
            to.Unsigned(PropertyOf(what).ArrayIndex, 2);
        to.Closing(1);
        to.Boolean(what.Confirmed, 2);
        to.Unsigned(Remaining(subscription), 3);
        if (what.Increment)
            to.Real(*what.Increment, 4);
    }
}

} // namespace sim
