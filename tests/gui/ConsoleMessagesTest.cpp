// The private messages: what each does on the console thread, and in which order.
#include "tests/gui/ConsoleFixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ConsoleMessages : public ConsoleFixture {
protected:
    ConsoleMessages() { Start(); }
};

TEST_F(ConsoleMessages, AreHandledInTheOrderOfPosting) {
    CEventList::Lines expected;
    for (unsigned i = 0; i < 1000; ++i) {
        Post(WM_CONSOLE_OBJECTCHANGED, i);
        expected.push_back("I: OnObjectChanged(" + std::to_string(i) + ", (0, 0))");
    }
    EXPECT_EQ(Settled(), expected);
}

TEST_F(ConsoleMessages, AnObjectChangeIsLoggedWithItsIdentifier) {
    BDCManager.ObjectChanged(1, {8, 4194303});
    BDCManager.ObjectChanged(0xFFFFFFFF, {1023, 4194303});
    BDCManager.ObjectChanged(1, {1024, 5}); // ten bits of the type survive
    EXPECT_THAT(Settled(),
                ElementsAre("I: OnObjectChanged(1, (8, 4194303))", "I: OnObjectChanged(4294967295, (1023, 4194303))",
                            "I: OnObjectChanged(1, (0, 5))"));
}

TEST_F(ConsoleMessages, ShowNeedsNoLoginAndIgnoresItsParameters) {
    Post(WM_CONSOLE_SHOW);
    EXPECT_TRUE(IsVisible());
    OnGui([] { ConsoleWindow()->close(); });
    EXPECT_FALSE(IsVisible()); // closing hides
    Post(WM_CONSOLE_SHOW, 5, -5);
    EXPECT_TRUE(IsVisible());
    OnGui([] { ConsoleWindow()->reject(); });
    EXPECT_FALSE(IsVisible());
    EXPECT_TRUE(HasWindow());
    EXPECT_THAT(Settled(), IsEmpty());
}

TEST_F(ConsoleMessages, JobsRunOnTheRisingEdgeOnly) {
    allPropPages.general.networkTags[7] = "N";
    const std::vector<unsigned> jobs{WM_CONSOLE_HISTORY, WM_CONSOLE_BACKUP,  WM_CONSOLE_TIMESYNC,
                                     WM_CONSOLE_REPORT,  WM_CONSOLE_RESTORE, WM_CONSOLE_SETUPNETWORKS};
    for (const unsigned job : jobs)
        Post(job, 0, 0);
    EXPECT_THAT(Settled(), IsEmpty());
    for (const unsigned job : jobs)
        Post(job, 2, 0); // whatever is not 0
    EXPECT_THAT(Settled(),
                ElementsAre("StartTransfer(unattended, all)", "D: Console: Backup is not available",
                            "D: Console: Time synchronization is not available", "D: Console: Report is not available",
                            "D: Console: Restore is not available", "GetTagIdByName(7, N)",
                            "E: BACnet: Error, RegisterTriggerTag(EnableNetwork-7), Tag N not found"));
}

TEST_F(ConsoleMessages, ARequestReachesTheHistoryTransfer) {
    BDCManager.StartHistoryTransfer(NewTransferRequest(1234, 20, 5));
    BDCManager.StartHistoryTransfer(NewTransferRequest(1234, 20, 0xFFFFFFFF));
    BDCManager.StartHistoryTransfer(nullptr);
    EXPECT_THAT(Settled(),
                ElementsAre("StartTransfer(unattended, 1234 20 5)", "StartTransfer(unattended, 1234 20 4294967295)",
                            "StartTransfer(unattended, all)"));
}

// The address sanitizer sees that the request is freed.
TEST_F(ConsoleMessages, ARequestOfAFallingEdgeIsFreed) {
    Post(WM_CONSOLE_HISTORY, 0, reinterpret_cast<std::intptr_t>(NewTransferRequest(1234, 20, 5)));
    EXPECT_THAT(Settled(), IsEmpty());
}

TEST_F(ConsoleMessages, ANetworkIsEnabledByOneAndDisabledByAnythingElse) {
    Post(WM_CONSOLE_NETWORK, 1, 3);
    Post(WM_CONSOLE_NETWORK, 2, 3);
    Post(WM_CONSOLE_NETWORK, 0, 3);
    Post(WM_CONSOLE_NETWORK, 1, 0x10003); // the low 16 bits
    Post(WM_CONSOLE_NETWORK, 1, -1);
    const auto switched = [](const char* verb, const std::string& call, const std::string& number) {
        return CEventList::Lines{std::string("D: BACnet: Info, VPIQLBCN, ") + verb + " network " + number +
                                     " by trigger tag",
                                 call + "(" + number + ")"};
    };
    CEventList::Lines expected;
    for (const auto& lines : {switched("Enabling", "EnableNetwork", "3"), switched("Disabling", "DisableNetwork", "3"),
                              switched("Disabling", "DisableNetwork", "3"), switched("Enabling", "EnableNetwork", "3"),
                              switched("Enabling", "EnableNetwork", "65535")})
        expected.insert(expected.end(), lines.begin(), lines.end());
    EXPECT_EQ(Settled(), expected);
}

// Registered while the console runs, a control tag that is 0 switches its network off at once.
TEST_F(ConsoleMessages, NetworksFollowTheirControlTags) {
    m_kernel.AddTag(1, "OFF", 0);
    m_kernel.AddTag(2, "ON", 1);
    allPropPages.general.networkTags = {{3, "OFF"}, {4, "ON"}, {5, "ON"}};
    BDCManager.SetupNetworks();
    EXPECT_THAT(
        Settled(),
        ElementsAre(
            "GetTagIdByName(7, OFF)", "D: BACnet: Info, RegisterTriggerTag(EnableNetwork-3), Trigger tag OFF inserted",
            "GetTagValue(7, 11, 1)", "D: BACnet: Info, Triggering down EnableNetwork-3", "RqGateMsg(7, [1], 1)",
            "GetTagIdByName(7, ON)", "D: BACnet: Info, RegisterTriggerTag(EnableNetwork-4), Trigger tag ON inserted",
            "GetTagValue(7, 11, 2)", "RqGateMsg(7, [2], 1)", "GetTagIdByName(7, ON)",
            "E: BACnet: Error, RegisterTriggerTag(EnableNetwork-5), Tag ON already used for EnableNetwork-4",
            "D: BACnet: Info, VPIQLBCN, Disabling network 3 by trigger tag", "DisableNetwork(3)"));
    BDCManager.OnTagChange(1, 1);
    EXPECT_THAT(Settled(),
                ElementsAre("D: BACnet: Info, Triggering up EnableNetwork-3",
                            "D: BACnet: Info, VPIQLBCN, Enabling network 3 by trigger tag", "EnableNetwork(3)"));
    for (const auto& [network, tag] : allPropPages.general.networkTags)
        BDCManager.RegisterTriggerTag(("EnableNetwork-" + std::to_string(network)).c_str(), nullptr, 0, 0);
}

TEST_F(ConsoleMessages, OthersAreNothing) {
    Post(0x46E, 1, 1);
    Post(0x463, 1, 1);
    Post(0, 0, 0);
    EXPECT_THAT(Settled(), IsEmpty());
    EXPECT_TRUE(HasWindow());
}

} // namespace
