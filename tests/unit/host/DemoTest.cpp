// The demonstration as a process of its own: the main job on real datagrams, over restarts, growth and kills.
#include "tests/support/Loopback.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/host/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <csignal>
#include <thread>

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

class Demo : public testing::Test {
protected:
    Words Arguments(const Words& more) const {
        Words arguments{
            BdcPath(), "demo", "--headless", "--data", m_folder.Path(), "--port", std::to_string(m_addresses.Port())};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    // One run to its end; the summary.
    Json Once(const Words& more, int code = 0) {
        Words arguments = more;
        arguments.insert(arguments.end(), {"--once", "--json"});
        CProcess process(Arguments(arguments));
        EXPECT_EQ(process.Wait(std::chrono::seconds(100)), code) << process.Errors();
        return Json::parse(process.Output(), nullptr, false);
    }

    testing_support::LoopbackBlock m_addresses;
    CTempFolder m_folder;
};

} // namespace

TEST_F(Demo, StoresEveryRecordOnceAndNothingMoreTheSecondTime) {
    const Json first = Once({"--records", "250"});
    EXPECT_EQ(first["devicesFound"], 3);
    EXPECT_EQ(first["devicesExpected"], 3);
    EXPECT_EQ(first["errors"], 0) << first["lastError"];
    EXPECT_EQ(first["complete"], true);
    EXPECT_GT(first["expected"], 3 * 5 * 200);
    EXPECT_EQ(first["stored"], first["expected"]);
    EXPECT_EQ(first["new"], first["expected"]);
    for (const Json& tag : first["tags"])
        EXPECT_EQ(tag["stored"], tag["expected"]) << tag["tag"];

    const Json second = Once({});
    EXPECT_EQ(second["new"], 0);
    EXPECT_EQ(second["stored"], first["stored"]);
    EXPECT_EQ(second["complete"], true);
}

TEST_F(Demo, StoresExactlyWhatWasAddedWhenTheSiteGrows) {
    const Json first = Once({"--devices", "1", "--trends", "1", "--records", "120"});
    const Json more = Once({"--records", "260"});
    EXPECT_EQ(more["complete"], true);
    EXPECT_EQ(more["new"], more["expected"].get<int>() - first["expected"].get<int>());
    EXPECT_GT(more["new"], 0);

    const Json larger = Once({"--devices", "4", "--trends", "3"});
    EXPECT_EQ(larger["complete"], true);
    EXPECT_EQ(larger["devicesFound"], 4);
    EXPECT_EQ(larger["new"], larger["expected"].get<int>() - more["expected"].get<int>());

    const Json smaller = Once({"--devices", "1", "--records", "10"});
    EXPECT_EQ(smaller["complete"], true) << "the site only grows";
    EXPECT_EQ(smaller["new"], 0);
    EXPECT_EQ(smaller["expected"], larger["expected"]);
}

TEST_F(Demo, LosesNoRecordToKills) {
    for (const int milliseconds : {150, 300, 450, 600, 800}) {
        CProcess process(Arguments({"--records", "4000", "--once"}));
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        process.Signal(SIGKILL);
        process.Wait();
    }
    const Json last = Once({"--records", "4000"});
    EXPECT_EQ(last["stored"], last["expected"]);
    EXPECT_EQ(last["complete"], true);
    EXPECT_EQ(Once({})["new"], 0);
}

TEST_F(Demo, RunsOnUntilASignalAndAnswersCommandsMeanwhile) {
    CProcess demo(Arguments({"--trends", "2"}));
    ASSERT_TRUE(demo.WaitForOutput("The site runs until a signal ends it.")) << demo.Errors();
    EXPECT_THAT(demo.Output(), testing::HasSubstr("3 of 3 devices answer Who-Is"));
    EXPECT_THAT(demo.Output(), testing::HasSubstr(": complete\n"));
    const auto ask = [&](Words words) {
        words.insert(words.end(), {"--data", m_folder.Path(), "--json"});
        return Json::parse(RunBdc(words).output, nullptr, false);
    };
    const Json status = ask({"status"});
    EXPECT_EQ(status["devices"], 3);
    EXPECT_EQ(status["history"]["running"], false);
    EXPECT_EQ(status["history"]["current"], 6);
    EXPECT_EQ(status["history"]["percent"], 100);

    const Json count = ask({"history", "count", "1000 Temperature 1"});
    EXPECT_GT(count["records"], 200);
    const Json rows = ask({"history", "query", "1000 Temperature 1"});
    EXPECT_EQ(rows["records"], count["records"]);
    EXPECT_EQ(rows["rows"].size(), count["records"]);
    const Json part = ask({"history", "query", "1000 Temperature 1", "--from",
                           "@" + std::to_string(rows["rows"][10]["seconds"].get<int>()), "--to",
                           "@" + std::to_string(rows["rows"][19]["seconds"].get<int>())});
    EXPECT_EQ(part["records"], 10);

    const Json one = ask({"history", "transfer", "1001", "trend-log", "1", "--wait"});
    EXPECT_EQ(one["errors"], 0) << one["lastError"];
    EXPECT_EQ(ask({"tag", "set", "Flush trend logs", "1"})["value"], 1.0);

    demo.Signal(SIGINT);
    EXPECT_EQ(demo.Wait(), 0) << demo.Errors();
}

TEST_F(Demo, EndsSoonOnASignalInTheMiddleOfATransfer) {
    CProcess demo(Arguments({"--records", "100000"}));
    ASSERT_TRUE(demo.WaitForOutput("goes from 0 to 1"));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const auto begin = std::chrono::steady_clock::now();
    demo.Signal(SIGTERM);
    EXPECT_EQ(demo.Wait(), 3);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(Demo, RefusesAPortThatIsTaken) {
    CProcess first(Arguments({}));
    ASSERT_TRUE(first.WaitForOutput("The site runs until"));
    const CTempFolder other;
    CProcess second(
        {BdcPath(), "demo", "--once", "--data", other.Path(), "--port", std::to_string(m_addresses.Port())});
    EXPECT_EQ(second.Wait(), 1);
    EXPECT_EQ(second.Errors(), "bdc: UDP port " + std::to_string(m_addresses.Port()) + " is in use\n");
}
