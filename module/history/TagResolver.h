// Finds the tags that the values of a trend go to. Used on the transfer's thread.
#pragma once

#include "api/bacnet/Types.h"
#include "module/history/RowConverter.h"

#include <string>
#include <vector>

class CQilClient;
class CTagList;
class ITransferLog;

class CTagResolver {
public:
    CTagResolver(CQilClient& client, const CTagList& tags, ITransferLog& log)
        : m_client(client), m_tags(tags), m_log(log) {}

    // One record for each reference, in their order; a reference that no tag belongs to gets one without a tag.
    std::vector<HistoryTagRecord> Resolve(const std::vector<BACSTAC_DEV_OBJ_PROP_REF>& references);

private:
    HistoryTagRecord ResolveOne(const BACSTAC_DEV_OBJ_PROP_REF& reference, const std::string& station);
    void FindStatusTags(const BACSTAC_DEV_OBJ_PROP_REF& reference, HistoryTagRecord& record);

    CQilClient& m_client;
    const CTagList& m_tags;
    ITransferLog& m_log;
};
