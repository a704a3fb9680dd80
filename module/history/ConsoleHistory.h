// The history transfer as the console has it, until the History tab owns the manager: over the process's BACnet, the
// module's settings and lock, and the driver of the run.
#pragma once

#include "module/console/HistoryStarter.h"

#include <memory>

// Called on the console thread while the console is built.
std::unique_ptr<IHistoryStarter> NewHistoryStarter();
