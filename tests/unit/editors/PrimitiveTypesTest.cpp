// The types that a value of any type is chosen from.
#include "module/editors/PrimitiveTypes.h"

#include "api/bacnet/Enums.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

constexpr BACSTAC_OBJECT_TYPE OBJ_SCHEDULE = 17;
constexpr BACSTAC_OBJECT_TYPE OBJ_NOTIFICATION_CLASS = 15;
constexpr BACSTAC_PROPERTY_ID PROP_EVENT_PARAMETERS = 83;
constexpr BACSTAC_PROPERTY_ID PROP_PRIORITY = 86;
constexpr BACSTAC_PROPERTY_ID PROP_WEEKLY_SCHEDULE = 123;

TEST(PrimitiveTypes, AreAllOfThemButForEventParameters) {
    EXPECT_THAT(PrimitiveTypes(OBJ_SCHEDULE, PROP_WEEKLY_SCHEDULE),
                ElementsAre(0, 1, 2, 3, 4, 5, 13, 8, 9, 10, 11, 12, 6));
    EXPECT_THAT(PrimitiveTypes(OBJ_EVENT_ENROLLMENT, PROP_EVENT_PARAMETERS), ElementsAre(0, 1, 2, 4, 5, 8, 9, 37, 6));
    EXPECT_EQ(PrimitiveTypes(OBJ_SCHEDULE, PROP_EVENT_PARAMETERS).size(), 13U);
    EXPECT_EQ(PrimitiveTypes(OBJ_EVENT_ENROLLMENT, PROP_WEEKLY_SCHEDULE).size(), 13U);
}

TEST(PrimitiveTypes, EachHasAValueOfTheProperty) {
    for (const BACSTAC_PROPERTY_ID property : {PROP_EVENT_PARAMETERS, PROP_PRESENT_VALUE}) {
        for (const BACSTAC_DATA_TYPE type : PrimitiveTypes(OBJ_EVENT_ENROLLMENT, property)) {
            const auto value = NewPrimitive(OBJ_EVENT_ENROLLMENT, property, type);
            ASSERT_NE(value, nullptr) << type;
            EXPECT_EQ(value->GetDataType(), type);
            EXPECT_EQ(value->GetPropId(), property);
            EXPECT_FALSE(value->IsCollection());
        }
    }
}

TEST(PrimitiveTypes, OneValueOfADayIsNotSevenOfTheWeek) {
    EXPECT_FALSE(NewPrimitive(OBJ_SCHEDULE, PROP_WEEKLY_SCHEDULE, TYPE_REAL)->IsCollection());
}

TEST(PrimitiveTypes, AValueThatIsTheWholePropertyHasItsElements) {
    const auto value = NewPrimitive(OBJ_NOTIFICATION_CLASS, PROP_PRIORITY, TYPE_UNSIGNED);
    EXPECT_TRUE(value->IsCollection());
    EXPECT_FALSE(NewPrimitive(OBJ_NOTIFICATION_CLASS, PROP_PRIORITY, TYPE_REAL)->IsCollection());
}

TEST(PrimitiveTypes, OtherTypesHaveNoValue) {
    EXPECT_EQ(NewPrimitive(OBJ_SCHEDULE, PROP_PRESENT_VALUE, 12345), nullptr);
}

} // namespace
