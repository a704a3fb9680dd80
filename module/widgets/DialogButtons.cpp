#include "module/widgets/DialogButtons.h"

#include <QDialog>
#include <QDialogButtonBox>

QDialogButtonBox* NewOkCancel(QDialog& dialog) {
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}
