// Meets every device of the catalogue.
#include "tests/catalogue/Entry.h"
#include "tests/catalogue/Fixture.h"

#include <atomic>
#include <set>
#include <thread>

namespace catalogue {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned firstHost = 10;
constexpr unsigned callers = 24;

class CatalogueTest : public Fixture {
protected:
    static std::string TextOf(const Outcome& outcome) {
        if (outcome.Status == BACSTAC_OK)
            return outcome.Result;
        const std::string text = CBacGeneral::GetErrorText(outcome.Status, &outcome.Error);
        return outcome.Result.starts_with("element") ? text + ", " + outcome.Result : text;
    }
    // What the entry wants to be told; where it leaves that open, the one text that the status has.
    static std::string ExpectedText(const Entry& entry) {
        if (!entry.Expected.empty())
            return entry.Expected;
        switch (entry.Status) {
        case BACSTAC_STATUS_TIMEOUT:
            return "timeout";
        case BACSTAC_STATUS_INVALID_ANSWER:
            return "invalid answer";
        case BACSTAC_STATUS_BUFFER_TOO_SMALL:
            return "buffer too small";
        default:
            return "";
        }
    }
    // What is wrong with how the call ended; empty when nothing is.
    static std::string Judge(const Entry& entry, const Outcome& outcome, Clock::duration took) {
        std::string faults;
        const std::string text = TextOf(outcome);
        if (outcome.Status != entry.Status)
            faults += " status " + std::to_string(outcome.Status) + " for " + std::to_string(entry.Status) + ";";
        if (const std::string expected = ExpectedText(entry); text != expected)
            faults += " \"" + text + "\" for \"" + expected + "\";";
        if (took > std::chrono::milliseconds(LONGEST_CALL_MS))
            faults += " without end;";
        return faults;
    }
    // Meets one device, then the same one when it behaves, and another.
    std::string Meet(const Target& target, unsigned host, const Entry& entry) {
        const auto start = Clock::now();
        const Outcome outcome = entry.Ask(target);
        std::string faults = Judge(entry, outcome, Clock::now() - start);
        m_peers.Behave(host);
        if (target.Address.Remote != 0) // as a router does when it is asked
            m_peers.AnnounceNetwork(host, STATION_HOST, target.Address.Network);
        const Outcome next = ReadProperty(target);
        if (next.Status != BACSTAC_OK || next.Result != "72.3")
            faults += " the next request: " + TextOf(next) + ";";
        const Outcome other = ReadProperty(TargetOf(GOOD_HOST));
        if (other.Status != BACSTAC_OK || other.Result != "72.3")
            faults += " another device: " + TextOf(other) + ";";
        return faults;
    }
    enum class Where : std::uint8_t { here, behind_routers };
    void MeetAll(const Table& table, Where where = Where::here) {
        ASSERT_LE(table.size(), 220U) << "hosts of one block";
        for (unsigned i = 0; i < table.size(); ++i)
            if (where == Where::here)
                Open(firstHost + i, table[i].Make != nullptr ? table[i].Make() : FromText(table[i].Text));
            else
                OpenRouted(firstHost + i, table[i].Make != nullptr ? table[i].Make() : FromText(table[i].Text));
        std::vector<std::string> faults(table.size());
        std::atomic<unsigned> next{0};
        std::vector<std::thread> threads;
        threads.reserve(callers);
        for (unsigned i = 0; i < callers; ++i)
            threads.emplace_back([&] {
                for (unsigned entry = next++; entry < table.size(); entry = next++)
                    faults[entry] =
                        Meet(where == Where::here ? TargetOf(firstHost + entry) : RoutedTargetOf(firstHost + entry),
                             firstHost + entry, table[entry]);
            });
        for (std::thread& thread : threads)
            thread.join();
        for (unsigned i = 0; i < table.size(); ++i)
            EXPECT_EQ(faults[i], "") << table[i].Name;
    }
};

TEST_F(CatalogueTest, DropsFramesThatAreNoVirtualLink) {
    MeetAll(VirtualLinkEntries());
}
TEST_F(CatalogueTest, DropsFramesThatAreNoNetworkMessage) {
    MeetAll(NetworkEntries());
}
TEST_F(CatalogueTest, DropsApdusThatAreNone) {
    MeetAll(ApduEntries());
}
TEST_F(CatalogueTest, GivesAnswersToTheirRequestOnly) {
    MeetAll(MatchingEntries());
}
TEST_F(CatalogueTest, TellsRefusalsOfEveryKind) {
    MeetAll(FailureEntries());
}
TEST_F(CatalogueTest, RefusesTagsThatLie) {
    MeetAll(TagEntries());
}
TEST_F(CatalogueTest, MeetsValuesOfEveryShape) {
    MeetAll(ValueEntries());
}
TEST_F(CatalogueTest, MeetsMultipleReadsOfEveryShape) {
    MeetAll(MultipleEntries());
}
TEST_F(CatalogueTest, MeetsObjectListsOfEveryLength) {
    MeetAll(ObjectListEntries());
}
TEST_F(CatalogueTest, PutsSegmentsTogetherOrEnds) {
    MeetAll(SegmentEntries());
}
TEST_F(CatalogueTest, MeetsRecordsOfEveryShape) {
    MeetAll(RangeEntries());
}
TEST_F(CatalogueTest, MeetsFilesOfEveryShape) {
    MeetAll(FileEntries());
}
TEST_F(CatalogueTest, MeetsSummariesOfEveryShape) {
    MeetAll(SummaryEntries());
}
TEST_F(CatalogueTest, MeetsCommandsAnsweredInEveryWay) {
    MeetAll(CommandEntries());
}

TEST_F(CatalogueTest, GivesAnswersBehindRoutersToTheirRequestOnly) {
    MeetAll(RoutedEntries(), Where::behind_routers);
}
TEST_F(CatalogueTest, PutsSegmentsFromBehindRoutersTogetherOrEnds) {
    MeetAll(RoutedSegmentEntries(), Where::behind_routers);
}

TEST(CatalogueTablesTest, HoldAtLeast120DifferentMisbehaviours) {
    std::set<std::string> names;
    std::set<std::string> scripts;
    std::size_t entries = 0;
    const auto key = [](auto* function) { return std::to_string(reinterpret_cast<std::uintptr_t>(function)) + " "; };
    const auto add = [&](const Table& table, const std::string& where) {
        for (const Entry& entry : table) {
            ++entries;
            EXPECT_TRUE(names.insert(entry.Name).second) << "twice: " << entry.Name;
            const std::string made = entry.Make != nullptr ? key(entry.Make) : "";
            EXPECT_TRUE(scripts.insert(where + key(entry.Ask) + made + entry.Text).second)
                << "as another one: " << entry.Name;
        }
    };
    for (const Table& table : {VirtualLinkEntries(), NetworkEntries(), ApduEntries(), MatchingEntries(),
                               FailureEntries(), TagEntries(), ValueEntries(), MultipleEntries(), ObjectListEntries(),
                               SegmentEntries(), RangeEntries(), FileEntries(), SummaryEntries(), CommandEntries()})
        add(table, "");
    for (const Table& table : {RoutedEntries(), RoutedSegmentEntries()})
        add(table, "behind a router ");
    EXPECT_GE(entries, 120U);
    RecordProperty("entries", static_cast<int>(entries));
}

} // namespace
} // namespace catalogue
