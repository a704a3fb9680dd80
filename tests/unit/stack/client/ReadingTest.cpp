// ReadProperty in its forms, and what becomes of refusals, silence and nonsense.
#include "api/bacnet/PropertyValue.h"
#include "platform/stack/client/AsyncReader.h"
#include "tests/unit/stack/client/ClientFixture.h"

#include <chrono>
#include <cstring>
#include <thread>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr BACSTAC_OBJECT_ID analogInput{OBJ_ANALOG_INPUT, 5};

// ComplexACK, ReadProperty, [0] analog-input 5, [1] present-value, [3] real 72.3
constexpr const char* presentValueAck = "30 00 0C 0C 00 00 00 05 19 55 3E 44 42 90 99 9A 3F";
// the same with unsigned 300
constexpr const char* unsignedAck = "30 00 0C 0C 00 00 00 05 19 55 3E 22 01 2C 3F";
// the same with the character string "Supply", UTF-8
constexpr const char* textAck = "30 00 0C 0C 00 00 00 05 19 4D 3E 75 07 00 53 75 70 70 6C 79 3F";
// Error, ReadProperty, class object, code unknown-object
constexpr const char* unknownObject = "50 00 0C 91 01 91 1F";
// Reject, unrecognized-service
constexpr const char* reject = "60 00 09";
// Abort by the server, segmentation-not-supported
constexpr const char* abortAnswer = "71 00 04";

class ReadingTest : public ClientFixture {
protected:
    BACSTAC_STATUS Read(void* buffer, unsigned size, BACSTAC_PROPERTY_ID property = PROP_PRESENT_VALUE) {
        m_error = {};
        return m_client->ReadProperty(DeviceAt(1), analogInput, property, BACSTAC_NO_INDEX, buffer, size, &m_error);
    }
    BACSTAC_STATUS Read(BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_PROPERTY_ID property = PROP_PRESENT_VALUE) {
        m_error = {};
        return m_client->ReadProperty(DeviceAt(1), analogInput, property, BACSTAC_NO_INDEX, contents, &m_error);
    }

    BACSTAC_ERROR m_error{};
};

TEST_F(ReadingTest, DecodesAPrimitiveIntoTheBuffer) {
    ServeAlways(1, presentValueAck);
    float value = 0;
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_OK);
    EXPECT_FLOAT_EQ(value, 72.3F);
    EXPECT_EQ(m_link->RequestsTo(1).size(), 1U);
    EXPECT_EQ(m_link->RequestsTo(1)[0].substr(12), "0C 00 00 00 05 19 55") << "behind the header";
}

TEST_F(ReadingTest, DoesNotOverrunABufferThatIsTooSmall) {
    ServeAlways(1, unsignedAck);
    std::uint8_t guarded[8];
    for (unsigned size = 0; size < 4; ++size) {
        std::memset(guarded, 0xEE, sizeof guarded);
        EXPECT_EQ(Read(guarded, size), BACSTAC_STATUS_BUFFER_TOO_SMALL) << size;
        for (const std::uint8_t octet : guarded)
            EXPECT_EQ(octet, 0xEE) << size;
    }
    std::uint32_t value = 0;
    EXPECT_EQ(Read(&value, 4), BACSTAC_OK);
    EXPECT_EQ(value, 300U);
    EXPECT_EQ(Read(nullptr, 4), BACSTAC_STATUS_INVALID_ARGUMENT);
}

TEST_F(ReadingTest, CutsTextToTheBuffer) {
    ServeAlways(1, textAck);
    char text[16] = "xxxxxxxxxxxxxxx";
    EXPECT_EQ(Read(text, sizeof text, PROP_OBJECT_NAME), BACSTAC_OK);
    EXPECT_STREQ(text, "Supply");
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(Read(text, 4, PROP_OBJECT_NAME), BACSTAC_OK);
    EXPECT_EQ(std::memcmp(text, "Sup\0xxx", 7), 0);
}

