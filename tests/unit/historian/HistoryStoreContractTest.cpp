// What every historical store has to do, run against each of them.
#include "platform/historian/HistoryRecords.h"
#include "platform/historian/MemoryHistoryStore.h"
#include "platform/historian/SqliteHistoryStore.h"
#include "tests/unit/historian/HistoryTestSupport.h"

#include <atomic>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <ostream>
#include <thread>

namespace {

constexpr std::uint32_t TAG = 0x00010007;

struct Implementation {
    const char* name;
    std::unique_ptr<HistoryStore> (*make)(const TemporaryFolder& folder);
};

// As tests are named.
void PrintTo(const Implementation& implementation, std::ostream* to) {
    *to << implementation.name;
}

std::unique_ptr<HistoryStore> MakeMemory(const TemporaryFolder&) {
    return std::make_unique<MemoryHistoryStore>();
}

std::unique_ptr<HistoryStore> MakeSqlite(const TemporaryFolder& folder) {
    HistoryError error;
    auto store = SqliteHistoryStore::Open(folder / "history.db", {}, error);
    EXPECT_TRUE(store) << error.text;
    return store;
}

class HistoryStoreContract : public testing::TestWithParam<Implementation> {
protected:
    void Write(const std::vector<VfiRecord>& records) {
        HistoryError error;
        ASSERT_TRUE(m_store->Write(records, error)) << error.text;
        EXPECT_EQ(error.text, "");
    }

    void ExpectRefused(const std::vector<VfiRecord>& records, std::size_t index) {
        HistoryError error;
        EXPECT_FALSE(m_store->Write(records, error));
        EXPECT_EQ(error.recordIndex, index);
        EXPECT_NE(error.text, "");
        EXPECT_EQ(Total(*m_store), 0U);
    }

    void ExpectComesBack(const VfiRecord& record) {
        Write({record});
        const auto found = All(*m_store, record.tagId);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_TRUE(SameBytes(found[0], StoredForm(record)));
    }

    TemporaryFolder m_folder;
    std::unique_ptr<HistoryStore> m_store = GetParam().make(m_folder);
};

INSTANTIATE_TEST_SUITE_P(Stores, HistoryStoreContract,
                         testing::Values(Implementation{"Memory", MakeMemory}, Implementation{"Sqlite", MakeSqlite}),
                         [](const auto& implementation) { return implementation.param.name; });

} // namespace

TEST_P(HistoryStoreContract, AnEmptyStoreHasNothing) {
    EXPECT_TRUE(All(*m_store, TAG).empty());
    std::vector<HistoryCount> counts{{1, 1}};
    HistoryError error;
    EXPECT_TRUE(m_store->Count(counts, error));
    EXPECT_TRUE(counts.empty());
}

TEST_P(HistoryStoreContract, AnEmptyBlockIsStored) {
    Write({});
    EXPECT_EQ(Total(*m_store), 0U);
}

TEST_P(HistoryStoreContract, EveryFieldComesBack) {
    VfiRecord record = Number(0xFFFEFFFF, 0xFFFFFFFE, 21.5, 999);
    ExpectComesBack(record);
}

TEST_P(HistoryStoreContract, ARecordWithoutATimeComesBack) {
    ExpectComesBack(Number(0, VFI_NO_TIME, 1.0));
    HistoryQuery query;
    query.from = VFI_NO_TIME;
    EXPECT_EQ(All(*m_store, query).size(), 1U);
}

TEST_P(HistoryStoreContract, EveryDoubleComesBackBitByBit) {
    using Limits = std::numeric_limits<double>;
    const std::vector<double> values{0.0,
                                     -0.0,
                                     1.0,
                                     -1.0,
                                     0.1,
                                     4294967295.0,
                                     9007199254740993.0,
                                     1e15,
                                     -140737488355328.0,
                                     Limits::max(),
                                     Limits::lowest(),
                                     Limits::min(),
                                     Limits::denorm_min(),
                                     Limits::infinity(),
                                     -Limits::infinity(),
                                     Limits::quiet_NaN(),
                                     -Limits::quiet_NaN(),
                                     std::bit_cast<double>(0x7FF0000000000001ULL),
                                     std::bit_cast<double>(0xFFF8123456789ABCULL)};
    std::vector<VfiRecord> records;
    for (std::size_t i = 0; i < values.size(); ++i) {
        records.push_back(Number(TAG, static_cast<std::uint32_t>(i), values[i]));
    }
    Write(records);
    const auto found = All(*m_store, TAG);
    ASSERT_EQ(found.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_TRUE(SameBytes(found[i], records[i])) << values[i];
    }
}

TEST_P(HistoryStoreContract, EveryTextComesBackByteByByte) {
    std::string anyBytes;
    for (int byte = 1; byte < 256; ++byte) {
        anyBytes.push_back(static_cast<char>(byte));
    }
    const std::vector<std::string> texts{"",
                                         "null",
                                         "(2, 32)",
                                         "0110",
                                         "21.5 \xC2\xB0"
                                         "C",
                                         "12",
                                         "1e5",
                                         "\xFF\xFE",
                                         "B\xE9ton",
                                         "\xC3",
                                         "it's \"x\"",
                                         "a\nb",
                                         std::string(255, 'x'),
                                         anyBytes};
    std::vector<VfiRecord> records;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        records.push_back(Text(TAG, static_cast<std::uint32_t>(i), texts[i]));
    }
    Write(records);
    const auto found = All(*m_store, TAG);
    ASSERT_EQ(found.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_TRUE(SameBytes(found[i], records[i])) << texts[i];
    }
}

