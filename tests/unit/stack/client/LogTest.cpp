// The log: levels, limits, sessions, escaping, threads.
#include "api/bacnet/Log.h"
#include "platform/stack/log/LogText.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using bacnet::log::EscapeLine;
using Log = CQilBAC_ErrLog;

std::string Format(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string line = bacnet::log::FormatLine(format, arguments);
    va_end(arguments);
    return line;
}

std::string Contents(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

// What stands behind date, time, level and thread in each line.
std::vector<std::string> Texts(const fs::path& path) {
    std::vector<std::string> texts;
    std::istringstream lines(Contents(path));
    for (std::string line; std::getline(lines, line);)
        texts.push_back(line.substr(line.find("] ") + 2));
    return texts;
}

std::vector<fs::path> HistoryFiles(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().starts_with("bacnet-"))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

class LogTest : public testing::Test {
protected:
    fs::path Online() const { return m_folder.File("bacnet.log"); }
    fs::path History(const char* name) const { return m_folder.File(name); }
    bool Open(Log& log) const { return log.Open(m_folder.Path()); }

    CTempFolder m_folder;
};

class RecordingSink : public Log::ISink {
public:
    void OnLine(Log::KIND kind, const std::string& text) override {
        Lines.push_back((kind == Log::KIND_ERROR ? "E " : kind == Log::KIND_DEBUG ? "D " : "I ") + text);
    }
    std::vector<std::string> Lines;
};

TEST(LogTextTest, EscapesControlCharactersAndBytesThatAreNotUtf8) {
    EXPECT_EQ(EscapeLine("plain text, 100 %s"), "plain text, 100 %s");
    EXPECT_EQ(EscapeLine("a\nb\rc\td"), "a\\nb\\rc\\td");
    EXPECT_EQ(EscapeLine("\x1b[31mred"), "\\x1b[31mred");
    EXPECT_EQ(EscapeLine(std::string_view("nul\0end", 7)), "nul\\x00end");
    EXPECT_EQ(EscapeLine("Z\xC3\xBCrich \xE2\x82\xAC \xF0\x9F\x94\xA5"), "Z\xC3\xBCrich \xE2\x82\xAC \xF0\x9F\x94\xA5");
    EXPECT_EQ(EscapeLine("Z\xFCrich"), "Z\\xfcrich");
    EXPECT_EQ(EscapeLine("\xC0\x80"), "\\xc0\\x80") << "overlong";
    EXPECT_EQ(EscapeLine("\xED\xA0\x80"), "\\xed\\xa0\\x80") << "surrogate";
    EXPECT_EQ(EscapeLine("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "above the last code point";
    EXPECT_EQ(EscapeLine("cut \xE2\x82"), "cut \\xe2\\x82");
    EXPECT_EQ(EscapeLine("\xC2\x85"), "\\xc2\\x85") << "C1 control";
    EXPECT_EQ(EscapeLine("\xE2\x80\xAE"), "\\xe2\\x80\\xae") << "right-to-left override";
}

TEST(LogTextTest, FormatsLinesOfAnyLength) {
    EXPECT_EQ(Format("%s %d", "x", 5), "x 5");
    for (const std::size_t length : {254U, 255U, 256U, 257U, 100000U}) {
        const std::string text(length, 'y');
        EXPECT_EQ(Format("%s", text.c_str()), text);
    }
}

TEST_F(LogTest, KeepsLinesUntilAFolderIsKnown) {
    Log log;
    log.Write(Log::KIND_INFORMATION, "early");
    log.Write(Log::KIND_ERROR, "wrong");
    ASSERT_TRUE(Open(log));
    log.Write(Log::KIND_INFORMATION, "late");
    const std::vector<std::string> expected{"early", "wrong", "late"};
    EXPECT_EQ(Texts(Online()), expected);
    EXPECT_EQ(Texts(History("bacnet-000001.001.log")), expected);
}

TEST_F(LogTest, BoundsTheLinesKeptBeforeAFolderIsKnown) {
    Log log;
    for (int i = 0; i < 1500; ++i)
        log.Write(Log::KIND_INFORMATION, std::to_string(i));
    ASSERT_TRUE(Open(log));
    const auto texts = Texts(Online());
    ASSERT_EQ(texts.size(), 1001U);
    EXPECT_EQ(texts[0], "500 earlier lines were not kept");
    EXPECT_EQ(texts[1], "500");
    EXPECT_EQ(texts.back(), "1499");
}

TEST_F(LogTest, RefusesAFolderThatIsNotThere) {
    Log log;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(log.Open(m_folder.File("missing")));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("cannot be opened"), std::string::npos);
    ASSERT_TRUE(Open(log)) << "a later attempt may succeed";
}

TEST_F(LogTest, WritesOneLineWithLevelAndTimePerEntry) {
    Log log;
    ASSERT_TRUE(Open(log));
    log.Write(Log::KIND_ERROR, "forged\n2026-01-01 00:00:00.000 I [1] not me");
    const std::string text = Contents(Online());
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
    ASSERT_GT(text.size(), 26U);
    EXPECT_EQ(text.substr(23, 4), " E [");
    EXPECT_EQ(text[4], '-');
    EXPECT_EQ(text[19], '.');
}

TEST_F(LogTest, AppliesTheLevelToEachFile) {
    struct Row {
        Log::LEVEL Level;
        std::vector<std::string> Online;
        std::vector<std::string> History;
    };
    const Row rows[] = {
        {Log::LEVEL_TRACE, {"debug", "info", "error"}, {"debug", "info", "error"}},
        {Log::LEVEL_NORMAL, {"debug", "info", "error"}, {"info", "error"}},
        {Log::LEVEL_INFO, {"info", "error"}, {"info", "error"}},
        {Log::LEVEL_LOW_INFO, {"error"}, {"error"}},
        {static_cast<Log::LEVEL>(77), {"error"}, {"error"}},
    };
    for (const Row& row : rows) {
        const CTempFolder folder;
        Log log;
        ASSERT_TRUE(log.Open(folder.Path()));
        log.SetLevel(row.Level);
        log.Write(Log::KIND_DEBUG, "debug");
        log.Write(Log::KIND_INFORMATION, "info");
        log.Write(Log::KIND_ERROR, "error");
        EXPECT_EQ(Texts(folder.File("bacnet.log")), row.Online) << "level " << row.Level;
        EXPECT_EQ(Texts(folder.File("bacnet-000001.001.log")), row.History) << "level " << row.Level;
    }
}

TEST_F(LogTest, LeavesOutTheCategoriesThatTheFilterClears) {
    Log log;
    ASSERT_TRUE(Open(log));
    log.SetLevel(Log::LEVEL_TRACE);
    log.SetFilter(0x0FFB); // no debug lines
    log.Write(Log::KIND_DEBUG, "debug");
    log.Write(Log::KIND_INFORMATION, "info");
    log.SetFilter(0x0FFE); // no information
    log.Write(Log::KIND_INFORMATION, "unwanted");
    log.Write(Log::KIND_ERROR, "error");
    log.SetFilter(0);
    log.Write(Log::KIND_ERROR, "nothing");
    EXPECT_EQ(Texts(Online()), (std::vector<std::string>{"info", "error"}));
}

TEST_F(LogTest, KeepsTheOnlineLogWithinItsLimit) {
    Log log;
    log.EnableHisLog(false);
    log.SetLogSizeLimit(true, 1);
    ASSERT_TRUE(Open(log));
    const std::string text(1000, 'x');
    for (int i = 0; i < 3000; ++i)
        log.Write(Log::KIND_INFORMATION, text + std::to_string(i));
    const auto size = fs::file_size(Online()) + fs::file_size(m_folder.File("bacnet.old.log"));
    EXPECT_LE(size, 1024U * 1024);
    EXPECT_GE(size, 512U * 1024) << "the newest lines are kept";
    EXPECT_EQ(Texts(Online()).back(), text + "2999");
    EXPECT_TRUE(HistoryFiles(m_folder.Path()).empty());
}

TEST_F(LogTest, LetsTheOnlineLogGrowWithoutALimit) {
    Log log;
    log.EnableHisLog(false);
    log.SetLogSizeLimit(false, 1);
    ASSERT_TRUE(Open(log));
    for (int i = 0; i < 3000; ++i)
        log.Write(Log::KIND_INFORMATION, std::string(1000, 'x'));
    EXPECT_GE(fs::file_size(Online()), 3000U * 1000);
}

TEST_F(LogTest, TakesALimitOfZeroAsTheSmallestOne) {
    Log log;
    log.EnableHisLog(false);
    log.SetLogSizeLimit(true, 0);
    ASSERT_TRUE(Open(log));
    for (int i = 0; i < 100; ++i)
        log.Write(Log::KIND_INFORMATION, std::string(1000, 'x'));
    EXPECT_EQ(Texts(Online()).size(), 100U);
}

TEST_F(LogTest, KeepsTheHistoricalLogWithinItsSize) {
    Log log;
    log.EnableLog(false);
    log.SetHisLogSizeLimit(true, 1);
    ASSERT_TRUE(Open(log));
    for (int i = 0; i < 3000; ++i)
        log.Write(Log::KIND_INFORMATION, std::string(1000, 'x') + std::to_string(i));
    std::uint64_t size = 0;
    const auto files = HistoryFiles(m_folder.Path());
    for (const auto& file : files)
        size += fs::file_size(file);
    EXPECT_LE(size, 1024U * 1024);
    EXPECT_GE(size, 768U * 1024);
    EXPECT_EQ(Texts(files.back()).back(), std::string(1000, 'x') + "2999");
    EXPECT_FALSE(fs::exists(Online()));
}

TEST_F(LogTest, KeepsAsManySessionsAsAllowed) {
    for (int session = 1; session <= 5; ++session) {
        Log log;
        log.SetHisLogSessionLimit(true, 3);
        ASSERT_TRUE(Open(log));
        log.Write(Log::KIND_INFORMATION, "session " + std::to_string(session));
    }
    const auto files = HistoryFiles(m_folder.Path());
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(Texts(files[0]), std::vector<std::string>{"session 3"});
    EXPECT_EQ(Texts(files[2]), std::vector<std::string>{"session 5"});
}

TEST_F(LogTest, AppliesANewSessionLimitAtOnce) {
    for (int session = 1; session <= 4; ++session) {
        Log log;
        ASSERT_TRUE(Open(log));
        EXPECT_EQ(HistoryFiles(m_folder.Path()).size(), static_cast<std::size_t>(session));
        if (session == 4)
            log.SetHisLogSessionLimit(true, 2);
    }
    EXPECT_EQ(HistoryFiles(m_folder.Path()).size(), 2U);
}

TEST_F(LogTest, KeepsTheFormerOnlineLogAside) {
    for (const char* text : {"first", "second"}) {
        Log log;
        ASSERT_TRUE(Open(log));
        log.Write(Log::KIND_INFORMATION, text);
    }
    EXPECT_EQ(Texts(Online()), std::vector<std::string>{"second"});
    EXPECT_EQ(Texts(m_folder.File("bacnet.old.log")), std::vector<std::string>{"first"});
}

TEST_F(LogTest, SwitchesTheFilesOffAndOn) {
    Log log;
    ASSERT_TRUE(Open(log));
    log.Write(Log::KIND_INFORMATION, "one");
    log.EnableLog(false);
    log.EnableHisLog(false);
    log.Write(Log::KIND_INFORMATION, "nowhere");
    log.EnableLog(true);
    log.EnableHisLog(true);
    log.Write(Log::KIND_INFORMATION, "two");
    EXPECT_EQ(Texts(Online()), std::vector<std::string>{"two"});
    EXPECT_EQ(Texts(History("bacnet-000001.001.log")), std::vector<std::string>{"one"});
    EXPECT_EQ(Texts(History("bacnet-000002.001.log")), std::vector<std::string>{"two"});
}

TEST_F(LogTest, GivesEveryLineToTheSinkWhateverTheLevel) {
    Log log;
    const auto sink = std::make_shared<RecordingSink>();
    log.SetSink(sink);
    log.SetLevel(Log::LEVEL_LOW_INFO);
    log.SetFilter(0);
    log.Write(Log::KIND_DEBUG, "a");
    log.Write(Log::KIND_INFORMATION, "b\n");
    log.Write(Log::KIND_ERROR, "c");
    log.SetSink(nullptr);
    log.Write(Log::KIND_ERROR, "d");
    EXPECT_EQ(sink->Lines, (std::vector<std::string>{"D a", "I b\n", "E c"}));
}

TEST_F(LogTest, SurvivesASinkThatLogs) {
    class Chatty : public Log::ISink {
    public:
        explicit Chatty(Log& log) : m_log(log) {}
        void OnLine(Log::KIND, const std::string&) override {
            ++Calls;
            m_log.Write(Log::KIND_INFORMATION, "from the sink");
        }
        int Calls = 0;

    private:
        Log& m_log;
    };
    Log log;
    ASSERT_TRUE(Open(log));
    const auto sink = std::make_shared<Chatty>(log);
    log.SetSink(sink);
    log.Write(Log::KIND_INFORMATION, "outer");
    log.SetSink(nullptr);
    EXPECT_EQ(sink->Calls, 1);
    EXPECT_EQ(Texts(Online()), (std::vector<std::string>{"from the sink", "outer"}));
}

TEST_F(LogTest, KeepsLinesOfManyThreadsWhole) {
    constexpr int threads = 8;
    constexpr int lines = 200;
    Log log;
    ASSERT_TRUE(Open(log));
    std::vector<std::thread> writers;
    for (int t = 0; t < threads; ++t)
        writers.emplace_back([&log, t] {
            for (int i = 0; i < lines; ++i)
                log.Write(Log::KIND_INFORMATION, "thread " + std::to_string(t) + " line " + std::to_string(i));
        });
    for (int i = 0; i < 50; ++i) { // setters of the log tab meanwhile
        log.SetSink(i % 2 == 0 ? std::make_shared<RecordingSink>() : nullptr);
        log.SetLevel(Log::LEVEL_INFO);
        log.SetHisLogSizeLimit(true, 10);
    }
    for (auto& writer : writers)
        writer.join();
    std::vector<int> next(threads, 0);
    const auto texts = Texts(Online());
    ASSERT_EQ(texts.size(), static_cast<std::size_t>(threads * lines));
    for (const std::string& text : texts) {
        int t = -1;
        int i = -1;
        ASSERT_EQ(std::sscanf(text.c_str(), "thread %d line %d", &t, &i), 2) << text;
        EXPECT_EQ(i, next.at(static_cast<std::size_t>(t))++) << "the lines of a thread keep their order";
    }
}

TEST(LogFunctionsTest, TakeDeviceTextAsAnArgumentOnly) {
    const auto sink = std::make_shared<RecordingSink>();
    CQilBAC_ErrLog::Instance().SetSink(sink);
    LogInf("Device %s found", "%n%s");
    LogErr("%u of %u", 1U, 2U);
    LogDebugInfo("%s", std::string(5000, 'z').c_str());
    CQilBAC_ErrLog::Instance().SetSink(nullptr);
    EXPECT_EQ(sink->Lines,
              (std::vector<std::string>{"I Device %n%s found", "E 1 of 2", "D " + std::string(5000, 'z')}));
}

} // namespace
