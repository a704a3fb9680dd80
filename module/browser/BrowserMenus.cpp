#include "module/browser/BrowserMenus.h"

#include "api/bacnet/Enums.h"

#include <QMenu>

#include <span>

namespace {

struct Entry {
    enum Kind { COMMAND, FILE_COMMAND, SEPARATOR, SUB_MENU, END_OF_SUB_MENU };

    Kind kind;
    const char* label = "";
    BrowserCommand command = BrowserCommand::InsertDevice;
};

using enum BrowserCommand;

constexpr Entry ABOVE_DEVICES[] = {{Entry::COMMAND, "&Insert device...", InsertDevice}};

constexpr Entry DEVICE[] = {
    {Entry::COMMAND, "&Insert device...", InsertDevice},
    {Entry::COMMAND, "&Modify device...", ModifyDevice},
    {Entry::COMMAND, "&Remove device...", RemoveDevice},
    {Entry::COMMAND, "&Scan device", ScanDevice},
    {Entry::SEPARATOR},
    {Entry::COMMAND, "&Insert object...", InsertObject},
    {Entry::COMMAND, "&Create object...", CreateObject},
    {Entry::COMMAND, "Read objects status", ReadObjectsStatus},
    {Entry::SEPARATOR},
    {Entry::SUB_MENU, "Communication"},
    {Entry::COMMAND, "Enable", EnableCommunication},
    {Entry::COMMAND, "Disable", DisableCommunication},
    {Entry::COMMAND, "Disable initiation", DisableInitiation},
    {Entry::END_OF_SUB_MENU},
    {Entry::SUB_MENU, "Reboot"},
    {Entry::COMMAND, "Cold", ColdReboot},
    {Entry::COMMAND, "Warm", WarmReboot},
    {Entry::END_OF_SUB_MENU},
    {Entry::COMMAND, "Backup...", Backup},
    {Entry::COMMAND, "Restore...", Restore},
    {Entry::COMMAND, "Abort restore...", AbortRestore},
};

constexpr Entry TYPE[] = {
    {Entry::COMMAND, "&Insert object...", InsertObject},
    {Entry::COMMAND, "&Create object...", CreateObject},
};

constexpr Entry OBJECT[] = {
    {Entry::COMMAND, "&Insert object...", InsertObject},
    {Entry::COMMAND, "&Modify object...", ModifyObject},
    {Entry::COMMAND, "&Remove object...", RemoveObject},
    {Entry::SEPARATOR},
    {Entry::COMMAND, "&Create object...", CreateObject},
    {Entry::COMMAND, "&Delete object...", DeleteObject},
    {Entry::SEPARATOR},
    {Entry::FILE_COMMAND, "&Save file contents to...", SaveFile},
    {Entry::FILE_COMMAND, "&Restore file contents from...", RestoreFile},
};

constexpr Entry PROPERTY[] = {
    {Entry::COMMAND, "&Zoom...", Zoom},
    {Entry::COMMAND, "&Edit...", Edit},
    {Entry::COMMAND, "Edit array &item...", EditArrayItem},
    {Entry::COMMAND, "Set to &null...", SetToNull},
    {Entry::SEPARATOR},
    {Entry::COMMAND, "&Copy", Copy},
    {Entry::COMMAND, "&Paste", Paste},
};

std::span<const Entry> EntriesFor(const TreeItem* item) {
    switch (item ? item->kind : TreeKind::Root) {
    case TreeKind::Device:
        return DEVICE;
    case TreeKind::Type:
        return TYPE;
    case TreeKind::Object:
        return OBJECT;
    default:
        return ABOVE_DEVICES;
    }
}

QMenu* NewMenu(QWidget* parent, std::span<const Entry> entries, bool isFile, const CommandHandler& handler) {
    auto* const menu = new QMenu(parent);
    QMenu* current = menu;
    for (const Entry& entry : entries) {
        const QString label = QString::fromLatin1(entry.label);
        switch (entry.kind) {
        case Entry::SEPARATOR:
            current->addSeparator();
            break;
        case Entry::SUB_MENU:
            current = menu->addMenu(label);
            break;
        case Entry::END_OF_SUB_MENU:
            current = menu;
            break;
        default:
            QAction* const action = current->addAction(label);
            action->setEnabled(entry.kind != Entry::FILE_COMMAND || isFile);
            QObject::connect(action, &QAction::triggered, parent,
                             [handler, command = entry.command] { handler(command); });
        }
    }
    return menu;
}

} // namespace

QMenu* NewTreeMenu(QWidget* parent, const TreeItem* item, const CommandHandler& handler) {
    const bool isFile = item && item->kind == TreeKind::Object && item->parent->value == OBJ_FILE;
    return NewMenu(parent, EntriesFor(item), isFile, handler);
}

QMenu* NewPropertyMenu(QWidget* parent, const CommandHandler& handler) {
    return NewMenu(parent, PROPERTY, false, handler);
}
