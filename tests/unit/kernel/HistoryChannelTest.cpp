#include "tests/unit/kernel/KernelFixture.h"

#include <latch>
#include <thread>

namespace {

// A store that answers as it is told, and waits in Write until it is let go.
class SlowStore : public HistoryStore {
public:
    bool Write(std::span<const VfiRecord>, HistoryError& error) override {
        m_entered.count_down();
        m_letGo.wait();
        error = m_error;
        return error.text.empty();
    }
    bool Flush(HistoryError& error) override {
        error = m_error;
        return error.text.empty();
    }
    bool Query(const HistoryQuery&, const std::function<bool(const VfiRecord&)>&, HistoryError&) override {
        return false;
    }
    bool Count(std::vector<HistoryCount>&, HistoryError&) override { return false; }

    HistoryError m_error;
    std::latch m_entered{1};
    std::latch m_letGo{1};
};

std::vector<VfiRecord> Records(std::size_t count) {
    std::vector<VfiRecord> records(count);
    for (std::size_t i = 0; i < count; ++i) {
        records[i].tagId = 7;
        records[i].time = static_cast<std::uint32_t>(i);
        records[i].valueType = VFI_NUMBER;
    }
    return records;
}

class KernelHistory : public KernelFixture {
protected:
    std::uint32_t Open(std::uint8_t handle) {
        std::uint32_t channel = 0;
        EXPECT_EQ(m_kernel.OpenHistory(handle, 0, 2, 0, 0, channel), QL_OK);
        EXPECT_NE(channel, 0U);
        return channel;
    }

    QLResult Write(std::uint32_t channel, const std::vector<VfiRecord>& records, std::int16_t expectedWord = -1) {
        std::int16_t word = -1;
        const QLResult result =
            m_kernel.WriteHistory(channel, 0, static_cast<std::uint32_t>(records.size()), records.data(), word);
        EXPECT_EQ(word, expectedWord);
        return result;
    }

    std::uint64_t Stored() {
        std::vector<HistoryCount> counts;
        HistoryError error;
        EXPECT_TRUE(m_history.Count(counts, error));
        return counts.empty() ? 0 : counts[0].records;
    }
};

} // namespace

TEST_F(KernelHistory, ABlockGoesIntoTheStore) {
    const std::uint32_t channel = Open(Connect());
    EXPECT_EQ(Write(channel, Records(100)), QL_OK);
    EXPECT_EQ(Write(channel, {}), QL_OK);
    EXPECT_EQ(m_kernel.FlushHistory(channel), QL_OK);
    EXPECT_EQ(m_kernel.CloseHistory(channel), QL_OK);
    EXPECT_EQ(Stored(), 100U);
}

TEST_F(KernelHistory, ABlockWithABadRecordIsRefusedWholeAndTheRecordIsNamed) {
    const std::uint32_t channel = Open(Connect());
    auto records = Records(500);
    records[321].milliseconds = 1000;
    EXPECT_EQ(Write(channel, records, 321), QL_STORE_FAILURE);
    EXPECT_EQ(Stored(), 0U);
}

