// ReadPropertyConditional.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/RequestBuffer.h"
#include "platform/stack/client/Status.h"
#include "platform/stack/client/Values.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/services/ReadConditional.h"
#include "platform/stack/services/ReadPropertyMultiple.h"

#include "api/bacnet/Log.h"

#include <algorithm>
#include <cstddef>

namespace bacnet {

namespace {

// The caller's memory: objects from its start on, what belongs to them from its end down, until the two meet.
class Work {
public:
    Work(void* memory, std::uint32_t size) : m_memory(static_cast<char*>(memory)), m_top(Aligned(size)) {}

    // False, and nothing is different, when the object with its results does not fit.
    bool Add(const BACSTAC_OBJECT_ID& object, std::span<const std::uint8_t> results, std::uint32_t count) {
        const std::size_t before = m_top;
        if (AddResults(object, results, count)) {
            m_bottom += sizeof(BACSTAC_RPC_OBJECT);
            return true;
        }
        m_top = before;
        return false;
    }

private:
    static constexpr std::size_t alignment = alignof(std::max_align_t);
    static std::size_t Aligned(std::size_t size) { return size / alignment * alignment; }

    bool AddResults(const BACSTAC_OBJECT_ID& object, std::span<const std::uint8_t> results, std::uint32_t count) {
        const std::size_t itemsSize = std::size_t{count} * sizeof(BACSTAC_READ_RESULT_ITEM);
        const std::size_t objectEnd = m_bottom + sizeof(BACSTAC_RPC_OBJECT);
        if (objectEnd > m_top || itemsSize > m_top - objectEnd)
            return false;
        m_top = Aligned(m_top - itemsSize);
        if (m_top < objectEnd)
            return false;
        auto* const items = reinterpret_cast<BACSTAC_READ_RESULT_ITEM*>(m_memory + m_top);
        RpmAckReader reader(results);
        RpmResult result;
        for (std::uint32_t i = 0; i < count && reader.Next(result); ++i)
            if (!Fill(items[i], result, objectEnd))
                return false;
        *reinterpret_cast<BACSTAC_RPC_OBJECT*>(m_memory + m_bottom) = {object, count, items};
        return true;
    }
    bool Fill(BACSTAC_READ_RESULT_ITEM& item, const RpmResult& result, std::size_t lowest) {
        item = {};
        item.Property = result.Target.Property;
        item.ArrayIndex = result.Target.ArrayIndex;
        item.Contents.DataType = TYPE_NONE;
        if (!result.Success) {
            item.Error = {ERROR_KIND_ERROR, result.ErrorClass, result.ErrorCode};
            return true;
        }
        const BACSTAC_STATUS status = Decode(result, lowest, item.Contents);
        item.Success = status == BACSTAC_OK && item.Contents.DataType >= 0 ? 1 : 0;
        return status != BACSTAC_STATUS_BUFFER_TOO_SMALL;
    }
    // Into as little of the memory as it takes: records are larger than their encoding by a factor that only trying
    // tells.
    BACSTAC_STATUS Decode(const RpmResult& result, std::size_t lowest, BACSTAC_PROPERTY_CONTENTS& contents) {
        const std::size_t room = Aligned(m_top - std::min(m_top, lowest + alignment - 1));
        for (std::size_t size = 64 + 4 * result.Value.size();; size *= 4) {
            const std::size_t part = std::min(Aligned(size), room);
            contents = {TYPE_NONE, m_memory + m_top - part, static_cast<std::uint32_t>(part), 0};
            const BACSTAC_STATUS status = ValueInto(result.Value, result.Target, contents);
            if (status == BACSTAC_STATUS_BUFFER_TOO_SMALL && part < room)
                continue;
            if (status == BACSTAC_OK)
                m_top -= part;
            return status;
        }
    }

    char* m_memory;
    std::size_t m_bottom = 0; // behind the last object
    std::size_t m_top;
};

// Number of results of one object; false when they are none.
bool CountResults(std::span<const std::uint8_t> octets, std::uint32_t& count) {
    RpmAckReader reader(octets);
    RpmResult result;
    for (count = 0; reader.Next(result);)
        ++count;
    return reader.Ok();
}

} // namespace

BACSTAC_STATUS BacnetClient::ReadPropertyConditional(unsigned device, BACSTAC_READ_CON_INFO const* info,
                                                     BACSTAC_RPC_RESULT* result, BACSTAC_ERROR* error) {
    RequestBuffer request;
    if (info == nullptr || result == nullptr || !EncodeReadConditional(*info, request.Out) ||
        reinterpret_cast<std::uintptr_t>(result->Buffer) % alignof(std::max_align_t) != 0)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    result->Count = 0;
    AnswerBuffer answer;
    const BACSTAC_STATUS status = Query(device, ConfirmedService::readPropertyConditional, request, answer, error);
    if (status != BACSTAC_OK)
        return status;

    const TextScope text(TextEncoding(GetDevAddr(device)));
    Work work(result->Buffer, result->BufferSize);
    Reader reader(answer.Octets());
    BACSTAC_OBJECT_ID object{};
    std::span<const std::uint8_t> octets;
    unsigned taken = 0;
    while (NextSelectedObject(reader, object, octets)) {
        std::uint32_t count = 0;
        if (!CountResults(octets, count))
            return BACSTAC_STATUS_INVALID_ANSWER;
        if (!work.Add(object, octets, count)) {
            ::LogInf("ReadPropertyConditional: device %u has more than there is room for", device);
            result->Count = taken;
            return BACSTAC_OK;
        }
        ++taken;
    }
    if (!reader.Ok())
        return BACSTAC_STATUS_INVALID_ANSWER;
    result->Count = taken;
    return BACSTAC_OK;
}

} // namespace bacnet
