#include "module/console/LoginGate.h"

#include "tests/support/EventList.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeOperator.h"
#include "tests/support/FakeUsers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FakeWindow : public IGatedWindow {
public:
    explicit FakeWindow(CEventList& events) : m_events(events) {}
    bool m_isOnScreen = false;
    bool m_isDisabled = false;

    QWidget* GetWidget() override { return nullptr; }
    bool IsOnScreen() const override { return m_isOnScreen; }
    bool IsDisabled() const override { return m_isDisabled; }
    void SetGateOpen(bool isOpen) override { m_events.Add(isOpen ? "disable" : "enable"); }
    void ShowInFront() override { m_events.Add("show"); }

private:
    CEventList& m_events;
};

class LoginGate : public testing::Test {
protected:
    CEventList::Lines Pass(std::initializer_list<CFakeUsers::Login> logins) {
        m_users.m_logins = logins;
        PassLoginGate({m_kernel, 7, m_users, m_operator}, m_window);
        return m_events.Take();
    }

    CEventList m_events;
    CFakeKernel m_kernel{m_events};
    CFakeUsers m_users{m_events};
    CFakeOperator m_operator{m_events};
    FakeWindow m_window{m_events};
};

TEST_F(LoginGate, LetsAnAdministratorInAfterOneLogin) {
    EXPECT_THAT(Pass({{UM_LOGIN_OK, "admin"}}), ElementsAre("disable", "GetCurrentUserName(7)", "Login(operator)",
                                                            "IsAdministrator(admin)", "enable", "show"));
}

TEST_F(LoginGate, ProposesAUserWhenTheKernelKnowsNone) {
    m_kernel.SetResult("GetCurrentUserName", QL_NO_CONNECTION);
    EXPECT_THAT(Pass({{UM_LOGIN_OK, "admin"}}), testing::Contains("Login(user)"));
}

TEST_F(LoginGate, AsksAgainWhoIsNoAdministrator) {
    EXPECT_THAT(Pass({{UM_LOGIN_OK, "guest"}, {UM_LOGIN_OK, "admin"}}),
                ElementsAre("disable", "GetCurrentUserName(7)", "Login(operator)", "IsAdministrator(guest)",
                            "Box(Error, This user is not member of administrator group, error, OK)", "Login(guest)",
                            "IsAdministrator(admin)", "enable", "show"));
}

TEST_F(LoginGate, EndsAfterThreeWhoAreNone) {
    const std::string refused = "Box(Error, This user is not member of administrator group, error, OK)";
    EXPECT_THAT(Pass({{UM_LOGIN_OK, "a"}, {UM_LOGIN_OK, "b"}, {UM_LOGIN_OK, "c"}, {UM_LOGIN_OK, "admin"}}),
                ElementsAre("disable", "GetCurrentUserName(7)", "Login(operator)", "IsAdministrator(a)", refused,
                            "Login(a)", "IsAdministrator(b)", refused, "Login(b)", "IsAdministrator(c)", refused,
                            "enable"));
}

TEST_F(LoginGate, SaysNothingWhenTheOperatorGivesUp) {
    EXPECT_THAT(Pass({{UM_LOGIN_CANCELLED, ""}, {UM_LOGIN_OK, "admin"}}),
                ElementsAre("disable", "GetCurrentUserName(7)", "Login(operator)", "enable"));
}

TEST_F(LoginGate, TellsAFailedLoginOnceAndEnds) {
    for (const int result : {-1014, -1008, -1006, -1005})
        EXPECT_THAT(Pass({{result, ""}, {UM_LOGIN_OK, "admin"}}),
                    ElementsAre("disable", "GetCurrentUserName(7)", "Login(operator)",
                                "Box(Error, Login failed, error, OK)", "enable"))
            << result;
    for (const int result : {-1, 5, 1007, -1013})
        EXPECT_THAT(Pass({{result, ""}, {UM_LOGIN_OK, "admin"}}),
                    ElementsAre("disable", "GetCurrentUserName(7)", "Login(operator)",
                                "Box(Error, Login error, error, OK)", "enable"))
            << result;
}

TEST_F(LoginGate, RaisesAWindowThatIsOnTheScreenWithoutALogin) {
    m_window.m_isOnScreen = true;
    EXPECT_THAT(Pass({{UM_LOGIN_OK, "admin"}}), ElementsAre("show"));
}

TEST_F(LoginGate, StaysShutWhileTheWindowIsDisabled) {
    m_window.m_isDisabled = true;
    EXPECT_THAT(Pass({{UM_LOGIN_OK, "admin"}}), IsEmpty());
    m_window.m_isOnScreen = true;
    EXPECT_THAT(Pass({{UM_LOGIN_OK, "admin"}}), IsEmpty());
}

} // namespace
