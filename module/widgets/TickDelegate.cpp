#include "module/widgets/TickDelegate.h"

namespace {

constexpr int GAP = 4; // between the boxes of two rows

int Middle(int one, int other) {
    return (one + other) / 2;
}

} // namespace

QSize CTickDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, GAP);
}

// The frame is made of the window's colour, which nothing else of a row shows.
void CTickDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const QColor text = option->palette.color(QPalette::Text);
    const QColor base = option->palette.color(QPalette::Base);
    option->palette.setColor(
        QPalette::Window,
        QColor(Middle(text.red(), base.red()), Middle(text.green(), base.green()), Middle(text.blue(), base.blue())));
}
