// The commands on the selected rows of the property list: look at a value, edit it, set it to null, copy and paste. On
// the console thread. The read before an edit is waited for with a progress; all other calls block the console.
//
// Tree and list may be rebuilt while the operator is asked, so a command holds the identity of what it read.
// Deliberate: a value is written to what is selected when it is written, which is how it gets from one property to
// another.
#pragma once

#include "api/bacnet/PropertyValue.h"
#include "module/browser/ObjBrowser.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class IOperator;

// What the commands ask the operator. Empty and false: the operator has cancelled, or the console shuts down.
class IPropertyPrompts {
public:
    virtual ~IPropertyPrompts() = default;
    // The selected row as the list shows it; empty when it is not one.
    virtual std::optional<PropertyRow> GetSelectedRow() const = 0;
    // Changes the value when it returns true. False at once for a type without an editor.
    virtual bool EditValue(CPropertyValue& value) = 0;
    virtual std::optional<unsigned> AskPriority(unsigned priority) = 0; // 1 to 16
    virtual std::optional<unsigned> AskArrayIndex(unsigned index) = 0;  // 1 to MAX_ARRAY_INDEX
    virtual void ShowValue(const std::string& caption, const std::string& text) = 0;
    virtual void ShowLogBuffer(unsigned device, const BACSTAC_OBJECT_ID& object) = 0;
};

// What the commands work with; all outlive them.
struct PropertyCommandServices {
    CBacGeneral& bacnet;
    CObjBrowser& browser;
    IBrowserWindow& window;
    IPropertyPrompts& prompts;
    IOperator& op;
};

class CPropertyCommands {
public:
    static constexpr unsigned MAX_ARRAY_INDEX = 0x7FFFFFFF; // a negative index is the whole array

    explicit CPropertyCommands(const PropertyCommandServices& services) : m_services(services) {}

    void Zoom();
    void Edit();
    void EditArrayItem();
    void SetToNull();
    void Copy();
    void Paste();

private:
    // 1 to 16, remembered for the next time. False when the operator cancels.
    bool AskPriority(unsigned& priority);
    // The priority of a write to the object: asked for where it counts, else none. Empty when the operator cancels.
    std::optional<int> PriorityFor(const BrowserSelection& target, bool isPresentValue);
    // Null when there is nothing to edit: the failure has been reported, or the value is of no known type.
    std::unique_ptr<CPropertyValue> ReadValue(const BrowserSelection& source, int arrayIndex);
    // To the one selected row. False when it was not written.
    bool WriteValue(const CPropertyValue& value, int arrayIndex);
    void EditAndWrite(CPropertyValue& value, int arrayIndex);
    void PasteTogether();
    void Report(const char* words, BACSTAC_STATUS status, const BACSTAC_ERROR& error);

    const PropertyCommandServices m_services;
    unsigned m_writePriority = 8; // the operator's last
    unsigned m_arrayIndex = 1;    // the operator's last
    // What was copied. Each value knows its property and the type of its object, but no object.
    std::vector<std::unique_ptr<CPropertyValue>> m_copiedValues;
};
