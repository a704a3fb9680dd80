#include "module/history/TagResolver.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "api/kernel/TagDefinition.h"
#include "module/console/Tag.h"
#include "module/history/QilClient.h"
#include "module/history/TransferLog.h"

#include <algorithm>

namespace {

constexpr std::uint32_t STATION_MASK = 0xFFFF0000;
constexpr unsigned REFERENCE_TEXT_SIZE = 101;

template <std::size_t Size>
std::string BoundedText(const char (&buffer)[Size]) {
    return {buffer, std::find(buffer, buffer + Size, '\0')};
}

} // namespace

std::vector<HistoryTagRecord> CTagResolver::Resolve(const std::vector<BACSTAC_DEV_OBJ_PROP_REF>& references) {
    char station[QL_STATION_NAME_SIZE] = {};
    m_client.GetStationName(station);
    std::vector<HistoryTagRecord> records;
    records.reserve(references.size());
    for (const BACSTAC_DEV_OBJ_PROP_REF& reference : references)
        records.push_back(ResolveOne(reference, BoundedText(station)));
    return records;
}

HistoryTagRecord CTagResolver::ResolveOne(const BACSTAC_DEV_OBJ_PROP_REF& reference, const std::string& station) {
    char address[REFERENCE_TEXT_SIZE] = {};
    CBacGeneral::PrintDevObjPropReference(address, sizeof address, reference);
    m_log.Info(std::string("Using tag address ") + address);

    HistoryTagRecord record;
    std::uint32_t tagId = NO_TAG;
    if (!m_tags.FindTagForRef(reference, TAG_WHOLE_VALUE, tagId)) {
        m_log.Error(std::string("No corresponding tag for ") + address);
        return record;
    }
    record.tagId = tagId;
    TagDefinition definition;
    if (!m_client.ReadTagDefinition(tagId, definition)) {
        m_log.Error("Fail to read tag definition for tag " + std::to_string(tagId));
        return record;
    }
    record.flag = (definition.flags & TAG_FLAG_HISTORY_COPY) != 0;
    record.tagName = BoundedText(definition.name);
    if (!station.empty()) {
        record.tagName = station + ":" + record.tagName;
        if (m_client.GetTagIdByName(record.tagName, tagId))
            record.tagId = tagId;
        else
            m_log.Error("Fail to get tag id with station name for " + record.tagName);
    }
    m_log.Info("Using tag name " + record.tagName);
    // Told, but no reason to leave the tag out.
    if (definition.historyEnabled != 0)
        m_log.Error("History is already enabled for " + record.tagName);
    FindStatusTags(reference, record);
    return record;
}

void CTagResolver::FindStatusTags(const BACSTAC_DEV_OBJ_PROP_REF& reference, HistoryTagRecord& record) {
    const std::uint32_t station = record.tagId & STATION_MASK;
    BACSTAC_DEV_OBJ_PROP_REF statusFlags = reference;
    statusFlags.Property = PROP_STATUS_FLAGS;
    for (unsigned bit = 0; bit < STATUS_FLAG_COUNT; ++bit) {
        std::uint32_t tagId = NO_TAG;
        if (!m_tags.FindTagForRef(statusFlags, static_cast<int>(bit), tagId))
            continue;
        LogInf("History: Tag (%u:%u) found to store status_flags[%d]", station >> 16, tagId & ~STATION_MASK,
               static_cast<int>(bit));
        record.statusTagIds[bit] = tagId | station;
    }
}
