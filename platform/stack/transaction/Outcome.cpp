#include "platform/stack/transaction/Outcome.h"

namespace bacnet {

const char* ToString(Outcome outcome) {
    switch (outcome) {
    case Outcome::simple_ack:
        return "acknowledged";
    case Outcome::complex_ack:
        return "answered";
    case Outcome::error:
        return "error";
    case Outcome::reject:
        return "rejected";
    case Outcome::abort:
        return "aborted by the device";
    case Outcome::timeout:
        return "no answer";
    case Outcome::segments_stopped:
        return "the answer broke off";
    case Outcome::answer_too_long:
        return "the answer is too long";
    case Outcome::invalid_answer:
        return "the answer breaks the protocol";
    case Outcome::no_route:
        return "no router to the network";
    case Outcome::invalid_address:
        return "not an address of a station";
    case Outcome::request_too_long:
        return "the request is too long for the device";
    case Outcome::send_failure:
        return "the system refused to send";
    case Outcome::busy:
        return "too many requests to one device";
    case Outcome::cancelled:
        return "given up";
    case Outcome::shutdown:
        return "the stack is closing";
    }
    return "?";
}

} // namespace bacnet
