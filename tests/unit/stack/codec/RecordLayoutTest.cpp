// Where the fields of the records lie that others hold as bytes: report documents, settings, the history's references.
#include "api/bacnet/Types.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

TEST(RecordLayout, OfDatesAndBitStrings) {
    EXPECT_EQ(offsetof(BACSTAC_DATE, Year), 0U);
    EXPECT_EQ(offsetof(BACSTAC_DATE, Reserved), 2U);
    EXPECT_EQ(offsetof(BACSTAC_DATE, Month), 4U);
    EXPECT_EQ(offsetof(BACSTAC_DATE, Day), 8U);
    EXPECT_EQ(offsetof(BACSTAC_DATE, Weekday), 12U);
    EXPECT_EQ(offsetof(BACSTAC_TIME, Hundredths), 3U);
    EXPECT_EQ(offsetof(BACSTAC_DATE_TIME, Time), 16U);
    EXPECT_EQ(offsetof(BACSTAC_BIT_STRING, BitCount), 0U);
    EXPECT_EQ(offsetof(BACSTAC_BIT_STRING, Bits), 4U);
}

TEST(RecordLayout, OfReferences) {
    EXPECT_EQ(offsetof(BACSTAC_DEV_OBJ_REF, DevicePresent), 8U);
    EXPECT_EQ(offsetof(BACSTAC_DEV_OBJ_REF, DeviceId), 12U);
    EXPECT_EQ(offsetof(BACSTAC_DEV_OBJ_PROP_REF, Property), 8U);
    EXPECT_EQ(offsetof(BACSTAC_DEV_OBJ_PROP_REF, ArrayIndex), 12U);
    EXPECT_EQ(offsetof(BACSTAC_DEV_OBJ_PROP_REF, DevicePresent), 16U);
    EXPECT_EQ(offsetof(BACSTAC_DEV_OBJ_PROP_REF, DeviceId), 20U);
}

TEST(RecordLayout, OfSummariesOfAlarmsAndEnrollments) {
    EXPECT_EQ(offsetof(BACSTAC_ALARM_SUMMARY, AlarmState), 8U);
    EXPECT_EQ(offsetof(BACSTAC_ALARM_SUMMARY, AckedTransitions), 12U);
    EXPECT_EQ(offsetof(BACSTAC_ENROLLMENT_SUMMARY, EventType), 8U);
    EXPECT_EQ(offsetof(BACSTAC_ENROLLMENT_SUMMARY, EventState), 12U);
    EXPECT_EQ(offsetof(BACSTAC_ENROLLMENT_SUMMARY, Priority), 16U);
    EXPECT_EQ(offsetof(BACSTAC_ENROLLMENT_SUMMARY, NotificationClassPresent), 20U);
    EXPECT_EQ(offsetof(BACSTAC_ENROLLMENT_SUMMARY, NotificationClass), 24U);
}

} // namespace
