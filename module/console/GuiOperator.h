// The operator at the screen: message boxes and pickers of the toolkit. See Operator.h; what a worker asks is shown by
// the console thread while the worker waits. Without a screen, or once the console has ended, a worker's box becomes a
// line of the log.
#pragma once

#include "module/console/Operator.h"

class CGuiOperator : public IOperator {
public:
    BoxAnswer ShowBox(const OperatorBox& box) override;
    std::optional<std::string> PickFile(const FilePick& pick) override;
    std::optional<std::string> PickFolder(const std::string& title, const std::string& folder) override;
    void OpenFile(const std::string& path, const std::string& folder) override;

    // The one that the module works with.
    static IOperator* Get();

protected:
    virtual bool HasScreen() const;
};
