#include "module/history/TrendRows.h"

#include "api/bacnet/Enums.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

// Elements that lie within the buffer, whatever the count says.
template <typename Record>
std::span<const Record> Elements(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_DATA_TYPE type) {
    if (contents.DataType != type || contents.Buffer == nullptr)
        return {};
    const std::size_t count = std::min<std::size_t>(contents.ElementCount, contents.BufferSize / sizeof(Record));
    return {static_cast<const Record*>(contents.Buffer), count};
}

struct ItemKind {
    std::uint32_t datumType;
    std::size_t size; // of the value, in bytes
};

// The kinds of a trend-log-multiple's items, by their number.
constexpr std::array<ItemKind, 9> ITEM_KINDS{{
    {BACSTAC_LOG_BOOLEAN, 1},
    {BACSTAC_LOG_REAL, 4},
    {BACSTAC_LOG_ENUMERATED, 4},
    {BACSTAC_LOG_UNSIGNED, 4},
    {BACSTAC_LOG_SIGNED, 4},
    {BACSTAC_LOG_BITSTRING, 16},
    {BACSTAC_LOG_NULL, 0},
    {BACSTAC_LOG_FAILURE, 8},
    {BACSTAC_LOG_ANY, 16},
}};

} // namespace

void CTrendRows::Clear() {
    m_values.clear();
    m_ends.Clear();
}

void CTrendRows::AppendBlock(BACSTAC_OBJECT_TYPE objectType, const BACSTAC_PROPERTY_CONTENTS& contents) {
    if (objectType == OBJ_TREND_LOG) {
        for (const BACSTAC_LOG_RECORD& record : Elements<BACSTAC_LOG_RECORD>(contents, TYPE_LOG_RECORD))
            AppendRecord(record);
    } else if (objectType == OBJ_TREND_LOG_MULTIPLE) {
        for (const BACSTAC_LOG_MULTIPLE_RECORD& record :
             Elements<BACSTAC_LOG_MULTIPLE_RECORD>(contents, TYPE_LOG_MULTIPLE_RECORD))
            AppendMultiple(record, contents);
    }
}

// Log status records and unknown ones have no value.
void CTrendRows::AppendRecord(const BACSTAC_LOG_RECORD& record) {
    if (m_ends.IsFull() || record.DatumType < BACSTAC_LOG_BOOLEAN || record.DatumType > BACSTAC_LOG_ANY)
        return;
    m_values.push_back({record.TimeStamp, record.DatumType, record.Value, record.HasStatus != 0, record.StatusFlags});
    EndRow();
}

void CTrendRows::AppendMultiple(const BACSTAC_LOG_MULTIPLE_RECORD& record, const BACSTAC_PROPERTY_CONTENTS& contents) {
    const BACSTAC_LOG_ITEM* items = LogItems(contents, record);
    if (m_ends.IsFull() || items == nullptr)
        return;
    for (const BACSTAC_LOG_ITEM& item : std::span(items, record.Data.ItemCount)) {
        // An unknown kind is left out, and the items behind it move up against the tags: deliberate, it is how the rows
        // have always been paired.
        if (item.Kind >= ITEM_KINDS.size())
            continue;
        const ItemKind& kind = ITEM_KINDS[item.Kind];
        TrendLogRecord value{};
        value.timeStamp = record.TimeStamp;
        value.datumType = kind.datumType;
        std::memcpy(&value.value, &item.Value, kind.size);
        m_values.push_back(value);
    }
    EndRow();
}

void CTrendRows::EndRow() {
    const std::size_t begin = m_ends.GetSize() == 0 ? 0 : m_ends[m_ends.GetSize() - 1];
    if (m_values.size() > begin)
        m_ends.Append(m_values.size());
}

TrendRow CTrendRows::operator[](std::size_t row) const {
    const std::size_t begin = row == 0 ? 0 : m_ends[row - 1];
    return TrendRow(m_values).subspan(begin, m_ends[row] - begin);
}
