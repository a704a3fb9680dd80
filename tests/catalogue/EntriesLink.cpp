// Frames that go wrong below the APDU. Each is met by the first attempt, and the right answer by the second: the frame
// must be dropped, and must leave nothing behind.
#include "tests/catalogue/Entry.h"

namespace catalogue {

namespace {

Entry Dropped(const char* name, const char* frame) {
    return {name, ReadProperty, std::string(frame) + " ; GOOD", BACSTAC_OK, "72.3"};
}

} // namespace

Table VirtualLinkEntries() {
    return {
        Dropped("datagram of no octets", "raw"),
        Dropped("datagram of one octet", "raw 81"),
        Dropped("header cut before the length", "raw 81 0A"),
        Dropped("header cut in the length", "raw 81 0A 00"),
        Dropped("header without an NPDU", "raw 81 0A 00 04"),
        Dropped("another protocol's type", "raw 82 0A 00 17 01 00 GOOD"),
        Dropped("nothing but zeros", "raw 00*64"),
        Dropped("nothing but ones", "raw FF*1497"),
        Dropped("length of nothing", "raw 81 0A 00 00 01 00 GOOD"),
        Dropped("length less than the header", "raw 81 0A 00 03 01 00 GOOD"),
        Dropped("length one short", "raw 81 0A 00 16 01 00 GOOD"),
        Dropped("length one long", "raw 81 0A 00 18 01 00 GOOD"),
        Dropped("length of 65535", "raw 81 0A FF FF 01 00 GOOD"),
        Dropped("length in the other octet order", "raw 81 0A 17 00 01 00 GOOD"),
        Dropped("unknown function", "raw 81 7F 00 17 01 00 GOOD"),
        Dropped("secure frame", "raw 81 0C 00 17 01 00 GOOD"),
        Dropped("longest datagram there is", "raw 81 0A FF E3 01 00 30 ID 0C 55*65498"),
        Dropped("forwarded frame without an origin", "raw 81 04 00 04"),
        Dropped("forwarded frame with half an origin", "raw 81 04 00 07 7F 00 00"),
        Dropped("forwarded frame without an NPDU", "raw 81 04 00 0A 7F 00 00 01 BA C0"),
        Dropped("forwarded frame of no station", "raw 81 04 00 1D 00 00 00 00 00 00 01 00 GOOD"),
        Dropped("refusal that nobody waits for", "raw 81 00 00 06 00 30"),
        Dropped("result without a code", "raw 81 00 00 04"),
        Dropped("result of an unknown code", "raw 81 00 00 06 FF FF"),
        Dropped("wish to be a foreign device", "raw 81 05 00 06 00 3C"),
        Dropped("wish to be a foreign device, cut", "raw 81 05 00 05 00"),
        Dropped("broadcast table to be written", "raw 81 01 00 0E 7F 00 00 01 BA C0 FF FF FF FF"),
        Dropped("broadcast table of half an entry", "raw 81 03 00 09 7F 00 00 01 BA"),
        Dropped("foreign device table of half an entry", "raw 81 07 00 0B 7F 00 00 01 BA C0 00"),
        Dropped("foreign device to be deleted", "raw 81 08 00 0A 7F 00 00 01 BA C0"),
        Dropped("300 empty datagrams", "times=300 raw"),
    };
}

Table NetworkEntries() {
    return {
        Dropped("NPDU of version 0", "npdu 00 00 GOOD"),
        Dropped("NPDU of version 2", "npdu 02 00 GOOD"),
        Dropped("NPDU of one octet", "npdu 01"),
        Dropped("NPDU without an APDU", "npdu 01 00"),
        Dropped("destination cut in the network", "npdu 01 20 00"),
        Dropped("destination cut before the length", "npdu 01 20 00 05"),
        Dropped("destination longer than the frame", "npdu 01 20 00 05 FF GOOD"),
        Dropped("destination of network 0", "npdu 01 20 00 00 01 01 FF GOOD"),
        Dropped("destination on another network", "npdu 01 20 00 09 01 44 FF GOOD"),
        Dropped("hop count missing", "npdu 01 20 FF FF 00"),
        Dropped("source cut", "npdu 01 08 00"),
        Dropped("source longer than the frame", "npdu 01 08 00 05 FE GOOD"),
        Dropped("source longer than any address", "npdu 01 08 00 05 20 11*32 GOOD"),
        Dropped("source of no address", "npdu 01 08 00 05 00 GOOD"),
        Dropped("source on network 0", "npdu 01 08 00 00 01 07 GOOD"),
        Dropped("source on all networks", "npdu 01 08 FF FF 01 07 GOOD"),
        Dropped("source behind a router that nobody asked", "npdu 01 08 00 05 01 07 GOOD"),
        Dropped("network message without a type", "npdu 01 80"),
        Dropped("network message of an unknown type", "npdu 01 80 7F 01 02 03"),
        Dropped("network message of a maker without its number", "npdu 01 80 80"),
        Dropped("network message of a maker", "npdu 01 80 FF 01 04 AA*100"),
        Dropped("router of networks 0 and 65535", "npdu 01 80 01 00 00 FF FF"),
        Dropped("router of half a network", "npdu 01 80 01 00 05 00"),
        Dropped("router of 700 networks", "npdu 01 80 01 07*1400"),
        Dropped("rejected message without a network", "npdu 01 80 03 01"),
        Dropped("rejected message to a network that nobody asked", "npdu 01 80 03 01 00 63"),
        Dropped("rejected message of an unknown reason", "npdu 01 80 03 FF 00 00"),
        Dropped("router busy without a network", "npdu 01 80 04 00"),
        Dropped("router busy for all", "npdu 01 80 04"),
        Dropped("routing table that lies about its count", "npdu 01 80 06 FF 00 05 01 00"),
        Dropped("network number of no length", "npdu 01 80 13"),
        Dropped("network number 65535", "npdu 01 80 13 FF FF 01"),
        Dropped("security message", "npdu 01 80 0A 00*40"),
    };
}

Table RoutedEntries() {
    return {
        {"answer over a router", ReadProperty, "GOOD", BACSTAC_OK, "72.3"},
        {"error over a router", ReadProperty, "50 ID 0C 91 01 91 1F", BACSTAC_STATUS_ERROR,
         "error: unknown-object (object)"},
        {"silence behind a router", ReadProperty, "-", BACSTAC_STATUS_TIMEOUT},
        {"late answer over a router", ReadProperty, "after=500 GOOD ; -", BACSTAC_OK, "72.3"},
        {"answer twice over a router", ReadProperty, "times=2 GOOD", BACSTAC_OK, "72.3"},
        Dropped("answer of the router itself", "npdu 01 00 GOOD"),
        Dropped("answer of another station behind the router", "npdu 01 08 00 09 01 07 GOOD"),
        Dropped("answer of a station with a longer address", "npdu 01 08 00 09 02 07 00 GOOD"),
        Dropped("answer of a station with the longest address there is", "npdu 01 08 00 09 12 07*18 GOOD"),
        Dropped("answer that goes on to another network", "npdu 01 28 00 63 01 05 00 09 01 07 FF GOOD"),
        Dropped("error of the router itself", "npdu 01 00 50 ID 0C 91 01 91 1F"),
        Dropped("abort of the router itself", "npdu 01 00 71 ID 04"),
        {"answer over another router than asked", ReadProperty, "from=stranger GOOD", BACSTAC_OK, "72.3"},
        Dropped("network that the router has lost, another one", "npdu 01 80 03 01 00 63"),
        Dropped("router that is busy, for another network", "npdu 01 80 04 00 63"),
        Dropped("message too long, for another network", "npdu 01 80 03 04 00 63"),
    };
}

} // namespace catalogue
