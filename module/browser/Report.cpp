#include "module/browser/Report.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "module/console/Operator.h"

void ReportFailure(IOperator& op, const std::string& text, BACSTAC_STATUS status, BACSTAC_ERROR const* error,
                   bool isInteractive) {
    if (isInteractive && status == BACSTAC_OK)
        return;
    NotifyError(op, text + (isInteractive ? "\r\n" : " - ") + CBacGeneral::GetErrorText(status, error), isInteractive);
}

void NotifyError(IOperator& op, const std::string& text, bool isInteractive) {
    if (isInteractive)
        ShowError(op, text);
    else
        LogErr("%s", text.c_str());
}

void NotifyOperator(IOperator& op, const std::string& text, bool isInteractive) {
    if (isInteractive)
        ShowInformation(op, text);
    else
        LogInf("%s", text.c_str());
}
