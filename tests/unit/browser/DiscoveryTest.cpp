// Who-Is, the answers to it, filters and ticks.
#include "module/browser/Discovery.h"

#include "tests/unit/browser/BrowserSite.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class Discovery : public BrowserSite {
protected:
    static BACSTAC_ADDRESS Ip(std::uint8_t last, std::uint16_t network = 0) {
        return {static_cast<std::uint8_t>(network != 0), 0, network, {192, 168, 0, last, 186, 192}, 6};
    }
    // The rows' instances, "!" before those that are not ticked.
    Lines Rows() const {
        Lines rows;
        for (const CDiscovery::Row& row : m_discovery.GetRows())
            rows.push_back((row.isTicked ? "" : "!") + std::to_string(row.device));
        return rows;
    }
    std::string SentWhoIs() {
        m_events.Take();
        m_discovery.SendWhoIs();
        return m_events.Take().at(0);
    }
    DeviceAddresses Picked() const { return m_discovery.GetPicked(m_discovery.GetRows()); }

    CDiscovery m_discovery{m_bacnet, 7};
};

TEST_F(Discovery, WhoIsGoesToAllNetworks) {
    EXPECT_EQ(SentWhoIs(), "WhoIs(1/65535, 0, 4194303)");
}

TEST_F(Discovery, TheNetworkNarrowsTheWhoIs) {
    const std::pair<const char*, const char*> CASES[] = {
        {"0", "WhoIs(0/0, 0, 4194303)"},      {"7", "WhoIs(0/0, 0, 4194303)"}, // the own one
        {"9", "WhoIs(1/9, 0, 4194303)"},      {"", "WhoIs(1/65535, 0, 4194303)"},
        {"x", "WhoIs(1/65535, 0, 4194303)"},  {"65536", "WhoIs(1/65535, 0, 4194303)"},
        {"-1", "WhoIs(1/65535, 0, 4194303)"}, {"9 ", "WhoIs(1/65535, 0, 4194303)"}};
    for (const auto& [text, sent] : CASES) {
        m_discovery.SetNetwork(text);
        EXPECT_EQ(SentWhoIs(), sent) << text;
    }
}

TEST_F(Discovery, TheLimitsNarrowTheWhoIs) {
    m_discovery.SetLowLimit("5");
    m_discovery.SetHighLimit("3"); // sent as it stands
    EXPECT_EQ(SentWhoIs(), "WhoIs(1/65535, 5, 3)");
    m_discovery.SetLowLimit("4194304");
    m_discovery.SetHighLimit("");
    EXPECT_EQ(SentWhoIs(), "WhoIs(1/65535, 0, 4194303)");
}

TEST_F(Discovery, AnAnnouncementIsLoggedAsItCame) {
    m_discovery.TakeIAm(Ip(5), 10);
    m_discovery.TakeIAm(Ip(6, 7), 20);
    EXPECT_THAT(m_log.Take(), ElementsAre("I: IAM: device 10, network 0, address 192, 168, 0, 5, 186, 192, ",
                                          "I: IAM: device 20, network 7, address 192, 168, 0, 6, 186, 192, "));
}

TEST_F(Discovery, TheOwnNetworkIsTheLocalOne) {
    m_discovery.TakeIAm(Ip(6, 7), 10);
    ASSERT_EQ(m_discovery.GetRows().size(), 1U);
    EXPECT_EQ(m_discovery.GetRows()[0], (CDiscovery::Row{10, 7, "192.168.0.6:47808", true, ""}));
    EXPECT_THAT(Picked(), ElementsAre(Pair(10, Ip(6))));
    m_discovery.SetNetwork("7");
    EXPECT_THAT(Rows(), ElementsAre("10"));
    m_discovery.SetNetwork("9");
    EXPECT_THAT(Rows(), IsEmpty());
}

TEST_F(Discovery, RowsAreOrderedByNumber) {
    for (const unsigned device : {100U, 20U, 3U})
        m_discovery.TakeIAm(Ip(static_cast<std::uint8_t>(device)), device);
    EXPECT_THAT(Rows(), ElementsAre("3", "20", "100"));
    m_discovery.SetLowLimit("4");
    m_discovery.SetHighLimit("99");
    EXPECT_THAT(Rows(), ElementsAre("20"));
    m_discovery.SetHighLimit("3");
    EXPECT_THAT(Rows(), IsEmpty());
}

TEST_F(Discovery, ATickSurvivesANewAnswerAndAFilter) {
    m_discovery.TakeIAm(Ip(1), 10);
    m_discovery.SetTicked(10, false);
    m_discovery.TakeIAm(Ip(1), 10);
    m_discovery.TakeIAm(Ip(2), 20);
    EXPECT_THAT(Rows(), ElementsAre("!10", "20"));
    m_discovery.SetNetwork("9");
    m_discovery.SetNetwork("");
    EXPECT_THAT(Rows(), ElementsAre("!10", "20"));
    m_discovery.SetTicked(10, true);
    EXPECT_THAT(Rows(), ElementsAre("10", "20"));
}

TEST_F(Discovery, OnlyShownAndTickedRowsArePicked) {
    m_discovery.TakeIAm(Ip(1), 10);
    m_discovery.TakeIAm(Ip(2), 20);
    m_discovery.TakeIAm(Ip(3), 30);
    m_discovery.SetTicked(10, false);
    m_discovery.SetHighLimit("25");
    EXPECT_THAT(Picked(), ElementsAre(Pair(20, Ip(2))));
    m_discovery.SetTicked(20, false);
    EXPECT_THAT(Picked(), IsEmpty());
}

TEST_F(Discovery, TheLatestAddressHoldsAndTheOneBeforeIsNamed) {
    m_discovery.TakeIAm(Ip(1), 10);
    m_discovery.TakeIAm(Ip(9), 10);
    ASSERT_EQ(m_discovery.GetRows().size(), 1U);
    EXPECT_EQ(m_discovery.GetRows()[0], (CDiscovery::Row{10, 7, "192.168.0.9:47808", true, "192.168.0.1:47808"}));
    EXPECT_THAT(Picked(), ElementsAre(Pair(10, Ip(9))));
}
