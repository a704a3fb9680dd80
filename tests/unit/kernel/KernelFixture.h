// A kernel with a few tags over a store in memory, and connections to it.
#pragma once

#include "platform/historian/MemoryHistoryStore.h"
#include "platform/kernel/Kernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

// A message as a test compares it.
struct Received {
    QLResult result = QL_OK;
    std::uint16_t code = 0;
    std::uint32_t tagId = 0;
    double value = 0.0;

    bool operator==(const Received&) const = default;
};

inline void PrintTo(const Received& message, std::ostream* out) {
    *out << "{result " << message.result << ", code " << message.code << ", tag " << message.tagId << ", value "
         << message.value << "}";
}

inline TagSettings Tag(const std::string& name, std::uint16_t type = TAG_TYPE_DIGITAL, TagValue value = {}) {
    TagSettings settings;
    settings.name = name;
    settings.type = type;
    settings.value = std::move(value);
    return settings;
}

class KernelFixture : public testing::Test {
protected:
    static constexpr std::size_t QUEUE_LIMIT = 8;

    static KernelSettings Settings() {
        KernelSettings settings;
        settings.stationName = "PLANT";
        settings.stationNumber = 3;
        settings.queueLimit = QUEUE_LIMIT;
        return settings;
    }

    std::uint8_t Connect(const char* name = "test") {
        std::uint8_t handle = 0;
        EXPECT_EQ(m_kernel.Connect(name, 1, 0, handle), QL_OK);
        EXPECT_NE(handle, 0);
        return handle;
    }

    std::uint32_t Add(const TagSettings& settings) {
        std::uint32_t id = 0xFFFFFFFF;
        EXPECT_EQ(m_kernel.AddTag(settings, id), AddTagResult::Added);
        return id;
    }

    QLResult Request(std::uint8_t gate, std::uint32_t tagId, int mode) {
        return m_kernel.RqGateMsg(gate, 1, &tagId, mode);
    }

    Received Receive(std::uint8_t handle, std::uint32_t timeout = 0) {
        QLTagChangeMessage message{};
        Received received;
        received.result = m_kernel.ReceiveMessage(handle, &message, timeout);
        received.code = message.code;
        received.tagId = message.tagId;
        std::memcpy(&received.value, reinterpret_cast<const char*>(&message) + offsetof(QLTagChangeMessage, value),
                    sizeof received.value);
        return received;
    }

    // All messages that are there.
    std::vector<Received> Drain(std::uint8_t handle) {
        std::vector<Received> messages;
        for (;;) {
            const Received message = Receive(handle);
            if (message.result != QL_OK && message.result != QL_MESSAGES_LOST) {
                return messages;
            }
            messages.push_back(message);
        }
    }

    static Received Change(std::uint32_t tagId, double value, QLResult result = QL_OK) {
        return {result, QL_MSG_TAG_CHANGE, tagId, value};
    }
    static Received Exit() { return {QL_OK, QL_MSG_EXIT, 0, 0.0}; }

    MemoryHistoryStore m_history;
    Kernel m_kernel{Settings(), m_history};
};
