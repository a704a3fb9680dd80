// An edit that takes only some characters. What the program sets is not looked at.
//
// A typed character beyond the first 255 passes always. Whatever comes by another way (paste, drop, the middle button,
// an input method, undo) goes in only if each of its characters is accepted, otherwise nothing of it does. Both rules
// judge UTF-16 units.
#pragma once

#include "module/widgets/LimitEdit.h"

#include <cstdint>

inline constexpr std::uint32_t ACCEPT_DIGITS = 1;  // 0 to 9
inline constexpr std::uint32_t ACCEPT_LETTERS = 2; // a to z, A to Z

class CEditX : public CLimitEdit {
    Q_OBJECT

public:
    // accepted: ACCEPT_ values. extra: narrow text of further characters, null for none.
    CEditX(QWidget* parent, std::uint32_t accepted, const char* extra);

public Q_SLOTS:
    void paste(); // in the place of the base's, which the context menu calls by its name

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool IsAccepted(QChar character) const;
    bool AreAccepted(const QString& text) const;
    // Takes back a change that put in what is not accepted, with the history of undo.
    void Judge(const QString& text);

    const std::uint32_t m_accepted;
    const QString m_extra;
    QString m_before; // the text that a change starts from
    bool m_isTyping = false;
};
