// The module as an application: where its help is, and how it is shown. Only on the console thread.
//
// The help path is the kernel's. In it there may be the product's compiled help file; without it, or without a viewer
// for it, a context is the page BDC/CONTEXT.html beside it, made from docs/help.
#pragma once

#include <functional>
#include <string>

class IOperator;
class IQLProgramCore;

class CBDCApp {
public:
    explicit CBDCApp(IQLProgramCore& kernel);

    // "BDC.CHM" in the help path.
    std::string GetHelpFilePath() const;
    // Opens a compiled help file on a context; false where there is no viewer.
    using CompiledHelpOpener = std::function<bool(const std::string& path, int context)>;
    // Nothing happens where no help is there: the operator is not bothered with it.
    void ShowHelp(int context, const CompiledHelpOpener& openCompiledHelp, IOperator& op) const;

private:
    std::string m_helpPath; // with a separator behind it; empty when the kernel knows of no help
};
