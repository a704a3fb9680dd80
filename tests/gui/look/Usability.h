// What keeps a window from being used by everybody: each function gives the faults of a window that is on the screen,
// one a line, each with the control it is about. On the thread of the windows.
#pragma once

#include <string>
#include <vector>

class QWidget;

// Controls that take the focus and that a screen reader has no name for.
std::vector<std::string> ControlsWithoutName(const QWidget& window);
// Controls that Tab does not lead to. Of radio buttons one of a group is enough: the arrows lead to the others.
std::vector<std::string> ControlsOutOfReach(QWidget& window);
// Controls that are too small for their text, or stand outside of what they are in, or on one another.
std::vector<std::string> CutControls(const QWidget& window);
