#include "module/console/CompiledHelp.h"

#include <QProcess>

#include <algorithm>
#include <iterator>

namespace {

// The system's own, and one that other desktops have.
constexpr struct {
    const char* program;
    const char* contextOption;
} VIEWERS[] = {{"hh", "-mapid"}, {"xchm", "-c"}};

} // namespace

bool OpenCompiledHelp(const std::string& path, int context) {
    return std::any_of(std::begin(VIEWERS), std::end(VIEWERS), [&](const auto& viewer) {
        return QProcess::startDetached(
            QString::fromLatin1(viewer.program),
            {QString::fromLatin1(viewer.contextOption), QString::number(context), QString::fromStdString(path)});
    });
}
