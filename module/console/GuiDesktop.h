// The desktop that the toolkit finds. See Desktop.h.
#pragma once

#include "module/console/Desktop.h"

class CGuiDesktop : public IDesktop {
public:
    void Open(const std::string& path) override;
    bool OpenCompiledHelp(const std::string& path, int context) override;
};
