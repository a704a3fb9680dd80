#include "host/Run.h"

#include "api/bacnet/Log.h"
#include "host/ControlProtocol.h"
#include "host/DataFolder.h"
#include "host/Output.h"
#include "host/Runtime.h"

#include <nlohmann/json.hpp>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* CONFIG_FILE = "bdc.toml";

class CErrorSink : public CQilBAC_ErrLog::ISink {
public:
    void OnLine(CQilBAC_ErrLog::KIND kind, const std::string& text) override {
        if (kind == CQilBAC_ErrLog::KIND_ERROR)
            Put(stderr, "{}\n", text);
    }
};

bool IsSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

} // namespace

bool ReadOptions(const RunOptions& options, MissingConfig missing, Config& config, std::string& folder,
                 std::string& error) {
    folder = options.data.empty() ? DefaultDataFolder() : options.data;
    if (folder.empty() && options.config.empty()) {
        error = "no data folder: give one with --data";
        return false;
    }
    const std::string path = options.config.empty() ? folder + "/" + CONFIG_FILE : options.config;
    std::vector<std::string> errors;
    const bool isMissing = options.config.empty() && access(path.c_str(), F_OK) != 0 && errno == ENOENT;
    if (isMissing && missing == MissingConfig::IsDefault)
        config.networks.emplace_back();
    else if (!LoadConfig(path, config, errors)) {
        for (const std::string& line : errors)
            error += (error.empty() ? "" : "\n") + line;
        return false;
    }
    if (options.data.empty() && !config.dataFolder.empty())
        folder = config.dataFolder;
    folder = folder.empty() ? folder : AbsolutePath(folder);
    return true;
}

int ReportFailure(int code, const std::string& error, bool json) {
    if (json) {
        const nlohmann::ordered_json document{{"code", code}, {"error", error}};
        Put(stdout, "{}\n", document.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
    } else {
        Put(stderr, "bdc: {}\n", error);
    }
    return code;
}

bool TakeDataFolder(const std::string& folder, CLockFile& lock, std::string& error) {
    umask(0077); // settings hold passwords
    if (folder.empty() || folder == "/") {
        error = "no data folder: give one with --data";
        return false;
    }
    return EnsureFolder(folder, error) && lock.Acquire(folder + "/bdc.lock", error) && EnterFolder(folder, error);
}

bool ChooseDisplay(bool headless) {
    const bool show = !headless && (IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY"));
    if (!show)
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
    return show;
}

void ShowErrorsOfLog() {
    CQilBAC_ErrLog::Instance().SetSink(std::make_shared<CErrorSink>());
}

void EndRuntime(CRuntime& runtime, CSignals& signals) {
    signals.EndAtOnce();
    if (runtime.End())
        return;
    Put(stderr, "bdc: a part did not end in time; what is stored is stored\n");
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILED);
}

int RunDriver(const RunOptions& options) {
    const bool show = ChooseDisplay(options.headless);
    CSignals signals;
    Config config;
    std::string folder;
    std::string error;
    if (!ReadOptions(options, MissingConfig::IsAFailure, config, folder, error))
        return ReportFailure(EXIT_FAILED, error, options.json);
    CLockFile lock;
    if (!TakeDataFolder(folder, lock, error))
        return ReportFailure(EXIT_FAILED, error, options.json);
    ShowErrorsOfLog();
    CRuntime runtime(config, folder);
    const bool isRunning = runtime.Open(error) && runtime.StartConsole(show, error);
    if (isRunning) {
        if (options.json)
            Put(stdout, "{}\n", nlohmann::ordered_json{{"folder", folder}, {"running", true}}.dump());
        else
            Put(stdout, "bdc runs on {}\n", folder);
        std::fflush(stdout);
        while (!signals.Wait(std::chrono::hours(1)))
            continue;
    }
    EndRuntime(runtime, signals);
    return isRunning ? EXIT_DONE : ReportFailure(EXIT_FAILED, error, options.json);
}