// The octets are CF F0, said to be ISO 8859-1; the device means code page 1251.
TEST_F(ReadingTest, TakesTheTextOfADeviceAsTheUserSaysItIs) {
    Restart({}, {{DeviceAt(1), "cp1251"}, {DeviceAt(3), "no such encoding"}});
    const BACSTAC_OBJECT_ID object{OBJ_ANALOG_INPUT, 5};
    const auto read = [&](std::uint8_t last) {
        ServeAlways(last, "30 00 0C 0C 00 00 00 05 19 4D 3E 73 05 CF F0 3F");
        char text[16] = {};
        EXPECT_EQ(m_client->ReadProperty(DeviceAt(last), object, PROP_OBJECT_NAME, -1, text, sizeof text, nullptr),
                  BACSTAC_OK);
        return std::string(text);
    };
    EXPECT_EQ(read(1), "\xD0\x9F\xD1\x80");
    EXPECT_EQ(read(2), "\xC3\x8F\xC3\xB0") << "another device is not touched";
    EXPECT_EQ(read(3), "\xC3\x8F\xC3\xB0") << "an unknown encoding changes nothing";

    CPropertyContents contents;
    EXPECT_EQ(m_client->ReadProperty(Address(1), object, PROP_OBJECT_NAME, -1, contents, nullptr), BACSTAC_OK);
    EXPECT_STREQ(static_cast<const char*>(contents.Buffer), "\xD0\x9F\xD1\x80") << "by address too";

    ServeAlways(1, "30 00 0E 0C 00 00 00 05 1E 29 4D 4E 73 05 CF F0 4F 1F");
    BACSTAC_READ_RESULT_ITEM item{PROP_OBJECT_NAME, -1, 0, contents, {}};
    EXPECT_EQ(m_client->ReadPropertyMultiple(DeviceAt(1), {}, &object, &item, 1, nullptr), BACSTAC_OK);
    EXPECT_EQ(item.Success, 1);
    EXPECT_STREQ(static_cast<const char*>(contents.Buffer), "\xD0\x9F\xD1\x80") << "among others too";
}

TEST_F(ReadingTest, FillsContentsWithTypeAndCount) {
    ServeAlways(1, textAck);
    CPropertyContents contents;
    EXPECT_EQ(Read(contents, PROP_OBJECT_NAME), BACSTAC_OK);
    EXPECT_EQ(contents.DataType, TYPE_STRING);
    EXPECT_EQ(contents.ElementCount, 1U);
    EXPECT_STREQ(static_cast<const char*>(contents.Buffer), "Supply");
}

TEST_F(ReadingTest, ReadsByAddressFromADeviceThatNobodyKnows) {
    m_link->SetDevice(9,
                      [](const Octets& request) { return std::vector<Octets>{WithId(Hex(presentValueAck), request)}; });
    CPropertyContents contents;
    EXPECT_EQ(m_client->ReadProperty(Address(9), analogInput, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, contents, nullptr),
              BACSTAC_OK);
    EXPECT_EQ(contents.DataType, TYPE_REAL);
    EXPECT_EQ(
        m_client->ReadProperty(BACSTAC_ADDRESS{}, analogInput, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, contents, nullptr),
        BACSTAC_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(contents.DataType, TYPE_NONE);
}

TEST_F(ReadingTest, SaysWhatTheDeviceAnswered) {
    struct Row {
        const char* Answer;
        BACSTAC_STATUS Status;
        BACSTAC_ERROR Error;
    };
    const Row rows[] = {
        {unknownObject, BACSTAC_STATUS_ERROR, {2, 1, 31}},
        {reject, BACSTAC_STATUS_REJECT, {1, 9, 0}},
        {abortAnswer, BACSTAC_STATUS_ABORT, {1, 4, 0}},
        {"60 00 FE", BACSTAC_STATUS_REJECT, {1, 254, 0}},
        {"50 00 0C 92 02 00 92 10 00", BACSTAC_STATUS_ERROR, {2, 512, 4096}},
        {"50 00 0C 21 01", BACSTAC_STATUS_INVALID_ANSWER, {2, 0, 0}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.Answer);
        ServeAlways(1, row.Answer);
        CPropertyContents contents;
        contents.DataType = TYPE_REAL;
        contents.ElementCount = 1;
        EXPECT_EQ(Read(contents), row.Status);
        EXPECT_EQ(m_error.Kind, row.Error.Kind);
        EXPECT_EQ(m_error.Class, row.Error.Class);
        EXPECT_EQ(m_error.Code, row.Error.Code);
        EXPECT_EQ(contents.DataType, TYPE_NONE);
        EXPECT_EQ(contents.ElementCount, 0U);
        EXPECT_EQ(
            m_client->ReadProperty(DeviceAt(1), analogInput, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, contents, nullptr),
            row.Status)
            << "without an error record";
        const std::string text = CBacGeneral::GetErrorText(row.Status, &m_error);
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(text.find('\n'), std::string::npos);
    }
    ServeAlways(1, presentValueAck);
    float value = 0;
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_OK) << "the next request works";
}

