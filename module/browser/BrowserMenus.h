// The context menus of the browser: what each kind of item offers. Only on the console thread.
#pragma once

#include "module/browser/BrowserTree.h"

#include <functional>

class QMenu;
class QWidget;

enum class BrowserCommand {
    InsertDevice,
    ModifyDevice,
    RemoveDevice,
    ScanDevice,
    InsertObject,
    ModifyObject,
    RemoveObject,
    CreateObject,
    DeleteObject,
    ReadObjectsStatus,
    EnableCommunication,
    DisableCommunication,
    DisableInitiation,
    ColdReboot,
    WarmReboot,
    Backup,
    Restore,
    AbortRestore,
    SaveFile,
    RestoreFile,
    Zoom,
    Edit,
    EditArrayItem,
    SetToNull,
    Copy,
    Paste,
};

using CommandHandler = std::function<void(BrowserCommand)>;

// The menu of a tree item, null for none of them; of a row of the property list. The caller owns it.
QMenu* NewTreeMenu(QWidget* parent, const TreeItem* item, const CommandHandler& handler);
QMenu* NewPropertyMenu(QWidget* parent, const CommandHandler& handler);
