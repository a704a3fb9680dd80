// The program bdcsim, as a user starts it.
#include "tests/unit/simulator/Station.h"

#include <csignal>
#include <cstdio>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace sim::testing {
namespace {

// A process whose output can be read line by line.
class Process {
public:
    explicit Process(const std::vector<std::string>& arguments) {
        int pipes[2];
        EXPECT_EQ(::pipe(pipes), 0);
        m_pid = ::fork();
        if (m_pid == 0) {
            ::dup2(pipes[1], 1);
            ::dup2(pipes[1], 2);
            ::close(pipes[0]);
            ::close(pipes[1]);
            const std::string program = std::string(BDC_BINARY_DIR) + "/bin/bdcsim";
            std::vector<char*> list{const_cast<char*>(program.c_str())};
            for (const std::string& argument : arguments)
                list.push_back(const_cast<char*>(argument.c_str()));
            list.push_back(nullptr);
            ::execv(program.c_str(), list.data());
            ::_exit(127);
        }
        ::close(pipes[1]);
        m_output = ::fdopen(pipes[0], "r");
    }
    ~Process() {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            Wait();
        }
        std::fclose(m_output);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    std::string Line() {
        char text[512];
        if (std::fgets(text, sizeof text, m_output) == nullptr)
            return "";
        std::string line(text);
        return line.substr(0, line.find('\n'));
    }
    std::string Rest() {
        std::string text;
        for (int c = std::fgetc(m_output); c != EOF; c = std::fgetc(m_output))
            text.push_back(static_cast<char>(c));
        return text;
    }
    void Signal(int signal) const { ::kill(m_pid, signal); }
    int Wait() { // exit code
        int status = 0;
        ::waitpid(m_pid, &status, 0);
        m_pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    }

private:
    pid_t m_pid = -1;
    std::FILE* m_output = nullptr;
};

class Program : public ::testing::Test {
protected:
    std::vector<std::string> Arguments(std::vector<std::string> more) const {
        more.push_back("--port");
        more.push_back(std::to_string(Block.Port()));
        return more;
    }
    testing_support::LoopbackBlock Block;
};

TEST_F(Program, ListsWhatItServesAndEndsOnASignal) {
    for (const int signal : {SIGINT, SIGTERM}) {
        Process program(Arguments({"--devices", "2", "--trends", "3", "--records", "10", "--first-address",
                                   Block.Text(1), "--router", "7", "--routed", "1"}));
        EXPECT_EQ(program.Line(), "device 1000 at " + Block.Text(1) + ":" + std::to_string(Block.Port()) +
                                      ": \"Device 1000\", 7 objects, revision 14, 1476 octets");
        EXPECT_EQ(program.Line(), "device 1001 at " + Block.Text(2) + ":" + std::to_string(Block.Port()) +
                                      ": \"Device 1001\", 7 objects, revision 14, 1476 octets");
        EXPECT_EQ(program.Line(),
                  "device 1002 at network 7, station 1: \"Device 1002\", 7 objects, revision 14, 480 octets");
        EXPECT_EQ(program.Line(), "serving 3 devices");
        Station me(bacnet::BipAddress{Block.Ip(250), Block.Port()});
        EXPECT_NE(me.Ask({Block.Ip(1), Block.Port()}, Unicast("00 05 07 0C 0C 00 00 00 01 19 55")), "");
        program.Signal(signal);
        EXPECT_EQ(program.Line(), "served 1 requests");
        EXPECT_EQ(program.Wait(), 0);
    }
}

TEST_F(Program, ListsTwentyDevicesAtMost) {
    Process program(Arguments({"--devices", "25", "--trends", "0"}));
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(program.Line().substr(0, 9), "device 10");
    EXPECT_EQ(program.Line(), "and 5 more, up to device 1024 at 127.1.0.25:" + std::to_string(Block.Port()));
    EXPECT_EQ(program.Line(), "serving 25 devices");
}

TEST_F(Program, ReadsADescription) {
    const std::string path = ::testing::TempDir() + "bdcsim-" + std::to_string(::getpid()) + ".toml";
    std::ofstream(path) << "[[device]]\ninstance = 77\nname = \"seventy-seven\"\naddress = \"" << Block.Text(3)
                        << "\"\n";
    {
        Process program(Arguments({path}));
        EXPECT_EQ(program.Line(), "device 77 at " + Block.Text(3) + ":" + std::to_string(Block.Port()) +
                                      ": \"seventy-seven\", 1 objects, revision 14, 1476 octets");
    }
    std::ofstream(path) << "[[device]]\ninstance = true\n";
    Process program(Arguments({path}));
    EXPECT_EQ(program.Rest(), path + ":1: \"address\" is missing\n" + path +
                                  ":2: \"instance\" has to be a whole number from 0 to 4194302\n");
    EXPECT_EQ(program.Wait(), 1);
    std::remove(path.c_str());
}

TEST_F(Program, ExitCodesTellUsageFromFailure) {
    Process help({"--help"});
    EXPECT_NE(help.Rest().find("--devices"), std::string::npos);
    EXPECT_EQ(help.Wait(), 0);
    EXPECT_EQ(Process({"--no-such-option"}).Wait(), 2);
    Process profiles({"--list-profiles"});
    EXPECT_EQ(profiles.Line(), "no-multiple-reads      does not know ReadPropertyMultiple");
    EXPECT_EQ(profiles.Wait(), 0);
    EXPECT_EQ(Process({"--profile", "polite"}).Wait(), 2);
    EXPECT_EQ(Process({"--first-address", "10.0.0.1"}).Wait(), 2);
    EXPECT_EQ(Process({"--max-apdu", "49"}).Wait(), 2);
    Process first(Arguments({"--devices", "1", "--first-address", Block.Text(1)}));
    first.Line();
    Process second(Arguments({"--devices", "1", "--first-address", Block.Text(1)}));
    EXPECT_NE(second.Rest().find("Address already in use"), std::string::npos);
    EXPECT_EQ(second.Wait(), 1);
}

} // namespace
} // namespace sim::testing
