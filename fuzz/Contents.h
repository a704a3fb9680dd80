// A buffer of exactly the size that is said, for decoders to write into: the address sanitizer sees the first byte
// beyond it. Check fails when the contents claim more than the buffer holds.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/codec/ValueCodec.h"

#include <cstdint>
#include <cstdlib>

class Contents {
public:
    explicit Contents(unsigned room) : Value{-1, std::malloc(room), room, 0} {}
    ~Contents() { std::free(Value.Buffer); }
    Contents(const Contents&) = delete;
    Contents& operator=(const Contents&) = delete;

    void Check() const {
        if (Value.DataType >= 0 && bacnet::ElementsSize(Value) > Value.BufferSize)
            std::abort();
        if (Value.DataType < 0 && Value.ElementCount > Value.BufferSize)
            std::abort();
    }

    BACSTAC_PROPERTY_CONTENTS Value;
};
