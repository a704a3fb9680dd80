#include "platform/kernel/users/UserStore.h"

#include "base/DurableFile.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <thread>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const PasswordCost CHEAP{8192, 1};
constexpr const char* PASSWORD = "correct horse";
constexpr std::uint64_t ANY_SIZE = 1U << 20;

class UserStore : public testing::Test {
protected:
    CUserStore Open(PasswordCost cost = CHEAP) {
        return CUserStore({m_path, cost, [this] { return m_now; }});
    }
    void AddOperator(CUserStore& store) {
        std::string error;
        ASSERT_TRUE(store.Add("operator", PASSWORD, error)) << error;
        ASSERT_TRUE(store.SetMember("operator", ADMINISTRATOR_GROUP, true, error)) << error;
    }
    std::string FileText() const {
        std::string text;
        EXPECT_EQ(ReadWholeFile(m_path, ANY_SIZE, text), FileRead::Ok);
        return text;
    }
    UserData Data() const {
        UserData data;
        std::string error;
        EXPECT_TRUE(ParseUserFile(FileText(), data, error)) << error;
        return data;
    }

    CTempFolder m_folder;
    std::string m_path = m_folder.File("users");
    std::int64_t m_now = 1'795'000'000;
};

} // namespace

TEST(PasswordCostOfProduction, IsWhatIsAskedForAtLeast) {
    EXPECT_GE(PasswordCost().memory, 64U << 20);
    EXPECT_GE(PasswordCost().passes, 3U);
    std::string hash;
    ASSERT_TRUE(HashPassword(PASSWORD, PasswordCost(), hash));
    EXPECT_THAT(hash, testing::StartsWith("$argon2id$v=19$m=65536,t=3,p=1$"));
    EXPECT_TRUE(IsPasswordHash(hash));
    EXPECT_TRUE(IsPasswordOf(hash, PASSWORD));
    EXPECT_FALSE(IsPasswordOf(hash, "correct hors"));
}

TEST_F(UserStore, HasNoUserAndNoPasswordByItself) {
    CUserStore store = Open();
    std::vector<UserInfo> users{{"x", {}}};
    std::string error;
    EXPECT_TRUE(store.List(users, error));
    EXPECT_EQ(users.size(), 0U);
    for (const char* name : {"", "user", "admin", "administrator", "root"}) {
        const LoginResult result = store.Login(name, "");
        EXPECT_EQ(result.outcome, LoginOutcome::NoUsers);
        EXPECT_THAT(result.text, HasSubstr("bdc user add"));
    }
    EXPECT_FALSE(store.IsMember("administrator", ADMINISTRATOR_GROUP));
    EXPECT_EQ(::access(m_path.c_str(), F_OK), -1) << "looking makes no file";
}

TEST_F(UserStore, KeepsUsersAndGroups) {
    std::string error;
    {
        CUserStore store = Open();
        AddOperator(store);
        ASSERT_TRUE(store.Add("guest", "another password", error)) << error;
        ASSERT_TRUE(store.SetMember("operator", "night shift", true, error)) << error;
    }
    CUserStore store = Open();
    std::vector<UserInfo> users;
    ASSERT_TRUE(store.List(users, error));
    ASSERT_EQ(users.size(), 2U);
    EXPECT_EQ(users[0].name, "guest");
    EXPECT_EQ(users[1].name, "operator");
    EXPECT_THAT(users[1].groups, ElementsAre("administrator", "night shift"));
    EXPECT_TRUE(store.IsMember("operator", ADMINISTRATOR_GROUP));
    EXPECT_FALSE(store.IsMember("guest", ADMINISTRATOR_GROUP));
    EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Ok);
    EXPECT_EQ(store.Login("Operator", PASSWORD).outcome, LoginOutcome::Refused);
    ASSERT_TRUE(store.SetMember("operator", "night shift", false, error));
    EXPECT_FALSE(store.IsMember("operator", "night shift"));
    ASSERT_TRUE(store.Remove("operator", error));
    EXPECT_FALSE(store.IsMember("operator", ADMINISTRATOR_GROUP));
    m_now += 10;
    EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Refused);
    struct stat status {};
    ASSERT_EQ(::stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_EQ(FileText().find(PASSWORD), std::string::npos);
}

