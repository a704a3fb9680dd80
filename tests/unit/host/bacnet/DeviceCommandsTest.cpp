// reinitialize, communication, timesync and alarms.
#include "api/bacnet/Enums.h"
#include "tests/unit/host/bacnet/CommandSite.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

using Json = nlohmann::json;
using testing::HasSubstr;

class DeviceCommands : public Commands {};
INSTANTIATE_TEST_SUITE_P(Ways, DeviceCommands, BOTH_WAYS, WayName);

namespace {

// A descriptor that gives a text to a program started meanwhile.
class CTextPipe {
public:
    explicit CTextPipe(const std::string& text) {
        EXPECT_EQ(pipe(m_ends), 0);
        EXPECT_EQ(write(m_ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(m_ends[1]);
    }
    ~CTextPipe() { close(m_ends[0]); }
    CTextPipe(const CTextPipe&) = delete;
    CTextPipe& operator=(const CTextPipe&) = delete;

    std::string Number() const { return std::to_string(m_ends[0]); }

private:
    int m_ends[2] = {-1, -1};
};

} // namespace

TEST_P(DeviceCommands, ReinitializeWantsThePasswordFromADescriptor) {
    const ProcessResult without = Run({"reinitialize", "1000", "warmstart"});
    EXPECT_EQ(without.code, 1);
    EXPECT_EQ(without.errors, "bdc: device 1000: error: password-failure (security)\n");
    const CTextPipe wrong("guess\n");
    EXPECT_EQ(Run({"reinitialize", "1000", "warmstart", "--password-fd", wrong.Number()}).code, 1);
    const CTextPipe right("secret\nand more");
    EXPECT_EQ(RunJson({"reinitialize", "1000", "warmstart", "--password-fd", right.Number()}),
              (Json{{"device", 1000}, {"state", "warmstart"}}));
}

TEST_P(DeviceCommands, CommunicationIsStoppedAndAllowed) {
    const CTextPipe first("secret");
    Output({"communication", "1000", "disable-initiation", "--minutes", "5", "--password-fd", first.Number()});
    EXPECT_EQ(Device(1000).CommunicationState(), sim::Communication::initiationDisabled);
    const CTextPipe second("secret");
    Output({"communication", "1000", "enable", "--password-fd", second.Number()});
    EXPECT_EQ(Device(1000).CommunicationState(), sim::Communication::enabled);
}

TEST_P(DeviceCommands, DeviceCommandsRefuseWrongWords) {
    for (const Words& words :
         {Words{"reinitialize", "1000", "restart"}, Words{"reinitialize", "1000"},
          Words{"reinitialize", "1000", "warmstart", "--password", "secret"}, // never on the command line
          Words{"reinitialize", "1000", "warmstart", "--password-fd", "x"}, Words{"communication", "1000", "off"},
          Words{"communication", "1000", "enable", "--minutes", "0"}, Words{"timesync"},
          Words{"timesync", "1000", "--time", "noon"}, Words{"timesync", "1000", "--time", "2026-11-21 *:00"},
          Words{"alarms", "1000", "--service", "all"}})
        EXPECT_EQ(Run(words).code, 2) << testing::PrintToString(words);
    EXPECT_EQ(Run({"reinitialize", "1000", "restart"}).errors,
              "bdc: \"restart\" is not one of coldstart, warmstart, startbackup, endbackup, startrestore, endrestore, "
              "abortrestore\n");
    const ProcessResult closed = Run({"reinitialize", "1000", "warmstart", "--password-fd", "99"});
    EXPECT_EQ(closed.code, 1);
    EXPECT_THAT(closed.errors, HasSubstr("descriptor 99: cannot be read"));
}

TEST_P(DeviceCommands, TimesyncSetsTheClocksOfDevices) {
    EXPECT_EQ(Output({"timesync", "1000", "2000", "--time", "2026-02-03 04:05:06"}), "sent 2026-02-03 04:05:06.00\n");
    for (const char* device : {"1000", "2000"}) {
        EXPECT_EQ(Output({"read", device, std::string("dev:") + device, "local-date"}),
                  "local-date                       03/02/2026\n");
        EXPECT_THAT(Output({"read", device, std::string("dev:") + device, "local-time"}), HasSubstr(" 04:05:"));
    }
    EXPECT_THAT(Output({"timesync", "1000", "--utc"}), testing::MatchesRegex("sent 20[0-9-]+ [0-9:.]+ UTC\n"));
    EXPECT_EQ(Run({"timesync", "999"}).code, 1);
}

TEST_P(DeviceCommands, AlarmsShowsWhatEachServiceTells) {
    EXPECT_EQ(RunJson({"alarms", "1000"}), (Json{{"alarms", Json::array()}, {"device", 1000}}));
    ASSERT_TRUE(Device(1000).RaiseEvent({OBJ_ANALOG_INPUT, 1}, 3)); // high limit
    const Json alarms = RunJson({"alarms", "1000"})["alarms"];
    ASSERT_EQ(alarms.size(), 3U) << alarms;
    for (const Json& alarm : alarms) {
        EXPECT_EQ(alarm["object"], "analog-input:1");
        EXPECT_EQ(alarm["state"], "high-limit");
    }
    EXPECT_EQ(alarms[0]["service"], "alarm-summary");
    EXPECT_EQ(alarms[1]["service"], "enrollment-summary");
    EXPECT_EQ(alarms[1]["event_type"], "out-of-range");
    EXPECT_EQ(alarms[2]["service"], "event-information");
    EXPECT_EQ(alarms[2]["times"].size(), 3U);
    EXPECT_THAT(Output({"alarms", "1000", "--service", "alarm-summary"}),
                testing::StartsWith("alarm-summary       analog-input:1               high-limit acked {"));
    const std::string event = Output({"alarms", "1000", "--service", "event-information"});
    EXPECT_THAT(event, testing::ContainsRegex(", to-offnormal 20[^ ]+ [^ ]+ [(]priority [0-9]+[)]\n"));
    EXPECT_THAT(event, testing::Not(HasSubstr("to-fault *"))) << "what has not come about has no time";
}

TEST_P(DeviceCommands, AlarmsGoesOnBehindAServiceThatIsRefused) {
    Device(1000).SetFault(sim::Fault::Reject(9).OnlyFor(bacnet::ConfirmedService::getEnrollmentSummary));
    ASSERT_TRUE(Device(1000).RaiseEvent({OBJ_ANALOG_INPUT, 1}, 3));
    const ProcessResult result = Run({"alarms", "1000"});
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.output, HasSubstr("event-information"));
    EXPECT_THAT(result.errors, HasSubstr("enrollment-summary  reject: unrecognized-service"));
}

TEST_P(DeviceCommands, ThePromptShowsNothingOfWhatIsTyped) {
    int terminal = -1;
    const std::string program = BdcPath();
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0 && (errno == ENODEV || errno == ENOENT))
        GTEST_SKIP() << "no terminals can be made here: is /dev/pts mounted?";
    ASSERT_GE(child, 0);
    if (child == 0) {
        execl(program.c_str(), "bdc", "reinitialize", "1000", "warmstart", "--password", "--json", "--data",
              m_data.Path().c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    std::string shown;
    const auto readOn = [&] {
        char block[256];
        const ssize_t count = read(terminal, block, sizeof block);
        shown.append(block, count > 0 ? static_cast<std::size_t>(count) : 0);
        return count > 0;
    };
    while (shown.find("Password: ") == std::string::npos && readOn()) {}
    EXPECT_EQ(write(terminal, "secret\n", 7), 7);
    while (readOn()) {}
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    close(terminal);
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 0) << shown;
    EXPECT_EQ(shown, "Password: \r\n{\"device\":1000,\"state\":\"warmstart\"}\r\n");
}

TEST_F(CommandSite, APromptNeedsATerminal) {
    StartSite();
    const ProcessResult result = Run({"communication", "1000", "enable", "--password"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors, "bdc: no terminal to ask for the password: give --password-fd\n");
}
