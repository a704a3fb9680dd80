// Keeps what a driver or a page throws from ending the process with all its jobs: the failure is logged, and the
// console goes on without what the call would have given.
#pragma once

#include "api/bacnet/Log.h"

#include <exception>

// False when f failed. what: for the log.
template <class F>
bool RunGuarded(const char* what, F f) {
    try {
        f();
        return true;
    } catch (const std::exception& failure) {
        LogErr("%s failed: %s", what, failure.what());
    } catch (...) {
        LogErr("%s failed", what);
    }
    return false;
}
