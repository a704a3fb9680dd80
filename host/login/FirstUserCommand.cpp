#include "host/login/FirstUserCommand.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cctype>

namespace {

bool IsPlain(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           std::string_view("_-./").find(c) != std::string_view::npos;
}

// One word for a POSIX shell, quoted when it needs to be.
std::string ShellWord(const std::string& text) {
    if (!text.empty() && text.front() != '-' && std::ranges::all_of(text, IsPlain))
        return text;
    std::string word = "'";
    for (const char c : text)
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

} // namespace

std::string FirstUserCommand(const std::string& program, const std::string& folder, const std::string& name) {
    std::string command = ShellWord(program) + " user add " + ShellWord(name) + " --administrator";
    if (!folder.empty())
        command += " --data " + ShellWord(folder);
    return command;
}

std::string NameForShell() {
    const QFileInfo program(QCoreApplication::applicationFilePath());
    const QFileInfo found(QStandardPaths::findExecutable(program.fileName()));
    const bool isFound = found.exists() && found.canonicalFilePath() == program.canonicalFilePath();
    return (isFound ? program.fileName() : program.absoluteFilePath()).toStdString();
}
