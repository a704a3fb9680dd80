#include "host/Render.h"

#include <gtest/gtest.h>

namespace {

class Render : public testing::Test {
protected:
    void SetUp() override {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }
    // What was printed: standard output, and standard error behind a bar.
    static std::string Printed() {
        const std::string out = testing::internal::GetCapturedStdout();
        const std::string err = testing::internal::GetCapturedStderr();
        return err.empty() ? out : out + "|" + err;
    }
};

} // namespace

TEST_F(Render, JsonIsOneDocument) {
    auto renderer = MakeJsonRenderer("tags");
    renderer->Row(R"({"tag":"A"})");
    renderer->Row(R"({"tag":"B"})");
    renderer->End({EXIT_DONE, {}, R"({"records":2})"});
    EXPECT_EQ(Printed(), "{\"tags\":[\n{\"tag\":\"A\"},\n{\"tag\":\"B\"}\n],\"records\":2}\n");
}

TEST_F(Render, JsonOfNoRowsIsAnEmptyList) {
    MakeJsonRenderer("tags")->End({EXIT_DONE, {}, R"({"records":0})"});
    EXPECT_EQ(Printed(), "{\"tags\":[],\"records\":0}\n");
}

TEST_F(Render, JsonTellsAFailureAtItsEnd) {
    auto renderer = MakeJsonRenderer("rows");
    renderer->Row("{}");
    renderer->End({EXIT_PARTLY, "disk", {}});
    EXPECT_EQ(Printed(), "{\"rows\":[\n{}\n],\"code\":3,\"error\":\"disk\"}\n");
}

TEST_F(Render, JsonOfAFailureAloneIsNoList) {
    MakeJsonRenderer("rows")->End({EXIT_FAILED, "no such tag: X", {}});
    EXPECT_EQ(Printed(), "{\"code\":1,\"error\":\"no such tag: X\"}\n");
}

TEST_F(Render, JsonLeavesProgressOut) {
    auto renderer = MakeJsonRenderer(nullptr);
    renderer->Row("{}");
    renderer->End({EXIT_DONE, {}, R"({"value":1.5})"});
    EXPECT_EQ(Printed(), "{\"value\":1.5}\n");
}

TEST_F(Render, CsvQuotesWhatNeedsIt) {
    auto renderer = MakeCsvRenderer({"time", "value"});
    renderer->Row(R"({"time":"2026-01-05T12:30:15.040+01:00","value":21.5})");
    renderer->Row(R"({"time":"T","value":"a \"b\", c\n"})");
    renderer->Row(R"({"time":"T","value":"plain"})");
    renderer->End({EXIT_DONE, {}, "{}"});
    EXPECT_EQ(Printed(), "time,value\r\n2026-01-05T12:30:15.040+01:00,21.5\r\nT,\"a \"\"b\"\", c\n\"\r\nT,plain\r\n");
}

TEST_F(Render, TextOfEachCommand) {
    MakeTextRenderer("tag get")->End({EXIT_DONE, {}, R"({"name":"A","value":21.5})"});
    MakeTextRenderer("history count")->End({EXIT_DONE, {}, R"({"tag":"A","records":7})"});
    MakeTextRenderer("history transfer")->End({EXIT_DONE, {}, R"({"started":true})"});
    EXPECT_EQ(Printed(), "21.5\n7\nstarted\n");
}

TEST_F(Render, TextOfAStatus) {
    MakeTextRenderer("status")->End(
        {EXIT_DONE,
         {},
         R"({"version":"1","process":7,"folder":"/x","seconds":3,"tags":2,"devices":1,)"
         R"("history":{"running":false,"lastTransferTime":"","errors":1,"lastError":"VFI"}})"});
    EXPECT_EQ(Printed(), "bdc 1, process 7, 3 s on /x\n2 tags, 1 devices known\nhistory transfer  not running\n"
                         "last transfer     never\nerrors            1, the last one: VFI\n");
}

TEST_F(Render, StatusHasALineForEachNetwork) {
    MakeTextRenderer("status")->End(
        {EXIT_DONE,
         {},
         R"({"version":"1","process":7,"folder":"/x","seconds":3,"tags":2,"devices":1,"networks":[)"
         R"({"number":0,"address":"10.0.0.1:47808","enabled":false},)"
         R"({"number":5,"address":"10.0.0.2:47808","toldNumber":6,"enabled":true,)"
         R"("foreign":{"bbmd":"10.1.1.1:47808","registration":"refused"}},)"
         R"({"number":7,"address":"10.0.0.3:47808","toldNumber":7,"enabled":true,)"
         R"("bbmd":{"table":[{},{}],"foreignDevices":[{}]}},3,{"bbmd":4,"foreign":[]}],)"
         R"("history":{"running":false,"lastTransferTime":"","errors":0,"lastError":""}})"});
    EXPECT_EQ(Printed(), "bdc 1, process 7, 3 s on /x\n2 tags, 1 devices known\n"
                         "network 0         10.0.0.1:47808, switched off\n"
                         "network 5         10.0.0.2:47808, number 6 by what others say, foreign device of "
                         "10.1.1.1:47808: refused\n"
                         "network 7         10.0.0.3:47808, BBMD of 2 with 1 foreign devices\n"
                         "network -         -, foreign device of -: -, BBMD of 0 with 0 foreign devices\n"
                         "history transfer  not running\nlast transfer     never\nerrors            0\n");
}

TEST_F(Render, TextOfAFailureGoesToStandardError) {
    MakeTextRenderer("tag get")->End({EXIT_FAILED, "no such tag: A\x1B[2J", {}});
    EXPECT_EQ(Printed(), "|bdc: no such tag: A\\x1B[2J\n");
}

TEST_F(Render, TextOfSeveralFaultsHasALineForEach) {
    MakeTextRenderer("status")->End({EXIT_FAILED, "a.toml:1:1: wrong\na.toml:2:1: wrong too", {}});
    EXPECT_EQ(Printed(), "|bdc: a.toml:1:1: wrong\nbdc: a.toml:2:1: wrong too\n");
}

TEST_F(Render, TextHasNoControlCharactersOfDevices) {
    auto renderer = MakeTextRenderer("history query");
    renderer->Row(R"({"time":"T","value":"bell\u0007 tab\t"})");
    EXPECT_EQ(Printed(), "T  bell\\x07 tab\\x09\n");
}

TEST_F(Render, AnAnswerOfAnotherKindDoesNotBreakIt) {
    for (const char* command :
         {"tag list", "tag get", "history count", "history query", "history transfer", "status"}) {
        auto renderer = MakeTextRenderer(command);
        renderer->Row("[1]");
        renderer->Row(R"({"time":{},"value":[],"history":3})");
        renderer->End({EXIT_DONE, {}, "null"});
        renderer->End({EXIT_DONE, {}, R"({"history":[]})"});
    }
    Printed();
}
