// The built program from outside: usage, exit codes, one instance to a folder, commands against a running instance.
#include "host/SettingsGuard.h"
#include "tests/support/Loopback.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/host/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <filesystem>
#include <map>
#include <memory>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using Words = std::vector<std::string>;

const std::vector<Words> COMMANDS{{"run"},
                                  {"demo"},
                                  {"tag", "list"},
                                  {"tag", "get"},
                                  {"tag", "set"},
                                  {"history", "transfer"},
                                  {"history", "count"},
                                  {"history", "query"},
                                  {"status"},
                                  {"discover"},
                                  {"scan"},
                                  {"list"},
                                  {"read"},
                                  {"write"},
                                  {"relinquish"},
                                  {"readrange"},
                                  {"create"},
                                  {"delete"},
                                  {"file", "get"},
                                  {"file", "put"},
                                  {"reinitialize"},
                                  {"communication"},
                                  {"timesync"},
                                  {"alarms"},
                                  {"router", "list"},
                                  {"bbmd", "show"},
                                  {"open"},
                                  {"show"},
                                  {"stop"},
                                  {"user", "add"},
                                  {"user", "passwd"},
                                  {"user", "list"},
                                  {"user", "remove"},
                                  {"user", "group"}};

Words operator+(Words left, const Words& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// The files of a folder with their content, to see whether anything was touched.
std::map<std::string, std::string> Snapshot(const CTempFolder& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path())) {
        const std::string name = entry.path().lexically_relative(folder.Path()).string();
        files[name] = entry.is_regular_file() ? folder.Get(name) : std::string("-");
    }
    return files;
}

// A driver that runs on a folder and a port of its own, with three tags and no devices.
class RunningBdc : public testing::Test {
protected:
    RunningBdc() {
        m_config.Put("site.toml", "[[network]]\nbind = \"" + m_addresses.Text(1) +
                                      "\"\nport = " + std::to_string(m_addresses.Port()) +
                                      "\nbroadcast = \"127.255.255.255\"\n"
                                      "[[tag]]\nname = \"Supply air\"\ninitial = 21.5\nunit = \"°C\"\n"
                                      "[[tag]]\nname = \"Note\"\ntype = \"text\"\ninitial = \"none\"\n"
                                      "[[tag]]\nname = \"Switch\"\ntype = \"digital\"\n");
    }

    Words RunArguments() const {
        return {BdcPath(), "run", "--config", m_config.File("site.toml"), "--data", m_data.Path()};
    }
    void Start() {
        // The toolkit complains about a missing runtime folder; that must not reach the terminal.
        m_driver = std::make_unique<CProcess>(RunArguments(), Words{"XDG_RUNTIME_DIR="});
        ASSERT_TRUE(m_driver->WaitForOutput("bdc runs on ")) << m_driver->Errors();
    }
    ProcessResult Ask(const Words& command) const { return RunBdc(command + Words{"--data", m_data.Path()}); }
    Json AskJson(const Words& command) const {
        const ProcessResult result = Ask(command + Words{"--json"});
        EXPECT_EQ(result.errors, "");
        return Json::parse(result.output, nullptr, false);
    }

    testing_support::LoopbackBlock m_addresses;
    CTempFolder m_config;
    CTempFolder m_data;
    std::unique_ptr<CProcess> m_driver;
};

} // namespace

