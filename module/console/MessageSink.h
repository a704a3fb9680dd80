// Where private messages go (Messages.h). Post returns at once and may be called from any thread; a message that cannot
// be delivered is dropped.
#pragma once

#include <cstdint>

class IMessageSink {
public:
    virtual ~IMessageSink() = default;
    virtual void Post(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) = 0;
};
