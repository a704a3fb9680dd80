// How the browser's commands report: what the operator started in a box, what runs by itself in the log.
#pragma once

#include "api/bacnet/Types.h"

#include <string>

class IOperator;

// A failed BACnet call, with the reason behind the text. What the operator started and succeeded, status 0, reports
// nothing.
void ReportFailure(IOperator& op, const std::string& text, BACSTAC_STATUS status, BACSTAC_ERROR const* error,
                   bool isInteractive);
void NotifyError(IOperator& op, const std::string& text, bool isInteractive);
// News that is no failure.
void NotifyOperator(IOperator& op, const std::string& text, bool isInteractive);
