#include "module/console/NarrowText.h"

#include "api/bacnet/BacGeneral.h"

QString FromNarrow(const std::string& text) {
    return QString::fromStdString(ansi_to_utf8(text));
}

std::string ToNarrow(const QString& text) {
    return text.toStdString();
}
