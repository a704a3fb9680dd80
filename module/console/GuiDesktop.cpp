#include "module/console/GuiDesktop.h"

#include <QDesktopServices>
#include <QProcess>
#include <QUrl>

namespace {

// Viewers of compiled help that take a context: the system's own, and one that other desktops have.
constexpr struct {
    const char* program;
    const char* contextOption;
} VIEWERS[] = {{"hh", "-mapid"}, {"xchm", "-c"}};

} // namespace

void CGuiDesktop::Open(const std::string& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

bool CGuiDesktop::OpenCompiledHelp(const std::string& path, int context) {
    for (const auto& viewer : VIEWERS)
        if (QProcess::startDetached(
                QString::fromLatin1(viewer.program),
                {QString::fromLatin1(viewer.contextOption), QString::number(context), QString::fromStdString(path)}))
            return true;
    return false;
}
