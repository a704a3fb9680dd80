// What calls have taught about single devices, by address: that one has no multiple reads, or how many properties it
// manages in one, and what it takes when a request is long. Only devices with limits are kept, so many and so long at
// the most: a device may be replaced or taught better, and then costs one refused request. Any thread.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/transaction/Clock.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <shared_mutex>
#include <string_view>
#include <unordered_map>

namespace bacnet {

struct AddressHash {
    std::size_t operator()(const BACSTAC_ADDRESS& address) const {
        char octets[sizeof address];
        std::memcpy(octets, &address, sizeof address);
        return std::hash<std::string_view>{}({octets, sizeof octets});
    }
};

// What a device takes in one request, as its device object says.
struct RequestLimits {
    std::uint16_t MaxApdu = 0;     // octets; 0: it does not say
    bool TakesSegments = false;    // more than one APDU
    std::uint32_t MaxSegments = 0; // of one request; 0: it does not say
};

class PeerTraits {
public:
    static constexpr unsigned UNLIMITED = UINT32_MAX;
    // Devices that are remembered; beyond, the one that taught us longest ago is forgotten.
    static constexpr std::size_t MAX_PEERS = 10000;
    // A lesson is forgotten this long after it was given last.
    static constexpr Millis LIFETIME_MS = 3'600'000;

    explicit PeerTraits(const IClock& clock) : m_clock(clock) {} // borrowed

    // Properties to ask for in one ReadPropertyMultiple: UNLIMITED, a number, or 0 where the service is missing.
    unsigned MultipleReadLimit(const BACSTAC_ADDRESS& address) const;
    void SetNoMultipleRead(const BACSTAC_ADDRESS& address);
    // A read of so many was too much: half of it is the limit from now on, 1 at the least.
    void MultipleReadFailed(const BACSTAC_ADDRESS& address, unsigned count);
    // A read at the limit went well. After a number of them the limit is tried higher, since it may have been one long
    // value that set it.
    void MultipleReadWorked(const BACSTAC_ADDRESS& address, unsigned count);
    // Nothing when they were not read yet.
    std::optional<RequestLimits> Limits(const BACSTAC_ADDRESS& address) const;
    void SetLimits(const BACSTAC_ADDRESS& address, const RequestLimits& limits);
    // Another device is at this address now, or may be.
    void Forget(const BACSTAC_ADDRESS& address);
    std::size_t Count() const;

private:
    struct Traits {
        unsigned Limit = UNLIMITED;
        unsigned Successes = 0; // at the limit, in a row
        std::optional<RequestLimits> Requests;
        Millis LearnedAt = 0;
    };
    using Map = std::unordered_map<BACSTAC_ADDRESS, Traits, AddressHash>;
    // Null when nothing is known, or no longer. Under m_lock.
    const Traits* Find(const BACSTAC_ADDRESS& address) const;
    Traits& Learn(const BACSTAC_ADDRESS& address);

    const IClock& m_clock;
    mutable std::shared_mutex m_lock;
    Map m_traits; // m_lock
};

} // namespace bacnet
