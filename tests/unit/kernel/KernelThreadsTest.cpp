#include "tests/unit/kernel/KernelFixture.h"

#include <atomic>
#include <latch>
#include <map>
#include <thread>

namespace {

// As many messages as the tests make.
class KernelThreads : public KernelFixture {
protected:
    static KernelSettings WideSettings() {
        KernelSettings settings = Settings();
        settings.queueLimit = 65536;
        return settings;
    }

    MemoryHistoryStore m_store;
    Kernel m_wide{WideSettings(), m_store};
};

} // namespace

TEST_F(KernelThreads, EachReceiverSeesEachTagsChangesInOrder) {
    constexpr std::uint32_t SETTERS = 4;
    constexpr int CHANGES = 500;
    constexpr int RECEIVERS = 3;
    std::vector<std::uint32_t> tags;
    for (std::uint32_t i = 0; i < SETTERS; ++i) {
        std::uint32_t id = 0;
        ASSERT_EQ(m_wide.AddTag(Tag("T" + std::to_string(i), TAG_TYPE_ANALOG), id), AddTagResult::Added);
        tags.push_back(id);
    }
    std::vector<std::map<std::uint32_t, std::vector<double>>> seen(RECEIVERS);
    {
        std::vector<std::jthread> threads;
        for (auto& values : seen) {
            std::uint8_t handle = 0;
            ASSERT_EQ(m_wide.Connect("receiver", 1, 0, handle), QL_OK);
            ASSERT_EQ(m_wide.RqGateMsg(handle, static_cast<int>(tags.size()), tags.data(), QL_GATE_SUBSCRIBE), QL_OK);
            threads.emplace_back([this, handle, &values] {
                QLTagChangeMessage message{};
                for (std::uint32_t i = 0; i < SETTERS * CHANGES; ++i) {
                    ASSERT_EQ(m_wide.ReceiveMessage(handle, &message, 60'000), QL_OK);
                    values[message.tagId].push_back(message.value);
                }
                EXPECT_EQ(m_wide.ReceiveMessage(handle, &message, 0), QL_TIMEOUT);
            });
        }
        for (const std::uint32_t tag : tags) {
            threads.emplace_back([this, tag] {
                for (int i = 0; i < CHANGES; ++i) {
                    EXPECT_EQ(m_wide.SetTagValue(tag, i), QL_OK);
                }
            });
        }
    }
    std::vector<double> expected;
    for (int i = 0; i < CHANGES; ++i) {
        expected.push_back(i);
    }
    for (const auto& values : seen) {
        ASSERT_EQ(values.size(), tags.size());
        for (const auto& [tag, sequence] : values) {
            EXPECT_EQ(sequence, expected);
        }
    }
}

TEST_F(KernelThreads, TheLastMessageOfATagThatManySetIsItsValue) {
    std::uint32_t tag = 0;
    ASSERT_EQ(m_wide.AddTag(Tag("A", TAG_TYPE_ANALOG), tag), AddTagResult::Added);
    std::uint8_t gate = 0;
    ASSERT_EQ(m_wide.Connect("test", 1, 0, gate), QL_OK);
    ASSERT_EQ(m_wide.RqGateMsg(gate, 1, &tag, QL_GATE_SUBSCRIBE), QL_OK);
    {
        std::vector<std::jthread> setters;
        for (int setter = 0; setter < 4; ++setter) {
            setters.emplace_back([this, tag, setter] {
                for (int i = 0; i < 500; ++i) {
                    m_wide.SetTagValue(tag, setter * 1000 + i);
                }
            });
        }
    }
    double last = -1.0;
    double before = -1.0;
    QLTagChangeMessage message{};
    while (m_wide.ReceiveMessage(gate, &message, 0) == QL_OK) {
        before = last;
        last = message.value;
        EXPECT_NE(before, last);
    }
    double value = 0.0;
    ASSERT_EQ(m_wide.GetTagValue(gate, QL_VALUE_AS_DOUBLE, tag, value, 0, 0), QL_OK);
    EXPECT_EQ(last, value);
}

TEST_F(KernelThreads, EverythingAtOnceDoesNoHarm) {
    for (int i = 0; i < 20; ++i) {
        std::uint32_t id = 0;
        ASSERT_EQ(m_wide.AddTag(Tag("T" + std::to_string(i), TAG_TYPE_ANALOG, 0.0), id), AddTagResult::Added);
    }
    std::atomic<bool> done{false};
    std::latch connected{4};
    std::vector<std::jthread> others;
    others.emplace_back([&] { // tags come and go
        for (int i = 0; !done; ++i) {
            std::uint32_t id = 0;
            if (m_wide.AddTag(Tag("more" + std::to_string(i)), id) == AddTagResult::Added) {
                m_wide.SetTagValue(id, 1.0);
                m_wide.RemoveTag(id);
            }
        }
    });
    others.emplace_back([&] { // values change
        for (int i = 0; !done; ++i) {
            m_wide.SetTagValue(static_cast<std::uint32_t>(i % 20), i);
        }
    });
    others.emplace_back([&] { // tags are looked at
        while (!done) {
            m_wide.ListTags([](const TagInfo&) { return true; });
            m_wide.FindTag("T7");
        }
    });
    {
        std::vector<std::jthread> clients;
        for (std::uint32_t client = 0; client < 4; ++client) {
            clients.emplace_back([&, client] {
                for (std::uint32_t round = 0; round < 50; ++round) {
                    std::uint8_t handle = 0;
                    std::uint32_t channel = 0;
                    EXPECT_EQ(m_wide.Connect("client", 1, 0, handle), QL_OK);
                    EXPECT_EQ(m_wide.OpenHistory(handle, 0, 2, 0, 0, channel), QL_OK);
                    for (std::uint32_t tag = 0; tag < 20; ++tag) {
                        EXPECT_EQ(m_wide.RqGateMsg(handle, 1, &tag, QL_GATE_SUBSCRIBE), QL_OK);
                    }
                    std::jthread receiver([&] {
                        QLTagChangeMessage message{};
                        while (m_wide.ReceiveMessage(handle, &message, 60'000) != QL_NO_CONNECTION) {}
                    });
                    VfiRecord record{};
                    record.tagId = client;
                    record.time = round;
                    record.valueType = VFI_NUMBER;
                    std::int16_t word = -1;
                    EXPECT_EQ(m_wide.WriteHistory(channel, 0, 1, &record, word), QL_OK);
                    const std::uint32_t tag = round % 20;
                    EXPECT_EQ(m_wide.RqGateMsg(handle, 1, &tag, QL_GATE_CANCEL), QL_OK);
                    EXPECT_EQ(m_wide.Disconnect(handle), QL_OK);
                }
                std::uint8_t handle = 0;
                EXPECT_EQ(m_wide.Connect("last", 1, 0, handle), QL_OK);
                connected.count_down();
                QLTagChangeMessage message{};
                EXPECT_EQ(m_wide.ReceiveMessage(handle, &message, 60'000), QL_OK);
                EXPECT_EQ(message.code, QL_MSG_EXIT);
            });
        }
        connected.wait();
        m_wide.ShutDown();
    }
    done = true;
    others.clear();
    std::vector<HistoryCount> counts;
    HistoryError error;
    ASSERT_TRUE(m_store.Count(counts, error));
    EXPECT_EQ(counts.size(), 4U);
    for (const HistoryCount& count : counts) {
        EXPECT_EQ(count.records, 50U);
    }
}
