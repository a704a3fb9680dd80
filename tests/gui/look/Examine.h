// The examination that each window passes, in whatever program it is shown. On the thread of the windows.
//
// With BDC_SCREENSHOTS set, each examined window leaves a picture there; BDC_DESKTOP=dark has it dark.
#pragma once

#include <string>

class QWidget;

// The light or dark desktop that the run asks for.
void UseDesktopOfTheRun();

// The window is on the screen, and is made as small as it lets itself be made.
void Examine(QWidget& window, const std::string& name);
