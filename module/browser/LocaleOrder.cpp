#include "module/browser/LocaleOrder.h"

#include "module/console/NarrowText.h"

#include <QLocale>

#include <algorithm>
#include <numeric>

// Where no locale is set the toolkit compares by code point, whatever it is told of the case.
CLocaleOrder::CLocaleOrder() {
    if (m_collator.locale().language() == QLocale::C)
        m_collator.setLocale(QLocale(QLocale::English));
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_collator.setNumericMode(false);
}

std::vector<std::size_t> CLocaleOrder::Order(const std::vector<std::string>& labels) const {
    std::vector<QCollatorSortKey> keys;
    keys.reserve(labels.size());
    for (const std::string& label : labels)
        keys.push_back(m_collator.sortKey(FromNarrow(label)));
    std::vector<std::size_t> places(labels.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::ranges::stable_sort(places,
                             [&](std::size_t left, std::size_t right) { return keys[left].compare(keys[right]) < 0; });
    return places;
}
