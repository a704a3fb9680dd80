// The reading of status flags and the images that it gives.
#include "module/browser/ObjectStatus.h"

#include "module/browser/BrowserTree.h"
#include "tests/unit/browser/BrowserSite.h"
#include "tests/unit/browser/Directories.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class ObjectStatus : public BrowserSite {
protected:
    ObjectStatus() { AddDevice(10, "Beta"); }

    void Add(BACSTAC_OBJECT_ID id, std::initializer_list<unsigned> flags) {
        AddObject(10, id, "object");
        BACSTAC_BIT_STRING value{4, {}};
        for (const unsigned flag : flags)
            CBacGeneral::SetBitStringBit(value, flag, true);
        SetValue(10, id, PROP_STATUS_FLAGS, FakeValue::Of<BACSTAC_BIT_STRING>(TYPE_BIT_STRING, {value}));
        m_objects.push_back({id, "object"});
    }
    void Build() {
        CBACnetDir directory;
        PutDevice(directory, 10, "Beta", 0, m_objects);
        m_tree.Build(directory, 0);
    }
    void Read() { ReadObjectsStatus(m_bacnet, m_tree, 10, m_progress); }
    std::string Images(BACSTAC_OBJECT_ID id) {
        const TreeItem* const item = m_tree.FindObject(10, id);
        return item ? std::to_string(item->image) + "/" + std::to_string(item->state) : "none";
    }

    std::vector<NamedObject> m_objects;
    CPlainOrder m_order;
    CBrowserTree m_tree{m_order};
    CFakeProgress m_progress{m_events};
};

TEST_F(ObjectStatus, FlagsGiveTheImages) {
    const struct {
        std::initializer_list<unsigned> flags;
        const char* images;
    } CASES[] = {{{}, "6/2"}, {{3}, "7/2"}, {{0}, "6/3"}, {{1}, "6/3"}, {{0, 3}, "7/3"}, {{1, 3}, "7/3"}, {{2}, "6/2"}};
    unsigned instance = 0;
    for (const auto& [flags, images] : CASES)
        Add({OBJ_ANALOG_INPUT, ++instance}, flags);
    Build();
    Read();
    instance = 0;
    for (const auto& [flags, images] : CASES)
        EXPECT_EQ(Images({OBJ_ANALOG_INPUT, ++instance}), images) << instance;
}

TEST_F(ObjectStatus, TwentyObjectsAreReadWithOneRequest) {
    for (unsigned i = 0; i < 41; ++i)
        Add({OBJ_ANALOG_INPUT, i}, {});
    Build();
    Read();
    Lines requests;
    Lines progress;
    for (const std::string& event : m_events.Take())
        (event.starts_with("ReadPropertyMultiple") ? requests : progress).push_back(event);
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_TRUE(requests[0].starts_with("ReadPropertyMultiple(10, (0, 0) 111, (0, 1) 111,"));
    EXPECT_TRUE(requests[1].ends_with("(0, 39) 111)"));
    EXPECT_EQ(requests[2], "ReadPropertyMultiple(10, (0, 40) 111)");
    ASSERT_EQ(progress.size(), 43U); // one at the start, one behind the type, one an object
    EXPECT_EQ(progress[2], "0 Reading object status flags");
    EXPECT_EQ(progress[3], "2 Reading object status flags");
    EXPECT_EQ(progress[4], "4 Reading object status flags");
    EXPECT_EQ(progress[42], "97 Reading object status flags");
}

TEST_F(ObjectStatus, AFailedRequestEndsItSilently) {
    for (unsigned i = 0; i < 41; ++i)
        Add({OBJ_ANALOG_INPUT, i}, {});
    Build();
    m_bacnet.SetFault("ReadPropertyMultiple", BACSTAC_STATUS_TIMEOUT, {}, 1);
    Read();
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 19}), "6/2");
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 20}), "5/1");
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 40}), "5/1");
    EXPECT_THAT(m_log.Take(), IsEmpty());
}

TEST_F(ObjectStatus, AnObjectThatFailsStaysUnknown) {
    Add({OBJ_ANALOG_INPUT, 1}, {0});
    m_objects.push_back({{OBJ_ANALOG_INPUT, 2}, "gone from the device"});
    Build();
    m_tree.SetImages(*m_tree.FindObject(10, {OBJ_ANALOG_INPUT, 2}), IMAGE_IN_SERVICE, STATE_ALARM);
    Read();
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 1}), "6/3");
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 2}), "5/1");
}

TEST_F(ObjectStatus, TypesWithoutEventsAreLeftAlone) {
    Add({OBJ_FILE, 1}, {0});
    Build();
    m_tree.SetImages(*m_tree.FindObject(10, {OBJ_FILE, 1}), IMAGE_OUT_OF_SERVICE, STATE_NORMAL);
    Read();
    EXPECT_EQ(Images({OBJ_FILE, 1}), "7/2");
    EXPECT_THAT(m_events.Take(), Each("0 Reading object status flags"));
}

TEST_F(ObjectStatus, ACancelIsNotLookedAt) {
    Add({OBJ_ANALOG_INPUT, 1}, {});
    Build();
    m_progress.m_isCancelled = true;
    Read();
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 1}), "6/2");
}

TEST_F(ObjectStatus, TheShutdownOfTheConsoleEndsIt) {
    Add({OBJ_ANALOG_INPUT, 1}, {});
    Build();
    m_progress.m_isEnding = true;
    Read();
    EXPECT_THAT(m_events.Take(), ElementsAre("0 Reading object status flags"));
}

TEST_F(ObjectStatus, TheTreeMayBeRebuiltMeanwhile) {
    for (unsigned i = 0; i < 30; ++i)
        Add({OBJ_ANALOG_INPUT, i}, {});
    Build();
    m_progress.m_onPump = [this] {
        m_objects.resize(25); // some objects go
        Build();
    };
    Read();
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 24}), "6/2");
    EXPECT_EQ(Images({OBJ_ANALOG_INPUT, 25}), "none");
}

TEST_F(ObjectStatus, ADeviceThatHasGoneIsNoHarm) {
    Read();
    EXPECT_THAT(m_events.Take(), ElementsAre("0 Reading object status flags"));
}
