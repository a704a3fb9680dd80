// Pictures of windows for people to look at.
#pragma once

#include <string>

class QWidget;

// Writes the picture of a window, as large as it is, to NAME.png in the folder that the environment's BDC_SCREENSHOTS
// names, by default screenshots in the build folder. Gives the path; empty when it could not be written. On the thread
// of the windows.
std::string TakeScreenshot(QWidget& window, const std::string& name);
