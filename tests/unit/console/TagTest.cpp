// The tag table: what is found for which reference.
#include "module/console/Tag.h"

#include <gmock/gmock.h>

#include <random>

namespace {

using ::testing::ElementsAre;

constexpr std::uint32_t STATUS_FLAGS = 111;
constexpr std::uint32_t PRESENT_VALUE = 85;
constexpr std::uint32_t WHOLE = 0xFFFFFFFF;

CTag MakeTag(std::uint32_t id, std::uint32_t property = PRESENT_VALUE, std::int32_t bit = -1, std::uint32_t cov = 0) {
    CTag tag;
    tag.tagId = id;
    tag.cov = cov;
    tag.device = 5;
    tag.objectType = 2;
    tag.objectInstance = 7;
    tag.property = property;
    tag.statusBit = bit;
    return tag;
}

BACSTAC_DEV_OBJ_PROP_REF RefOf(const CTag& tag) {
    BACSTAC_DEV_OBJ_PROP_REF ref;
    tag.GetObjPropRef(ref);
    return ref;
}

// The id found, or 0 when none is.
std::uint32_t Find(const CTagList& list, const BACSTAC_DEV_OBJ_PROP_REF& ref, int bit) {
    std::uint32_t id = 0;
    const bool found = list.FindTagForRef(ref, bit, id);
    EXPECT_EQ(found, id != 0);
    return id;
}

TEST(Tag, IsUnsetByDefault) {
    const CTag tag;
    EXPECT_EQ(tag.tagId, 0xFFFFFFFF);
    EXPECT_EQ(tag.device, 0xFFFFFFFF);
    EXPECT_EQ(tag.objectType, 0xFFFFFFFF);
    EXPECT_EQ(tag.objectInstance, 0xFFFFFFFF);
    EXPECT_EQ(tag.property, 0xFFFFFFFF);
    EXPECT_EQ(tag.arrayIndex, 0xFFFFFFFF);
    EXPECT_EQ(tag.cov, 0U);
    EXPECT_EQ(tag.statusBit, -1);
    EXPECT_EQ(tag.reserved1, 0);
    EXPECT_EQ(tag.reserved2, 0);
}

TEST(Tag, GivesItsReferenceWithTheDevice) {
    BACSTAC_DEV_OBJ_PROP_REF ref{};
    ref.DevicePresent = 77;
    MakeTag(1).GetObjPropRef(ref);
    EXPECT_EQ(ref.ObjectId, (BACSTAC_OBJECT_ID{2, 7}));
    EXPECT_EQ(ref.Property, PRESENT_VALUE);
    EXPECT_EQ(ref.ArrayIndex, WHOLE);
    EXPECT_EQ(ref.DeviceId, (BACSTAC_OBJECT_ID{8, 5}));
    EXPECT_EQ(ref.DevicePresent, 1U);
}

TEST(TagList, AFailedLookUpGivesTheEmptyTag) {
    const CTagList list;
    EXPECT_EQ(list.GetTagCnt(), 0);
    EXPECT_EQ(&list.GetTag(1), &CTagList::EmptyTag);
    EXPECT_EQ(list.GetTag(1).tagId, 0xFFFFFFFF);
}

TEST(TagList, TheSecondTagOfAnIdReplacesTheFirst) {
    CTagList list;
    list.RegisterTag(MakeTag(9));
    CTag second = MakeTag(9);
    second.objectInstance = 8;
    list.RegisterTag(second);
    EXPECT_EQ(list.GetTagCnt(), 1);
    EXPECT_EQ(list.GetTag(9), second);
    EXPECT_EQ(Find(list, RefOf(MakeTag(0)), -1), 0U);
    EXPECT_EQ(Find(list, RefOf(second), -1), 9U);
}

TEST(TagList, OfTwoTagsThatMatchTheLowestIdIsFound) {
    CTagList list;
    list.RegisterTag(MakeTag(9));
    list.RegisterTag(MakeTag(4));
    EXPECT_EQ(Find(list, RefOf(MakeTag(0)), -1), 4U);
}

TEST(TagList, EveryPartOfTheReferenceCounts) {
    CTagList list;
    list.RegisterTag(MakeTag(4));
    const BACSTAC_DEV_OBJ_PROP_REF ref = RefOf(MakeTag(0));
    for (auto change : std::vector<void (*)(BACSTAC_DEV_OBJ_PROP_REF&)>{
             [](auto& r) { r.DeviceId.Instance = 6; }, [](auto& r) { r.ObjectId.Type = 3; },
             [](auto& r) { r.ObjectId.Instance = 8; }, [](auto& r) { r.Property = 86; },
             [](auto& r) { r.ArrayIndex = 1; }}) {
        BACSTAC_DEV_OBJ_PROP_REF other = ref;
        change(other);
        EXPECT_EQ(Find(list, other, -1), 0U);
    }
    BACSTAC_DEV_OBJ_PROP_REF same = ref;
    same.DevicePresent = 0; // of the device only the instance counts
    same.DeviceId.Type = 0;
    EXPECT_EQ(Find(list, same, -1), 4U);
}

TEST(TagList, BitsAreToldApartAndOnlyStatusFlagsHaveThem) {
    CTagList list;
    list.RegisterTag(MakeTag(4, STATUS_FLAGS, 0));
    list.RegisterTag(MakeTag(5, PRESENT_VALUE, 3));
    const BACSTAC_DEV_OBJ_PROP_REF flags = RefOf(MakeTag(0, STATUS_FLAGS));
    EXPECT_EQ(Find(list, flags, -1), 0U);
    EXPECT_EQ(Find(list, flags, 0), 4U);
    EXPECT_EQ(Find(list, flags, 1), 0U);
    EXPECT_EQ(Find(list, RefOf(MakeTag(0, PRESENT_VALUE)), 3), 0U);
}

TEST(TagList, CovTagsOfAReferenceAreAppendedWhateverTheirBit) {
    CTagList list;
    list.RegisterTag(MakeTag(30, STATUS_FLAGS, -1, 1));
    list.RegisterTag(MakeTag(20, STATUS_FLAGS, 3, 1));
    list.RegisterTag(MakeTag(25, STATUS_FLAGS, 0, 5));
    list.RegisterTag(MakeTag(22, STATUS_FLAGS, 2, 0));
    list.RegisterTag(MakeTag(21, PRESENT_VALUE, -1, 1));
    std::vector<std::uint32_t> ids{99};
    list.GetCOVtagIdList(5, {{2, 7}, STATUS_FLAGS, WHOLE}, ids);
    EXPECT_THAT(ids, ElementsAre(99, 20, 25, 30));
    list.GetCOVtagIdList(6, {{2, 7}, STATUS_FLAGS, WHOLE}, ids);
    EXPECT_EQ(ids.size(), 4U);
}

// The table's order of places gives what a walk in ascending id gives.
TEST(TagList, FindsWhatAWalkInAscendingIdWouldFind) {
    std::mt19937 random(1);
    const auto pick = [&random](unsigned count) { return static_cast<std::uint32_t>(random() % count); };
    const auto pickTag = [&] {
        CTag tag;
        tag.tagId = 1 + pick(500);
        tag.cov = pick(2);
        tag.device = pick(3);
        tag.objectType = pick(2);
        tag.objectInstance = pick(3);
        tag.property = pick(2) ? STATUS_FLAGS : PRESENT_VALUE;
        tag.arrayIndex = pick(2) ? WHOLE : 1;
        tag.statusBit = static_cast<std::int32_t>(pick(4)) - 1;
        return tag;
    };
    CTagList list;
    std::map<std::uint32_t, CTag> walked;
    for (int i = 0; i < 1000; ++i) {
        const CTag tag = pickTag();
        list.RegisterTag(tag);
        walked[tag.tagId] = tag;
    }
    EXPECT_EQ(list.GetTagCnt(), static_cast<int>(walked.size()));
    for (int i = 0; i < 2000; ++i) {
        const CTag wanted = pickTag();
        const auto matches = [&wanted](const CTag& tag, bool withBit) {
            return tag.device == wanted.device && tag.objectType == wanted.objectType &&
                   tag.objectInstance == wanted.objectInstance && tag.property == wanted.property &&
                   tag.arrayIndex == wanted.arrayIndex && (!withBit || tag.statusBit == wanted.statusBit);
        };
        std::uint32_t first = 0;
        std::vector<std::uint32_t> cov;
        for (const auto& [id, tag] : walked) {
            if (first == 0 && matches(tag, true))
                first = id;
            if (tag.cov != 0 && matches(tag, false))
                cov.push_back(id);
        }
        if (wanted.statusBit != -1 && wanted.property != STATUS_FLAGS)
            first = 0;
        EXPECT_EQ(Find(list, RefOf(wanted), wanted.statusBit), first);
        std::vector<std::uint32_t> ids;
        list.GetCOVtagIdList(wanted.device,
                             {{wanted.objectType, wanted.objectInstance}, wanted.property, wanted.arrayIndex}, ids);
        EXPECT_EQ(ids, cov);
    }
}

} // namespace