TEST_P(HistoryStoreContract, ATextRecordKeepsTheBitInItsValue) {
    VfiRecord record = Text(TAG, 5, "null");
    SetVfiValue(record, 1.0);
    ExpectComesBack(record);
}

TEST_P(HistoryStoreContract, WhatLiesBehindTheTextIsNotKept) {
    VfiRecord record = Text(TAG, 5, "null");
    std::memset(record.text + 5, 'x', sizeof record.text - 5);
    ExpectComesBack(record);
}

TEST_P(HistoryStoreContract, ANumberMayCarryAnOldTextWithoutAnEnd) {
    VfiRecord record = Number(TAG, 5, 1.0);
    std::memset(record.text, 'x', sizeof record.text);
    ExpectComesBack(record);
}

TEST_P(HistoryStoreContract, OneRecordOfAnUnknownTypeRefusesTheBlock) {
    auto records = Block(TAG, 1000, 500);
    records[499].valueType = 3;
    ExpectRefused(records, 499);
    records[0].valueType = 0;
    ExpectRefused(records, 0);
}

TEST_P(HistoryStoreContract, OneRecordWithTooManyMillisecondsRefusesTheBlock) {
    auto records = Block(TAG, 1000, 500);
    records[250].milliseconds = 1000;
    ExpectRefused(records, 250);
}

TEST_P(HistoryStoreContract, OneTextWithoutAnEndRefusesTheBlock) {
    auto records = Block(TAG, 1000, 500);
    records[77] = Text(TAG, 1000, "");
    std::memset(records[77].text, 'x', sizeof records[77].text);
    ExpectRefused(records, 77);
}

TEST_P(HistoryStoreContract, AStoreThatRefusedABlockTakesTheNext) {
    auto records = Block(TAG, 1000, 30);
    records[29].valueType = 0;
    ExpectRefused(records, 29);
    records[29].valueType = VFI_NUMBER;
    Write(records);
    EXPECT_EQ(Total(*m_store), 30U);
}

TEST_P(HistoryStoreContract, BlocksOfAnySizeAreStoredWhole) {
    std::uint64_t total = 0;
    for (std::size_t size : {1, 2, 24, 25, 26, 49, 50, 51, 100, 499, 500}) {
        const auto tag = static_cast<std::uint32_t>(size);
        const auto records = Block(tag, 1000, size);
        Write(records);
        const auto found = All(*m_store, tag);
        ASSERT_EQ(found.size(), size);
        EXPECT_TRUE(std::equal(found.begin(), found.end(), records.begin(), SameBytes));
        total += size;
    }
    EXPECT_EQ(Total(*m_store), total);
}

TEST_P(HistoryStoreContract, AQueryAscendsWhateverTheOrderOfStoring) {
    Write({Number(TAG, 30, 4.0), Number(TAG, 10, 1.0, 990), Number(TAG, 10, 0.0, 10)});
    Write({Number(TAG, 20, 3.0), Number(TAG, 11, 2.0)});
    EXPECT_EQ(Values(All(*m_store, TAG)), (std::vector<double>{0, 1, 2, 3, 4}));
}

TEST_P(HistoryStoreContract, RecordsOfOneInstantStandInTheOrderOfStoring) {
    Write({Number(TAG, 10, 5.0), Number(TAG, 10, 3.0)});
    Write({Number(TAG, 10, 9.0), Number(TAG, 20, 0.0), Number(TAG, 10, 1.0)});
    Write({Number(TAG, 10, 4.0)});
    EXPECT_EQ(Values(All(*m_store, TAG)), (std::vector<double>{5, 3, 9, 1, 4, 0}));
}

TEST_P(HistoryStoreContract, AnHourThatComesTwiceLosesNothing) {
    auto first = Block(TAG, 3600, 100);
    auto second = first;
    for (VfiRecord& record : second) {
        SetVfiValue(record, VfiValue(record) + 100.0);
    }
    Write(first);
    Write(second);
    HistoryQuery query;
    query.tagId = TAG;
    EXPECT_EQ(All(*m_store, query).size(), 200U);
}

TEST_P(HistoryStoreContract, ABlockStoredAgainIsGivenOnceUnlessAllIsAskedFor) {
    auto records = Block(TAG, 1000, 100);
    records[40] = Text(TAG, 1040, "B\xE9ton");
    records[41] = Number(TAG, 1041, std::numeric_limits<double>::quiet_NaN());
    records[42] = Number(TAG, 1042, -0.0);
    for (int times = 0; times < 3; ++times) {
        Write(records);
    }
    HistoryQuery query;
    query.tagId = TAG;
    const auto once = All(*m_store, query);
    ASSERT_EQ(once.size(), 100U);
    EXPECT_TRUE(std::equal(once.begin(), once.end(), records.begin(), SameBytes));
    query.all = true;
    EXPECT_EQ(All(*m_store, query).size(), 300U);
    EXPECT_EQ(Total(*m_store), 300U);
}

