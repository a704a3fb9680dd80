// Items of the browser's tree: order, labels, what stands open, and whose they are.
#include "module/browser/BrowserTree.h"

#include "api/bacnet/Enums.h"
#include "tests/unit/browser/Directories.h"

#include <gmock/gmock.h>

#include <chrono>

using testing::ElementsAre;
using testing::IsEmpty;

class BrowserTree : public testing::Test, public ITreeObserver {
protected:
    BrowserTree() {
        PutDevice(m_directory, 10, "Beta", 0, {{{2, 1}, "zone"}, {{2, 2}, "Area"}, {{0, 5}, "T"}});
        PutDevice(m_directory, 20, "alpha", 0, {});
        m_tree.SetObserver(this);
    }

    void Build() { m_tree.Build(m_directory, 7); }
    // The labels below an item, each behind a sign: "-" open, "+" closed, nothing without children.
    std::vector<std::string> Below(TreeItem* item) {
        std::vector<std::string> labels;
        for (const auto& child : m_tree.GetChildren(*item))
            labels.push_back((CBrowserTree::HasChildren(*child) ? child->startsOpen ? "-" : "+" : "") + child->label);
        return labels;
    }
    std::vector<std::string> Networks() { return Below(&m_tree.GetRoot()); }
    TreeItem* Network(int row) { return m_tree.GetRoot().children[static_cast<std::size_t>(row)].get(); }

    void OnTreeChanging() override { m_events.emplace_back("changing"); }
    void OnTreeChanged() override { m_events.emplace_back("changed"); }
    void OnItemChanged(const TreeItem& item) override { m_events.push_back("changed " + item.label); }
    void OnItemAdding(const TreeItem& parent, int row) override {
        m_events.push_back("adding to " + parent.label + " at " + std::to_string(row));
    }
    void OnItemAdded(const TreeItem& item) override { m_events.push_back("added " + item.label); }

    CBACnetDir m_directory;
    CPlainOrder m_order;
    CBrowserTree m_tree{m_order};
    std::vector<std::string> m_events;
};

TEST_F(BrowserTree, LevelsAreNetworkDeviceTypeAndObject) {
    Build();
    EXPECT_THAT(Networks(), ElementsAre("-Network 7")); // the local network under the port's number
    EXPECT_THAT(Below(Network(0)), ElementsAre("+alpha - 20", "+Beta - 10"));
    EXPECT_THAT(Below(m_tree.FindDevice(10)), ElementsAre("+analog-input", "+analog-value"));
    EXPECT_THAT(Below(m_tree.FindType(10, OBJ_ANALOG_VALUE)), ElementsAre("Area - 2", "zone - 1"));
    EXPECT_THAT(Below(m_tree.FindDevice(20)), IsEmpty());
    EXPECT_THAT(m_events, ElementsAre("changing", "changed"));
}

TEST_F(BrowserTree, TypesAreOrderedByNumber) {
    PutDevice(m_directory, 30, "gamma", 0, {{{300, 1}, "vendor's"}, {{0, 1}, "z"}, {{20, 1}, "a"}});
    Build();
    EXPECT_THAT(Below(m_tree.FindDevice(30)), ElementsAre("+analog-input", "+trend-log", "+300"));
}

TEST_F(BrowserTree, EqualLabelsKeepTheirOrder) {
    PutDevice(m_directory, 30, "gamma", 0, {{{2, 9}, "b"}, {{2, 10}, "B"}, {{2, 11}, "a"}});
    Build();
    EXPECT_THAT(Below(m_tree.FindType(30, 2)), ElementsAre("a - 11", "B - 10", "b - 9"));
}

TEST_F(BrowserTree, AChainOfSingleChildrenStandsOpen) {
    CBACnetDir one;
    PutDevice(one, 10, "Beta", 0, {{{2, 1}, "zone"}});
    m_tree.Build(one, 7);
    EXPECT_THAT(Below(Network(0)), ElementsAre("-Beta - 10"));
    EXPECT_THAT(Below(m_tree.FindDevice(10)), ElementsAre("-analog-value"));
}

TEST_F(BrowserTree, TheChainEndsAtTheFirstFork) {
    CBACnetDir twoTypes;
    PutDevice(twoTypes, 10, "Beta", 0, {{{2, 1}, "zone"}, {{0, 1}, "T"}});
    m_tree.Build(twoTypes, 7);
    EXPECT_THAT(Below(Network(0)), ElementsAre("-Beta - 10"));
    EXPECT_THAT(Below(m_tree.FindDevice(10)), ElementsAre("+analog-input", "+analog-value"));
    CBACnetDir twoNetworks;
    PutDevice(twoNetworks, 10, "Beta", 0, {{{2, 1}, "zone"}});
    PutDevice(twoNetworks, 20, "alpha", 9, {{{2, 1}, "zone"}});
    m_tree.Build(twoNetworks, 7);
    EXPECT_THAT(Networks(), ElementsAre("-Network 7", "-Network 9"));
    EXPECT_THAT(Below(Network(1)), ElementsAre("+alpha - 20"));
}

TEST_F(BrowserTree, ARemoteNetworkMayHaveTheNumberOfTheLocalOne) {
    PutDevice(m_directory, 30, "gamma", 7, {});
    Build();
    EXPECT_THAT(Networks(), ElementsAre("-Network 7", "-Network 7"));
    EXPECT_EQ(Network(0)->value, 0U);
    EXPECT_EQ(Network(1)->value, 7U);
}

