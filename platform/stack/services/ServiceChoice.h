// Service choices of confirmed and unconfirmed requests (ANSI/ASHRAE 135 clause 21, BACnetConfirmedServiceChoice and
// BACnetUnconfirmedServiceChoice).
#pragma once

#include <cstdint>

namespace bacnet {

enum class ConfirmedService : std::uint8_t {
    acknowledgeAlarm = 0,
    confirmedCovNotification = 1,
    confirmedEventNotification = 2,
    getAlarmSummary = 3,
    getEnrollmentSummary = 4,
    subscribeCov = 5,
    atomicReadFile = 6,
    atomicWriteFile = 7,
    addListElement = 8,
    removeListElement = 9,
    createObject = 10,
    deleteObject = 11,
    readProperty = 12,
    readPropertyConditional = 13,
    readPropertyMultiple = 14,
    writeProperty = 15,
    writePropertyMultiple = 16,
    deviceCommunicationControl = 17,
    reinitializeDevice = 20,
    readRange = 26,
    subscribeCovProperty = 28,
    getEventInformation = 29,
};

enum class UnconfirmedService : std::uint8_t {
    iAm = 0,
    iHave = 1,
    unconfirmedCovNotification = 2,
    unconfirmedEventNotification = 3,
    timeSynchronization = 6,
    whoHas = 7,
    whoIs = 8,
    utcTimeSynchronization = 9,
};

// BACnetSegmentation, as an I-Am and a device object tell it.
enum class Segmentation : std::uint8_t { both = 0, transmit = 1, receive = 2, none = 3 };

} // namespace bacnet
