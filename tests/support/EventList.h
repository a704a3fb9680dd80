// What happened in a test, in order, as text: calls into fakes, log lines, posted messages. Any thread may add.
#pragma once

#include <mutex>
#include <string>
#include <vector>

class CEventList {
public:
    using Lines = std::vector<std::string>;

    void Add(std::string event);
    // The events so far; the list is empty afterwards.
    Lines Take();
    Lines Get() const;

private:
    mutable std::mutex m_mutex;
    Lines m_events; // m_mutex
};
