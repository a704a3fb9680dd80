// Holds the module lock, which guards allPropPages and the life of the console's tabs, for a scope. Recursive.
#pragma once

#include "module/console/Globals.h"

class CModuleLock {
public:
    CModuleLock() { BDCManager.Lock(); }
    ~CModuleLock() { BDCManager.Unlock(); }
    CModuleLock(const CModuleLock&) = delete;
    CModuleLock& operator=(const CModuleLock&) = delete;
};
