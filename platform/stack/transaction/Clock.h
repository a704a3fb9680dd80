// Time of the transaction layer: milliseconds that only grow, from an unspecified start. A seam, so that timeouts are
// tested without waiting for them.
#pragma once

#include <chrono>
#include <cstdint>

namespace bacnet {

using Millis = std::int64_t;

class IClock {
public:
    virtual ~IClock() = default;
    virtual Millis Now() const = 0; // any thread
};

class SteadyClock final : public IClock {
public:
    Millis Now() const override {
        using namespace std::chrono;
        return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    }
};

} // namespace bacnet
