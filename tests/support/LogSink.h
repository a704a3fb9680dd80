// Puts the lines of the driver's log into a list while it lives, as "I: text", "E: text" and "D: text". For programs
// that link the real library.
#pragma once

#include "api/bacnet/Log.h"
#include "tests/support/EventList.h"

#include <memory>
#include <string>

class CLogSink {
public:
    explicit CLogSink(CEventList& events) { CQilBAC_ErrLog::Instance().SetSink(std::make_shared<Sink>(events)); }
    ~CLogSink() { CQilBAC_ErrLog::Instance().SetSink(nullptr); }
    CLogSink(const CLogSink&) = delete;
    CLogSink& operator=(const CLogSink&) = delete;

private:
    class Sink : public CQilBAC_ErrLog::ISink {
    public:
        explicit Sink(CEventList& events) : m_events(events) {}
        void OnLine(CQilBAC_ErrLog::KIND kind, const std::string& text) override {
            static const char* const KINDS[] = {"I: ", "E: ", "D: "};
            m_events.Add(KINDS[kind] + text);
        }

    private:
        CEventList& m_events;
    };
};
