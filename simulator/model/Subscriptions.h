// Subscriptions to changes of value (clauses 13.1, 13.14 and 13.15): who is told when an object, or one of its
// properties, has changed enough. Looked at when something changes. Not thread-safe: the device locks.
#pragma once

#include "api/bacnet/Services.h"
#include "simulator/model/Object.h"

#include <optional>
#include <vector>

namespace sim {

class Device;

// SubscribeCOV-Request, or SubscribeCOVProperty-Request with a property.
struct CovRequest {
    BACSTAC_RECIPIENT Subscriber{};
    std::uint32_t Process = 0;
    BACSTAC_OBJECT_ID Object{};
    std::optional<BACSTAC_PROPERTY_REF> Property;
    std::optional<float> Increment; // of that property; nothing: the object's, or any change
    bool Confirmed = false;
    std::uint32_t Lifetime = 0; // seconds; 0: for good
};

class Subscriptions {
public:
    explicit Subscriptions(Device& device) : m_device(device) {}

    bool Empty() const { return m_subscriptions.empty(); }
    bool IsWaiting() const; // for the end of a lifetime

    // In place of the subscriber's earlier one, if there is one. The first notification follows at once.
    PropertyError Subscribe(const CovRequest& request);
    void Cancel(const CovRequest& request);
    void Clear() { m_subscriptions.clear(); } // by a restart

    void FindObjects(); // objects came or went
    void OnChange(const Object& object);
    void OnTime();

    // Active_COV_Subscriptions (clause 12.11.40).
    void Write(bacnet::Writer& to) const;

private:
    struct Subscription {
        CovRequest What;
        LocalTime Ends = 0; // uptime; 0: never
        Value Told;         // the value and the flags of the last notification
        Value ToldFlags;
    };

    PropertyError Check(const CovRequest& request) const;
    std::uint32_t Remaining(const Subscription& subscription) const; // seconds
    void Tell(Subscription& subscription, const Object& object);

    Device& m_device;
    std::vector<Subscription> m_subscriptions;
};

} // namespace sim