TEST(CommandLine, TellsItsVersionAndItsCommands) {
    EXPECT_THAT(RunBdc({"--version"}).output, testing::MatchesRegex("bdc [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    const ProcessResult help = RunBdc({"--help"});
    EXPECT_EQ(help.code, 0);
    for (const char* name : {"run", "demo", "tag", "history", "status", "$XDG_STATE_HOME/bdc", "Exit codes"})
        EXPECT_THAT(help.output, HasSubstr(name));
}

TEST(CommandLine, EveryCommandHasHelpAndJson) {
    for (const Words& command : COMMANDS) {
        const ProcessResult help = RunBdc(command + Words{"--help"});
        EXPECT_EQ(help.code, 0) << command.back();
        EXPECT_THAT(help.output, HasSubstr("--json")) << command.back();
        EXPECT_THAT(help.output, HasSubstr("--data")) << command.back();
        EXPECT_THAT(help.output, HasSubstr("3 partly done")) << command.back();
        for (std::size_t begin = 0, end = 0; begin < help.output.size(); begin = end + 1) {
            end = help.output.find('\n', begin);
            ASSERT_NE(end, std::string::npos) << command.back();
            EXPECT_LE(end - begin, 100U) << help.output.substr(begin, end - begin);
        }
    }
}

TEST(CommandLine, WrongUsageSaysWhatIsWrongAndWhereToLook) {
    const std::vector<std::pair<Words, std::string>> wrong{
        {{}, "bdc: a command is missing\nbdc --help tells more.\n"},
        {{"walk"}, "bdc: \"walk\" is no command\nbdc --help tells more.\n"},
        {{"tag", "walk"}, "bdc tag: \"walk\" is no command\nbdc tag --help tells more.\n"},
        {{"read", "1"}, "bdc read: OBJECT is required\nbdc read --help tells more.\n"},
        {{"read", "--walk"}, "bdc read: \"--walk\" is no option of it\nbdc read --help tells more.\n"},
        {{"status", "now"}, "bdc status: \"now\" is one word too many\nbdc status --help tells more.\n"},
        {{"user", "list", "--walk"},
         "bdc user list: \"--walk\" is no option of it\nbdc user list --help tells more.\n"},
    };
    for (const auto& [words, errors] : wrong)
        EXPECT_EQ(RunBdc(words).errors, errors);
    const ProcessResult json = RunBdc({"read", "1", "--json"});
    EXPECT_EQ(json.code, 2);
    EXPECT_EQ(json.errors, "");
    EXPECT_EQ(Json::parse(json.output, nullptr, false), (Json{{"code", 2}, {"error", "bdc read: OBJECT is required"}}));
}

TEST(CommandLine, AResultThatCannotBeWrittenIsAFailure) {
    const CTempFolder folder;
    const auto run = [&](const std::string& redirection) {
        CProcess process(
            {"/bin/sh", "-c", "'" + BdcPath() + "' user list --json --data '" + folder.Path() + "' " + redirection});
        return std::pair(process.Wait(), process.Errors());
    };
    EXPECT_EQ(run("> /dev/null"), std::pair(0, std::string()));
    EXPECT_EQ(run("> /dev/full"),
              std::pair(1, std::string("bdc: standard output: cannot be written: No space left on device\n")));
    EXPECT_EQ(run(">&-"), std::pair(1, std::string("bdc: standard output: cannot be written: Bad file descriptor\n")));
    EXPECT_EQ(run("2>&- > /dev/full").first, 1);
}

TEST(CommandLine, WrongUsageIsCodeTwo) {
    const std::vector<Words> wrong{{},
                                   {"walk"},
                                   {"tag"},
                                   {"tag", "get"},
                                   {"tag", "set", "A"},
                                   {"tag", "get", "A", "B"},
                                   {"history"},
                                   {"history", "transfer", "x"},
                                   {"history", "transfer", "4194304"},
                                   {"history", "transfer", "1", "trend-log"},
                                   {"history", "transfer", "1", "no-such-type", "2"},
                                   {"history", "query"},
                                   {"history", "query", "A", "--from", "yesterday"},
                                   {"history", "query", "A", "--to", "2026-02-30"},
                                   {"status", "--verbose"},
                                   {"demo", "--devices", "0"},
                                   {"demo", "--records", "x"},
                                   {"run", "--headless", "now"}};
    for (const Words& arguments : wrong) {
        const ProcessResult result = RunBdc(arguments);
        EXPECT_EQ(result.code, 2) << testing::PrintToString(arguments);
        EXPECT_NE(result.errors, "") << testing::PrintToString(arguments);
        EXPECT_EQ(result.output, "") << testing::PrintToString(arguments);
    }
}

TEST(CommandLine, WithoutAnInstanceEveryCommandFails) {
    const CTempFolder folder;
    const std::vector<Words> commands{{"tag", "list"},
                                      {"tag", "get", "A"},
                                      {"tag", "set", "A", "1"},
                                      {"history", "count"},
                                      {"history", "query", "A"},
                                      {"history", "transfer"},
                                      {"status"}};
    for (const Words& command : commands) {
        const ProcessResult result = RunBdc(command + Words{"--data", folder.Path()});
        EXPECT_EQ(result.code, 1);
        EXPECT_EQ(result.errors, "bdc: " + folder.Path() + ": no instance is running here\n");
        const ProcessResult json = RunBdc(command + Words{"--data", folder.Path(), "--json"});
        EXPECT_EQ(json.code, 1);
        EXPECT_EQ(json.errors, "");
        EXPECT_EQ(Json::parse(json.output),
                  (Json{{"code", 1}, {"error", folder.Path() + ": no instance is running here"}}));
    }
}

TEST(CommandLine, LooksForTheInstanceInTheStateFolder) {
    const CTempFolder folder;
    EXPECT_EQ(RunBdc({"status"}, {"XDG_STATE_HOME=" + folder.Path()}).errors,
              "bdc: " + folder.Path() + "/bdc: no instance is running here\n");
    EXPECT_EQ(RunBdc({"status"}, {"XDG_STATE_HOME=", "HOME=" + folder.Path()}).errors,
              "bdc: " + folder.Path() + "/.local/state/bdc: no instance is running here\n");
    EXPECT_EQ(RunBdc({"status"}, {"XDG_STATE_HOME=relative", "HOME=" + folder.Path()}).errors,
              "bdc: " + folder.Path() + "/.local/state/bdc: no instance is running here\n");
}

TEST(CommandLine, AConfigurationWithFaultsStartsNothing) {
    const CTempFolder folder;
    folder.Put("bdc.toml", "[stack]\nretries = 11\n[identiti]\n");
    const ProcessResult result = RunBdc({"run", "--config", folder.File("bdc.toml"), "--data", folder.File("data")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors, "bdc: " + folder.File("bdc.toml") +
                                 ":2:11: [stack]: \"retries\" must be a whole number from 0 to 10\n" +
                                 folder.File("bdc.toml") + ":3:2: file: unknown key \"identiti\"\n");
    EXPECT_FALSE(folder.Has("data"));
    EXPECT_EQ(RunBdc({"run", "--data", folder.File("data")}).errors,
              "bdc: " + folder.File("data/bdc.toml") + ": cannot be opened: No such file or directory\n");
}

TEST(CommandLine, AnAddressThatIsNotThisMachinesIsReported) {
    const CTempFolder folder;
    folder.Put("bdc.toml", "[[network]]\nbind = \"192.0.2.1\"\n");
    const ProcessResult result = RunBdc({"run", "--config", folder.File("bdc.toml"), "--data", folder.Path()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.errors, HasSubstr("192.0.2.1"));
}

TEST_F(RunningBdc, EndsInOrderOnSignals) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        Start();
        EXPECT_TRUE(m_data.Has("control.sock"));
        m_driver->Signal(number);
        EXPECT_EQ(m_driver->Wait(), 0) << "signal " << number;
        EXPECT_EQ(m_driver->Errors(), "");
        EXPECT_FALSE(m_data.Has("control.sock"));
        EXPECT_TRUE(m_data.Has("settings.dat"));
        EXPECT_TRUE(m_data.Has("station.json"));
    }
}

TEST_F(RunningBdc, RefusesASecondInstanceAtOnceAndTouchesNothing) {
    Start();
    const auto before = Snapshot(m_data);
    CProcess second(RunArguments());
    EXPECT_EQ(second.Wait(std::chrono::seconds(10)), 1);
    EXPECT_EQ(second.Errors(), "bdc: " + m_data.File("bdc.lock") + ": another instance is running (process " +
                                   std::to_string(m_driver->Id()) + ")\n");
    EXPECT_EQ(Snapshot(m_data), before);
    EXPECT_EQ(Ask({"status"}).code, 0) << "the first one goes on";
}

TEST_F(RunningBdc, StartsAgainAfterAKill) {
    Start();
    m_driver->Signal(SIGKILL);
    EXPECT_EQ(m_driver->Wait(), 128 + SIGKILL);
    EXPECT_THAT(Ask({"status"}).errors, HasSubstr("no instance is running here"));
    Start();
    EXPECT_EQ(Ask({"status"}).code, 0);
}

TEST_F(RunningBdc, KeepsItsFilesForTheUser) {
    Start();
    m_driver->Signal(SIGTERM);
    m_driver->Wait();
    for (const auto& entry : std::filesystem::directory_iterator(m_data.Path())) {
        const auto others =
            entry.status().permissions() & (std::filesystem::perms::group_all | std::filesystem::perms::others_all);
        EXPECT_EQ(others, std::filesystem::perms::none) << entry.path();
    }
}

TEST_F(RunningBdc, ShowsAndSetsTags) {
    Start();
    EXPECT_EQ(Ask({"tag", "get", "Supply air"}).output, "21.5\n");
    EXPECT_EQ(Ask({"tag", "set", "Supply air", "-5.25"}).output, "-5.25\n");
    EXPECT_EQ(Ask({"tag", "get", "Supply air"}).output, "-5.25\n");
    EXPECT_EQ(Ask({"tag", "set", "Note", "a b"}).output, "a b\n");
    EXPECT_EQ(Ask({"tag", "set", "Switch", "1"}).output, "1\n");
    EXPECT_EQ(
        AskJson({"tag", "get", "Supply air"}),
        (Json{{"name", "Supply air"}, {"type", "analog"}, {"value", -5.25}, {"unit", "°C"}, {"description", ""}}));
    const Json list = AskJson({"tag", "list"});
    EXPECT_EQ(list["count"], 3);
    ASSERT_EQ(list["tags"].size(), 3U);
    EXPECT_EQ(list["tags"][1]["value"], "a b");
}

TEST_F(RunningBdc, RefusesTagsAndValuesThatAreNone) {
    Start();
    const ProcessResult unknown = Ask({"tag", "get", "No such"});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_EQ(unknown.errors, "bdc: no such tag: No such\n");
    EXPECT_EQ(Ask({"tag", "set", "No such", "1"}).code, 1);
    EXPECT_EQ(Ask({"tag", "set", "Supply air", "warm"}).code, 2);
    EXPECT_EQ(Ask({"tag", "set", "Switch", "2"}).code, 2);
    EXPECT_EQ(Ask({"history", "count", "No such"}).code, 1);
    EXPECT_EQ(Ask({"history", "query", "No such"}).code, 1);
    EXPECT_EQ(AskJson({"tag", "set", "Switch", "2"}), (Json{{"code", 2}, {"error", "a digital tag is 0 or 1"}}));
}

TEST_F(RunningBdc, TellsItsStatus) {
    Start();
    const Json status = AskJson({"status"});
    EXPECT_EQ(status["folder"], m_data.Path());
    EXPECT_EQ(status["process"], m_driver->Id());
    EXPECT_EQ(status["tags"], 3);
    EXPECT_EQ(status["console"], true);
    ASSERT_EQ(status["networks"].size(), 1U);
    EXPECT_EQ(status["networks"][0]["number"], 0);
    EXPECT_EQ(status["networks"][0]["enabled"], true);
    EXPECT_EQ(status["history"]["running"], false);
    EXPECT_EQ(status["history"]["lastTransferTime"], "");
    EXPECT_THAT(Ask({"status"}).output, HasSubstr("last transfer     never\n"));
}

TEST_F(RunningBdc, TransfersNothingWhenNothingIsConfigured) {
    Start();
    const Json ended = AskJson({"history", "transfer", "--wait"});
    EXPECT_EQ(ended["running"], false);
    EXPECT_EQ(ended["errors"], 0);
    EXPECT_NE(ended["lastTransferTime"], "");
    EXPECT_EQ(Ask({"history", "transfer", "1000", "trend-log", "3"}).output, "started\n");
    EXPECT_EQ(Ask({"history", "count", "Supply air"}).output, "0\n");
    EXPECT_EQ(AskJson({"history", "count"}), (Json{{"tags", Json::array()}, {"records", 0}}));
    EXPECT_EQ(AskJson({"history", "query", "Note"}), (Json{{"rows", Json::array()}, {"tag", "Note"}, {"records", 0}}));
}

TEST_F(RunningBdc, RemembersTheLastTransferOverARestart) {
    Start();
    const std::string time = AskJson({"history", "transfer", "--wait"})["lastTransferTime"];
    m_driver->Signal(SIGTERM);
    m_driver->Wait();
    Start();
    EXPECT_EQ(AskJson({"status"})["history"]["lastTransferTime"], time);
}

TEST_F(RunningBdc, TransfersAtItsStartWhenTheSettingsWantIt) {
    AllPropPages pages;
    pages.general.flags = GENERAL_TRANSFER_HISTORY_ON_STARTUP;
    std::string error;
    ASSERT_TRUE(CSettingsGuard(m_data.File("settings.dat")).Save(pages, error)) << error;
    Start();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    std::string time;
    while (time.empty() && std::chrono::steady_clock::now() < deadline)
        time = AskJson({"status"})["history"]["lastTransferTime"];
    EXPECT_NE(time, "");
}

TEST_F(RunningBdc, RestoresDamagedSettingsFromTheirLastGoodGeneration) {
    Start();
    m_driver->Signal(SIGTERM);
    m_driver->Wait();
    const std::string good = m_data.Get("settings.dat");
    m_data.Put("settings.dat.1", good);
    m_data.Put("settings.dat", good.substr(0, good.size() / 2));
    m_driver = std::make_unique<CProcess>(RunArguments());
    ASSERT_TRUE(m_driver->WaitForOutput("bdc runs on "));
    EXPECT_EQ(m_data.Get("settings.dat"), good);
    m_driver->Signal(SIGTERM);
    m_driver->Wait();
    EXPECT_THAT(m_driver->Errors(), HasSubstr(m_data.File("settings.dat") + ": is incomplete\n"));
}

TEST_F(RunningBdc, ASettingsFileThatIsNoFileStopsTheStart) {
    std::filesystem::create_directory(m_data.File("tag-numbers.json"));
    CProcess driver(RunArguments());
    EXPECT_EQ(driver.Wait(), 1);
    EXPECT_EQ(driver.Errors(), "bdc: " + m_data.File("tag-numbers.json") + ": is not a regular file\n");
}
