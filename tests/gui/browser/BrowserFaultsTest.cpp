// The browser's page over large directories, odd names, damaged files and devices that do not answer.
#include "module/browser/ObjBrowserDlg.h"
#include "tests/gui/browser/BrowserPage.h"

#include <QTest>

#include <atomic>
#include <thread>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* STATUS_OF_BETA = "ReadProperty(10, (8, 10), 112";
constexpr Milliseconds MARGIN(500); // for a busy machine

} // namespace

class BrowserFaults : public BrowserPage {
protected:
    // The page goes and comes until the monitor, which begins with a pause, is on its way.
    bool PollsUntil(const std::function<bool()>& condition) {
        return EventuallyOnGui([&] {
            m_window->hide();
            m_window->show();
            return condition();
        });
    }
};

TEST_F(BrowserFaults, TheStatusOfDevicesIsShownWhileThePageIs) {
    Open();
    for (const unsigned device : {10U, 20U})
        SetValue(device, Device(device), 112, FakeValue::Of<std::uint32_t>(TYPE_ENUMERATED, {device == 10 ? 0U : 4U}));
    ASSERT_TRUE(PollsUntil([this] { return HasImage("Beta - 10", 2) && HasImage("alpha - 20", 1); }));
    OnGui([this] { m_window->hide(); });
    EXPECT_TRUE(EventuallyOnGui([this] { return HasImage("Beta - 10", 0) && HasImage("alpha - 20", 0); }));
}

TEST_F(BrowserFaults, ThePageEndsWhileTheMonitorHangs) {
    Open();
    Hang(STATUS_OF_BETA);
    ASSERT_TRUE(PollsUntil([this] { return HasHung(); }));
    const auto begin = Clock::now();
    OnGui([this] {
        m_page->Destroy();
        m_window.reset();
    });
    EXPECT_LT(Since(begin), Milliseconds(1000) + MARGIN);
    LetGo(); // the answer comes to nobody
}

TEST_F(BrowserFaults, TheOperatorWalksOnWhileADeviceHangs) {
    Open();
    AddObject(10, {0, 5}, "T");
    Hang("ReadPropertyList(10, (2, 1)");
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(Eventually([this] { return HasHung(); }));
    OnGui([this] {
        EXPECT_FALSE(List().isEnabled());
        for (const char* const label : {"Area - 2", "zone - 1", "Beta - 10", "T - 5"}) {
            const auto begin = Clock::now();
            Select(label);
            EXPECT_LT(Since(begin), Milliseconds(100) + MARGIN) << label;
        }
    });
    ASSERT_TRUE(HasRows(1));
    LetGo();
    std::this_thread::sleep_for(Milliseconds(50)); // the first answer comes, late
    OnGui([this] {
        EXPECT_THAT(Rows(), ElementsAre("object-name = T"));
        EXPECT_TRUE(List().isEnabled());
    });
}

TEST_F(BrowserFaults, ADamagedDirectoryIsAnEmptyTreeThatDevicesCanBeInsertedIn) {
    PutSite();
    const std::string whole = m_folder.Get("directory");
    for (const std::string& damaged : {whole.substr(0, whole.size() / 2), std::string("no directory"), std::string()}) {
        m_folder.Put("directory", damaged);
        OpenPage();
        OnGui([this] {
            EXPECT_EQ(Tree().model()->rowCount(), 0);
            QMenu* const menu = MenuAt(Tree(), {});
            ASSERT_NE(menu, nullptr);
            EXPECT_THAT(EntriesOf(*menu), ElementsAre("&Insert device..."));
            menu->close();
            m_page->Destroy();
            m_window.reset();
        });
        EXPECT_EQ(m_folder.Get("directory"), damaged) << "left as it is";
    }
}

TEST_F(BrowserFaults, OddNamesAreOneLineEach) {
    const std::string rightToLeft = "\u05D7\u05D3\u05E8 \u05D7\u05D9\u05DE\u05D5\u05DD";
    const std::string longest(1024, 'x');
    CBACnetDir directory;
    PutDevice(directory, 10, "two\r\nlines", 0,
              {{{2, 1}, ""},
               {{2, 2}, rightToLeft.c_str()},
               {{2, 3}, longest.c_str()},
               {{2, 4}, "tab\tand\nbreak"},
               {{2, 6}, "twin"},
               {{2, 5}, "twin"},
               {{2, 7}, "<b>no markup</b>"}});
    Save(directory);
    OpenPage();
    OnGui([&] {
        const QModelIndex type = Item("analog-value");
        ASSERT_TRUE(type.isValid());
        EXPECT_TRUE(Item("two  lines - 10").isValid());
        Lines labels;
        for (int row = 0; row < Tree().model()->rowCount(type); ++row) {
            const QModelIndex item = Tree().model()->index(row, 0, type);
            labels.push_back(item.data().toString().toStdString());
            EXPECT_EQ(Tree().visualRect(item).height(), Tree().visualRect(type).height()) << labels.back();
        }
        EXPECT_THAT(labels, ElementsAre(" - 1", "<b>no markup</b> - 7", "tab and break - 4", "twin - 5", "twin - 6",
                                        longest + " - 3", rightToLeft + " - 2"));
        EXPECT_EQ(Item("<b>no markup</b> - 7").data(Qt::ToolTipRole).toString(),
                  QStringLiteral("Object instance 7<br>&lt;b&gt;no markup&lt;/b&gt; - 7"));
    });
}

