// ReadRange through the client: every kind, flags, records, damage.
#include "api/bacnet/PropertyValue.h"
#include "tests/unit/stack/client/ClientFixture.h"

namespace {

constexpr BACSTAC_OBJECT_ID trendLog{OBJ_TREND_LOG, 1};

// One record: [0]{ 23 March 1998, 19:54:27.0 } [1]{ [2] real 18.0 } [2] status 0000
constexpr const char* record = "0E A4 62 03 17 01 B4 13 36 1B 00 0F 1E 2C 41 90 00 00 1F 2A 04 00";

class ReadRangeClientTest : public ClientFixture {
protected:
    // An answer to any request: [0] trend-log 1, [1] log-buffer, flags, count, items, what follows.
    static Octets Answer(const Octets& request, const char* flags, unsigned claimed, const std::string& items,
                         const char* behind = "") {
        Octets parameters = Hex("0C 05 00 00 01 19 83 3A 05 " + std::string(flags) + " 49");
        parameters.push_back(static_cast<std::uint8_t>(claimed));
        for (const std::uint8_t octet : Hex("5E" + items + "5F" + std::string(behind)))
            parameters.push_back(octet);
        return Ack(request, parameters);
    }
    BACSTAC_STATUS Read(const BACSTAC_READ_RANGE_SPEC* spec, CPropertyContents& contents, unsigned* first) {
        m_flags = {};
        m_error = {};
        return m_client->ReadRange(DeviceAt(1), trendLog, PROP_LOG_BUFFER, BACSTAC_NO_INDEX, spec, &m_flags, &contents,
                                   &m_error, first);
    }
    std::string LastRequest() { return m_link->RequestsTo(1).back().substr(12); }

    BACSTAC_BIT_STRING m_flags{};
    BACSTAC_ERROR m_error{};
};

TEST_F(ReadRangeClientTest, SendsEveryKindAndTakesTheAnswer) {
    Serve(1, [](const Octets& request) {
        return std::vector<Octets>{Answer(request, "40", 2, std::string(record) + record, "6B 01 35 61")};
    });
    BACSTAC_READ_RANGE_SPEC all{};
    BACSTAC_READ_RANGE_SPEC position{};
    position.Kind = BACSTAC_RANGE_BY_POSITION;
    position.ByIndex = {200, -5};
    BACSTAC_READ_RANGE_SPEC sequence{};
    sequence.Kind = BACSTAC_RANGE_BY_SEQUENCE;
    sequence.ByIndex = {79201, 2};
    BACSTAC_READ_RANGE_SPEC time{};
    time.Kind = BACSTAC_RANGE_BY_TIME;
    time.ByTime = {{{1998, 0, 3, 23, 0}, {19, 52, 34, 0}}, 4};
    BACSTAC_READ_RANGE_SPEC time2001 = time;
    time2001.Kind = BACSTAC_RANGE_BY_TIME_2001;
    struct Row {
        const BACSTAC_READ_RANGE_SPEC* Spec;
        const char* Request;
        unsigned First;
    };
    const Row rows[] = {
        {nullptr, "0C 05 00 00 01 19 83", 79201},
        {&all, "0C 05 00 00 01 19 83", 79201},
        {&position, "0C 05 00 00 01 19 83 3E 21 C8 31 FB 3F", 79201},
        {&sequence, "0C 05 00 00 01 19 83 6E 23 01 35 61 31 02 6F", 79201},
        {&time, "0C 05 00 00 01 19 83 7E A4 62 03 17 01 B4 13 34 22 00 31 04 7F", 79201},
        {&time2001, "0C 05 00 00 01 19 83 4E A4 62 03 17 01 B4 13 34 22 00 31 04 4F", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.Request);
        CPropertyContents contents;
        unsigned first = 7;
        EXPECT_EQ(Read(row.Spec, contents, &first), BACSTAC_OK);
        EXPECT_EQ(LastRequest(), row.Request);
        EXPECT_EQ(first, row.First);
        EXPECT_FALSE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_FIRST_ITEM));
        EXPECT_TRUE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_LAST_ITEM));
        EXPECT_FALSE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_MORE_ITEMS));
        ASSERT_EQ(contents.DataType, TYPE_LOG_RECORD);
        ASSERT_EQ(contents.ElementCount, 2U);
        const auto* records = static_cast<const BACSTAC_LOG_RECORD*>(contents.Buffer);
        for (unsigned i = 0; i < 2; ++i) {
            EXPECT_EQ(records[i].TimeStamp.Date.Year, 1998);
            EXPECT_EQ(records[i].TimeStamp.Time.Second, 27);
            EXPECT_EQ(records[i].DatumType, BACSTAC_LOG_REAL);
            EXPECT_FLOAT_EQ(records[i].Value.Real, 18.0F);
            EXPECT_EQ(records[i].HasStatus, 1);
            EXPECT_EQ(records[i].StatusFlags.BitCount, 4U);
        }
    }
}

TEST_F(ReadRangeClientTest, AcceptsNullForWhatIsNotWanted) {
    Serve(1, [](const Octets& request) { return std::vector<Octets>{Answer(request, "C0", 1, record)}; });
    CPropertyContents contents;
    EXPECT_EQ(
        m_client->ReadRange(DeviceAt(1), trendLog, PROP_LOG_BUFFER, -1, nullptr, nullptr, &contents, nullptr, nullptr),
        BACSTAC_OK);
    EXPECT_EQ(
        m_client->ReadRange(DeviceAt(1), trendLog, PROP_LOG_BUFFER, -1, nullptr, nullptr, nullptr, nullptr, nullptr),
        BACSTAC_STATUS_INVALID_ARGUMENT);
    BACSTAC_READ_RANGE_SPEC unknown{};
    unknown.Kind = 3;
    EXPECT_EQ(Read(&unknown, contents, nullptr), BACSTAC_STATUS_INVALID_ARGUMENT);
}

