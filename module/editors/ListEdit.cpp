#include "module/editors/ListEdit.h"

#include <utility>

CListEdit::CListEdit(const CPropertyValueList& list) : m_list(list) {
    for (unsigned index = 0; index < list.GetElementCnt(); ++index)
        if (const CPropertyValue* const element = list.GetElement(index))
            m_rows.emplace_back(element->Clone());
    while (m_rows.size() < list.GetFixedCnt()) {
        std::unique_ptr<CPropertyValue> element = NewElement(std::nullopt);
        if (!element)
            break;
        Append(std::move(element));
    }
}

std::string CListEdit::GetText(std::size_t row) const {
    return m_rows[row]->ToText(static_cast<int>(row) + 1);
}

std::unique_ptr<CPropertyValue> CListEdit::NewElement(std::optional<std::size_t> row) const {
    return std::unique_ptr<CPropertyValue>(row ? m_rows[*row]->Clone() : m_list.CreateElement());
}

void CListEdit::Delete(std::size_t row) {
    m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(row));
}

void CListEdit::MoveTo(CPropertyValueList& list) {
    list.Reset(static_cast<unsigned>(m_rows.size()));
    for (unsigned index = 0; index < m_rows.size(); ++index)
        list.SetElement(index, m_rows[index].release());
    m_rows.clear();
}
