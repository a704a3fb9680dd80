#include "module/widgets/LimitEdit.h"

#include <algorithm>

CLimitEdit::CLimitEdit(QWidget* parent, int limit) : QLineEdit(parent), m_limit(limit) {
    setMaxLength(limit);
    connect(this, &QLineEdit::textChanged, this, &CLimitEdit::Bind);
}

void CLimitEdit::SetWholeText(const QString& text) {
    setMaxLength(std::max<int>(m_limit, static_cast<int>(text.size())));
    setText(text);
}

void CLimitEdit::Bind(const QString& text) {
    const int longest = std::max<int>(m_limit, static_cast<int>(text.size()));
    if (longest != maxLength())
        setMaxLength(longest);
}
