// "Discover devices" as an operator uses it.
#include "module/browser/DiscoverDevicesDlg.h"
#include "module/console/GuiOperator.h"
#include "tests/gui/browser/BrowserPage.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QTest>

#include <atomic>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

class DiscoverDevices : public BrowserPage {
protected:
    DiscoverDevices() {
        for (const unsigned device : {100U, 20U, 3U})
            m_bacnet.AddDevice(device);
        OnGui([this] {
            m_discovery.emplace(m_bacnet, std::uint16_t{7});
            m_dialog = std::make_unique<CDiscoverDevicesDlg>(nullptr, m_bacnet, *CGuiOperator::Get(), *m_discovery);
            m_dialog->show();
        });
        m_events.Take();
    }
    ~DiscoverDevices() override {
        OnGui([this] { m_dialog.reset(); });
    }
    CControls Dialog() const { return CControls(*m_dialog); }
    QAbstractItemModel& Model() const { return *Dialog().Only<QTreeView>().model(); }
    void Announce(const std::vector<unsigned>& devices) {
        for (const unsigned device : devices)
            m_bacnet.AnnounceDevice(m_bacnet.GetDevAddr(device), device);
    }
    bool HasDevices(int count) {
        return EventuallyOnGui([this, count] { return Model().rowCount() == count; });
    }
    // Instances in the order of the list, "!" before those that are not ticked.
    Lines Shown() const {
        Lines rows;
        for (int row = 0; row < Model().rowCount(); ++row) {
            const QModelIndex index = Model().index(row, 0);
            rows.push_back((index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? "" : "!") +
                           index.data().toString().toStdString());
        }
        return rows;
    }
    Lines Picked() {
        m_dialog->accept();
        Lines devices;
        for (const auto& [device, address] : m_dialog->GetPicked())
            devices.push_back(std::to_string(device));
        return devices;
    }

    std::optional<CDiscovery> m_discovery;
    std::unique_ptr<CDiscoverDevicesDlg> m_dialog;
};

TEST_F(DiscoverDevices, SendsNothingBeforeTheButtonIsPressed) {
    EXPECT_THAT(m_events.Take(), IsEmpty());
    OnGui([this] { Dialog().Press("Send Who-Is"); });
    EXPECT_THAT(m_events.Take(), ElementsAre("WhoIs(1/65535, 0, 4194303)"));
}

TEST_F(DiscoverDevices, AnswersAppearTickedInOrderOfInstance) {
    Announce({100, 3, 20});
    ASSERT_TRUE(HasDevices(3));
    OnGui([this] {
        EXPECT_THAT(Shown(), ElementsAre("3", "20", "100"));
        EXPECT_THAT(Dialog().Texts(), testing::Contains("3"));
        const QHeaderView& header = *Dialog().Only<QTreeView>().header();
        EXPECT_EQ(header.sectionSize(0), 80);
        EXPECT_EQ(header.sectionSize(1), 60);
        EXPECT_EQ(header.sectionSize(2), 180);
        EXPECT_EQ(Model().index(0, 1).data().toString(), QStringLiteral("7"));
    });
}

TEST_F(DiscoverDevices, TicksAreKeptAndPickTheDevices) {
    Announce({100, 3, 20});
    ASSERT_TRUE(HasDevices(3));
    OnGui([this] {
        Dialog().Press("Unselect all");
        EXPECT_THAT(Shown(), ElementsAre("!3", "!20", "!100"));
        Model().setData(Model().index(1, 0), Qt::Checked, Qt::CheckStateRole);
    });
    m_bacnet.AddDevice(4);
    Announce({4, 3});
    ASSERT_TRUE(HasDevices(4));
    OnGui([this] {
        EXPECT_THAT(Shown(), ElementsAre("!3", "4", "20", "!100"));
        EXPECT_THAT(Picked(), ElementsAre("4", "20"));
    });
}

TEST_F(DiscoverDevices, TheFiltersLimitWhatIsTyped) {
    OnGui([this] {
        Dialog().Type("&Network", "1234567");
        Dialog().Type("&Device range", "123456789");
        Dialog().Type("to", "12345678");
        EXPECT_EQ(Dialog().Get<QLineEdit>("&Network").text(), QStringLiteral("12345"));
        EXPECT_EQ(Dialog().Get<QLineEdit>("&Device range").text(), QStringLiteral("1234567"));
        EXPECT_EQ(Dialog().Get<QLineEdit>("to").text(), QStringLiteral("1234567"));
    });
}

TEST_F(DiscoverDevices, AFilterTakesRowsAwayAMomentLater) {
    Announce({100, 3, 20});
    ASSERT_TRUE(HasDevices(3));
    OnGui([this] {
        Dialog().Type("to", "50");
        EXPECT_EQ(Model().rowCount(), 3);
    });
    ASSERT_TRUE(HasDevices(2));
    OnGui([this] { EXPECT_THAT(Picked(), ElementsAre("3", "20")); });
}

TEST_F(DiscoverDevices, AFailureToSendIsABox) {
    Announce({3});
    ASSERT_TRUE(HasDevices(1));
    m_bacnet.SetFault("WhoIs", BACSTAC_STATUS_SEND_FAILURE);
    CDialogScript script(m_asked);
    script.Press("Error", "OK");
    OnGui([this] { Dialog().Press("Send Who-Is"); });
    EXPECT_THAT(m_asked.Take(), ElementsAre("Box(Error, Failed to send WHOIS, error, OK)"));
    OnGui([this] { EXPECT_THAT(Shown(), ElementsAre("3")); });
}

TEST_F(DiscoverDevices, TwoStationsWithOneInstanceAreMarked) {
    BACSTAC_ADDRESS other = m_bacnet.GetDevAddr(3);
    other.Mac[0] ^= 1;
    Announce({3});
    m_bacnet.AnnounceDevice(other, 3);
    ASSERT_TRUE(HasDevices(1));
    OnGui([this] {
        const QString tip = Model().index(0, 0).data(Qt::ToolTipRole).toString();
        EXPECT_TRUE(tip.startsWith(QStringLiteral("Two stations claim instance 3: "))) << tip.toStdString();
    });
}

TEST_F(DiscoverDevices, AStormOfAnswersLeavesTheWindowToTheOperator) {
    constexpr int ANNOUNCEMENTS = 20000;
    std::thread storm([&] {
        for (int i = 0; i < ANNOUNCEMENTS / 2; ++i)
            Announce({20, 100});
    });
    Milliseconds longest(0);
    while (m_log.Get().size() < ANNOUNCEMENTS) {
        const auto begin = Clock::now();
        OnGui([this] { Dialog().Type("to", "50"); });
        longest = std::max(longest, Since(begin));
    }
    storm.join();
    EXPECT_LT(longest, Milliseconds(1000));
    ASSERT_TRUE(HasDevices(1));
    OnGui([this] { EXPECT_THAT(Shown(), ElementsAre("20")); });
}

TEST_F(DiscoverDevices, AStormOfAnswersMayMeetTheEnd) {
    std::atomic<bool> isStorming = true;
    std::thread storm([&] {
        while (isStorming)
            Announce({3, 20, 100});
    });
    ASSERT_TRUE(EventuallyOnGui([this] { return !m_log.Get().empty(); }));
    OnGui([this] { m_dialog.reset(); });
    isStorming = false;
    storm.join();
}
