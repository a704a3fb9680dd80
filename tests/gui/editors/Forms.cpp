#include "tests/gui/editors/Forms.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTreeView>

#include <vector>

void Forms::Edit(const CControls& form, const std::string& field, const std::string& title, const std::string& label,
                 const CDialogScript::Action& use) {
    EXPECT_EQ(form.Get<QAbstractButton>(field).text(), QStringLiteral("..."));
    m_script.Do(title, [&](const CControls& editor) {
        EXPECT_EQ(editor.Texts().front(), label);
        use(editor);
    });
    form.Press(field);
}

std::string Forms::Enter(const CControls& form, const std::string& field, const std::string& title,
                         const std::string& label, const std::string& text) {
    Edit(form, field, title, label, [&](const CControls& editor) {
        editor.Type(label, text);
        editor.Press("OK");
    });
    std::string plain = field; // as the text is called
    std::erase(plain, '&');
    return TextOf(form, plain);
}

void Forms::EditList(const CControls& form, const std::string& button, const std::string& type,
                     const CDialogScript::Action& use) {
    m_script.Do("Input list of " + type, use);
    form.Press(button);
}

std::string TextOf(const CControls& dialog, const std::string& field) {
    return dialog.Get<QLineEdit>(field).text().toStdString();
}

std::string ItemOf(const CControls& dialog, const std::string& list) {
    return dialog.Get<QComboBox>(list).currentText().toStdString();
}

bool IsEnabled(const CControls& dialog, const std::string& button) {
    return dialog.Get<QAbstractButton>(button).isEnabled();
}

void SelectRow(const CControls& list, int row) {
    auto& view = list.Only<QTreeView>();
    view.setCurrentIndex(view.model()->index(row, 0));
}

std::string OctetsOf(const CPropertyValue& value) {
    const std::vector<char> zeros(value.GetDataSize()); // not all of it is written
    CPropertyContents contents(value.GetDataSize(), zeros.data());
    EXPECT_TRUE(value.WriteTo(contents));
    return std::to_string(contents.DataType) + ":" + std::to_string(contents.ElementCount) + ":" +
           std::string(static_cast<const char*>(contents.GetBufferPtr()), value.GetDataSize());
}