TEST_F(UserStore, SaysWhatItCannotDo) {
    CUserStore store = Open();
    AddOperator(store);
    const std::string before = FileText();
    std::string error;
    EXPECT_FALSE(store.Add("operator", "other password", error));
    EXPECT_EQ(error, "there is a user \"operator\" already");
    EXPECT_FALSE(store.Add("new", "1234567", error));
    EXPECT_EQ(error, "a password has 8 to 1024 bytes");
    EXPECT_FALSE(store.Add("new", std::string(1025, 'x'), error));
    EXPECT_FALSE(store.Add(std::string(88, 'x'), PASSWORD, error));
    EXPECT_THAT(error, HasSubstr("1 to 87 bytes"));
    EXPECT_FALSE(store.SetPassword("nobody", PASSWORD, error));
    EXPECT_EQ(error, "there is no user \"nobody\"");
    EXPECT_FALSE(store.Remove("nobody", error));
    EXPECT_FALSE(store.SetMember("nobody", "group", true, error));
    EXPECT_FALSE(store.SetMember("operator", "", true, error));
    EXPECT_FALSE(store.SetMember("operator", "night shift", false, error));
    EXPECT_EQ(error, "\"operator\" is no member of \"night shift\"");
    EXPECT_EQ(FileText(), before);
}

TEST_F(UserStore, DelaysAfterFailuresAlsoInAnotherProcess) {
    {
        CUserStore store = Open();
        AddOperator(store);
        EXPECT_EQ(store.Login("operator", "wrong").outcome, LoginOutcome::Refused);
    }
    CUserStore store = Open();
    const LoginResult delayed = store.Login("operator", PASSWORD);
    EXPECT_EQ(delayed.outcome, LoginOutcome::Delayed);
    EXPECT_EQ(delayed.wait, 1);
    EXPECT_EQ(delayed.text, "A login has failed. Try again in 1 second.");
    m_now += 1;
    EXPECT_EQ(store.Login("operator", "wrong").outcome, LoginOutcome::Refused);
    EXPECT_EQ(store.Login("operator", PASSWORD).wait, 2);
    m_now += 2;
    EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Ok);
    EXPECT_EQ(store.Login("operator", "wrong").outcome, LoginOutcome::Refused);
    EXPECT_EQ(store.Login("operator", PASSWORD).wait, 1) << "a good login has forgotten the failures before it";
}

TEST_F(UserStore, DelaysUnknownNamesAlike) {
    CUserStore store = Open();
    AddOperator(store);
    const LoginResult known = store.Login("operator", "wrong");
    const LoginResult unknown = store.Login("nobody", "wrong");
    EXPECT_EQ(unknown.outcome, known.outcome);
    EXPECT_EQ(unknown.text, known.text);
    EXPECT_EQ(store.Login("nobody", "wrong").text, store.Login("operator", "wrong").text);
    EXPECT_EQ(FileText().find("nobody"), std::string::npos);
}

TEST_F(UserStore, ANewPasswordEndsTheDelay) {
    CUserStore store = Open();
    AddOperator(store);
    store.Login("operator", "wrong");
    std::string error;
    ASSERT_TRUE(store.SetPassword("operator", "a new password", error)) << error;
    EXPECT_EQ(store.Login("operator", "a new password").outcome, LoginOutcome::Ok);
    EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Refused);
}

TEST_F(UserStore, AClockThatIsSetBackLocksNobodyOut) {
    CUserStore store = Open();
    AddOperator(store);
    store.Login("operator", "wrong");
    m_now -= 10'000'000;
    EXPECT_EQ(store.Login("operator", PASSWORD).wait, 1);
    m_now += 1;
    EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Ok);
}

TEST_F(UserStore, AttemptsAtTheSameTimeGainNothing) {
    CUserStore store = Open({1U << 20, 1});
    AddOperator(store);
    std::atomic<int> refused{0};
    std::atomic<int> delayed{0};
    std::vector<std::thread> attackers;
    for (int i = 0; i < 8; ++i) {
        attackers.emplace_back([&] {
            const LoginOutcome outcome = store.Login("operator", "guess").outcome;
            (outcome == LoginOutcome::Refused ? refused : delayed) += 1;
        });
    }
    for (std::thread& attacker : attackers)
        attacker.join();
    EXPECT_EQ(refused, 1) << "one password was looked at";
    EXPECT_EQ(delayed, 7);
}

