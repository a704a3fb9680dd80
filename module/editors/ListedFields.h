// Drop-down lists that stand for numbers of a record, each below its caption, side by side. A number that no item
// stands for shows none, and stays until one is chosen.
#pragma once

#include "module/editors/ListedNumber.h"

#include <QComboBox>

#include <cstddef>
#include <span>
#include <vector>

class QGridLayout;

// Adds a captioned control as the next column.
void AddColumn(QGridLayout& grid, const char* caption, QWidget& control);
// No item is chosen.
QComboBox* NewListedCombo(QWidget* parent, const ListedNumber& numbers);

template <class Record, class Number>
struct ListedField {
    const char* caption;
    const ListedNumber* numbers;
    Number Record::*member;
};

template <class Record, class Number>
class CListedFields {
public:
    // fields outlive the object.
    CListedFields(QWidget* parent, QGridLayout& grid, std::span<const ListedField<Record, Number>> fields)
        : m_fields(fields) {
        for (const auto& field : fields) {
            m_combos.push_back(NewListedCombo(parent, *field.numbers));
            AddColumn(grid, field.caption, *m_combos.back());
        }
    }
    void Load(const Record& record) {
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            m_combos[i]->setCurrentIndex(ItemIn(record, i));
    }
    void Store(Record& record) const {
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            if (const int item = m_combos[i]->currentIndex(); item != ItemIn(record, i))
                record.*m_fields[i].member = static_cast<Number>(m_fields[i].numbers->NumberOf(item));
    }

private:
    int ItemIn(const Record& record, std::size_t i) const {
        return m_fields[i].numbers->ItemOf(record.*m_fields[i].member);
    }

    const std::span<const ListedField<Record, Number>> m_fields;
    std::vector<QComboBox*> m_combos; // of parent
};
