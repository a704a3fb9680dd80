#include "module/browser/PropertyModel.h"

#include "module/browser/BrowserTree.h"
#include "module/browser/Images.h"
#include "module/console/NarrowText.h"

#include <algorithm>

namespace {

constexpr const char* HEADERS[CPropertyModel::COLUMN_COUNT] = {"Name", "Value", "Id"};

// A row is one line, however the value is broken.
QString OneLine(const std::string& text) {
    QString line = FromNarrow(text);
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (QChar& character : line)
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator)
            character = u' ';
    return line;
}

QString TextOf(const PropertyRow& row, int column) {
    switch (column) {
    case CPropertyModel::NAME:
        return OneLine(row.name);
    case CPropertyModel::VALUE:
        return OneLine(row.value);
    default:
        return row.id == PropertyRow::ERROR_ID ? QString() : QString::number(row.id);
    }
}

} // namespace

void CPropertyModel::AddRow(const PropertyRow& row) {
    const int place = static_cast<int>(m_rows.size());
    beginInsertRows({}, place, place);
    m_rows.push_back(row);
    endInsertRows();
}

void CPropertyModel::Clear() {
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

int CPropertyModel::FindRow(std::int64_t id) const {
    const auto found = std::ranges::find(m_rows, id, &PropertyRow::id);
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

int CPropertyModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CPropertyModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : COLUMN_COUNT;
}

QVariant CPropertyModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const PropertyRow& row = GetRow(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return TextOf(row, index.column());
    case Qt::DecorationRole:
        return index.column() == NAME ? QVariant(BrowserImage(IMAGE_PROPERTY, STATE_NONE)) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == ID ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case DATA_ROLE:
        return QVariant::fromValue<qlonglong>(row.id);
    default:
        return {};
    }
}

QVariant CPropertyModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant((section == ID ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(QString::fromLatin1(HEADERS[section])) : QVariant();
}

bool CPropertyOrder::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    if (left.column() == CPropertyModel::ID)
        return left.data(CPropertyModel::DATA_ROLE).toLongLong() < right.data(CPropertyModel::DATA_ROLE).toLongLong();
    return m_order.IsBefore(left.data().toString(), right.data().toString());
}
