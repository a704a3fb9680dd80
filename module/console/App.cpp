#include "module/console/App.h"

#include "api/bacnet/Log.h"
#include "api/kernel/QLProgramCore.h"
#include "module/console/Operator.h"

#include <filesystem>
#include <system_error>

namespace {

bool IsThere(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::u8string(path.begin(), path.end()), ignored);
}

} // namespace

CBDCApp::CBDCApp(IQLProgramCore& kernel) {
    char path[QL_FOLDER_SIZE];
    if (kernel.GetHelpPath(path) == QL_OK)
        m_helpPath = path;
}

std::string CBDCApp::GetHelpFilePath() const {
    return m_helpPath + "BDC.CHM";
}

void CBDCApp::ShowHelp(int context, const CompiledHelpOpener& openCompiledHelp, IOperator& op) const {
    if (IsThere(GetHelpFilePath()) && openCompiledHelp(GetHelpFilePath(), context))
        return;
    const std::string page = m_helpPath + "BDC/" + std::to_string(context) + ".html";
    if (!m_helpPath.empty() && IsThere(page))
        op.OpenFile(page, {});
    else
        LogDebugInfo("Help: there is no page %s", page.c_str());
}