TEST_F(ReadRangeClientTest, GivesNoRecordsForAnEmptyAnswer) {
    Serve(1, [](const Octets& request) { return std::vector<Octets>{Answer(request, "00", 0, "")}; });
    CPropertyContents contents;
    unsigned first = 7;
    EXPECT_EQ(Read(nullptr, contents, &first), BACSTAC_OK);
    EXPECT_EQ(contents.ElementCount, 0U);
    EXPECT_EQ(first, 0U);
}

TEST_F(ReadRangeClientTest, CountsTheItemsThatAreThereNotThoseThatAreClaimed) {
    Serve(1, [](const Octets& request) { return std::vector<Octets>{Answer(request, "C0", 200, record)}; });
    CPropertyContents contents;
    EXPECT_EQ(Read(nullptr, contents, nullptr), BACSTAC_OK);
    EXPECT_EQ(contents.ElementCount, 1U);
}

TEST_F(ReadRangeClientTest, KeepsWhatFitsAndSaysThatThereIsMore) {
    Serve(1, [](const Octets& request) {
        return std::vector<Octets>{Answer(request, "C0", 3, std::string(record) + record + record)};
    });
    CPropertyContents contents(2 * sizeof(BACSTAC_LOG_RECORD) + 10);
    EXPECT_EQ(Read(nullptr, contents, nullptr), BACSTAC_OK);
    EXPECT_EQ(contents.ElementCount, 2U);
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_FIRST_ITEM));
    EXPECT_FALSE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_LAST_ITEM));
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_MORE_ITEMS));
    CPropertyContents tiny(10);
    EXPECT_EQ(Read(nullptr, tiny, nullptr), BACSTAC_STATUS_BUFFER_TOO_SMALL);
    EXPECT_EQ(tiny.ElementCount, 0U);
}

// Backwards the newest records are the last ones of the answer, and those that the caller goes on from.
TEST_F(ReadRangeClientTest, KeepsWhatIsNextToTheReferenceWhenItReadsBackwards) {
    Serve(1, [](const Octets& request) { // as many as it is asked for, of 10 records, which are a second apart
        const unsigned count = 256U - request.at(request.size() - 2);
        std::string records;
        for (unsigned second = 10 - count; second < 10; ++second)
            records += "0E A4 62 03 17 01 B4 13 36 0" + std::to_string(second) + " 00 0F 1E 2C 41 90 00 00 1F ";
        return std::vector<Octets>{
            Answer(request, "40", count, records, ("69 0" + std::to_string(11 - count)).c_str())};
    });
    for (const std::uint32_t kind : {BACSTAC_RANGE_BY_POSITION, BACSTAC_RANGE_BY_TIME}) {
        BACSTAC_READ_RANGE_SPEC spec{};
        spec.Kind = kind;
        if (kind == BACSTAC_RANGE_BY_POSITION)
            spec.ByIndex = {10, -5};
        else
            spec.ByTime = {{{1998, 0, 3, 23, 0}, {20, 0, 0, 0}}, -5};
        CPropertyContents contents(3 * sizeof(BACSTAC_LOG_RECORD) + 10);
        unsigned first = 0;
        EXPECT_EQ(Read(&spec, contents, &first), BACSTAC_OK);
        ASSERT_EQ(contents.ElementCount, 3U);
        const auto* records = static_cast<const BACSTAC_LOG_RECORD*>(contents.Buffer);
        EXPECT_EQ(records[0].TimeStamp.Time.Second, 7);
        EXPECT_EQ(records[2].TimeStamp.Time.Second, 9);
        EXPECT_EQ(first, 8U);
        EXPECT_TRUE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_LAST_ITEM));
        EXPECT_TRUE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_MORE_ITEMS)) << "of those that were asked for";
    }
}

TEST_F(ReadRangeClientTest, KeepsTheRecordsBeforeADamagedOne) {
    Serve(1, [](const Octets& request) {
        return std::vector<Octets>{Answer(request, "C0", 2, std::string(record) + "0E 21 05 0F")};
    });
    CPropertyContents contents;
    EXPECT_EQ(Read(nullptr, contents, nullptr), BACSTAC_OK);
    EXPECT_EQ(contents.ElementCount, 1U);
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(m_flags, BACSTAC_RANGE_MORE_ITEMS));
    Serve(1, [](const Octets& request) { return std::vector<Octets>{Answer(request, "C0", 1, "0E 21 05 0F")}; });
    EXPECT_EQ(Read(nullptr, contents, nullptr), BACSTAC_STATUS_INVALID_ANSWER);
    EXPECT_EQ(contents.DataType, TYPE_NONE);
}

TEST_F(ReadRangeClientTest, ReportsRefusalsAndForeignAnswers) {
    ServeAlways(1, "50 00 1A 91 01 91 1F");
    CPropertyContents contents;
    EXPECT_EQ(Read(nullptr, contents, nullptr), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(m_error.Code, 31U);
    ServeAlways(1, "30 00 1A 0C 05 00 00 01 19");
    EXPECT_EQ(Read(nullptr, contents, nullptr), BACSTAC_STATUS_INVALID_ANSWER);
    EXPECT_EQ(m_client->ReadRange(77, trendLog, PROP_LOG_BUFFER, -1, nullptr, nullptr, &contents, nullptr, nullptr),
              BACSTAC_STATUS_UNKNOWN_DEVICE);
}

} // namespace
