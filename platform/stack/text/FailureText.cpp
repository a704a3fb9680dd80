// Words for what went wrong, and the fixed strings of some enumerations.
#include "api/bacnet/BacGeneral.h"
#include "platform/stack/schema/Enumerations.h"
#include "platform/stack/text/NumberText.h"

#include <algorithm>
#include <string>

using namespace bacnet;

namespace {

struct StatusWords {
    BACSTAC_STATUS Status;
    const char* Words;
};

constexpr StatusWords STATUSES[] = {
    {BACSTAC_OK, "success"},
    {BACSTAC_STATUS_TIMEOUT, "timeout"},
    {BACSTAC_STATUS_UNKNOWN_DEVICE, "unknown device"},
    {BACSTAC_STATUS_NO_ROUTE, "no route to the network"},
    {BACSTAC_STATUS_DISABLED, "device or network disabled"},
    {BACSTAC_STATUS_BUFFER_TOO_SMALL, "buffer too small"},
    {BACSTAC_STATUS_INVALID_ANSWER, "invalid answer"},
    {BACSTAC_STATUS_INVALID_ARGUMENT, "invalid argument"},
    {BACSTAC_STATUS_TOO_LONG, "request too long"},
    {BACSTAC_STATUS_SEND_FAILURE, "sending failed"},
    {BACSTAC_STATUS_BUSY, "too many requests pending"},
    {BACSTAC_STATUS_CANCELLED, "cancelled"},
    {BACSTAC_STATUS_SHUTDOWN, "shutting down"},
    {BACSTAC_STATUS_NOT_SUPPORTED, "service not supported"},
    {BACSTAC_STATUS_ERROR, "error"},
    {BACSTAC_STATUS_REJECT, "reject"},
    {BACSTAC_STATUS_ABORT, "abort"},
};

const char* NameOrNumber(ENUM_TYPE_ID type, unsigned value) {
    const char* const name = FindEnumName(type, value);
    return name != nullptr ? name : NumberText("unknown (", value, ")");
}

bool HasDetail(const BACSTAC_ERROR* error) {
    return error != nullptr && (error->Kind != 0 || error->Class != 0 || error->Code != 0);
}

} // namespace

std::string CBacGeneral::GetErrorText(BACSTAC_STATUS status, BACSTAC_ERROR const* error) {
    std::string text = GetStatusString(status);
    if (!HasDetail(error))
        return text;
    if (status == BACSTAC_STATUS_ERROR)
        text.append(": ")
            .append(GetErrorCodeString(*error))
            .append(" (")
            .append(GetErrorClassString(error->Class))
            .append(")");
    else if (status == BACSTAC_STATUS_REJECT)
        text.append(": ").append(GetRejectReasonString(error->Class));
    else if (status == BACSTAC_STATUS_ABORT)
        text.append(": ").append(GetAbortReasonString(error->Class));
    return text;
}

const char* CBacGeneral::GetStatusString(BACSTAC_STATUS status) {
    const auto* const found = std::find_if(std::begin(STATUSES), std::end(STATUSES),
                                           [&](const StatusWords& row) { return row.Status == status; });
    return found != std::end(STATUSES) ? found->Words : NumberText("S(", status, ")");
}

const char* CBacGeneral::GetErrorCodeString(unsigned code) {
    return NameOrNumber(ENUM_ERROR_CODE, code);
}

const char* CBacGeneral::GetErrorCodeString(BACSTAC_ERROR const& error) {
    return GetErrorCodeString(error.Code);
}

const char* CBacGeneral::GetErrorClassString(unsigned errorClass) {
    return NameOrNumber(ENUM_ERROR_CLASS, errorClass);
}

const char* CBacGeneral::GetRejectReasonString(unsigned reason) {
    return NameOrNumber(ENUM_REJECT_REASON, reason);
}

const char* CBacGeneral::GetAbortReasonString(unsigned reason) {
    return NameOrNumber(ENUM_ABORT_REASON, reason);
}

const char* CBacGeneral::GetEventStateString(unsigned state) {
    return NameOrNumber(ENUM_EVENT_STATE, state);
}

const char* CBacGeneral::GetEventTypeString(unsigned type) {
    return NameOrNumber(ENUM_EVENT_TYPE, type);
}

const char* CBacGeneral::GetNotifyTypeString(unsigned type) {
    return NameOrNumber(ENUM_NOTIFY_TYPE, type);
}
