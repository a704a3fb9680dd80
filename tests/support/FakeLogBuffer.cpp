#include "tests/support/FakeLogBuffer.h"

#include "api/bacnet/Enums.h"

#include <cstring>

namespace {

constexpr std::size_t ALIGNMENT = 8;

std::size_t Aligned(std::size_t size) {
    return (size + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
}

std::size_t SizeOf(const FakeLogEntry& entry, std::size_t recordSize) {
    std::size_t size = recordSize + Aligned(entry.any.bytes.size()) + ALIGNMENT;
    for (const FakeLogItem& item : entry.items)
        size += sizeof(BACSTAC_LOG_ITEM) + Aligned(item.any.bytes.size());
    return size;
}

// Hands out the buffer's memory from the front.
class Room {
public:
    Room(const BACSTAC_PROPERTY_CONTENTS& contents, std::size_t used)
        : m_base(static_cast<char*>(contents.Buffer)), m_used(Aligned(used)) {}

    std::uint32_t Store(const void* data, std::size_t size) {
        const std::size_t offset = m_used;
        if (size != 0)
            std::memcpy(m_base + offset, data, size);
        m_used = Aligned(m_used + size);
        return static_cast<std::uint32_t>(offset);
    }
    BACSTAC_LOG_VALUE Any(const FakeValue& value) {
        BACSTAC_LOG_VALUE stored{};
        stored.Any = {value.type, Store(value.bytes.data(), value.bytes.size()),
                      static_cast<std::uint32_t>(value.bytes.size()), value.count};
        return stored;
    }

private:
    char* m_base;
    std::size_t m_used;
};

} // namespace

std::size_t FillLogBuffer(BACSTAC_OBJECT_TYPE objectType, const std::vector<FakeLogEntry>& log, std::size_t first,
                          std::size_t end, BACSTAC_PROPERTY_CONTENTS& contents) {
    const bool multiple = objectType == OBJ_TREND_LOG_MULTIPLE;
    const std::size_t recordSize = multiple ? sizeof(BACSTAC_LOG_MULTIPLE_RECORD) : sizeof(BACSTAC_LOG_RECORD);
    std::size_t count = 0;
    for (std::size_t size = ALIGNMENT; first + count < end; ++count) {
        size += SizeOf(log[first + count], recordSize);
        if (size > contents.BufferSize)
            break;
    }
    contents.DataType = multiple ? TYPE_LOG_MULTIPLE_RECORD : TYPE_LOG_RECORD;
    contents.ElementCount = static_cast<std::uint32_t>(count);
    Room room(contents, count * recordSize);
    char* place = static_cast<char*>(contents.Buffer);
    for (std::size_t i = first; i < first + count; ++i, place += recordSize) {
        const FakeLogEntry& entry = log[i];
        if (multiple) {
            BACSTAC_LOG_MULTIPLE_RECORD record{};
            record.TimeStamp = entry.time;
            record.RecordType = entry.type;
            if (entry.type == BACSTAC_LOG_MULTIPLE_DATA) {
                std::vector<BACSTAC_LOG_ITEM> items;
                for (const FakeLogItem& item : entry.items)
                    items.push_back({item.kind, item.any.type >= 0 ? room.Any(item.any) : item.value});
                record.Data.ItemCount = static_cast<std::uint32_t>(items.size());
                record.Data.ItemsOffset = room.Store(items.data(), items.size() * sizeof(BACSTAC_LOG_ITEM));
            }
            std::memcpy(place, &record, sizeof record);
        } else {
            BACSTAC_LOG_RECORD record{};
            record.TimeStamp = entry.time;
            record.DatumType = entry.type;
            record.Value = entry.any.type >= 0 ? room.Any(entry.any) : entry.value;
            record.HasStatus = entry.hasStatus ? 1 : 0;
            record.StatusFlags = entry.statusFlags;
            std::memcpy(place, &record, sizeof record);
        }
    }
    return count;
}
