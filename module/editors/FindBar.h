// Searches a text: a line below it that is hidden until Ctrl+F. The text is found as it is typed, whatever its case;
// Enter and F3 go on, with Shift back, and around the ends; Escape hides the line again.
#pragma once

#include <QTextDocument>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

class CFindBar : public QWidget {
    Q_OBJECT

public:
    // text is of the same window and outlives the bar.
    CFindBar(QWidget* parent, QPlainTextEdit& text);

    // Serves the keys above; the window passes on what its controls leave. False for any other key.
    bool Serve(const QKeyEvent& event);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Open();
    void Close();
    void OnEdited();
    void FindNext() { Find({}); }
    void FindPrevious() { Find(QTextDocument::FindBackward); }
    void Find(QTextDocument::FindFlags direction);

    QPlainTextEdit& m_text;
    QLineEdit* const m_wanted;
    QLabel* const m_result;
};
