// Trigger tags: every call to the kernel, log line and posted message, in their order.
#include "module/console/TriggerTags.h"

#include "module/console/MessageSink.h"
#include "module/console/Messages.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeLog.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <thread>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecordingSink : public IMessageSink {
public:
    explicit RecordingSink(CEventList& events) : m_events(events) {}
    void Post(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override {
        char text[64];
        std::snprintf(text, sizeof(text), "Post(0x%X, %ju, %jd)", message, static_cast<std::uintmax_t>(wParam),
                      static_cast<std::intmax_t>(lParam));
        m_events.Add(text);
    }

private:
    CEventList& m_events;
};

class TriggerTags : public ::testing::Test {
protected:
    bool Register(const char* name, const char* tag, unsigned message = WM_CONSOLE_BACKUP, std::int32_t lParam = 0) {
        return m_table.Register(&m_driver, m_sink, name, tag, message, lParam);
    }
    CEventList::Lines Change(std::uint32_t id, double value) {
        m_table.OnTagChange(m_sink, id, value);
        return m_events.Take();
    }

    CEventList m_events;
    CFakeLog m_log{m_events};
    CFakeKernel m_kernel{m_events};
    CFakeDriver m_driver{m_events, m_kernel};
    RecordingSink m_sink{m_events};
    CTriggerTable m_table;
};

TEST_F(TriggerTags, WithoutATagNameAnUnknownTriggerIsNothing) {
    EXPECT_TRUE(Register("X", ""));
    EXPECT_TRUE(Register("X", nullptr));
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(TriggerTags, RegisteringASetTagFiresNothing) {
    m_kernel.AddTag(17, "T", 1);
    EXPECT_TRUE(Register("X", "T"));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("GetTagIdByName(7, T)", "D: BACnet: Info, RegisterTriggerTag(X), Trigger tag T inserted",
                            "GetTagValue(7, 11, 17)", "RqGateMsg(7, [17], 1)"));
}

TEST_F(TriggerTags, RegisteringAClearTagFiresItsFallingEdgeBeforeChangesAreAskedFor) {
    m_kernel.AddTag(17, "T", 0);
    EXPECT_TRUE(Register("X", "T"));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("GetTagIdByName(7, T)", "D: BACnet: Info, RegisterTriggerTag(X), Trigger tag T inserted",
                            "GetTagValue(7, 11, 17)", "D: BACnet: Info, Triggering down X", "Post(0x467, 0, 0)",
                            "RqGateMsg(7, [17], 1)"));
}

TEST_F(TriggerTags, AnUnknownTagIsRefused) {
    EXPECT_FALSE(Register("X", "T"));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("GetTagIdByName(7, T)", "E: BACnet: Error, RegisterTriggerTag(X), Tag T not found"));
}

TEST_F(TriggerTags, ATagServesOneTrigger) {
    m_kernel.AddTag(17, "T", 1);
    ASSERT_TRUE(Register("X", "T"));
    m_events.Take();
    EXPECT_FALSE(Register("Y", "T", WM_CONSOLE_HISTORY));
    EXPECT_THAT(m_events.Take(), ElementsAre("GetTagIdByName(7, T)",
                                             "E: BACnet: Error, RegisterTriggerTag(Y), Tag T already used for X"));
    EXPECT_THAT(Change(17, 0), ElementsAre("D: BACnet: Info, Triggering down X", "Post(0x467, 0, 0)"));
}

TEST_F(TriggerTags, RegisteringAgainStartsClean) {
    m_kernel.AddTag(17, "T", 1);
    ASSERT_TRUE(Register("X", "T"));
    Change(17, 0);
    m_events.Take();
    EXPECT_TRUE(Register("X", "T"));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("RqGateMsg(7, [17], 2)", "D: BACnet: Info, RegisterTriggerTag(X), Trigger tag removed",
                            "GetTagIdByName(7, T)", "D: BACnet: Info, RegisterTriggerTag(X), Trigger tag T inserted",
                            "GetTagValue(7, 11, 17)", "RqGateMsg(7, [17], 1)"));
    EXPECT_THAT(Change(17, 2), IsEmpty()); // from the start value again
}

