// Keeps the console alive while one value is read before an edit: a progress over the console, closed to give up. On
// the stack of the console thread, for one AsyncReadProperty.
#pragma once

#include "api/bacnet/Callbacks.h"
#include "module/browser/ProgressSource.h"

#include <memory>

class COBAsyncCallBack : public CAsyncCallBack {
public:
    explicit COBAsyncCallBack(IProgressSource& source) : m_source(source) {}

    void OnWaitStart() override {
        m_progress = m_source.OpenProgress();
        Serve();
    }
    int OnWaitPoll() override {
        if (m_progress)
            Serve();
        return m_progress && !m_progress->IsCancelled() ? 1 : 0;
    }
    void OnWaitEnd() override { m_progress.reset(); }

private:
    void Serve() { m_progress->SetProgress("Waiting for device answer", 0); }

    IProgressSource& m_source;
    std::unique_ptr<IProgress> m_progress;
};
