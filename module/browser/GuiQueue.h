// The way of a worker to the console thread.
#pragma once

#include <functional>

class IGuiQueue {
public:
    virtual ~IGuiQueue() = default;
    // Runs the call on the console thread, behind those posted before, and returns at once. Dropped once the window
    // that it is for has gone. Any thread.
    virtual void Post(std::function<void()> call) = 0;
};
