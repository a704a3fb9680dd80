// What a long command shows of its progress, and how the operator stops it. CProgressBarDlg is the one on the screen. A
// progress is used by the thread that made it.
#pragma once

#include <memory>
#include <string>

class IProgress {
public:
    virtual ~IProgress() = default;

    // Shows the text, whose lines are broken by "\r\n", and 0 to 100 percent, and serves the messages that wait. False
    // once the console shuts down: also a command that cannot be cancelled ends then.
    virtual bool SetProgress(const std::string& text, unsigned percent) = 0;
    // Serves the messages that wait; false as above.
    virtual bool Pump() = 0;
    // The operator wants the command to end. The shutdown of the console cancels too.
    virtual bool IsCancelled() const = 0;
};

// Opens progress displays over the console, which is disabled while one exists.
class IProgressSource {
public:
    virtual ~IProgressSource() = default;
    virtual std::unique_ptr<IProgress> OpenProgress() = 0;
};
