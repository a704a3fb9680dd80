// Text between the narrow code page (UTF-8) and the toolkit.
#pragma once

#include <QString>

#include <string>

// What is not valid UTF-8 is taken as Windows-1252, since settings come from other stations too.
QString FromNarrow(const std::string& text);
std::string ToNarrow(const QString& text);
