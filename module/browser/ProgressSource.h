// Opens progress displays over the console, which is disabled while one exists.
#pragma once

#include "module/console/Progress.h"

#include <memory>

class IProgressSource {
public:
    virtual ~IProgressSource() = default;
    virtual std::unique_ptr<IProgress> OpenProgress() = 0;
};