TEST_F(ReadingTest, TimesOutOnSilenceAfterAllRetries) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    float value = 0;
    const auto start = Clock::now();
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_STATUS_TIMEOUT);
    EXPECT_GE(Clock::now() - start, (Retries + 1) * std::chrono::milliseconds(TimeoutMs) - 5ms);
    const auto requests = m_link->RequestsTo(1);
    ASSERT_EQ(requests.size(), Retries + 1U);
    EXPECT_EQ(requests[0], requests[1]) << "a retry is the same request";
    EXPECT_NE(CBacGeneral::GetErrorText(BACSTAC_STATUS_TIMEOUT, &m_error), "");
}

TEST_F(ReadingTest, FailsAtOnceForAnUnknownDevice) {
    float value = 0;
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_STATUS_UNKNOWN_DEVICE);
    EXPECT_TRUE(m_link->TakeSent().empty());
}

TEST_F(ReadingTest, FailsAtOnceOnADisabledNetworkAndSendsNothing) {
    ServeAlways(1, presentValueAck);
    EXPECT_TRUE(m_client->IsDeviceEnabled(DeviceAt(1)));
    EXPECT_FALSE(m_client->IsDeviceEnabled(77));
    EXPECT_TRUE(m_client->DisableNetwork(0));
    EXPECT_FALSE(m_client->IsNetworkEnabled(0));
    EXPECT_TRUE(m_client->IsNetworkEnabled(5));
    EXPECT_FALSE(m_client->IsDeviceEnabled(DeviceAt(1)));
    float value = 0;
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_STATUS_DISABLED);
    EXPECT_EQ(m_client->WhoIs({}, 0, 4194303), BACSTAC_STATUS_DISABLED);
    EXPECT_TRUE(m_link->TakeSent().empty());
    EXPECT_TRUE(m_client->EnableNetwork(0));
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_OK);
    EXPECT_FALSE(m_client->DisableNetwork(65535));
    EXPECT_FALSE(m_client->EnableNetwork(65535));
}

TEST_F(ReadingTest, DropsAnAnswerAboutAnotherProperty) {
    Serve(1, [](const Octets& request) {
        // about reliability first, then what was asked for
        return std::vector<Octets>{WithId(Hex("30 00 0C 0C 00 00 00 05 19 67 3E 91 00 3F"), request),
                                   WithId(Hex(presentValueAck), request)};
    });
    float value = 0;
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_OK);
    EXPECT_FLOAT_EQ(value, 72.3F);
}

TEST_F(ReadingTest, ReportsAnAnswerThatCannotBeDecoded) {
    float value = 0;
    const Octets whole = Hex(presentValueAck);
    for (std::size_t length = 3; length < whole.size(); ++length) {
        ServeAlways(1, ToHex(std::span(whole).first(length)).c_str());
        EXPECT_EQ(Read(&value, sizeof value), BACSTAC_STATUS_INVALID_ANSWER) << length;
    }
    EXPECT_EQ(value, 0.0F);
}

TEST_F(ReadingTest, SaysThatAValueOfAWrongLengthIsNone) {
    // [3] real of three octets, well-formed in its brackets
    ServeAlways(1, "30 00 0C 0C 00 00 00 05 19 55 3E 43 42 90 99 3F");
    CPropertyContents contents;
    EXPECT_EQ(Read(contents), BACSTAC_OK);
    EXPECT_LT(contents.DataType, 0);
    float value = 0;
    EXPECT_NE(Read(&value, sizeof value), BACSTAC_OK);
}

TEST_F(ReadingTest, AnswersWithTheWildcardsInstanceAreTaken) {
    // [0] device 101, [1] object-identifier, [3] device 101
    ServeAlways(1, "30 00 0C 0C 02 00 00 65 19 4B 3E C4 02 00 00 65 3F");
    CPropertyContents contents;
    EXPECT_EQ(m_client->ReadProperty(Address(1), {OBJ_DEVICE, BACSTAC_MAX_INSTANCE}, PROP_OBJECT_IDENTIFIER,
                                     BACSTAC_NO_INDEX, contents, nullptr),
              BACSTAC_OK);
    EXPECT_EQ(contents.DataType, TYPE_OBJECT_ID);
}

