// A tag change that starts nothing, on a table of 100,000 triggers: what each change of any tag costs the driver.
#include "bench/Harness.h"

#include "module/console/MessageSink.h"
#include "module/console/Messages.h"
#include "module/console/TriggerTags.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace bench {
namespace {

constexpr std::uint32_t kTriggers = 100'000;
constexpr std::size_t kChanges = 2'000'000;
constexpr double kLimitNanoseconds = 1000;

class NoSink final : public IMessageSink {
public:
    void Post(unsigned, std::uintptr_t, std::intptr_t) override {}
};

// 100,000 tags named by their ids, all of them set; more than a station of ours has, so that the table is the limit.
class ManyTags final : public CFakeKernel {
public:
    using CFakeKernel::CFakeKernel;
    QLResult GetTagIdByName(std::uint8_t, const char* name, std::uint32_t& tagId) override {
        tagId = static_cast<std::uint32_t>(std::strtoul(name, nullptr, 10));
        return QL_OK;
    }
    QLResult GetTagValue(std::uint8_t, int, std::uint32_t, double& value, int, int) override {
        value = 1;
        return QL_OK;
    }
    QLResult RqGateMsg(std::uint8_t, int, const std::uint32_t*, int) override { return QL_OK; }
};

struct Setup {
    CEventList events;
    ManyTags kernel{events};
    CFakeDriver driver{events, kernel};
    NoSink sink;
    CTriggerTable table;
    std::vector<std::uint32_t> order; // tag ids as they change

    Setup() {
        for (std::uint32_t id = 0; id < kTriggers; ++id) {
            const std::string name = std::to_string(id);
            table.Register(&driver, sink, name.c_str(), name.c_str(), WM_CONSOLE_BACKUP, 0);
        }
        order.resize(kTriggers);
        std::iota(order.begin(), order.end(), 0U);
        std::ranges::shuffle(order, std::mt19937(1));
    }
};

Sample Measure() {
    static Setup setup;
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < kChanges; ++i)
        setup.table.OnTagChange(setup.sink, setup.order[i % kTriggers], 2.0);
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    return {elapsed.count() / kChanges, kLimitNanoseconds};
}

} // namespace

void AddTriggerFigures(std::vector<Figure>& figures) {
    figures.push_back({"trigger/on_tag_change", "ns", Better::Lower, 1.0,
                       "OnTagChange without an edge, tags in random order, beside 1 microsecond", Measure});
}

} // namespace bench
