#include "module/editors/ListedFields.h"

#include <QGridLayout>
#include <QLabel>

void AddColumn(QGridLayout& grid, const char* caption, QWidget& control) {
    auto* const label = new QLabel(QString::fromLatin1(caption), control.parentWidget());
    label->setBuddy(&control);
    const int column = grid.columnCount();
    grid.addWidget(label, 0, column);
    grid.addWidget(&control, 1, column);
}

QComboBox* NewListedCombo(QWidget* parent, const ListedNumber& numbers) {
    auto* const combo = new QComboBox(parent);
    for (int item = 0; item < numbers.count; ++item)
        combo->addItem(QString::fromStdString(numbers.text(item)));
    combo->setCurrentIndex(ListedNumber::NO_ITEM);
    return combo;
}
