// bdc-bench-console WHAT: the loadable module's console in a process of its own, for the figures of bdc-bench. Prints
// one line of numbers and ends. WHAT is
//   start   milliseconds until Start has returned, with the hidden console and its nine pages
//   post    microseconds from PostMessageW to the handler: the median of many posts to an idle console
//   idle    milliseconds of processor time in a second, and the process's resident megabytes
//   browser milliseconds that the window stands still at most: while the operator goes down the tree with the key held,
//           and while devices answer for their status
//   editors milliseconds until the slowest editor has opened on the largest value
#include "bench/console/Browser.h"
#include "bench/console/Console.h"
#include "bench/console/Editors.h"

#include "api/bacnet/Log.h"
#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "platform/stack/client/BacnetClient.h"

#include <fmt/format.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kWarmUp = 50;
constexpr int kPosts = 500;
constexpr auto kPause = 2ms; // between posts: each one finds the console asleep
constexpr auto kIdle = 2s;

// With the real stack, on a port of its own.
struct Site : Driver {
    Site() {
        bacnet::ClientConfig config;
        config.Ports.emplace_back();
        config.Ports[0].BindAddress = "127.0.0.1";
        config.Ports[0].UdpPort = static_cast<std::uint16_t>(50000 + getpid() % 1000);
        std::string failure;
        client = bacnet::BacnetClient::Open(config, failure);
        if (!client)
            Fail(failure.c_str());
        BACnet = client.get();
    }

    std::unique_ptr<bacnet::BacnetClient> client;
};

// Notes when the console's thread logs a message that it handles.
class Handled final : public CQilBAC_ErrLog::ISink {
public:
    void OnLine(CQilBAC_ErrLog::KIND, const std::string& text) override {
        const auto now = Clock::now();
        if (!text.starts_with("OnObjectChanged"))
            return;
        const std::lock_guard lock(m_mutex);
        m_at = now;
        m_changed.notify_all();
    }
    Clock::time_point Wait() {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, 10s, [this] { return m_at != Clock::time_point(); }))
            Fail("a message is not handled");
        return std::exchange(m_at, {});
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    Clock::time_point m_at; // m_mutex
};

template <class Unit>
double Since(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, Unit>(to - from).count();
}

double Start() {
    Site site;
    const auto begin = Clock::now();
    const Console console(site);
    const auto end = Clock::now();
    Console::Check();
    return Since<std::milli>(begin, end);
}

double Post() {
    const auto handled = std::make_shared<Handled>();
    CQilBAC_ErrLog::Instance().SetSink(handled);
    Site site;
    const Console console(site);
    Console::Check();
    std::vector<double> times;
    for (int post = 0; post < kWarmUp + kPosts; ++post) {
        std::this_thread::sleep_for(kPause);
        const auto begin = Clock::now();
        BDCManager.PostMessageW(WM_CONSOLE_OBJECTCHANGED, 1, PackObjectId(8, 1));
        const auto end = handled->Wait();
        if (post >= kWarmUp)
            times.push_back(Since<std::micro>(begin, end));
    }
    const auto median = times.begin() + kPosts / 2;
    std::ranges::nth_element(times, median);
    return *median;
}

double ProcessorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double ResidentMegabytes() {
    std::size_t size = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

std::array<double, 2> Idle() {
    Site site;
    const Console console(site);
    Console::Check();
    const double before = ProcessorTime();
    std::this_thread::sleep_for(kIdle);
    return {(ProcessorTime() - before) / std::chrono::duration<double>(kIdle).count(), ResidentMegabytes()};
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    using namespace bench;
    const std::string_view what = argc == 2 ? argv[1] : "";
    if (what == "start") {
        fmt::print("{}\n", Start());
    } else if (what == "post") {
        fmt::print("{}\n", Post());
    } else if (what == "idle") {
        const auto [time, memory] = Idle();
        fmt::print("{} {}\n", time, memory);
    } else if (what == "browser") {
        const auto [walk, answers] = MeasurePauses();
        fmt::print("{} {}\n", walk, answers);
    } else if (what == "editors") {
        fmt::print("{}\n", MeasureEditors());
    } else {
        Fail("start, post, idle, browser or editors");
    }
    return 0;
}