TEST_F(UserStore, KeepsNoEndlessListOfFailures) {
    CUserStore store = Open();
    AddOperator(store);
    store.Login("operator", "wrong");
    UserData data = Data();
    for (int i = 0; i < 1500; ++i)
        data.failures[FailureKey(data, "name" + std::to_string(i))] = {1, m_now + 1 + i};
    ASSERT_TRUE(ReplaceWholeFile(m_path, PrintUserFile(data), FileAccess::OwnerOnly));
    m_now += 2000;
    store.Login("other", "wrong");
    data = Data();
    EXPECT_EQ(data.failures.size(), 1000U);
    EXPECT_TRUE(data.failures.contains(FailureKey(data, "operator"))) << "the oldest, but a user's";
    EXPECT_TRUE(data.failures.contains(FailureKey(data, "other")));
    EXPECT_TRUE(data.failures.contains(FailureKey(data, "name1499")));
    EXPECT_FALSE(data.failures.contains(FailureKey(data, "name0")));
    m_now += LOGIN_FAILURES_FORGOTTEN;
    store.Login("operator", "wrong");
    EXPECT_EQ(Data().failures.size(), 1U);
}

TEST_F(UserStore, HashesAnewWhenTheCostHasRisen) {
    CUserStore cheap = Open();
    AddOperator(cheap);
    const std::string before = Data().users["operator"].hash;
    CUserStore dear = Open({16384, 2});
    EXPECT_EQ(dear.Login("operator", "wrong").outcome, LoginOutcome::Refused);
    EXPECT_EQ(Data().users["operator"].hash, before);
    m_now += 1;
    EXPECT_EQ(dear.Login("operator", PASSWORD).outcome, LoginOutcome::Ok);
    const std::string after = Data().users["operator"].hash;
    EXPECT_THAT(after, HasSubstr("m=16,t=2"));
    EXPECT_EQ(cheap.Login("operator", PASSWORD).outcome, LoginOutcome::Ok);
    EXPECT_EQ(Data().users["operator"].hash, after) << "never to a lower cost";
}

TEST_F(UserStore, ADamagedFileLetsNobodyInAndStaysAsItIs) {
    CUserStore store = Open();
    AddOperator(store);
    const std::string damaged = FileText() + "x";
    ASSERT_TRUE(ReplaceWholeFile(m_path, damaged, FileAccess::OwnerOnly));
    const LoginResult result = store.Login("operator", PASSWORD);
    EXPECT_EQ(result.outcome, LoginOutcome::Unusable);
    EXPECT_EQ(result.text, "Nobody can log in. " + m_path + ": is damaged: its checksum does not match");
    EXPECT_FALSE(store.IsMember("operator", ADMINISTRATOR_GROUP));
    std::string error;
    EXPECT_FALSE(store.Add("other", PASSWORD, error));
    EXPECT_FALSE(store.Remove("operator", error));
    std::vector<UserInfo> users;
    EXPECT_FALSE(store.List(users, error));
    EXPECT_EQ(FileText(), damaged);
}

TEST_F(UserStore, AFullDiskStillLetsUsersInAndStillDelays) {
    CUserStore store = Open();
    AddOperator(store);
    const std::string before = FileText();
    {
        const CFileSizeLimit full(0);
        EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Ok);
        EXPECT_EQ(store.Login("operator", "wrong").outcome, LoginOutcome::Refused);
        EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Delayed);
        m_now += 1;
        EXPECT_EQ(store.Login("operator", "wrong").outcome, LoginOutcome::Refused);
        EXPECT_EQ(store.Login("operator", PASSWORD).wait, 2);
        std::string error;
        EXPECT_FALSE(store.Add("other", PASSWORD, error));
        EXPECT_NE(error, "");
    }
    EXPECT_EQ(FileText(), before);
    m_now += 2;
    EXPECT_EQ(store.Login("operator", PASSWORD).outcome, LoginOutcome::Ok);
}

TEST_F(UserStore, ManyWritersLoseNothing) {
    constexpr int WRITERS = 8;
    constexpr int EACH = 5;
    std::vector<std::thread> writers;
    for (int w = 0; w < WRITERS; ++w) {
        writers.emplace_back([&, w] {
            CUserStore store = Open(); // as another process would
            for (int i = 0; i < EACH; ++i) {
                std::string error;
                EXPECT_TRUE(store.Add("user" + std::to_string(w) + "-" + std::to_string(i), PASSWORD, error)) << error;
            }
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(Data().users.size(), static_cast<std::size_t>(WRITERS * EACH));
}
