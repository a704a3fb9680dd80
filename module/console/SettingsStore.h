// The settings file, by the driver's choice of path and moment. Neither function takes the module lock: the caller
// holds it if the console may be running. docs/settings-file.md describes the file.
#pragma once

#include "api/driver/EventFilter.h"
#include "module/console/Export.h"
#include "module/console/Settings.h"
#include "module/console/SettingsArchive.h"

#include <vector>

// Writes `pages` straight to `path`, which is created or truncated. False when it cannot be opened;
// CSettingsArchiveError when a write, the flush or the close fails, and the file is then incomplete. A caller that
// cannot afford that gives a new path and renames.
BDC_API bool storeAllProp(const char* path, AllPropPages& pages);

// Reads what `path` holds into `pages`. A section that the file does not have leaves its record as it was. `filters` is
// only replaced when the file has the section of older versions that held them. False, and nothing changed, when `path`
// cannot be read or is not a regular file. CSettingsArchiveError when the file ends inside a value: what was read
// before stays.
BDC_API bool loadAllProps(const char* path, AllPropPages& pages, std::vector<CEventFilter>& filters);