TEST_F(TriggerTags, ATriggerMovesToAnotherTag) {
    m_kernel.AddTag(17, "T", 1);
    m_kernel.AddTag(18, "U", 1);
    ASSERT_TRUE(Register("X", "T"));
    ASSERT_TRUE(Register("X", "U"));
    m_events.Take();
    EXPECT_THAT(Change(17, 0), IsEmpty());
    EXPECT_THAT(Change(18, 0), ElementsAre("D: BACnet: Info, Triggering down X", "Post(0x467, 0, 0)"));
    EXPECT_TRUE(Register("Y", "T")); // free again
}

TEST_F(TriggerTags, AnEmptyTagNameRemovesTheTrigger) {
    m_kernel.AddTag(17, "T", 1);
    ASSERT_TRUE(Register("X", "T"));
    m_events.Take();
    EXPECT_TRUE(Register("X", ""));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("RqGateMsg(7, [17], 2)", "D: BACnet: Info, RegisterTriggerTag(X), Trigger tag removed"));
    EXPECT_THAT(Change(17, 0), IsEmpty());
}

TEST_F(TriggerTags, AFailedRegistrationHasAlreadyRemovedTheOldOne) {
    m_kernel.AddTag(17, "T", 1);
    ASSERT_TRUE(Register("X", "T"));
    EXPECT_FALSE(Register("X", "unknown"));
    m_events.Take();
    EXPECT_THAT(Change(17, 0), IsEmpty());
}

TEST_F(TriggerTags, WithoutChangeMessagesTheTriggerStillActs) {
    m_kernel.AddTag(0x80000005, "T", 1);
    m_kernel.SetResult("RqGateMsg", QL_NO_RESOURCES);
    EXPECT_FALSE(Register("X", "T"));
    EXPECT_EQ(m_events.Take().back(), "E: BACnet: Error, RqGateMsg(-2147483643) for tag T, failed");
    EXPECT_THAT(Change(0x80000005, 0), ElementsAre("D: BACnet: Info, Triggering down X", "Post(0x467, 0, 0)"));

    m_kernel.SetResult("RqGateMsg", QL_OK);
    EXPECT_TRUE(Register("X", "T"));
    EXPECT_EQ(m_events.Take().front(), "RqGateMsg(7, [2147483653], 2)");
}

TEST_F(TriggerTags, WithoutAPresentValueTheStartValueStays) {
    m_kernel.AddTag(17, "T", 0);
    m_kernel.SetValueResult(17, QL_WRONG_TYPE);
    EXPECT_TRUE(Register("X", "T"));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("GetTagIdByName(7, T)", "D: BACnet: Info, RegisterTriggerTag(X), Trigger tag T inserted",
                            "GetTagValue(7, 11, 17)", "RqGateMsg(7, [17], 1)"));
    EXPECT_THAT(Change(17, 1), IsEmpty());
    EXPECT_THAT(Change(17, 0), ElementsAre("D: BACnet: Info, Triggering down X", "Post(0x467, 0, 0)"));
}

TEST_F(TriggerTags, OnlyEdgesBetweenZeroAndNotZeroFire) {
    m_kernel.AddTag(17, "T", 0);
    ASSERT_TRUE(Register("X", "T", WM_CONSOLE_RESTORE, -3));
    m_events.Take();
    EXPECT_THAT(Change(17, 0), IsEmpty());
    EXPECT_THAT(Change(17, 1), ElementsAre("D: BACnet: Info, Triggering up X", "Post(0x46B, 1, -3)"));
    EXPECT_THAT(Change(17, 1), IsEmpty());
    EXPECT_THAT(Change(17, 2), IsEmpty());
    EXPECT_THAT(Change(17, -0.0), ElementsAre("D: BACnet: Info, Triggering down X", "Post(0x46B, 0, -3)"));
    EXPECT_THAT(Change(17, 0), IsEmpty());
    EXPECT_THAT(Change(17, std::nan("")), ElementsAre("D: BACnet: Info, Triggering up X", "Post(0x46B, 1, -3)"));
    EXPECT_THAT(Change(17, std::nan("")), IsEmpty());
    EXPECT_THAT(Change(17, std::numeric_limits<double>::denorm_min()), IsEmpty());
}

