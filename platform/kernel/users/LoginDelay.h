// How long a login has to wait after failed ones: 1, 2, 4 ... 300 seconds. A day without a failure forgets them.
// Times are seconds since 1970.
#pragma once

#include <algorithm>
#include <cstdint>

struct LoginFailures {
    std::uint32_t count = 0;
    std::int64_t last = 0;

    bool operator==(const LoginFailures&) const = default;
};

inline constexpr std::int64_t LONGEST_LOGIN_DELAY = 300;
inline constexpr std::int64_t LOGIN_FAILURES_FORGOTTEN = 86400;

inline bool AreForgotten(const LoginFailures& failures, std::int64_t now) {
    return failures.count == 0 || now - failures.last >= LOGIN_FAILURES_FORGOTTEN;
}

// Seconds until the next attempt, 0 for at once. A last failure in the future, from before the clock was set back,
// counts as of this moment.
inline std::int64_t LoginDelay(const LoginFailures& failures, std::int64_t now) {
    if (AreForgotten(failures, now))
        return 0;
    constexpr std::uint32_t doublings = 9; // 2 to the 9th exceeds the longest
    const std::int64_t delay =
        std::min(std::int64_t{1} << std::min(failures.count - 1, doublings), LONGEST_LOGIN_DELAY);
    return std::max<std::int64_t>(0, delay - std::max<std::int64_t>(0, now - failures.last));
}
