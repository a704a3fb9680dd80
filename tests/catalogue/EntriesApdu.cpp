// APDUs that are cut, of no known kind, of another request, or refusals of any kind.
#include "tests/catalogue/Entry.h"

namespace catalogue {

namespace {

Entry Dropped(const char* name, const char* apdu) {
    return {name, ReadProperty, std::string(apdu) + " ; GOOD", BACSTAC_OK, "72.3"};
}

} // namespace

Table ApduEntries() {
    return {
        Dropped("complex ack of one octet", "30"),
        Dropped("complex ack without a service", "30 ID"),
        Dropped("simple ack without an invoke id", "20"),
        Dropped("simple ack without a service", "20 ID"),
        Dropped("error of one octet", "50"),
        Dropped("error without a service", "50 ID"),
        Dropped("reject without a reason", "60 ID"),
        Dropped("abort without a reason", "71 ID"),
        Dropped("segment ack cut", "41 ID 00"),
        Dropped("PDU of type 8", "80 ID 0C 00"),
        Dropped("PDU of type 15", "F0 ID 0C 00"),
        Dropped("request cut", "00 04 ID"),
        Dropped("segmented request cut", "0C 04 ID 00 04"),
        Dropped("unconfirmed request without a service", "10"),
        Dropped("unconfirmed request of an unknown service", "10 FF 01 02 03"),
        Dropped("request of an unknown service instead of the answer", "00 04 ID FF"),
        Dropped("request that ends in its parameters", "00 04 ID 0C 0C 02"),
        Dropped("segment of a request that never began", "0C 04 ID 05 04 0C 00*20"),
        Dropped("segment ack without segments", "41 ID 00 10"),
        Dropped("negative segment ack without segments", "43 ID 00 10"),
        {"simple ack for a question", ReadProperty, "20 ID 0C", BACSTAC_STATUS_INVALID_ANSWER},
        {"complex ack of no octets", ReadProperty, "30 ID 0C", BACSTAC_STATUS_INVALID_ANSWER},
        {"silence", ReadProperty, "-", BACSTAC_STATUS_TIMEOUT, "timeout"},
        {"silence, waited for with a callback", ReadPropertyAsync, "-", BACSTAC_STATUS_TIMEOUT, "timeout"},
        {"nothing but garbage at every attempt", ReadProperty, "FF*200 | 3F | raw 81 0A 00", BACSTAC_STATUS_TIMEOUT},
        {"answer with reserved bits set", ReadProperty, "33 ID 0C 0C 00 00 00 05 19 55 3E 44 42 90 99 9A 3F",
         BACSTAC_OK, "72.3"},
        {"more to follow without segments", ReadProperty, "34 ID 0C 0C 00 00 00 05 19 55 3E 44 42 90 99 9A 3F",
         BACSTAC_OK, "72.3"},
    };
}

Table MatchingEntries() {
    return {
        Dropped("answer with another invoke id", "30 ID+1 0C 0C 00 00 00 05 19 55 3E 44 3F 80 00 00 3F"),
        Dropped("answer of another service", "30 ID 0E 0C 00 00 00 05 1E 29 55 4E 44 3F 80 00 00 4F 1F"),
        Dropped("acknowledgement of another service", "20 ID 0F"),
        Dropped("error of another service", "50 ID 0F 91 02 91 28"),
        Dropped("reject with another invoke id", "60 ID+1 09"),
        Dropped("abort with another invoke id", "71 ID+1 04"),
        Dropped("answer about another object", "30 ID 0C 0C 00 00 00 06 19 55 3E 44 3F 80 00 00 3F"),
        Dropped("answer about an object of another type", "30 ID 0C 0C 00 40 00 05 19 55 3E 44 3F 80 00 00 3F"),
        Dropped("answer about another property", "30 ID 0C 0C 00 00 00 05 19 67 3E 91 00 3F"),
        Dropped("answer about an element that nobody asked for",
                "30 ID 0C 0C 00 00 00 05 19 55 29 01 3E 44 3F 80 00 00 3F"),
        Dropped("answer from a stranger", "from=stranger 30 ID 0C 0C 00 00 00 05 19 55 3E 44 3F 80 00 00 3F"),
        Dropped("reject from a stranger", "from=stranger 60 ID 09"),
        Dropped("abort from a stranger", "from=stranger 71 ID 04"),
        {"answer from another port of the device", ReadProperty, "from=port GOOD", BACSTAC_OK, "72.3"},
        {"answer given twice", ReadProperty, "times=2 GOOD", BACSTAC_OK, "72.3"},
        {"answer given twice, the second another one", ReadProperty,
         "GOOD | 30 ID 0C 0C 00 00 00 05 19 55 3E 44 3F 80 00 00 3F", BACSTAC_OK, "72.3"},
        {"answer and then an error", ReadProperty, "GOOD | 50 ID 0C 91 01 91 1F | 71 ID 00", BACSTAC_OK, "72.3"},
        {"answer given 300 times", ReadProperty, "times=300 GOOD", BACSTAC_OK, "72.3"},
        {"answer to the first attempt after the second", ReadProperty, "after=500 GOOD ; -", BACSTAC_OK, "72.3"},
        {"answers to both attempts, late", ReadProperty, "after=450 GOOD ; after=60 GOOD", BACSTAC_OK, "72.3"},
        {"answer after the call was given up", ReadProperty,
         "after=1100 30 ID 0C 0C 00 00 00 05 19 55 3E 44 3F 80 00 00 3F ; -", BACSTAC_STATUS_TIMEOUT},
        {"refusal after the call was given up", ReadProperty, "after=1100 60 ID 09 ; -", BACSTAC_STATUS_TIMEOUT},
        {"answer at the last moment", ReadProperty, "- ; after=150 GOOD", BACSTAC_OK, "72.3"},
        {"late answers, waited for with a callback", ReadPropertyAsync, "after=450 GOOD ; after=30 GOOD", BACSTAC_OK,
         "72.3"},
        {"answers with every invoke id before the right one", ReadProperty, "", BACSTAC_OK, "72.3",
         [] {
             return Script([](const Octets& apdu) {
                 std::vector<Datagram> answers;
                 if (apdu[0] >> 4 != 0)
                     return answers;
                 for (unsigned id = 0; id < 256; ++id) {
                     Octets wrong = AssembleOctets("30 ID 0C 0C 00 00 00 05 19 55 3E 44 3F 80 00 00 3F", apdu);
                     wrong[1] = static_cast<std::uint8_t>(id);
                     if (id != apdu[2])
                         answers.push_back(ApduDatagram(wrong));
                 }
                 answers.push_back(ApduDatagram(AssembleOctets("GOOD", apdu)));
                 return answers;
             });
         }},
        {"the request itself, sent back", ReadProperty, "", BACSTAC_STATUS_TIMEOUT, "",
         [] {
             return Script([](const Octets& apdu) {
                 return apdu[0] >> 4 == 0 ? std::vector<Datagram>{ApduDatagram(apdu)} : std::vector<Datagram>{};
             });
         }},
    };
}

Table FailureEntries() {
    return {
        {"error of an unknown object", ReadProperty, "50 ID 0C 91 01 91 1F", BACSTAC_STATUS_ERROR,
         "error: unknown-object (object)"},
        {"error of a class that nobody knows", ReadProperty, "50 ID 0C 91 C8 91 1F", BACSTAC_STATUS_ERROR,
         "error: unknown-object (unknown (200))"},
        {"error of a maker's own class and code", ReadProperty, "50 ID 0C 92 02 00 92 10 00", BACSTAC_STATUS_ERROR,
         "error: unknown (4096) (unknown (512))"},
        {"error of the greatest class and code", ReadProperty, "50 ID 0C 94 FF FF FF FF 94 FF FF FF FF",
         BACSTAC_STATUS_ERROR, "error: unknown (4294967295) (unknown (4294967295))"},
        {"error with a code of five octets", ReadProperty, "50 ID 0C 91 01 95 05 01 00 00 00 1F", BACSTAC_STATUS_ERROR,
         "error: unknown (4294967295) (object)"},
        {"error without class and code", ReadProperty, "50 ID 0C", BACSTAC_STATUS_INVALID_ANSWER},
        {"error without a code", ReadProperty, "50 ID 0C 91 01", BACSTAC_STATUS_INVALID_ANSWER},
        {"error in unsigned numbers", ReadProperty, "50 ID 0C 21 01 21 1F", BACSTAC_STATUS_INVALID_ANSWER},
        {"error in the brackets of other services", ReadProperty, "50 ID 0C 0E 91 01 91 1F 0F", BACSTAC_STATUS_ERROR,
         "error: unknown-object (object)"},
        {"error with octets behind it", ReadProperty, "50 ID 0C 91 01 91 1F 00*40", BACSTAC_STATUS_ERROR,
         "error: unknown-object (object)"},
        {"error whose tag lies about its length", ReadProperty, "50 ID 0C 95 FE FF FF 01",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"reject of an unknown service", ReadProperty, "60 ID 09", BACSTAC_STATUS_REJECT,
         "reject: unrecognized-service"},
        {"reject of no reason", ReadProperty, "60 ID 00", BACSTAC_STATUS_REJECT, "reject: other"},
        {"reject of an unknown reason", ReadProperty, "60 ID 3F", BACSTAC_STATUS_REJECT, "reject: unknown (63)"},
        {"reject of the greatest reason", ReadProperty, "60 ID FF", BACSTAC_STATUS_REJECT, "reject: unknown (255)"},
        {"reject with octets behind it", ReadProperty, "60 ID 04 AA*200", BACSTAC_STATUS_REJECT, "reject: invalid-tag"},
        {"abort of no reason", ReadProperty, "71 ID 00", BACSTAC_STATUS_ABORT, "abort: other"},
        {"abort of the greatest reason", ReadProperty, "71 ID FF", BACSTAC_STATUS_ABORT, "abort: unknown (255)"},
        {"abort that does not say it is the server's", ReadProperty, "70 ID 01", BACSTAC_STATUS_ABORT,
         "abort: buffer-overflow"},
        {"abort with reserved bits", ReadProperty, "7F ID 02", BACSTAC_STATUS_ABORT,
         "abort: invalid-apdu-in-this-state"},
        {"error, waited for with a callback", ReadPropertyAsync, "50 ID 0C 91 02 91 20", BACSTAC_STATUS_ERROR,
         "error: unknown-property (property)"},
        {"abort, waited for with a callback", ReadPropertyAsync, "71 ID 04", BACSTAC_STATUS_ABORT,
         "abort: segmentation-not-supported"},
        {"reject and abort at once", ReadProperty, "60 ID 09 | 71 ID 04", BACSTAC_STATUS_REJECT,
         "reject: unrecognized-service"},
    };
}

} // namespace catalogue