TEST_P(HistoryStoreContract, ABlockThatOverlapsTheLastOneAddsTheNewRecords) {
    Write(Block(TAG, 1000, 60));
    auto records = Block(TAG, 1000, 100);
    Write({records.begin() + 30, records.end()});
    HistoryQuery query;
    query.tagId = TAG;
    EXPECT_EQ(All(*m_store, query).size(), 100U);
    EXPECT_EQ(Total(*m_store), 130U);
}

TEST_P(HistoryStoreContract, ARangeHoldsBothItsEnds) {
    Write(Block(TAG, 1000, 10));
    HistoryQuery query;
    query.tagId = TAG;
    query.from = 1003;
    query.to = 1006;
    const auto found = All(*m_store, query);
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(std::uint32_t{found.front().time}, 1003U);
    EXPECT_EQ(std::uint32_t{found.back().time}, 1006U);
    query.to = 1002;
    EXPECT_TRUE(All(*m_store, query).empty());
}

TEST_P(HistoryStoreContract, TheLimitCountsTheRecordsThatAreGiven) {
    const auto records = Block(TAG, 1000, 10);
    Write(records);
    Write(records);
    HistoryQuery query;
    query.tagId = TAG;
    query.limit = 3;
    EXPECT_EQ(std::uint32_t{All(*m_store, query).back().time}, 1002U);
    query.all = true;
    EXPECT_EQ(std::uint32_t{All(*m_store, query).back().time}, 1001U);
}

TEST_P(HistoryStoreContract, TheVisitorEndsTheQuery) {
    Write(Block(TAG, 1000, 10));
    HistoryQuery query;
    query.tagId = TAG;
    int visits = 0;
    HistoryError error;
    EXPECT_TRUE(m_store->Query(
        query, [&](const VfiRecord&) { return ++visits < 4; }, error));
    EXPECT_EQ(visits, 4);
}

TEST_P(HistoryStoreContract, TheVisitorMayUseTheStore) {
    Write(Block(TAG, 1000, 10));
    HistoryQuery query;
    query.tagId = TAG;
    std::size_t nested = 0;
    HistoryError error;
    EXPECT_TRUE(m_store->Query(
        query,
        [&](const VfiRecord& record) {
            Write({Number(TAG + 1, record.time, 0.0)});
            nested += All(*m_store, TAG + 1).size();
            return true;
        },
        error));
    EXPECT_EQ(nested, 55U);
}

TEST_P(HistoryStoreContract, CountsStandByTagInAscendingOrder) {
    Write(Block(0xFFFE0001, 1000, 3));
    Write(Block(2, 1000, 2));
    Write({Number(0x10000, 1, 1.0), Text(0, 1, "x"), Number(0x10000, 2, 1.0), Number(0x10000, 1, 1.0)});
    std::vector<HistoryCount> counts;
    HistoryError error;
    ASSERT_TRUE(m_store->Count(counts, error));
    std::vector<std::pair<std::uint32_t, std::uint64_t>> pairs;
    for (const HistoryCount& count : counts) {
        pairs.emplace_back(count.tagId, count.records);
    }
    EXPECT_EQ(pairs,
              (std::vector<std::pair<std::uint32_t, std::uint64_t>>{{0, 1}, {2, 2}, {0x10000, 3}, {0xFFFE0001, 3}}));
}

TEST_P(HistoryStoreContract, FlushSucceeds) {
    Write(Block(TAG, 1000, 10));
    HistoryError error{"old", 1};
    EXPECT_TRUE(m_store->Flush(error));
    EXPECT_EQ(error.text, "");
}

TEST_P(HistoryStoreContract, WritersAndReadersShareTheStore) {
    constexpr std::size_t BLOCK = 50;
    constexpr std::uint32_t WRITERS = 3;
    constexpr std::uint32_t BLOCKS = 20;
    std::atomic<bool> done{false};
    std::vector<std::jthread> writers;
    for (std::uint32_t writer = 0; writer < WRITERS; ++writer) {
        writers.emplace_back([&, writer] {
            for (std::uint32_t block = 0; block < BLOCKS; ++block) {
                HistoryError error;
                EXPECT_TRUE(m_store->Write(Block(writer, block * BLOCK, BLOCK), error)) << error.text;
            }
        });
    }
    std::jthread reader([&] {
        while (!done) {
            for (std::uint32_t writer = 0; writer < WRITERS; ++writer) {
                EXPECT_EQ(All(*m_store, writer).size() % BLOCK, 0U) << "a query saw a part of a block";
            }
            EXPECT_EQ(Total(*m_store) % BLOCK, 0U);
        }
    });
    writers.clear();
    done = true;
    reader.join();
    EXPECT_EQ(Total(*m_store), std::uint64_t{WRITERS} * BLOCKS * BLOCK);
}
