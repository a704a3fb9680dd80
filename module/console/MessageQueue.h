// The private messages on their way to the console dialog, first in, first out.
//
// A console that is held up must not let the process grow without an end, and no edge of a trigger may leave a network
// in another state than its tag. So when a great many messages wait, only the latest of each that comes then is kept:
// of a trigger, its last edge. The shutdown always finds room. Not thread-safe.
#pragma once

#include "module/console/ConsoleMessage.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <tuple>

class CMessageQueue {
public:
    // Of 24 bytes each: more than a minute of ten thousand a second.
    static constexpr std::size_t LIMIT = 1'000'000;

    explicit CMessageQueue(std::size_t limit = LIMIT) : m_limit(limit) {}

    void Push(CConsoleMessage message);
    std::optional<CConsoleMessage> Pop(); // empty when there is none
    std::size_t Size() const { return m_messages.size(); }

private:
    // What makes two messages the same but for the state that they tell of.
    using Identity = std::tuple<unsigned, std::intptr_t, std::uintptr_t>;
    static Identity IdentityOf(const CConsoleMessage& message);

    std::size_t m_limit;
    std::deque<CConsoleMessage> m_messages;
    // The places of those that came when the limit was reached, counted from the first message ever.
    std::map<Identity, std::uint64_t> m_late;
    std::uint64_t m_popped = 0;
};
