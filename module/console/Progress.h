// What a long job on the console thread tells of itself, and how the operator stops it. CProgressBarDlg is the real
// one; a job that runs unattended is given none. Texts are narrow.
#pragma once

#include <string>

class IProgress {
public:
    virtual ~IProgress() = default;

    virtual void SetTitle(const std::string& title) = 0;
    // percent: 0 to 100. Also serves the messages that wait, so that the console stays alive between two blocking
    // calls of the job.
    virtual void SetProgress(const std::string& text, unsigned percent) = 0;
    // The job ends as soon as it can: the operator wants it to, or the console shuts down.
    virtual bool IsCancelled() const = 0;
    // Forgets the operator's wish; the shutdown stays.
    virtual void ClearCancelled() = 0;
};
