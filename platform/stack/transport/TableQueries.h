// Reads of other stations' broadcast tables that wait for their answers. A message of broadcast management has no
// number that would tell one answer from another: it is matched by who sends it and by its kind. Any thread.
#pragma once

#include "platform/stack/transport/Bvll.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace bacnet {

enum class TableRead : std::uint8_t {
    done,
    refused, // by a NAK: that station is no broadcast management device
    silent,
    failed, // the system refuses to send, or the answer is not a table
};

class TableQueries {
public:
    static constexpr int TRIES = 3;

    // Calls send, up to TRIES times, until function (read_bdt, read_fdt) is answered by that station, waiting as long
    // for each. payload receives what follows the answer's header. Blocks; the answer has to come by OnMessage on
    // another thread.
    TableRead Ask(const BipAddress& station, BvlcFunction function, std::chrono::milliseconds wait,
                  const std::function<bool()>& send, std::vector<std::uint8_t>& payload);

    // True when somebody has waited for this.
    bool OnMessage(const BvllMessage& message, const BipAddress& from);

private:
    struct Query {
        BipAddress Station;
        BvlcFunction Answer{};
        BvlcResult Nak{};
        TableRead Result = TableRead::silent;
        std::vector<std::uint8_t>* Payload = nullptr;
    };

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<Query*> m_waiting; // m_lock; each lives on its caller's stack
};

} // namespace bacnet
