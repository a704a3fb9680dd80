// Opens the editors of values on the thread of the windows, each step foretold by the script. The tests run on a thread
// of their own.
#pragma once

#include "api/bacnet/PropertyValues.h"
#include "module/editors/EditPropertyValue.h"
#include "tests/gui/harness/Controls.h"
#include "tests/gui/harness/DialogScript.h"
#include "tests/gui/harness/GuiAccess.h"

#include <gmock/gmock.h>

#include <functional>

class Editors : public ::testing::Test {
protected:
    using Open = std::function<bool()>; // a dialog, on the thread of the windows; true: it was left by OK

    static Open Value(CPropertyValue& value);

    // Whether the dialog that opens, and has this title, is left by OK when the operator does this.
    bool Use(const Open& open, const std::string& title, const CDialogScript::Action& use);
    // Types the text into a field. OK takes it.
    void Accept(const Open& open, const std::string& title, const std::string& label, const std::string& text);
    // Types the text into a field. OK says the message in a box, then the field has the focus and the dialog is open.
    void Refuse(const Open& open, const std::string& title, const std::string& label, const std::string& text,
                const std::string& message);

    CEventList m_events;
    CDialogScript m_script{m_events};
};

void PressOk(const CControls& dialog);
void PressCancel(const CControls& dialog);
