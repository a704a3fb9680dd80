#include "platform/kernel/users/UserFile.h"

#include "platform/kernel/users/Password.h"

#include <gtest/gtest.h>

namespace {

const PasswordCost CHEAP{8192, 1};

UserData Example() {
    UserData data = NewUserData();
    std::string hash;
    EXPECT_TRUE(HashPassword("a good password", CHEAP, hash));
    data.users["operator"] = {hash, {"administrator", "night shift"}};
    data.users["Jörg \"the\" tester"] = {hash, {}};
    data.failures[FailureKey(data, "operator")] = {3, 1'795'000'000};
    return data;
}

std::string FaultOf(const std::string& text) {
    UserData data;
    std::string error;
    EXPECT_FALSE(ParseUserFile(text, data, error));
    EXPECT_EQ(data, UserData());
    return error;
}

} // namespace

TEST(UserFile, GivesBackWhatWasWritten) {
    const UserData data = Example();
    UserData read;
    std::string error;
    ASSERT_TRUE(ParseUserFile(PrintUserFile(data), read, error)) << error;
    EXPECT_EQ(read, data);
}

TEST(UserFile, TellsEveryDamage) {
    const std::string good = PrintUserFile(Example());
    for (std::size_t size = 0; size < good.size(); ++size)
        EXPECT_NE(FaultOf(good.substr(0, size)), "") << size;
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string bad = good;
        bad[at] = static_cast<char>(bad[at] ^ 1);
        EXPECT_NE(FaultOf(bad), "") << at;
    }
    EXPECT_EQ(FaultOf("{}"), "is not a file of users");
    EXPECT_EQ(FaultOf("bdc-users 2 x\n{}"), "was written by another version of this program");
    EXPECT_EQ(FaultOf(good + " "), "is damaged: its checksum does not match");
}

TEST(UserFile, RefusesContentThatHasTheRightChecksumOnly) {
    const auto faultWith = [](auto change) {
        UserData data = Example();
        change(data);
        return FaultOf(PrintUserFile(data));
    };
    const std::string fault = "is damaged: it does not hold what it should";
    EXPECT_EQ(faultWith([](UserData& d) { d.salt = "00"; }), fault);
    EXPECT_EQ(faultWith([](UserData& d) { d.users["operator"].hash = "secret"; }), fault);
    EXPECT_EQ(faultWith([](UserData& d) { d.users["operator"].hash = "$argon2id$v=19$m=99999999,t=3,p=1$AA$AA"; }),
              fault)
        << "a hash that would take all memory";
    EXPECT_EQ(faultWith([](UserData& d) { d.users[std::string(88, 'x')] = d.users["operator"]; }), fault);
    EXPECT_EQ(faultWith([](UserData& d) { d.users["operator"].groups.insert("a\nb"); }), fault);
    EXPECT_EQ(faultWith([](UserData& d) { d.failures["operator"] = {}; }), fault);
}

TEST(UserFile, HoldsNoNameThatIsNoUsers) {
    UserData data = Example();
    data.failures[FailureKey(data, "my password by mistake")] = {1, 1};
    EXPECT_EQ(PrintUserFile(data).find("mistake"), std::string::npos);
    EXPECT_NE(FailureKey(data, "a"), FailureKey(data, "b"));
    EXPECT_NE(FailureKey(data, "a"), FailureKey(NewUserData(), "a")) << "files cannot be compared";
}

TEST(UserFile, NamesAreCleanUtf8) {
    for (const std::string name : {"a", "user", "Jörg", "a b", "日本"})
        EXPECT_TRUE(IsGoodName(name, USER_NAME_LIMIT)) << name;
    for (const std::string name : {"", " a", "a ", "a\tb", "a\x7F", "\xC2\x85", "\xFF", "\xC3"})
        EXPECT_FALSE(IsGoodName(name, USER_NAME_LIMIT)) << name;
    EXPECT_TRUE(IsGoodName(std::string(87, 'n'), USER_NAME_LIMIT));
    EXPECT_FALSE(IsGoodName(std::string(88, 'n'), USER_NAME_LIMIT));
}
