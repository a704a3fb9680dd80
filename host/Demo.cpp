#include "host/Demo.h"

#include "base/DurableFile.h"
#include "host/ControlProtocol.h"
#include "host/DataFolder.h"
#include "host/DemoDirectory.h"
#include "host/DemoPort.h"
#include "host/DemoSite.h"
#include "host/Output.h"
#include "host/Program.h"
#include "host/Render.h"
#include "host/Run.h"
#include "host/Runtime.h"
#include "module/console/Globals.h"
#include "platform/historian/SqliteHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "platform/kernel/users/UserStore.h"
#include "simulator/Simulator.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <random>
#include <set>

using namespace std::chrono_literals;

namespace {

using Json = nlohmann::ordered_json;
using Counts = std::map<std::string, std::uint64_t>; // by tag

constexpr const char* USER = "demo";
constexpr auto DISCOVERY_TIME = 10s;
constexpr auto TRANSFER_BEGIN_TIME = 60s;

// What a run has to tell at its end.
struct Summary {
    std::size_t devicesExpected = 0;
    std::size_t devicesFound = 0;
    Counts expected;
    Counts stored;   // without repetitions
    Counts addedNow; // with them
    HistoryStatus transfer;

    static std::uint64_t Sum(const Counts& counts) {
        std::uint64_t sum = 0;
        for (const auto& [name, count] : counts)
            sum += count;
        return sum;
    }
    bool IsComplete() const { return devicesFound == devicesExpected && stored == expected; }
};

class CDemo {
public:
    CDemo(const DemoOptions& options, std::string folder) : m_options(options), m_folder(std::move(folder)) {}

    int Run(CSignals& signals, bool show);

private:
    bool Prepare(std::string& error);
    bool Connect(bool show, std::string& error);
    bool MakeUser(std::string& error);
    bool Transfer(CSignals& signals, std::string& error);
    bool CountStored(Counts& stored, std::string& error);
    bool CountAll(Counts& counts, std::string& error);
    void Say(const std::string& text) const;
    void Print() const;
    void PrintJson() const;

