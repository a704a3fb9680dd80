// A list or an array while it is edited: copies of its elements, in rows. One thread at a time uses one object.
#pragma once

#include "api/bacnet/PropertyValue.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CListEdit {
public:
    // Fewer elements than the fixed size are made up with new ones, more of them stay. list outlives the object.
    explicit CListEdit(const CPropertyValueList& list);

    bool IsFixed() const { return m_list.GetFixedCnt() != 0; }
    std::size_t GetCount() const { return m_rows.size(); }
    CPropertyValue& GetElement(std::size_t row) { return *m_rows[row]; }
    std::string GetText(std::size_t row) const; // narrow

    // A copy of the row's element, a new one without a row; null when the list's type has no values.
    std::unique_ptr<CPropertyValue> NewElement(std::optional<std::size_t> row) const;
    void Append(std::unique_ptr<CPropertyValue> element) { m_rows.push_back(std::move(element)); }
    void Delete(std::size_t row);
    void Swap(std::size_t row, std::size_t other) { m_rows[row].swap(m_rows[other]); }

    // The elements become the list's; there are none here any more.
    void MoveTo(CPropertyValueList& list);

private:
    const CPropertyValueList& m_list;
    std::vector<std::unique_ptr<CPropertyValue>> m_rows;
};