TEST_F(TriggerTags, AChangeOfAnotherTagIsNothing) {
    m_kernel.AddTag(17, "T", 0);
    ASSERT_TRUE(Register("X", "T"));
    m_events.Take();
    EXPECT_THAT(Change(18, 1), IsEmpty());
}

TEST_F(TriggerTags, NamesAreExact) {
    m_kernel.AddTag(17, "T", 1);
    m_kernel.AddTag(18, "U", 1);
    ASSERT_TRUE(Register("BackupDevices", "T"));
    m_events.Take();
    ASSERT_TRUE(Register("backupdevices", "U"));
    EXPECT_EQ(m_events.Take().front(), "GetTagIdByName(7, U)"); // nothing was removed
    EXPECT_EQ(m_table.FindTriggerTag("BackupDevices")->first, 17U);
    EXPECT_EQ(m_table.FindTriggerTag("backupdevices")->first, 18U);
    EXPECT_EQ(m_table.FindTriggerTag("BackupDevice"), m_table.End());
    EXPECT_EQ(m_table.FindTriggerTag(nullptr), m_table.End());
}

TEST_F(TriggerTags, NamesAreNoFormats) {
    m_kernel.AddTag(17, "50%s", 1);
    EXPECT_TRUE(Register("100%n", "50%s"));
    EXPECT_EQ(m_events.Take()[1], "D: BACnet: Info, RegisterTriggerTag(100%n), Trigger tag 50%s inserted");
}

TEST_F(TriggerTags, WithoutADriverNoTagIsKnown) {
    EXPECT_FALSE(m_table.Register(nullptr, m_sink, "X", "T", WM_CONSOLE_BACKUP, 0));
    EXPECT_THAT(m_events.Take(), ElementsAre("E: BACnet: Error, RegisterTriggerTag(X), Tag T not found"));
}

TEST_F(TriggerTags, ACopyHasTheTriggersAndIsApart) {
    m_kernel.AddTag(17, "T", 1);
    ASSERT_TRUE(Register("X", "T"));
    CTriggerTable copy(m_table);
    copy = m_table;
    copy = *&copy;
    ASSERT_TRUE(Register("X", ""));
    m_events.Take();
    copy.OnTagChange(m_sink, 17, 0);
    EXPECT_THAT(m_events.Take(), ElementsAre("D: BACnet: Info, Triggering down X", "Post(0x467, 0, 0)"));
    EXPECT_TRUE(copy.Register(&m_driver, m_sink, "X", "", 0, 0));
    EXPECT_EQ(copy.FindTriggerTag("X"), copy.End());
}

// A kernel may report a change from another thread, and wait for that, before it answers the registration.
TEST_F(TriggerTags, AChangeInsideACallToTheKernelIsTaken) {
    m_kernel.AddTag(17, "T", 1);
    m_kernel.OnCall([this](const std::string& operation) {
        if (operation == "RqGateMsg")
            std::thread([this] { m_table.OnTagChange(m_sink, 17, 0); }).join();
    });
    EXPECT_TRUE(Register("X", "T"));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("GetTagIdByName(7, T)", "D: BACnet: Info, RegisterTriggerTag(X), Trigger tag T inserted",
                            "GetTagValue(7, 11, 17)", "RqGateMsg(7, [17], 1)", "D: BACnet: Info, Triggering down X",
                            "Post(0x467, 0, 0)"));
}

