// ReadProperty: octets as an answer, decoded into contents as the client does; and as a request.
#include "fuzz/Contents.h"
#include "platform/stack/client/PropertyAnswer.h"
#include "platform/stack/services/WriteProperty.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bacnet;
    const std::span octets(data, size);
    ReadPropertyAck ack;
    if (DecodeReadPropertyAck(octets, ack))
        for (const unsigned room : {0U, 7U, 64U, 4096U}) {
            Contents contents(room);
            ReadAnswerInto(octets, ack.Target, contents.Value);
            contents.Check();
        }
    PropertyTarget target;
    DecodeReadProperty(octets, target);
    IsOfSameProperty(octets, octets);
    WriteRequest request;
    DecodeWriteProperty(octets, request);
    WpmRequestReader reader(octets);
    while (reader.Next(request)) {}
    return 0;
}
