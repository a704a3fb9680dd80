#include "host/ControlProtocol.h"

#include <gtest/gtest.h>

namespace {

std::string WhyRefused(const std::string& line) {
    ControlRequest request;
    std::string error;
    EXPECT_FALSE(DecodeRequest(line, request, error)) << line;
    return error;
}

} // namespace

TEST(ControlProtocol, ARequestComesThroughAsItWas) {
    const ControlRequest sent{"tag set", {{"name", "A \"quoted\"\nname\\"}, {"value", "ü"}}};
    const std::string line = EncodeRequest(sent);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    ControlRequest received;
    std::string error;
    ASSERT_TRUE(DecodeRequest(line, received, error)) << error;
    EXPECT_EQ(received.command, sent.command);
    EXPECT_EQ(received.arguments, sent.arguments);
}

TEST(ControlProtocol, ARequestNeedsNoArguments) {
    ControlRequest received{"old", {{"a", "b"}}};
    std::string error;
    ASSERT_TRUE(DecodeRequest(R"({"command":"status"})", received, error)) << error;
    EXPECT_EQ(received.command, "status");
    EXPECT_TRUE(received.arguments.empty());
}

TEST(ControlProtocol, RefusesWhatIsNoRequest) {
    EXPECT_EQ(WhyRefused(""), "not JSON");
    EXPECT_EQ(WhyRefused("GET / HTTP/1.1"), "not JSON");
    EXPECT_EQ(WhyRefused("\xFF\xFE\x00"), "not JSON");
    EXPECT_EQ(WhyRefused("[]"), "not a JSON object");
    EXPECT_EQ(WhyRefused("{}"), "\"command\" is missing or not text");
    EXPECT_EQ(WhyRefused(R"({"command":3})"), "\"command\" is missing or not text");
    EXPECT_EQ(WhyRefused(R"({"command":"x","arguments":[]})"), "\"arguments\" is not an object");
    EXPECT_EQ(WhyRefused(R"({"command":"x","arguments":{"a":1}})"), "argument \"a\" is not text");
    EXPECT_EQ(WhyRefused("{\"command\":\"\xFF\"}"), "not JSON") << "text must be UTF-8";
}

TEST(ControlProtocol, RefusesDeepNestingWithoutRecursion) {
    EXPECT_EQ(WhyRefused("{\"a\":" + std::string(60000, '[')), "nested too deeply");
    EXPECT_EQ(WhyRefused("{\"a\":" + std::string(20000, '[') + std::string(20000, ']') + "}"), "nested too deeply");
}

TEST(ControlProtocol, ARequestCutAnywhereIsRefused) {
    const std::string line = EncodeRequest({"tag set", {{"name", "A"}, {"value", "1"}}});
    for (std::size_t cut = 0; cut + 2 < line.size(); ++cut)
        WhyRefused(line.substr(0, cut));
}

TEST(ControlProtocol, AReplyComesThroughAsItWas) {
    ControlLine line;
    std::string error;
    ASSERT_TRUE(DecodeLine(EncodeReply({EXIT_DONE, {}, R"({"running":true})"}), line, error)) << error;
    EXPECT_FALSE(line.isRow);
    EXPECT_EQ(line.reply.code, EXIT_DONE);
    EXPECT_EQ(line.reply.error, "");
    EXPECT_EQ(line.reply.result, R"({"running":true})");
    ASSERT_TRUE(DecodeLine(EncodeReply({EXIT_PARTLY, "two of three", {}}), line, error)) << error;
    EXPECT_EQ(line.reply.code, EXIT_PARTLY);
    EXPECT_EQ(line.reply.error, "two of three");
    EXPECT_EQ(line.reply.result, "");
    ASSERT_TRUE(DecodeLine(EncodeRow(R"([1,"x"])"), line, error)) << error;
    EXPECT_TRUE(line.isRow);
    EXPECT_EQ(line.row, R"([1,"x"])");
}

TEST(ControlProtocol, BytesThatAreNoTextDoNotStopAReply) {
    ControlLine line;
    std::string error;
    ASSERT_TRUE(DecodeLine(EncodeReply({EXIT_FAILED, "no such tag: \xC3\x28", {}}), line, error)) << error;
    EXPECT_EQ(line.reply.error, "no such tag: \xEF\xBF\xBD(");
    EXPECT_FALSE(DecodeLine("{}", line, error));
    EXPECT_FALSE(DecodeLine(R"({"code":"0"})", line, error));
}
