#include "tests/gui/editors/Editors.h"

#include <QLineEdit>

Editors::Open Editors::Value(CPropertyValue& value) {
    return [&value] { return EditPropertyValue(nullptr, &value); };
}

bool Editors::Use(const Open& open, const std::string& title, const CDialogScript::Action& use) {
    m_script.Do(title, use);
    return OnGui(open);
}

void Editors::Accept(const Open& open, const std::string& title, const std::string& label, const std::string& text) {
    SCOPED_TRACE(text.substr(0, 40));
    EXPECT_TRUE(Use(open, title, [&](const CControls& dialog) {
        dialog.Type(label, text);
        dialog.Press("OK");
    }));
}

void Editors::Refuse(const Open& open, const std::string& title, const std::string& label, const std::string& text,
                     const std::string& message) {
    SCOPED_TRACE(text.substr(0, 40));
    m_events.Take();
    EXPECT_FALSE(Use(open, title, [&](const CControls& dialog) {
        dialog.Type(label, text);
        m_script.Press("Error", "OK");
        dialog.Press("OK");
        EXPECT_TRUE(dialog.GetRoot().isVisible());
        EXPECT_EQ(dialog.GetRoot().focusWidget(), &dialog.Get<QWidget>(label));
        dialog.Press("Cancel");
    }));
    EXPECT_THAT(m_events.Take(),
                ::testing::ElementsAre("Dialog(" + title + ")", "Box(Error, " + message + ", error, OK)"));
}

void PressOk(const CControls& dialog) {
    dialog.Press("OK");
}

void PressCancel(const CControls& dialog) {
    dialog.Press("Cancel");
}
