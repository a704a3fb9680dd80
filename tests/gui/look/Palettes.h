// The two kinds of desktop that the console has to be readable on. On the thread of the windows.
#pragma once

#include <QPalette>

enum class Desktop { Light, Dark };

QPalette PaletteOf(Desktop desktop);
// In the style that is the same on every platform.
void UseDesktop(Desktop desktop);
