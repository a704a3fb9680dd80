// ReadPropertyConditional.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/RequestBuffer.h"
#include "platform/stack/client/Status.h"
#include "platform/stack/client/Values.h"
#include "platform/stack/services/ReadConditional.h"
#include "platform/stack/services/ReadPropertyMultiple.h"

#include "api/bacnet/Log.h"

#include <algorithm>
#include <cstddef>

namespace bacnet {

namespace {

// Hands out the caller's memory for values from its start on.
class ValueHeap {
public:
    ValueHeap(void* memory, std::uint32_t size) : m_at(static_cast<char*>(memory)), m_left(size) {
        const std::size_t odd = reinterpret_cast<std::uintptr_t>(memory) % alignment;
        Drop(odd == 0 ? 0 : alignment - odd);
    }

    // Decodes a value into as little of the memory as it takes: records are larger than their encoding by a factor that
    // only trying tells.
    BACSTAC_STATUS Decode(std::span<const std::uint8_t> value, const PropertyTarget& target,
                          BACSTAC_PROPERTY_CONTENTS& contents) {
        for (std::size_t size = 64 + 4 * value.size();; size *= 4) {
            const std::size_t part = std::min(size / alignment * alignment, m_left);
            contents = {TYPE_NONE, m_at, static_cast<std::uint32_t>(part), 0};
            const BACSTAC_STATUS status = ValueInto(value, target, contents);
            if (status == BACSTAC_STATUS_BUFFER_TOO_SMALL && part < m_left)
                continue;
            if (status == BACSTAC_OK)
                Drop(part);
            return status;
        }
    }

private:
    static constexpr std::size_t alignment = alignof(std::max_align_t);
    void Drop(std::size_t size) {
        m_at += std::min(size, m_left);
        m_left -= std::min(size, m_left);
    }

    char* m_at;
    std::size_t m_left;
};

} // namespace

BACSTAC_STATUS BacnetClient::ReadPropertyConditional(unsigned device, BACSTAC_READ_CON_INFO const* info,
                                                     BACSTAC_RPC_RESULT* result, BACSTAC_ERROR* error) {
    RequestBuffer request;
    if (info == nullptr || result == nullptr || !EncodeReadConditional(*info, request.Out))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    result->ObjectCount = 0;
    result->ItemCount = 0;
    AnswerBuffer answer;
    const BACSTAC_STATUS status = Query(device, ConfirmedService::readPropertyConditional, request, answer, error);
    if (status != BACSTAC_OK)
        return status;

    ValueHeap heap(result->Heap, result->HeapSize);
    RpmAckReader reader(answer.Octets());
    RpmResult each;
    bool cut = false;
    while (!cut && reader.Next(each)) {
        const bool newObject =
            result->ObjectCount == 0 || result->Objects[result->ObjectCount - 1].ObjectId != each.Target.Object;
        cut = result->ItemCount == result->ItemCapacity || (newObject && result->ObjectCount == result->ObjectCapacity);
        BACSTAC_READ_RESULT_ITEM item{each.Target.Property, each.Target.ArrayIndex, 0, {TYPE_NONE, nullptr, 0, 0}, {}};
        if (!each.Success)
            item.Error = {ERROR_KIND_ERROR, each.ErrorClass, each.ErrorCode};
        else if (!cut) {
            const BACSTAC_STATUS decoded = heap.Decode(each.Value, each.Target, item.Contents);
            cut = decoded == BACSTAC_STATUS_BUFFER_TOO_SMALL;
            item.Success = decoded == BACSTAC_OK && item.Contents.DataType >= 0 ? 1 : 0;
        }
        if (cut)
            break;
        if (newObject)
            result->Objects[result->ObjectCount++] = {each.Target.Object, result->ItemCount, 0};
        result->Items[result->ItemCount++] = item;
        ++result->Objects[result->ObjectCount - 1].ItemCount;
    }
    if (cut)
        ::LogInf("ReadPropertyConditional: device %u has more than there is room for", device);
    return cut || reader.Ok() ? BACSTAC_OK : BACSTAC_STATUS_INVALID_ANSWER;
}

} // namespace bacnet
