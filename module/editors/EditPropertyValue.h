// The one way to the value editors. Only on the console thread.
#pragma once

#include "api/bacnet/PropertyValue.h"

#include <span>

class QWidget;

// Lets the operator change the value with the editor of its type; the value is touched only when this returns true:
// the operator has confirmed. False, and nothing is shown, for null and for types without an editor. No editor sends
// anything to a device.
bool EditPropertyValue(QWidget* parent, CPropertyValue* value);

// Which editor has which data type. Collections have one of their own, whatever their type.
struct EditorEntry {
    BACSTAC_DATA_TYPE type;
    bool (*edit)(QWidget* parent, CPropertyValue& value);
};
std::span<const EditorEntry> GetEditors(); // ascending by type