TEST_F(ReadingTest, GivesEveryCallerItsOwnAnswer) {
    constexpr int threads = 8;
    constexpr int reads = 200;
    for (std::uint8_t last = 1; last <= 4; ++last)
        Serve(last, [last](const Octets& request) {
            // unsigned: the device's number and the instance asked for
            Octets parameters = Parameters(request);
            const std::uint8_t instance = parameters.at(4);
            for (const std::uint8_t octet : Octets{0x3E, 0x22, last, instance, 0x3F})
                parameters.push_back(octet);
            return std::vector<Octets>{Ack(request, parameters)};
        });
    std::vector<std::thread> callers;
    std::atomic<int> wrong{0};
    for (int t = 0; t < threads; ++t)
        callers.emplace_back([&, t] {
            for (int i = 0; i < reads; ++i) {
                const auto last = static_cast<std::uint8_t>(1 + (t + i) % 4);
                const unsigned instance = static_cast<unsigned>(t * 16 + i % 16);
                std::uint32_t value = 0;
                const BACSTAC_STATUS status = m_client->ReadProperty(DeviceAt(last), {OBJ_MULTI_STATE_INPUT, instance},
                                                                     PROP_PRESENT_VALUE, -1, &value, 4, nullptr);
                if (status != BACSTAC_OK || value != last * 256U + instance)
                    ++wrong;
            }
        });
    for (auto& caller : callers)
        caller.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(ReadingTest, EndsPendingCallsAtShutdown) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    BACSTAC_STATUS status = BACSTAC_OK;
    std::thread caller([&] {
        float value = 0;
        status = Read(&value, sizeof value);
    });
    while (m_link->RequestsTo(1).empty())
        std::this_thread::yield();
    m_client->Shutdown();
    caller.join();
    EXPECT_EQ(status, BACSTAC_STATUS_SHUTDOWN);
}

// ---- with a callback

class Waiting : public CAsyncCallBack {
public:
    explicit Waiting(int polls = 1 << 30) : m_polls(polls) {}
    void OnWaitStart() override { Events += "start "; }
    int OnWaitPoll() override {
        EXPECT_EQ(std::this_thread::get_id(), m_thread);
        ++Polls;
        if (Polls == 1)
            Events += "poll ";
        if (OnPoll)
            OnPoll(Polls);
        return Polls < m_polls ? 1 : 0;
    }
    void OnWaitEnd() override { Events += "end"; }

    std::string Events;
    int Polls = 0;
    std::function<void(int)> OnPoll;

private:
    int m_polls;
    std::thread::id m_thread = std::this_thread::get_id();
};

class AsyncReadingTest : public ReadingTest {
protected:
    BACSTAC_STATUS ReadWaiting(CAsyncCallBack& waiting, unsigned device = DeviceAt(1)) {
        m_error = {};
        return m_client->AsyncReadProperty(device, analogInput, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, m_contents,
                                           &m_error, waiting);
    }

    CPropertyContents m_contents;
};

TEST_F(AsyncReadingTest, CallsStartAndEndOnce) {
    ServeAlways(1, presentValueAck);
    Waiting waiting;
    EXPECT_EQ(ReadWaiting(waiting), BACSTAC_OK);
    EXPECT_EQ(m_contents.DataType, TYPE_REAL);
    EXPECT_TRUE(waiting.Events == "start end" || waiting.Events == "start poll end") << waiting.Events;
}

TEST_F(AsyncReadingTest, PollsWhileTheDeviceIsSilent) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    Waiting waiting;
    const auto start = Clock::now();
    EXPECT_EQ(ReadWaiting(waiting), BACSTAC_STATUS_TIMEOUT);
    const auto polls = (Clock::now() - start) / 20ms;
    EXPECT_EQ(waiting.Events, "start poll end");
    EXPECT_GE(waiting.Polls, static_cast<int>(polls) / 2) << "every 20 ms or so";
    EXPECT_EQ(m_link->RequestsTo(1).size(), Retries + 1U);
}

TEST_F(AsyncReadingTest, CallsStartAndEndOnFailureToo) {
    Waiting unknown;
    EXPECT_EQ(ReadWaiting(unknown, 77), BACSTAC_STATUS_UNKNOWN_DEVICE);
    EXPECT_EQ(unknown.Events, "start end");
    ServeAlways(1, unknownObject);
    Waiting refused;
    EXPECT_EQ(ReadWaiting(refused), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(m_error.Code, 31U);
    EXPECT_EQ(refused.Events.substr(0, 6), "start ");
    EXPECT_EQ(refused.Events.substr(refused.Events.size() - 3), "end");
}

TEST_F(AsyncReadingTest, GivesUpWhenThePollSaysSo) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    Waiting waiting(2);
    const auto start = Clock::now();
    EXPECT_EQ(ReadWaiting(waiting), BACSTAC_STATUS_CANCELLED);
    EXPECT_LT(Clock::now() - start, 200ms);
    EXPECT_EQ(waiting.Events, "start poll end");
    EXPECT_EQ(m_contents.DataType, TYPE_NONE);
}

