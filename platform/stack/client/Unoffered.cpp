// Services of the contract that this build of the stack does not offer. They fail locally and send nothing.
#include "platform/stack/client/BacnetClient.h"

namespace bacnet {

namespace {

constexpr BACSTAC_STATUS unoffered = BACSTAC_STATUS_NOT_SUPPORTED;

void SetCount(unsigned* count) {
    if (count != nullptr)
        *count = 0;
}

} // namespace

BACSTAC_STATUS BacnetClient::ReadPropertyConditional(unsigned, BACSTAC_READ_CON_INFO const*, BACSTAC_RPC_RESULT*,
                                                     BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::WriteProperty(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int, int,
                                           BACSTAC_PROPERTY_CONTENTS const&, BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::WritePropertyNull(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int, int,
                                               BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::WritePropertyMultiple(unsigned, BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID const&,
                                                   BACSTAC_PROPERTY_VALUE const*, unsigned, BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::CreateObject(unsigned, BACSTAC_OBJECT_SPECIFIER const*, BACSTAC_PROPERTY_VALUE const*,
                                          unsigned, BACSTAC_OBJECT_ID*, BACSTAC_ERROR*, unsigned* firstFailed) {
    SetCount(firstFailed);
    return unoffered;
}

BACSTAC_STATUS BacnetClient::DeleteObject(unsigned, BACSTAC_OBJECT_ID const*, BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::DeviceCommControl(unsigned, unsigned, BACSTAC_DCC_VALUE, const char*, BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::ReinitializeDevice(unsigned, BACSTAC_REINIT_TYPE, const char*, BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::ReadFile(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_READ_FILE_SPEC const*,
                                      BACSTAC_READ_FILE_RESULT*, BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::WriteFile(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_WRITE_FILE_SPEC const*,
                                       BACSTAC_WRITE_FILE_RESULT*, BACSTAC_ERROR*) {
    return unoffered;
}

BACSTAC_STATUS BacnetClient::GetAlarmSummary(unsigned, BACSTAC_ALARM_SUMMARY*, unsigned, unsigned* count,
                                             BACSTAC_ERROR*) {
    SetCount(count);
    return unoffered;
}

BACSTAC_STATUS BacnetClient::GetEnrollmentSummary(unsigned, BACSTAC_ENROLLMENT_FILTER const&,
                                                  BACSTAC_ENROLLMENT_SUMMARY*, unsigned, unsigned* count,
                                                  BACSTAC_ERROR*) {
    SetCount(count);
    return unoffered;
}

BACSTAC_STATUS BacnetClient::GetEventInformation(unsigned, BACSTAC_OBJECT_ID const*, BACSTAC_EVENT_SUMMARY*, unsigned,
                                                 unsigned* count, bool* more, BACSTAC_ERROR*) {
    SetCount(count);
    if (more != nullptr)
        *more = false;
    return unoffered;
}

BACSTAC_STATUS BacnetClient::SynchronizeTime(bool, BACSTAC_DATE_TIME const&, unsigned const*, int count) {
    return count == 0 ? BACSTAC_OK : unoffered;
}

bool BacnetClient::ReadDeviceTime(unsigned, BACSTAC_DATE_TIME&, int&) {
    return false;
}

} // namespace bacnet