TEST_F(BrowserTree, NamesMayBeEmptyForeignOrBroken) {
    CBACnetDir odd;
    PutDevice(odd, 10, "", 0, {{{2, 1}, "two\r\nlines"}, {{2, 2}, ""}});
    PutDevice(odd, 20, "B\u00fcro", 0, {});
    m_tree.Build(odd, 7);
    EXPECT_THAT(Below(Network(0)), ElementsAre("+ - 10", "+B\u00fcro - 20"));
    EXPECT_THAT(Below(m_tree.FindType(10, 2)), ElementsAre(" - 2", "two  lines - 1"));
}

TEST_F(BrowserTree, TooltipsNameTheLevel) {
    Build();
    EXPECT_EQ(CBrowserTree::GetTooltip(*Network(0)), "Network 7");
    EXPECT_EQ(CBrowserTree::GetTooltip(*m_tree.FindDevice(10)), "Device instance 10\nBeta - 10");
    EXPECT_EQ(CBrowserTree::GetTooltip(*m_tree.FindType(10, 2)), "Object type 2\nanalog-value");
    EXPECT_EQ(CBrowserTree::GetTooltip(*m_tree.FindObject(10, {2, 1})), "Object instance 1\nzone - 1");
}

TEST_F(BrowserTree, ImagesBeginUnknown) {
    Build();
    const auto images = [](const TreeItem* item) { return std::pair(item->image, item->state); };
    EXPECT_EQ(images(Network(0)), std::pair(0, 0));
    EXPECT_EQ(images(m_tree.FindDevice(10)), std::pair(0, 0));
    EXPECT_EQ(images(m_tree.FindType(10, 2)), std::pair(4, 0));
    EXPECT_EQ(images(m_tree.FindObject(10, {2, 1})), std::pair(5, 1));
    m_tree.SetImages(*m_tree.FindObject(10, {2, 1}), IMAGE_OUT_OF_SERVICE, STATE_ALARM);
    EXPECT_EQ(images(m_tree.FindObject(10, {2, 1})), std::pair(7, 3));
    EXPECT_EQ(m_events.back(), "changed zone - 1");
}

TEST_F(BrowserTree, ItemsResolveToWhatTheyStandFor) {
    Build();
    const auto resolve = [](const TreeItem* item) {
        TreeIdentity identity;
        const bool isGood = ResolveItem(item, true, identity);
        return (isGood ? "" : "no ") + std::to_string(identity.network) + " " +
               std::to_string(static_cast<int>(identity.device)) + " (" +
               std::to_string(static_cast<int>(identity.object.Type)) + ", " +
               std::to_string(static_cast<int>(identity.object.Instance)) + ")";
    };
    EXPECT_EQ(resolve(m_tree.FindDevice(10)), "0 10 (8, 10)");
    EXPECT_EQ(resolve(m_tree.FindType(10, 2)), "0 10 (2, -1)");
    EXPECT_EQ(resolve(m_tree.FindObject(10, {2, 1})), "0 10 (2, 1)");
    EXPECT_TRUE(resolve(Network(0)).starts_with("no 0 -1"));
    EXPECT_TRUE(resolve(nullptr).starts_with("no 65535 -1"));
    TreeIdentity identity;
    EXPECT_TRUE(ResolveItem(m_tree.FindDevice(10), false, identity));
    EXPECT_FALSE(ResolveItem(m_tree.FindType(10, 2), false, identity));
    EXPECT_FALSE(ResolveItem(m_tree.FindObject(10, {2, 1}), false, identity));
}

TEST_F(BrowserTree, MissingNetworksAndTypesAreAddedAtTheEnd) {
    Build();
    m_events.clear();
    EXPECT_EQ(m_tree.FindOrAddNetworkItem(0).label, "Network 7");
    EXPECT_EQ(m_tree.FindOrAddTypeItem(*m_tree.FindDevice(10), 2).label, "analog-value");
    EXPECT_THAT(m_events, IsEmpty());
    m_tree.FindOrAddNetworkItem(3);
    m_tree.FindOrAddTypeItem(*m_tree.FindDevice(20), 5);
    EXPECT_THAT(m_events,
                ElementsAre("adding to  at 1", "added Network 3", "adding to alpha - 20 at 0", "added binary-value"));
    EXPECT_THAT(Networks(), ElementsAre("-Network 7", "-Network 3"));
    EXPECT_THAT(Below(m_tree.FindDevice(20)), ElementsAre("-binary-value"));
}

TEST_F(BrowserTree, AClearedTreeHasNothing) {
    Build();
    m_tree.Clear();
    EXPECT_THAT(Networks(), IsEmpty());
    EXPECT_EQ(m_tree.FindDevice(10), nullptr);
    EXPECT_EQ(m_tree.FindObject(10, {2, 1}), nullptr);
}

TEST_F(BrowserTree, OnlyWhatIsLookedAtIsMade) {
    for (unsigned device = 100; device < 1100; ++device) {
        std::vector<NamedObject> objects;
        for (unsigned object = 0; object < 100; ++object)
            objects.push_back({{object % 5, object}, "supply air temperature"});
        PutDevice(m_directory, device, "controller " + std::to_string(device), 0, objects);
    }
    Build();
    EXPECT_EQ(m_tree.GetDevices().size(), 1002U);
    for (const auto& [instance, item] : m_tree.GetDevices())
        ASSERT_THAT(item->children, IsEmpty());
    EXPECT_EQ(Below(m_tree.FindType(500, 3)).size(), 20U);
    EXPECT_THAT(m_tree.FindDevice(501)->children, IsEmpty());
}