TEST_F(AsyncReadingTest, LeavesALateAnswerToNobody) {
    Octets given_up;
    Serve(1, [&](const Octets& request) {
        given_up = request;
        return std::vector<Octets>{};
    });
    Waiting waiting(1);
    EXPECT_EQ(ReadWaiting(waiting), BACSTAC_STATUS_CANCELLED);
    Serve(1, [&](const Octets& request) {
        // the late answer to the first request, an unsigned, and then the one to this
        return std::vector<Octets>{WithId(Hex(unsignedAck), given_up), WithId(Hex(presentValueAck), request)};
    });
    float value = 0;
    EXPECT_EQ(Read(&value, sizeof value), BACSTAC_OK);
    EXPECT_FLOAT_EQ(value, 72.3F);
}

TEST_F(AsyncReadingTest, LetsThePollUseTheServicesItself) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    ServeAlways(2, presentValueAck);
    Waiting waiting(3);
    int nested = 0;
    waiting.OnPoll = [&](int) {
        float value = 0;
        if (m_client->ReadProperty(DeviceAt(2), analogInput, PROP_PRESENT_VALUE, -1, &value, sizeof value, nullptr) ==
            BACSTAC_OK)
            ++nested;
    };
    EXPECT_EQ(ReadWaiting(waiting), BACSTAC_STATUS_CANCELLED);
    EXPECT_EQ(nested, 3);
}

TEST_F(AsyncReadingTest, TakesTheAnswerThatCameDuringAPoll) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    Waiting waiting;
    waiting.OnPoll = [&](int poll) {
        if (poll == 1) {
            Octets request = Hex("00 05 00");
            request[2] = Hex(m_link->RequestsTo(1).at(0)).at(2);
            m_link->Deliver(1, WithId(Hex(presentValueAck), request));
        }
    };
    EXPECT_EQ(ReadWaiting(waiting), BACSTAC_OK);
    EXPECT_EQ(m_link->RequestsTo(1).size(), 1U);
}

// ---- many at once from one thread

TEST_F(ReadingTest, KeepsManyReadsOutstanding) {
    struct Read : bacnet::AsyncRead {
        void OnRead() override {
            ++Completions;
            if (Again-- > 0) {
                EXPECT_EQ(Reader->Submit(DeviceAt(1), *this), BACSTAC_OK);
            }
        }
        bacnet::AsyncReader* Reader = nullptr;
        float Value = 0;
        int Completions = 0;
        int Again = 3;
    };
    ServeAlways(1, presentValueAck);
    bacnet::AsyncReader reader(*m_client);
    std::vector<std::unique_ptr<Read>> reads;
    for (int i = 0; i < 32; ++i) {
        reads.push_back(std::make_unique<Read>());
        Read& read = *reads.back();
        read.Reader = &reader;
        read.Target = {analogInput, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX};
        read.Contents = {TYPE_NONE, &read.Value, sizeof read.Value, 0};
        EXPECT_EQ(reader.Submit(77, read), BACSTAC_STATUS_UNKNOWN_DEVICE);
        EXPECT_EQ(reader.Submit(DeviceAt(1), read), BACSTAC_OK);
    }
    EXPECT_EQ(reader.Outstanding(), 32U);
    while (reader.Outstanding() != 0)
        reader.Poll(100);
    for (const auto& read : reads) {
        EXPECT_EQ(read->Status, BACSTAC_OK);
        EXPECT_EQ(read->Completions, 4);
        EXPECT_FLOAT_EQ(read->Value, 72.3F);
    }
    m_link->SetDevice(1, [](const Octets&) { return std::vector<Octets>{}; });
    reads[0]->Again = 0;
    EXPECT_EQ(reader.Submit(DeviceAt(1), *reads[0]), BACSTAC_OK);
    reader.Poll(0);
    reader.Cancel();
    EXPECT_EQ(reads[0]->Completions, 5);
    EXPECT_EQ(reads[0]->Status, BACSTAC_STATUS_CANCELLED);
}

} // namespace