TEST_F(TriggerTags, RegistrationsAndChangesFromManyThreadsDoNotDisturbOneAnother) {
    for (std::uint32_t id = 0; id < 8; ++id)
        m_kernel.AddTag(id, "T" + std::to_string(id), 1);
    std::vector<std::thread> threads;
    for (std::uint32_t id = 0; id < 8; ++id)
        threads.emplace_back([this, id] {
            const std::string name = "X" + std::to_string(id);
            const std::string tag = "T" + std::to_string(id);
            for (int i = 0; i < 200; ++i) {
                EXPECT_TRUE(Register(name.c_str(), tag.c_str()));
                for (std::uint32_t other = 0; other < 8; ++other)
                    m_table.OnTagChange(m_sink, other, i % 2);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (std::uint32_t id = 0; id < 8; ++id)
        EXPECT_EQ(m_table.FindTriggerTag(("X" + std::to_string(id)).c_str())->first, id);
}

// A kernel with any number of tags, named by their ids and all set, that records nothing.
class VastKernel : public CFakeKernel {
public:
    using CFakeKernel::CFakeKernel;
    QLResult GetTagIdByName(std::uint8_t, const char* name, std::uint32_t& tagId) override {
        tagId = static_cast<std::uint32_t>(std::stoul(name));
        return QL_OK;
    }
    QLResult GetTagValue(std::uint8_t, int, std::uint32_t, double& value, int, int) override {
        value = 1;
        return QL_OK;
    }
    QLResult RqGateMsg(std::uint8_t, int, const std::uint32_t*, int) override { return QL_OK; }
};

TEST_F(TriggerTags, AChangeWithoutAnEdgeTakesNoMemoryInALargeTable) {
    constexpr std::uint32_t COUNT = 100000;
    VastKernel kernel(m_events);
    CFakeDriver driver(m_events, kernel);
    for (std::uint32_t id = 0; id < COUNT; ++id) {
        const std::string tag = std::to_string(id * 7);
        ASSERT_TRUE(m_table.Register(&driver, m_sink, ("Trigger of tag " + tag).c_str(), tag.c_str(), 1, 0));
    }
    m_events.Take();
    std::mt19937 random(1);
    const CAllocationCounter allocations;
    for (int i = 0; i < 100000; ++i)
        m_table.OnTagChange(m_sink, static_cast<std::uint32_t>(random() % (COUNT * 7)), 2);
    EXPECT_EQ(allocations.GetCount(), 0U);
    EXPECT_THAT(m_events.Take(), IsEmpty());
    EXPECT_EQ(m_table.FindTriggerTag("Trigger of tag 699993")->first, 699993U);
}

TEST(DigitalTags, AreListedInTheKernelsOrder) {
    CEventList events;
    CFakeKernel kernel(events);
    kernel.AddTag(0, "B", 0, TAG_TYPE_DIGITAL);
    kernel.AddTag(1, "gone", 0, TAG_TYPE_DIGITAL);
    kernel.SetDefinitionResult(1, QL_NO_RESOURCES);
    kernel.AddTag(2, "N", 0, TAG_TYPE_ANALOG);
    kernel.AddTag(3, "A", 0, TAG_TYPE_DIGITAL);
    EXPECT_THAT(EnumDigitalTags(kernel, 7), ElementsAre("B", "A"));
    EXPECT_THAT(events.Take(),
                ElementsAre("OpenTagEnumeration(7)", "GetTagDefinition(7, 0, 1468 cleared)",
                            "GetTagDefinition(7, 1, 1468 cleared)", "GetTagDefinition(7, 2, 1468 cleared)",
                            "GetTagDefinition(7, 3, 1468 cleared)", "GetTagDefinition(7, 4, 1468 cleared)"));
}

TEST(DigitalTags, AKernelWithoutTagsIsNotAskedForOne) {
    CEventList events;
    CFakeKernel kernel(events);
    EXPECT_THAT(EnumDigitalTags(kernel, 7), IsEmpty());
    EXPECT_THAT(events.Take(), ElementsAre("OpenTagEnumeration(7)"));
}

TEST(DigitalTags, AKernelThatNeverEndsIsLeft) {
    CEventList events;
    CFakeKernel kernel(events);
    kernel.AddTag(0, "B");
    kernel.SetResult("GetTagDefinition", QL_NO_CONNECTION);
    EXPECT_THAT(EnumDigitalTags(kernel, 7), IsEmpty());
    EXPECT_EQ(events.Take().size(), 1U + 0x10000U);
}

} // namespace
