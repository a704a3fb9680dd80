// The commands for users, and those that open and end a running console.
#include "platform/kernel/users/UserStore.h"
#include "tests/support/Loopback.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/host/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace {

using testing::HasSubstr;

class UserCommands : public testing::Test {
protected:
    // password: what stands in the file that the command reads as a descriptor.
    ProcessResult User(std::vector<std::string> arguments, const std::string& password = {}) {
        arguments.insert(arguments.begin(), "user");
        arguments.insert(arguments.end(), {"--data", m_folder.Path()});
        int descriptor = -1;
        if (!password.empty()) {
            m_input.Put("password", password + "\nmore\n");
            descriptor = ::open(m_input.File("password").c_str(), O_RDONLY); // inherited
            arguments.insert(arguments.end(), {"--password-fd", std::to_string(descriptor)});
        }
        ProcessResult result = RunBdc(arguments);
        if (descriptor >= 0)
            ::close(descriptor);
        return result;
    }
    LoginOutcome Login(const std::string& name, const std::string& password) {
        return CUserStore({m_folder.File("users"), {}, {}}).Login(name, password).outcome;
    }

    CTempFolder m_folder;
    CTempFolder m_input;
};

TEST_F(UserCommands, MakeAnAdministratorWhoCanLogIn) {
    EXPECT_EQ(User({"list"}).output, "");
    ASSERT_EQ(User({"add", "anna", "--administrator"}, "secret pass").code, 0);
    EXPECT_EQ(User({"list", "--json"}).output, "{\"users\":[{\"name\":\"anna\",\"groups\":[\"administrator\"]}]}\n");
    EXPECT_EQ(Login("anna", "secret pass"), LoginOutcome::Ok);
    ASSERT_EQ(User({"passwd", "anna"}, "another pass").code, 0);
    EXPECT_EQ(Login("anna", "another pass"), LoginOutcome::Ok);
    EXPECT_EQ(Login("anna", "secret pass"), LoginOutcome::Refused);
}

TEST_F(UserCommands, ChangeGroupsAndRemove) {
    ASSERT_EQ(User({"add", "anna"}, "secret pass").code, 0);
    ASSERT_EQ(User({"group", "anna", "night shift"}).code, 0);
    EXPECT_THAT(User({"list"}).output, HasSubstr("night shift"));
    ASSERT_EQ(User({"group", "anna", "night shift", "--remove"}).code, 0);
    const ProcessResult again = User({"group", "anna", "night shift", "--remove"});
    EXPECT_EQ(again.code, 1);
    EXPECT_EQ(again.errors, "bdc: \"anna\" is no member of \"night shift\"\n");
    ASSERT_EQ(User({"remove", "anna"}).code, 0);
    EXPECT_EQ(User({"list"}).output, "");
    EXPECT_EQ(User({"remove", "anna"}).code, 1);
}

TEST_F(UserCommands, TellWhatIsWrong) {
    const ProcessResult weak = User({"add", "anna"}, "short");
    EXPECT_EQ(weak.code, 1);
    EXPECT_EQ(weak.errors, "bdc: a password has 8 to 1024 bytes\n");
    EXPECT_EQ(User({"add"}).code, 2);
    EXPECT_EQ(User({"add", "anna", "--password", "secret pass"}).code, 2) << "never as an argument";
    m_folder.Put("users", "damaged");
    EXPECT_EQ(User({"list"}).errors, "bdc: " + m_folder.File("users") + ": is not a file of users\n");
    EXPECT_EQ(m_folder.Get("users"), "damaged");
}

TEST_F(UserCommands, StopEndsARunningInstanceAndTheConsoleCanBeShown) {
    const testing_support::LoopbackBlock addresses;
    m_input.Put("site.toml", "[[network]]\nbind = \"" + addresses.Text(1) + "\"\nport = " +
                                 std::to_string(addresses.Port()) + "\nbroadcast = \"127.255.255.255\"\n");
    CProcess bdc({BdcPath(), "run", "--config", m_input.File("site.toml"), "--data", m_folder.Path(), "--headless"});
    ASSERT_TRUE(bdc.WaitForOutput("bdc runs on"));
    for (const char* const command : {"open", "show", "stop"}) {
        const ProcessResult result = RunBdc({command, "--data", m_folder.Path()});
        EXPECT_EQ(result.code, 0) << command << ": " << result.errors;
    }
    EXPECT_EQ(bdc.Wait(), 0) << "also while the login asks";
    EXPECT_EQ(RunBdc({"open", "--data", m_folder.Path()}).code, 1);
}

} // namespace
