// The rows of the property list, as they arrive, and their order on the screen. Only on the console thread.
#pragma once

#include "module/browser/LocaleOrder.h"
#include "module/browser/PropertyListReader.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <vector>

class CPropertyModel : public QAbstractTableModel {
public:
    enum Column { NAME, VALUE, ID, COLUMN_COUNT };
    static constexpr int DATA_ROLE = Qt::UserRole; // the row's data, qlonglong

    using QAbstractTableModel::QAbstractTableModel;

    void AddRow(const PropertyRow& row);
    void Clear();
    int FindRow(std::int64_t id) const; // -1 when there is none
    const PropertyRow& GetRow(int row) const { return m_rows[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& parent) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<PropertyRow> m_rows;
};

// Names and values by the locale, identifiers by number.
class CPropertyOrder : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    CLocaleOrder m_order;
};
