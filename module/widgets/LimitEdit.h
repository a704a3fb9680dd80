// An edit whose limit binds what the user types or pastes; what the program sets is never cut. A paste is cut to the
// room that is left. Text that is longer than the limit can be shortened, not made longer.
#pragma once

#include <QLineEdit>

class CLimitEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit CLimitEdit(QWidget* parent, int limit);

    // Sets the whole text, in the place of setText.
    void SetWholeText(const QString& text);

private:
    void Bind(const QString& text);

    const int m_limit; // UTF-16 units
};
