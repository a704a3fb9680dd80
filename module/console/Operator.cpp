#include "module/console/Operator.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"

void NotifyError(IOperator& op, const std::string& text, bool interactive) {
    if (interactive)
        ShowError(op, text);
    else
        LogErr("%s", text.c_str());
}

void NotifyOperator(IOperator& op, const std::string& text, bool interactive) {
    if (interactive)
        ShowInformation(op, text);
    else
        LogInf("%s", text.c_str());
}

void ReportFailure(IOperator& op, const std::string& text, BACSTAC_STATUS status, const BACSTAC_ERROR* error,
                   bool interactive) {
    if (interactive && status == 0)
        return;
    NotifyError(op, text + (interactive ? "\r\n" : " - ") + CBacGeneral::GetErrorText(status, error), interactive);
}

void LogBox(const OperatorBox& box) {
    std::string line = box.text;
    for (std::size_t at = 0; (at = line.find("\r\n", at)) != std::string::npos;)
        line.replace(at, 2, " - ");
    if (box.icon == BoxIcon::Error)
        LogErr("%s", line.c_str());
    else
        LogInf("%s", line.c_str());
}