    const DemoOptions& m_options;
    const std::string m_folder;
    CLockFile m_lock;
    CDemoPort m_port;
    std::unique_ptr<CDemoSite> m_site;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<CRuntime> m_runtime;
    Counts m_before;
    Summary m_summary;
};

// Folder, counts, simulation and configuration.
bool CDemo::Prepare(std::string& error) {
    if (!TakeDataFolder(m_folder, m_lock, error))
        return false;
    DemoCounts counts;
    const std::string countsPath = m_folder + "/demo.json";
    DemoCounts wanted;
    if (!LoadDemoCounts(countsPath, counts, error))
        return false;
    wanted.devices = m_options.devices.value_or(counts.devices);
    wanted.trends = m_options.trends.value_or(counts.trends);
    wanted.records = m_options.records.value_or(counts.records);
    if (access(countsPath.c_str(), F_OK) == 0)
        wanted.GrowTo(counts);
    if (!SaveDemoCounts(countsPath, wanted, error) || !m_port.Claim(m_options.port, error))
        return false;
    m_site = std::make_unique<CDemoSite>(wanted, m_port.Number());
    m_simulator = std::make_unique<sim::Simulator>(m_site->Simulation());
    if (!m_simulator->Start(error))
        return false;
    m_summary.expected = m_site->CountRecords(*m_simulator);
    const std::string text = m_site->ConfigText();
    Config config;
    std::vector<ConfigFault> faults;
    if (!ReadConfig(text, config, faults)) {
        error = "the demonstration's configuration: " + faults.front().text;
        return false;
    }
    if (!ReplaceWholeFile(m_folder + "/bdc.toml", text, FileAccess::OwnerOnly, &error))
        return false;
    m_runtime = std::make_unique<CRuntime>(config, m_folder);
    return true;
}

// Everything up to the running console.
bool CDemo::Connect(bool show, std::string& error) {
    if (!m_runtime->Open(error) || !CountAll(m_before, error))
        return false;
    const std::vector<std::uint32_t> expected = m_site->Devices();
    const std::vector<std::uint32_t> found = FindDevices(expected, DISCOVERY_TIME);
    m_summary.devicesExpected = expected.size();
    m_summary.devicesFound = found.size();
    Say(fmt::format("{} of {} devices answer Who-Is on UDP port {}", found.size(), expected.size(), m_port.Number()));
    if (!BuildDirectory(found, error))
        return false;
    BDCManager.Lock();
    m_site->AddTo(allPropPages);
    BDCManager.Unlock();
    error = m_runtime->Driver().Store();
    if (!error.empty())
        return false;
    return (!show || MakeUser(error)) && m_runtime->StartConsole(show, error);
}

// The demonstration's own user, with a password of this run.
bool CDemo::MakeUser(std::string& error) {
    constexpr std::string_view characters = "abcdefghijkmnpqrstuvwxyz23456789";
    constexpr std::size_t length = 12;
    std::random_device random;
    std::string password;
    for (std::size_t i = 0; i < length; ++i)
        password += characters[random() % characters.size()];
    CUserStore users({m_folder + "/" + USERS_FILE, {}, {}});
    std::string ignored; // that there is no such user yet
    if (!users.SetPassword(USER, password, ignored) && !users.Add(USER, password, error))
        return false;
    Say(fmt::format("Log in to the console as \"{}\" with the password {}", USER, password));
    return users.SetMember(USER, ADMINISTRATOR_GROUP, true, error);
}

// Raises the flush tag and waits until the transfer that it starts has ended. Also true when a signal ends the wait.
bool CDemo::Transfer(CSignals& signals, std::string& error) {
    CHistoryMonitor& monitor = m_runtime->Monitor();
    Kernel& kernel = m_runtime->GetKernel();
    const std::uint64_t ended = monitor.Ended();
    Say(fmt::format("\"{}\" goes from 0 to 1", CDemoSite::FLUSH_TAG));
    kernel.SetTagValue(CDemoSite::FLUSH_TAG, 1.0);
    const auto deadline = std::chrono::steady_clock::now() + TRANSFER_BEGIN_TIME;
    bool hasBegun = false;
    while (!monitor.WaitForEnd(ended, 100ms) && !signals.HasCome()) {
        hasBegun = hasBegun || monitor.Latest().running;
        if (!hasBegun && std::chrono::steady_clock::now() > deadline) {
            error = "the transfer does not begin";
            return false;
        }
    }
    kernel.SetTagValue(CDemoSite::FLUSH_TAG, 0.0);
    m_summary.transfer = monitor.Latest();
    Counts after;
    if (!CountAll(after, error) || !CountStored(m_summary.stored, error))
        return false;
    for (const auto& [name, count] : after)
        m_summary.addedNow[name] = count - m_before[name];
    return true;
}

bool CDemo::CountAll(Counts& counts, std::string& error) {
    std::vector<HistoryCount> all;
    HistoryError failure;
    if (!m_runtime->History().Count(all, failure)) {
        error = failure.text;
        return false;
    }
    m_runtime->GetKernel().ListTags([&](const TagInfo& tag) {
        if (const std::uint64_t records = m_runtime->RecordsOf(all, tag.id))
            counts[tag.settings.name] = records;
        return true;
    });
    return true;
}

// Records that repeat another one in every field, as a transfer that was cut off leaves them, count once.
bool CDemo::CountStored(Counts& stored, std::string& error) {
    bool isGood = true;
    m_runtime->GetKernel().ListTags([&](const TagInfo& tag) {
        HistoryQuery query;
        HistoryError failure;
        std::uint64_t count = 0;
        const auto ids = m_runtime->HistoryIds(tag.id);
        for (const std::uint32_t id : std::set(ids.begin(), ids.end())) {
            query.tagId = id;
            isGood = isGood && m_runtime->History().Query(
                                   query,
                                   [&](const VfiRecord&) {
                                       ++count;
                                       return true;
                                   },
                                   failure);
        }
        error = failure.text;
        if (count != 0)
            stored[tag.settings.name] = count;
        return isGood;
    });
    return isGood;
}

void CDemo::Say(const std::string& text) const {
    if (m_options.json)
        return;
    Put(stdout, "{}\n", text);
    std::fflush(stdout);
}

void CDemo::Print() const {
    if (m_options.json)
        return PrintJson();
    const auto line = [](const std::string& name, std::uint64_t expected, std::uint64_t stored, std::uint64_t now) {
        Put(stdout, "{:<40} {:>10} {:>10} {:>10}\n", name, expected, stored, now);
    };
    const auto of = [](const Counts& counts, const std::string& name) {
        const auto found = counts.find(name);
        return found == counts.end() ? 0 : found->second;
    };
    Put(stdout, "\n{:<40} {:>10} {:>10} {:>10}\n", "tag", "expected", "stored", "new");
    Counts names = m_summary.expected;
    names.insert(m_summary.stored.begin(), m_summary.stored.end());
    for (const auto& [name, ignored] : names)
        line(name, of(m_summary.expected, name), of(m_summary.stored, name), of(m_summary.addedNow, name));
    line("total", Summary::Sum(m_summary.expected), Summary::Sum(m_summary.stored), Summary::Sum(m_summary.addedNow));
    Put(stdout, "\ndevices found {} of {}, records expected {}, stored {}, new {}, errors {}: {}\n",
        m_summary.devicesFound, m_summary.devicesExpected, Summary::Sum(m_summary.expected),
        Summary::Sum(m_summary.stored), Summary::Sum(m_summary.addedNow), m_summary.transfer.errorCount,
        m_summary.IsComplete() ? "complete" : "NOT complete");
    if (m_summary.transfer.errorCount != 0)
        Put(stdout, "the last error: {}\n", Printable(m_summary.transfer.lastError));
    std::fflush(stdout);
}

void CDemo::PrintJson() const {
    Json tags = Json::array();
    for (const auto& [name, expected] : m_summary.expected) {
        const auto stored = m_summary.stored.find(name);
        const auto now = m_summary.addedNow.find(name);
        tags.push_back({{"tag", name},
                        {"expected", expected},
                        {"stored", stored == m_summary.stored.end() ? 0 : stored->second},
                        {"new", now == m_summary.addedNow.end() ? 0 : now->second}});
    }
    const Json document{{"folder", m_folder},
                        {"devicesExpected", m_summary.devicesExpected},
                        {"devicesFound", m_summary.devicesFound},
                        {"expected", Summary::Sum(m_summary.expected)},
                        {"stored", Summary::Sum(m_summary.stored)},
                        {"new", Summary::Sum(m_summary.addedNow)},
                        {"errors", m_summary.transfer.errorCount},
                        {"lastError", m_summary.transfer.lastError},
                        {"complete", m_summary.IsComplete()},
                        {"tags", tags}};
    Put(stdout, "{}\n", document.dump(-1, ' ', false, Json::error_handler_t::replace));
    std::fflush(stdout);
}

int CDemo::Run(CSignals& signals, bool show) {
    std::string error;
    bool isGood = Prepare(error) && Connect(show, error) && Transfer(signals, error);
    if (isGood)
        Print();
    if (isGood && !m_options.once && !signals.HasCome()) {
        Say(fmt::format("\nThe site runs until a signal ends it. Talk to it from another terminal, for example:\n"
                        "    {0} status --data {1}\n    {0} tag set \"{2}\" 1 --data {1}\n",
                        ProgramPath(), m_folder, CDemoSite::FLUSH_TAG));
        while (!signals.Wait(std::chrono::hours(1)))
            continue;
    }
    if (m_runtime)
        EndRuntime(*m_runtime, signals);
    if (!isGood)
        return ReportFailure(EXIT_FAILED, error, m_options.json);
    if (m_summary.IsComplete())
        return EXIT_DONE;
    return m_summary.stored.empty() ? EXIT_FAILED : EXIT_PARTLY;
}

} // namespace

int RunDemo(const DemoOptions& options) {
    const bool show = ChooseDisplay(options.headless || options.once);
    CSignals signals;
    std::string folder = options.data;
    if (folder.empty() && !DefaultDataFolder().empty())
        folder = DefaultDataFolder() + "-demo";
    ShowErrorsOfLog();
    CDemo demo(options, folder.empty() ? folder : AbsolutePath(folder));
    return demo.Run(signals, show);
}
