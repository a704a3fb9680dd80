// Many confirmed requests outstanding at once, from one thread. All functions and all completions run on the thread
// that owns the object. It allocates nothing for each request.
//
//   AsyncCaller caller(layer);
//   for (MyRequest& request : requests) caller.Submit(request);
//   while (caller.Outstanding() != 0) caller.Poll(100);
#pragma once

#include "platform/stack/transaction/TransactionLayer.h"

#include <cstdint>
#include <memory>
#include <span>

namespace bacnet {

// One request. The owner derives from it, fills it, submits it, and keeps it alive and untouched until OnDone; after
// that it may be filled and submitted again, also from within OnDone.
class AsyncRequest {
public:
    BACSTAC_ADDRESS Destination{};
    std::uint8_t Service = 0;
    std::span<const std::uint8_t> Parameters; // the owner's; not copied
    CallOptions Options;                      // Observer is not used
    AnswerBuffer Answer;

    AsyncRequest();
    virtual ~AsyncRequest(); // not while outstanding
    AsyncRequest(const AsyncRequest&) = delete;
    AsyncRequest& operator=(const AsyncRequest&) = delete;

    // The end, good or bad, exactly once for each Submit, from Submit's caller's Poll, Cancel or destructor.
    virtual void OnDone(const CallResult& result) = 0;

private:
    friend class AsyncCaller;
    struct State;
    std::unique_ptr<State> m_state;
};

class AsyncCaller {
public:
    explicit AsyncCaller(TransactionLayer& layer);
    // Cancels what is outstanding.
    ~AsyncCaller();
    AsyncCaller(const AsyncCaller&) = delete;
    AsyncCaller& operator=(const AsyncCaller&) = delete;

    // Takes the request up; it is sent by the next Poll (together with others), or waits there for an invoke id or a
    // router. Never completes before Poll.
    void Submit(AsyncRequest& request);
    // Sends what was submitted, receives, serves timeouts and retries, and completes what is done. Returns when
    // something was completed, or after timeoutMs; the number of completions.
    std::size_t Poll(int timeoutMs);
    // Submitted and not yet done.
    std::size_t Outstanding() const;
    // Ends all with Outcome::cancelled.
    void Cancel();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace bacnet
