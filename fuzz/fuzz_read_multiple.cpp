// ReadPropertyMultiple: octets as an answer, each value decoded into contents; and as a request.
#include "fuzz/Contents.h"
#include "platform/stack/client/Values.h"
#include "platform/stack/services/ReadPropertyMultiple.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bacnet;
    const std::span octets(data, size);
    RpmAckReader answer(octets);
    RpmResult result;
    std::size_t results = 0;
    while (answer.Next(result)) {
        if (++results > size)
            std::abort(); // more results than octets: no progress
        Contents contents(1024);
        if (result.Success)
            ValueInto(result.Value, result.Target, contents.Value);
        contents.Check();
    }
    RpmRequestReader request(octets);
    PropertyTarget target;
    std::size_t references = 0;
    while (request.Next(target))
        if (++references > size)
            std::abort();
    return 0;
}