TEST_F(KernelHistory, AnIndexBeyondTheWordIsItsLargest) {
    const std::uint32_t channel = Open(Connect());
    auto records = Records(40'000);
    records.back().valueType = 0;
    EXPECT_EQ(Write(channel, records, 32767), QL_STORE_FAILURE);
}

TEST_F(KernelHistory, ArgumentsAreChecked) {
    const std::uint8_t handle = Connect();
    std::uint32_t channel = 0;
    EXPECT_EQ(m_kernel.OpenHistory(handle, 0, 1, 0, 0, channel), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.OpenHistory(handle, 0, 2, 0, 1, channel), QL_INVALID_ARGUMENT);
    EXPECT_EQ(channel, 0U);
    std::int16_t word = -1;
    EXPECT_EQ(m_kernel.WriteHistory(Open(handle), 0, 1, nullptr, word), QL_INVALID_ARGUMENT);
}

TEST_F(KernelHistory, AClosedChannelTakesNothing) {
    const std::uint32_t channel = Open(Connect());
    EXPECT_EQ(m_kernel.CloseHistory(channel), QL_OK);
    for (const std::uint32_t closed : {channel, 0U, channel + 1}) {
        EXPECT_EQ(Write(closed, Records(1)), QL_NO_CHANNEL);
        EXPECT_EQ(m_kernel.FlushHistory(closed), QL_NO_CHANNEL);
        EXPECT_EQ(m_kernel.CloseHistory(closed), QL_NO_CHANNEL);
    }
    EXPECT_EQ(Stored(), 0U);
}

TEST_F(KernelHistory, ADisconnectClosesTheConnectionsChannels) {
    const std::uint8_t first = Connect();
    const std::uint8_t second = Connect();
    const std::uint32_t gone = Open(first);
    const std::uint32_t alsoGone = Open(first);
    const std::uint32_t stays = Open(second);
    m_kernel.Disconnect(first);
    EXPECT_EQ(Write(gone, Records(1)), QL_NO_CHANNEL);
    EXPECT_EQ(Write(alsoGone, Records(1)), QL_NO_CHANNEL);
    EXPECT_EQ(Write(stays, Records(1)), QL_OK);
}

TEST_F(KernelHistory, ThereIsALimitToOpenChannels) {
    const std::uint8_t handle = Connect();
    for (std::size_t i = 0; i < HistoryChannels::MAX_CHANNELS; ++i) {
        Open(handle);
    }
    std::uint32_t channel = 0;
    EXPECT_EQ(m_kernel.OpenHistory(handle, 0, 2, 0, 0, channel), QL_NO_RESOURCES);
    EXPECT_EQ(m_kernel.CloseHistory(17), QL_OK);
    Open(handle);
}

TEST_F(KernelHistory, ARefusalOfTheStoreIsReportedInWords) {
    SlowStore store;
    store.m_error.text = "history database x has no room to grow";
    store.m_letGo.count_down();
    std::vector<std::string> reports;
    KernelSettings settings = Settings();
    settings.storeFailed = [&](const std::string& text) { reports.push_back(text); };
    Kernel kernel(settings, store);
    std::uint8_t handle = 0;
    std::uint32_t channel = 0;
    ASSERT_EQ(kernel.Connect("test", 1, 0, handle), QL_OK);
    ASSERT_EQ(kernel.OpenHistory(handle, 0, 2, 0, 0, channel), QL_OK);
    const auto records = Records(1);
    std::int16_t word = -1;
    EXPECT_EQ(kernel.WriteHistory(channel, 0, 1, records.data(), word), QL_STORE_FAILURE);
    EXPECT_EQ(word, -1);
    EXPECT_EQ(kernel.FlushHistory(channel), QL_STORE_FAILURE);
    EXPECT_THAT(reports, testing::ElementsAre(store.m_error.text, store.m_error.text));
}

TEST_F(KernelHistory, ASlowStoreKeepsNobodyElseWaiting) {
    SlowStore store;
    Kernel kernel(Settings(), store);
    std::uint32_t tag = 0;
    ASSERT_EQ(kernel.AddTag(Tag("A"), tag), AddTagResult::Added);
    std::uint8_t handle = 0;
    std::uint8_t other = 0;
    std::uint32_t channel = 0;
    std::uint32_t second = 0;
    ASSERT_EQ(kernel.Connect("slow", 1, 0, handle), QL_OK);
    ASSERT_EQ(kernel.Connect("other", 1, 0, other), QL_OK);
    ASSERT_EQ(kernel.OpenHistory(handle, 0, 2, 0, 0, channel), QL_OK);
    QLResult result = QL_NO_CHANNEL;
    std::jthread writer([&] {
        const auto records = Records(1);
        std::int16_t word = -1;
        result = kernel.WriteHistory(channel, 0, 1, records.data(), word);
    });
    store.m_entered.wait();
    // All of this happens while the store has the block.
    QLTagChangeMessage message{};
    EXPECT_EQ(kernel.RqGateMsg(other, 1, &tag, QL_GATE_SUBSCRIBE), QL_OK);
    EXPECT_EQ(kernel.SetTagValue(tag, 1.0), QL_OK);
    EXPECT_EQ(kernel.ReceiveMessage(other, &message, 0), QL_OK);
    EXPECT_EQ(kernel.ReceiveMessage(handle, &message, 0), QL_TIMEOUT);
    EXPECT_EQ(kernel.OpenHistory(other, 0, 2, 0, 0, second), QL_OK);
    EXPECT_EQ(kernel.Disconnect(handle), QL_OK);
    std::uint32_t more = 0;
    EXPECT_EQ(kernel.AddTag(Tag("B"), more), AddTagResult::Added);
    store.m_letGo.count_down();
    writer.join();
    EXPECT_EQ(result, QL_OK);
}
