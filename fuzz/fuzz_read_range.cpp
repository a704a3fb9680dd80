// ReadRange: octets as an answer, its items decoded as records of each kind of log; and as a request.
#include "api/bacnet/Enums.h"
#include "fuzz/Contents.h"
#include "platform/stack/client/Values.h"
#include "platform/stack/services/ReadRange.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bacnet;
    const std::span octets(data, size);
    const auto decode = [](std::span<const std::uint8_t> items, const PropertyTarget& target) {
        for (const unsigned room : {10U, 200U, 8192U}) {
            Contents contents(room);
            bool dropped = false;
            ItemsInto(items, target, contents.Value, dropped);
            contents.Check();
        }
    };
    ReadRangeAck ack;
    if (DecodeReadRangeAck(octets, ack))
        decode(ack.Items, ack.Target);
    for (const BACSTAC_OBJECT_TYPE type : {OBJ_TREND_LOG, OBJ_TREND_LOG_MULTIPLE, OBJ_EVENT_LOG})
        decode(octets, {{type, 1}, PROP_LOG_BUFFER, BACSTAC_NO_INDEX});
    ReadRangeRequest request;
    DecodeReadRange(octets, request);
    return 0;
}
