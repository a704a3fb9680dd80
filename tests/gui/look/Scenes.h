// Every page and window of the console, to be looked at by tests and by people. A new one is a row in Scenes.cpp; a new
// page comes by itself.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

class QWidget;

// Gets a window that is on the screen, and its name for people and files.
using Look = std::function<void(QWidget& window, const std::string& name)>;

struct Scene {
    const char* name;
    // Opens the window, has it looked at and closes it. The console runs and is on the screen.
    void (*show)(const Look& look);
};

// As tests are named.
inline void PrintTo(const Scene& scene, std::ostream* to) {
    *to << scene.name;
}

// Looks at the dialog that the call opens. The call returns when that is closed.
void ShowModal(const std::function<void()>& open, const Look& look, const std::string& name);

// On the thread of the windows.
const std::vector<Scene>& AllScenes();
