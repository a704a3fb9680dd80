// From a test's thread to the thread of the windows and back. Nothing here waits for a time: what is waited for is an
// event, and a wait that lasts longer than anything should is a failure.
#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <optional>
#include <type_traits>

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

Milliseconds Since(Clock::time_point start);

// Runs f on the thread of the windows, behind all that was posted before; in the loop of a modal dialog or a pump, if
// one runs. Does not wait. f does not throw.
void PostToGui(std::function<void()> f);
// Does so and waits for it. On the thread of the windows itself f is simply called. What f throws goes to the caller.
void RunOnGui(const std::function<void()>& f);

template <class F>
auto OnGui(F f) -> std::invoke_result_t<F> {
    using Result = std::invoke_result_t<F>;
    if constexpr (std::is_void_v<Result>) {
        RunOnGui(f);
    } else {
        std::optional<Result> result;
        RunOnGui([&] { result.emplace(f()); });
        return *std::move(result);
    }
}

// Wait until the condition holds, looking at it on the caller's thread, or on the thread of the windows whenever that
// has handled an event, be it in a nested loop. False after 10 seconds.
bool Eventually(const std::function<bool()>& condition);
bool EventuallyOnGui(const std::function<bool()>& condition);
