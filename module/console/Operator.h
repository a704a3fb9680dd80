// What the console asks the operator: boxes, files and folders. Unattended work and tests have an operator of their own
// behind it. Any thread may call; on a worker the call waits until the console thread has the answer.
//
// Texts are narrow. Line breaks in them are "\r\n".
#pragma once

#include "api/bacnet/Types.h"

#include <optional>
#include <string>

enum class BoxIcon { Error, Information, Question };
enum class BoxButtons { Ok, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

struct OperatorBox {
    std::string title;
    std::string text;
    BoxIcon icon = BoxIcon::Information;
    BoxButtons buttons = BoxButtons::Ok;
};

struct FilePick {
    std::string path;      // what is proposed
    std::string extension; // without the point; it is added to a name that has none
    bool save = false;     // true asks before it overwrites; false picks only what exists
};

class IOperator {
public:
    virtual ~IOperator() = default;

    // Ok or Cancel when the box is taken away, by the shutdown of the console or for want of a screen.
    virtual BoxAnswer ShowBox(const OperatorBox& box) = 0;
    // Empty when the operator cancels.
    virtual std::optional<std::string> PickFile(const FilePick& pick) = 0;
    virtual std::optional<std::string> PickFolder(const std::string& title, const std::string& folder) = 0;
    // Opens a file with the program that the desktop has for it, started in the folder; empty is the current one. Does
    // not wait, and says nothing when there is none.
    virtual void OpenFile(const std::string& path, const std::string& folder) = 0;
};

// The error box of the console, and its companion for news that is no failure.
inline void ShowError(IOperator& op, const std::string& text) {
    op.ShowBox({"Error", text, BoxIcon::Error, BoxButtons::Ok});
}
inline void ShowInformation(IOperator& op, const std::string& text) {
    op.ShowBox({"Information", text, BoxIcon::Information, BoxButtons::Ok});
}
// The same for jobs that also run unattended: a box when interactive, otherwise one line of the log.
void NotifyError(IOperator& op, const std::string& text, bool interactive);
void NotifyOperator(IOperator& op, const std::string& text, bool interactive);
// The common report of a failed BACnet call. Interactive, a status of 0 reports nothing, so that a caller may give
// whatever status it got.
void ReportFailure(IOperator& op, const std::string& text, BACSTAC_STATUS status, const BACSTAC_ERROR* error,
                   bool interactive);
// A box as a line of the log, for want of anybody to show it to.
void LogBox(const OperatorBox& box);
// True for Yes.
inline bool Confirm(IOperator& op, const std::string& text) {
    return op.ShowBox({"Confirmation", text, BoxIcon::Question, BoxButtons::YesNoCancel}) == BoxAnswer::Yes;
}
