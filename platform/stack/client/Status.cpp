#include "platform/stack/client/Status.h"

#include "platform/stack/network/Apdu.h"
#include "platform/stack/services/ErrorAnswer.h"

namespace bacnet {

namespace {

// Error codes (clause 18) that tell of the service or of its size, in whatever class a device puts them.
constexpr std::uint32_t codeOptionalFunctionalityNotSupported = 45;
constexpr std::uint32_t codeAbortBufferOverflow = 51;
constexpr std::uint32_t codeAbortSegmentationNotSupported = 54;
constexpr std::uint32_t codeRejectBufferOverflow = 59;
constexpr std::uint32_t codeRejectTooManyArguments = 65;
constexpr std::uint32_t codeRejectUnrecognizedService = 67;
constexpr std::uint32_t codeAbortApduTooLong = 123;
constexpr std::uint32_t codeAbortOutOfResources = 125;

constexpr std::uint32_t rejectBufferOverflow = 1;
constexpr std::uint32_t rejectTooManyArguments = 6;
constexpr std::uint32_t abortOutOfResources = 9;

void SetRefused(BACSTAC_ERROR* error, std::uint8_t reason) {
    if (error != nullptr)
        *error = {ERROR_KIND_REFUSED, reason, 0};
}

} // namespace

BACSTAC_STATUS ToStatus(const CallResult& result, ConfirmedService service, std::span<const std::uint8_t> answer,
                        BACSTAC_ERROR* error) {
    switch (result.How) {
    case Outcome::simple_ack:
    case Outcome::complex_ack:
        return BACSTAC_OK;
    case Outcome::error: {
        ErrorAnswer detail;
        const bool understood = DecodeErrorAnswer(service, answer, detail);
        if (error != nullptr)
            *error = {ERROR_KIND_ERROR, detail.Class, detail.Code};
        return understood ? BACSTAC_STATUS_ERROR : BACSTAC_STATUS_INVALID_ANSWER;
    }
    case Outcome::reject:
        SetRefused(error, result.Reason);
        return BACSTAC_STATUS_REJECT;
    case Outcome::abort:
        SetRefused(error, result.Reason);
        return BACSTAC_STATUS_ABORT;
    case Outcome::timeout:
    case Outcome::segments_stopped:
        return BACSTAC_STATUS_TIMEOUT;
    case Outcome::answer_too_long:
        return BACSTAC_STATUS_BUFFER_TOO_SMALL;
    case Outcome::invalid_answer:
        return BACSTAC_STATUS_INVALID_ANSWER;
    case Outcome::no_route:
        return BACSTAC_STATUS_NO_ROUTE;
    case Outcome::invalid_address:
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    case Outcome::request_too_long:
        return BACSTAC_STATUS_TOO_LONG;
    case Outcome::send_failure:
        return BACSTAC_STATUS_SEND_FAILURE;
    case Outcome::busy:
        return BACSTAC_STATUS_BUSY;
    case Outcome::cancelled:
        return BACSTAC_STATUS_CANCELLED;
    case Outcome::shutdown:
        return BACSTAC_STATUS_SHUTDOWN;
    }
    return BACSTAC_STATUS_INVALID_ANSWER;
}

BACSTAC_STATUS ToStatus(Outcome sent) {
    return ToStatus({sent, 0}, ConfirmedService::readProperty, {}, nullptr);
}

bool IsTooMuch(BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
    switch (status) {
    case BACSTAC_STATUS_TOO_LONG:
        return true;
    case BACSTAC_STATUS_ABORT:
        return error.Class == ABORT_BUFFER_OVERFLOW || error.Class == ABORT_SEGMENTATION_NOT_SUPPORTED ||
               error.Class == ABORT_APDU_TOO_LONG || error.Class == abortOutOfResources;
    case BACSTAC_STATUS_REJECT:
        return error.Class == rejectBufferOverflow || error.Class == rejectTooManyArguments;
    case BACSTAC_STATUS_ERROR:
        return error.Code == codeAbortBufferOverflow || error.Code == codeAbortSegmentationNotSupported ||
               error.Code == codeAbortApduTooLong || error.Code == codeAbortOutOfResources ||
               error.Code == codeRejectBufferOverflow || error.Code == codeRejectTooManyArguments;
    default:
        return false;
    }
}

bool LacksService(BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
    if (status == BACSTAC_STATUS_REJECT)
        return error.Class == REJECT_UNRECOGNIZED_SERVICE;
    return status == BACSTAC_STATUS_ERROR &&
           (error.Code == codeRejectUnrecognizedService || error.Code == codeOptionalFunctionalityNotSupported);
}

bool CanReadSingly(BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
    return LacksService(status, error) || (status >= BACSTAC_STATUS_ERROR && IsTooMuch(status, error));
}

} // namespace bacnet
