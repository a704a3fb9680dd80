// The manager's list of trigger tags, apart from the rest of it because it needs the toolkit.
#include "module/console/Manager.h"
#include "module/console/NarrowText.h"

#include <QByteArray>
#include <QComboBox>

void CBDCManager::FillTagList(QComboBox& combo) {
    combo.clear();
    // The row keeps the name's bytes: they are what the kernel knows, whatever the row shows.
    for (const std::string& name : EnumDigitalTags())
        combo.addItem(FromNarrow(name), QByteArray::fromStdString(name));
    combo.insertItem(0, QStringLiteral("<None>"), QByteArray());
}
