// ReadPropertyMultiple (ANSI/ASHRAE 135 clause 15.7), both halves, as a walk over the octets: nothing is collected, so
// that neither a request nor an answer costs memory in proportion to what a peer claims. Any thread; one walker is one
// thread's.
#pragma once

#include "platform/stack/codec/Reader.h"
#include "platform/stack/services/ReadProperty.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Writer;

// Writes a request, references of one object together.
class RpmRequestWriter {
public:
    explicit RpmRequestWriter(Writer& writer) : m_writer(writer) {}
    void Add(const PropertyTarget& target); // a new object begins where the target's object changes
    void Finish();                          // closes the last object

private:
    Writer& m_writer;
    BACSTAC_OBJECT_ID m_object{};
    bool m_open = false;
};

// Walks a request: one reference at a time. ALL, REQUIRED and OPTIONAL come as the properties 8, 105 and 80.
class RpmRequestReader {
public:
    explicit RpmRequestReader(std::span<const std::uint8_t> parameters) : m_reader(parameters) {}
    // False at the end and on a fault; Ok tells which.
    bool Next(PropertyTarget& target);
    bool Ok() const { return m_reader.Ok(); }

private:
    Reader m_reader;
    BACSTAC_OBJECT_ID m_object{};
    bool m_open = false;
};

// Writes an answer: per property BeginValue, the encoded value, EndValue; or Error. Objects follow as in the request.
// ErrorInstead takes back what was written since BeginValue, for a value that turns out not to be there.
class RpmAckWriter {
public:
    explicit RpmAckWriter(Writer& writer) : m_writer(writer) {}
    void BeginValue(const PropertyTarget& target);
    void EndValue();
    void Error(const PropertyTarget& target, std::uint32_t errorClass, std::uint32_t errorCode);
    void ErrorInstead(std::uint32_t errorClass, std::uint32_t errorCode);
    void Finish();

private:
    void Head(const PropertyTarget& target);

    Writer& m_writer;
    BACSTAC_OBJECT_ID m_object{};
    bool m_open = false;
    std::size_t m_valueFrom = 0; // where what BeginValue wrote for the value starts
};

struct RpmResult {
    PropertyTarget Target;
    bool Success = false;
    std::span<const std::uint8_t> Value; // encoded, when Success
    std::uint32_t ErrorClass = 0;
    std::uint32_t ErrorCode = 0;
};

// Walks an answer: one result at a time.
class RpmAckReader {
public:
    explicit RpmAckReader(std::span<const std::uint8_t> parameters) : m_reader(parameters) {}
    bool Next(RpmResult& result); // false at the end and on a fault; Ok tells which
    bool Ok() const { return m_reader.Ok(); }

private:
    Reader m_reader;
    BACSTAC_OBJECT_ID m_object{};
    bool m_open = false;
};

} // namespace bacnet
