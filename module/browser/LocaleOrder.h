// The order of labels by the operator's locale. Only on the console thread.
#pragma once

#include "module/browser/LabelOrder.h"

#include <QCollator>

class CLocaleOrder : public ILabelOrder {
public:
    CLocaleOrder();

    std::vector<std::size_t> Order(const std::vector<std::string>& labels) const override;
    bool IsBefore(const QString& left, const QString& right) const { return m_collator.compare(left, right) < 0; }

private:
    QCollator m_collator;
};
