// How a simulated device misbehaves. A device has a list of faults; all that apply to a request take effect together.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/services/ServiceChoice.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace sim {

enum class FaultKind : std::uint8_t {
    silent,         // answers nothing, Who-Is included
    slow,           // answers after DelayMs
    drop,           // every Every-th answer is lost
    error,          // answers Error with Class and Code
    reject,         // answers Reject with Code as its reason
    abort,          // answers Abort with Code as its reason
    duplicate,      // answers twice
    late,           // keeps an answer back until the request is repeated; then both answers go out
    wrongInvokeId,  // answers for another invoke id
    silentInAnswer, // of a segmented answer only the first Segments segments are ever sent
    wrongSource,    // answers from another IP address
    wrongPort,      // answers from another port of its own IP address
    restart,        // does not answer, and restarts: it is gone for DelayMs and then announces itself
    truncate,       // of every answer only the first Octets octets of the APDU are sent
};

struct Fault {
    FaultKind Kind = FaultKind::silent;
    std::uint32_t DelayMs = 0;
    std::uint32_t Every = 2; // at least 1
    std::uint32_t Class = 0;
    std::uint32_t Code = 0;
    std::uint32_t Segments = 1;
    std::uint32_t Octets = 0;

    // Which requests it applies to; all without these.
    std::optional<bacnet::ConfirmedService> Service;
    std::optional<BACSTAC_OBJECT_ID> Object;
    std::uint64_t Skip = 0;  // the first so many of those requests go well
    std::uint64_t Times = 0; // it hits so many and is over then; 0: it stays

    static Fault Silent() { return {}; }
    static Fault Slow(std::uint32_t milliseconds);
    static Fault DropEvery(std::uint32_t n);
    static Fault Error(std::uint32_t errorClass, std::uint32_t errorCode);
    static Fault Reject(std::uint32_t reason);
    static Fault Abort(std::uint32_t reason);
    static Fault Duplicate();
    static Fault LateAfterRetry();
    static Fault WrongInvokeId();
    static Fault SilentAfterSegments(std::uint32_t segments);
    static Fault WrongSource();
    static Fault WrongPort();
    static Fault Restart(std::uint32_t milliseconds);
    static Fault TruncateTo(std::uint32_t octets);

    Fault OnlyFor(bacnet::ConfirmedService service) const;
    Fault OnlyOn(BACSTAC_OBJECT_ID object) const;
    Fault After(std::uint64_t requests) const; // of those it applies to
    Fault ForTimes(std::uint64_t requests) const;
};

// What happens to the answer of one request.
struct FaultEffects {
    static constexpr std::uint32_t NO_LIMIT = 0xFFFFFFFFU;
    struct Refusal {
        FaultKind Kind; // error, reject or abort
        std::uint32_t Class;
        std::uint32_t Code;
    };

    bool Silent = false; // no answer at all
    bool Duplicate = false;
    bool Late = false;
    bool WrongInvokeId = false;
    bool WrongSource = false;
    bool WrongPort = false;
    bool Restart = false; // gone for RestartMs
    std::uint32_t RestartMs = 0;
    std::uint32_t DelayMs = 0;
    std::uint32_t SegmentLimit = NO_LIMIT;
    std::uint32_t OctetLimit = NO_LIMIT;
    std::optional<Refusal> Refused;
};

// The faults of one device with their counters. Not thread-safe: the device locks.
class FaultList {
public:
    void Set(const std::vector<Fault>& faults);
    bool Empty() const { return m_active.empty(); }

    // Nothing at all is answered from now on, until the faults are changed. Counts nothing.
    bool IsSilent() const;
    // Counts a request and tells its effects. service is nothing for Who-Is, which faults bound to a service or an
    // object do not concern.
    FaultEffects Hit(std::optional<bacnet::ConfirmedService> service, const BACSTAC_OBJECT_ID& object);

private:
    struct Active {
        Fault What;
        std::uint64_t Seen = 0;
    };
    std::vector<Active> m_active;
};

} // namespace sim
