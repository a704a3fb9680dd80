// What a history transfer says, to the driver's log and to its status. Called on the transfer's thread, and on the
// console thread for a transfer that is refused.
#pragma once

#include <string>

class ITransferLog {
public:
    virtual ~ITransferLog() = default;
    // A line behind "History: ".
    virtual void Info(const std::string& text) = 0;
    // An error line behind "History: ", counted in the status.
    virtual void Error(const std::string& text) = 0;
};
