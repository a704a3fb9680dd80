// Draws lists whose rows can be ticked: the boxes have room, and can be seen on dark desktops too, where the toolkit's
// frame of an empty box is as dark as the list.
#pragma once

#include <QStyledItemDelegate>

class CTickDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
