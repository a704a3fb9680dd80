// Forms and the editors that their fields open, used by their labels.
#pragma once

#include "tests/gui/editors/Editors.h"

#include <string>

class Forms : public Editors {
protected:
    // Presses the "..." of a field. The editor that opens has this title and label, and gets this done to it.
    void Edit(const CControls& form, const std::string& field, const std::string& title, const std::string& label,
              const CDialogScript::Action& use);
    // The same, with a text for the editor's only field, and OK. Gives the text of the form's field then.
    std::string Enter(const CControls& form, const std::string& field, const std::string& title,
                      const std::string& label, const std::string& text);
    // Presses a button that opens the editor of a list.
    void EditList(const CControls& form, const std::string& button, const std::string& type,
                  const CDialogScript::Action& use);
};

std::string TextOf(const CControls& dialog, const std::string& field);
// The chosen item of a drop-down list, empty when none is.
std::string ItemOf(const CControls& dialog, const std::string& list);
bool IsEnabled(const CControls& dialog, const std::string& button);
void SelectRow(const CControls& list, int row);

// What the value writes, to compare values with.
std::string OctetsOf(const CPropertyValue& value);