TEST_F(BrowserFaults, ObjectsOfOneNameAreReadEachByItself) {
    AddDevice(10, "Beta");
    for (const unsigned instance : {5U, 6U}) {
        AddObject(10, {2, instance}, "twin");
        SetValue(10, {2, instance}, PROP_PRESENT_VALUE, FakeValue::Real(static_cast<float>(instance)));
    }
    CBACnetDir directory;
    PutDevice(directory, 10, "Beta", 0, {{{2, 5}, "twin"}, {{2, 6}, "twin"}});
    Save(directory);
    OpenPage();
    for (const char* const instance : {"5", "6"}) {
        OnGui([&] { Select(std::string("twin - ") + instance); });
        ASSERT_TRUE(HasRows(2));
        OnGui([&] { EXPECT_THAT(Rows(), Contains(std::string("present-value = ") + instance)); });
    }
}

TEST_F(BrowserFaults, FiveThousandObjectsOfADeviceAreShownAtOnce) {
    constexpr unsigned OBJECTS = 5000;
    std::vector<NamedObject> objects;
    for (unsigned i = 0; i < OBJECTS; ++i)
        objects.push_back({{2, i}, "supply air temperature"});
    CBACnetDir directory;
    PutDevice(directory, 10, "Beta", 0, objects);
    Save(directory);
    OpenPage();
    OnGui([this] {
        const auto begin = Clock::now();
        m_page->GetBrowser().RebuildTree();
        QCoreApplication::processEvents(); // also painted
        EXPECT_LT(Since(begin), Milliseconds(2000));
        const QModelIndex type = Item("analog-value");
        ASSERT_TRUE(Tree().isExpanded(type)) << "a chain of single children stands open";
        EXPECT_EQ(Tree().model()->rowCount(type), static_cast<int>(OBJECTS));
    });
}

TEST_F(BrowserFaults, DevicesAreFoundByTypingTheirNames) {
    Open();
    OnGui([this] {
        Tree().setFocus();
        TypeText(Tree(), "bet");
        EXPECT_EQ(Tree().currentIndex().data().toString(), QStringLiteral("Beta - 10"));
    });
    EXPECT_TRUE(HasRows(1)) << "and read like those that are clicked";
}

// Whatever a command waits for, the tree under it may be another one when it goes on.
class BrowserUnderRebuild : public BrowserFaults, public testing::WithParamInterface<const char*> {};

TEST_P(BrowserUnderRebuild, TheCommandEndsWell) {
    Open();
    const auto rebuild = [this] { m_page->ObjectChanged(10, {2, 1}); };
    std::atomic<int> rebuilds = 5; // each reads and brings the next
    m_bacnet.OnCall([&](const std::string&) {
        if (rebuilds-- > 0)
            PostToGui(rebuild);
    });
    CDialogScript script(m_asked);
    const std::string command = GetParam();
    if (command == "&Discover && scan")
        script.Do("Discover devices", [&](const CControls& dialog) {
            m_bacnet.AnnounceDevice(m_bacnet.GetDevAddr(10), 10);
            rebuild();
            for (auto& tree = dialog.Only<QTreeView>(); tree.model()->rowCount() == 0;)
                QTest::qWait(10);
            dialog.Press("OK");
        });
    if (command == "Aut&o refresh")
        script.Do("Input", [&](const CControls& dialog) {
            rebuild();
            dialog.Press("OK");
        });
    OnGui([&] {
        Select("Beta - 10");
        PostToGui(rebuild);
        if (command.ends_with("status") || command.starts_with("&Scan")) {
            QMenu* const menu = MenuAt(Tree(), Item("Beta - 10"));
            ASSERT_NE(menu, nullptr);
            ChooseEntry(*menu, {command});
        } else {
            Page().Press(command);
        }
    });
    rebuilds = 0;
    OnGui([this] { EXPECT_TRUE(Item("zone - 1").isValid()); });
    OnGui([this] { Select("zone - 1"); });
    EXPECT_TRUE(HasRows(3)) << "and the page goes on";
}

INSTANTIATE_TEST_SUITE_P(Commands, BrowserUnderRebuild,
                         testing::Values("&Discover && scan", "&Scan device", "Read objects status", "Refresh &now",
                                         "Aut&o refresh"),
                         [](const auto& command) {
                             std::string name = command.param;
                             std::erase_if(name,
                                           [](char c) { return std::isalpha(static_cast<unsigned char>(c)) == 0; });
                             return name;
                         });
