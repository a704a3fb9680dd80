// The two objects that the driver and the module share. Both exist before any code of the driver runs and are never
// destroyed: a thread that was abandoned may still use them while the process ends.
#pragma once

#include "module/console/Export.h"
#include "module/console/Manager.h"
#include "module/console/Settings.h"

extern BDC_API CBDCManager& BDCManager;
extern BDC_API AllPropPages& allPropPages; // guarded by BDCManager's Lock
