#include "module/history/ProfileFile.h"

#include "tests/unit/history/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>
#include <vector>

namespace {

class ProfileFile : public testing::Test {
protected:
    std::string Stored() const { return ReadBytes(path); }
    void Store(const std::string& bytes) { WriteBytes(path, bytes); }
    std::string Read(const std::string& section, const std::string& key) const { return file.Read(section, key); }
    bool Write(const std::string& section, const std::string& key, const std::string& value) {
        return file.Write(section, key, value);
    }

    TemporaryFolder folder;
    const std::string path = folder.GetFile("state.ini");
    CProfileFile file{path, "Names"};
};

TEST_F(ProfileFile, ReadsNothingFromAMissingFile) {
    EXPECT_EQ(Read("A", "k"), "");
    EXPECT_EQ(Stored(), "");
}

TEST_F(ProfileFile, CreatesFileSectionAndKey) {
    EXPECT_TRUE(Write("A", "k", "1"));
    EXPECT_EQ(Stored(), "[A]\r\nk=1\r\n");
    EXPECT_TRUE(Write("A", "l", "2"));
    EXPECT_TRUE(Write("B", "k", "3"));
    EXPECT_EQ(Stored(), "[A]\r\nk=1\r\nl=2\r\n[B]\r\nk=3\r\n");
    EXPECT_EQ(Read("A", "k"), "1");
    EXPECT_EQ(Read("B", "k"), "3");
}

TEST_F(ProfileFile, ReadsBothLineEndsBlanksQuotesAndAnyCase) {
    Store("[ Sec One ]\nkey a = 1 \r\n\tKeyB\t=\t\"two \"\nc='x'\nd=\"\ne=it's\nf\n = g\nlast=9");
    EXPECT_EQ(Read("sec ONE", "KEY A"), "1");
    EXPECT_EQ(Read("Sec One", "keyb"), "two ");
    EXPECT_EQ(Read("Sec One", "c"), "x");
    EXPECT_EQ(Read("Sec One", "d"), "\"");
    EXPECT_EQ(Read("Sec One", "e"), "it's");
    EXPECT_EQ(Read("Sec One", "f"), "");
    EXPECT_EQ(Read("Sec One", ""), "g");
    EXPECT_EQ(Read("Sec One", "last"), "9");
}

TEST_F(ProfileFile, ChangesOneLineAndKeepsEveryOtherByte) {
    const std::string before = "\xEF\xBB\xBFno section yet\n; note = 1\r\n[Other]\nKey=caf\xE9\n\n[A]\n;k=0\nK \t= old";
    const std::string after = "\r\nj=5\n\n\n[Empty]\r\n\r\n[a]\nk=second\n[unclosed\nk=1";
    Store(before + after);
    EXPECT_EQ(Read("A", "k"), "old");
    EXPECT_TRUE(Write("a", "k", "new"));
    EXPECT_EQ(Stored(), before.substr(0, before.size() - 4) + "new" + after);
    EXPECT_EQ(Read("unclosed", "k"), "1");
}

TEST_F(ProfileFile, AppendsBehindTheLastLineOfTheFirstSectionOfThatName) {
    Store("[A]\nk=1\n\n\n[B]\nb=2\n[A]\nz=3");
    EXPECT_TRUE(Write("A", "z", "9"));
    EXPECT_TRUE(Write("B", "c", "8"));
    EXPECT_EQ(Stored(), "[A]\nk=1\nz=9\r\n\n\n[B]\nb=2\nc=8\r\n[A]\nz=3");
}

TEST_F(ProfileFile, EndsAnUnendedLineBeforeItAppends) {
    Store("[A]\nk=1");
    EXPECT_TRUE(Write("A", "l", "2"));
    EXPECT_EQ(Stored(), "[A]\nk=1\r\nl=2\r\n");
    Store("[A]");
    EXPECT_TRUE(Write("B", "l", "2"));
    EXPECT_EQ(Stored(), "[A]\r\n[B]\r\nl=2\r\n");
}

TEST_F(ProfileFile, KeepsAByteOrderMarkInFrontOfTheFirstSection) {
    Store("\xEF\xBB\xBF[A]\r\nk=1\r\n");
    EXPECT_EQ(Read("A", "k"), "1");
    EXPECT_TRUE(Write("A", "k", "2"));
    EXPECT_EQ(Stored(), "\xEF\xBB\xBF[A]\r\nk=2\r\n");
}

TEST_F(ProfileFile, KeepsNamesThatLookLikeSomethingElse) {
    const std::vector<std::string> names{
        "AHU 1 Temp", "a=b", "a=", "=a",       "=",         "",      "[x",        "[x]",    "[Names]", "[Other]",
        "[a=b]",      "[=",  ";y", ";y=z",     ";",         "[",     "100%s%n",   "'q'",    "\"q\"",   "caf\xC3\xA9",
        "tab\there",  "#",   "//", "\xE9\xFF", "[x] ; a=b", "Names", "Other.Key", " [lead", "x;y",     "\\"};
    Store("[First]\r\nf=1\r\n");
    for (std::size_t i = 0; i < names.size(); ++i)
        ASSERT_TRUE(Write("Names", names[i], std::to_string(i))) << names[i];
    ASSERT_TRUE(Write("Other", "Key", "o"));
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(Read("Names", names[i]), std::to_string(i)) << names[i];
    EXPECT_EQ(Read("Other", "Key"), "o");
    EXPECT_EQ(Read("First", "f"), "1");

    // Writing all of them again changes values only.
    for (std::size_t i = 0; i < names.size(); ++i)
        ASSERT_TRUE(Write("Names", names[i], std::to_string(i + 100))) << names[i];
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(Read("Names", names[i]), std::to_string(i + 100)) << names[i];
    const std::string stored = Stored();
    EXPECT_EQ(std::count(stored.begin(), stored.end(), '\n'), static_cast<long>(names.size()) + 5);
}

TEST_F(ProfileFile, TurnsALineBreakInANameIntoABlank) {
    EXPECT_TRUE(Write("Names", "a\nb\r\nc\rd", "1"));
    EXPECT_EQ(Stored(), "[Names]\r\na b c d=1\r\n");
    EXPECT_EQ(Read("Names", "a\nb\r\nc\rd"), "1");
    EXPECT_EQ(Read("Names", "a b c d"), "1");
}

TEST_F(ProfileFile, DoesNotTakeACommentForAName) {
    Store("[Names]\n; y = 1\n;z=2\n");
    EXPECT_EQ(Read("Names", "y"), "");
    EXPECT_EQ(Read("Names", "; y"), "");
    EXPECT_EQ(Read("Names", ";z"), "2");
    EXPECT_TRUE(Write("Names", "; y", "5"));
    EXPECT_EQ(Stored(), "[Names]\n; y = 1\n;z=2\n; y=5\r\n");
}

TEST_F(ProfileFile, SplitsOtherSectionsAtTheFirstEqualSign) {
    Store("[A]\nk=1=2\n");
    EXPECT_EQ(Read("A", "k"), "1=2");
    EXPECT_EQ(Read("A", "k=1"), "");
}

TEST_F(ProfileFile, ReadsAndChangesAFileWithALineOfTenMegabytes) {
    const std::string longName(10U << 20, 'x');
    Store("[Names]\r\nk=1\r\n" + longName + "=2\r\n");
    EXPECT_EQ(Read("Names", longName), "2");
    EXPECT_TRUE(Write("Names", longName, "3"));
    EXPECT_TRUE(Write("Names", "k", "4"));
    EXPECT_EQ(Stored(), "[Names]\r\nk=4\r\n" + longName + "=3\r\n");
}

TEST_F(ProfileFile, NeitherReadsNorWritesAFileBeyondItsLimit) {
    Store("[Names]\r\nk=1\r\n");
    ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(CProfileFile::MAX_FILE_SIZE) + 1), 0);
    EXPECT_EQ(Read("Names", "k"), "");
    EXPECT_FALSE(Write("Names", "k", "2"));
    EXPECT_EQ(std::filesystem::file_size(path), CProfileFile::MAX_FILE_SIZE + 1);
}

TEST_F(ProfileFile, SurvivesACutAtEveryByte) {
    const std::string whole = "[Other]\r\nKey=1\r\n[Names]\r\n;c\r\na=b=22\r\n[x=33\r\n";
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        Store(whole.substr(0, cut));
        Read("Names", "a=b");
        Read("Other", "Key");
        ASSERT_TRUE(Write("Names", "new", "9")) << cut;
        EXPECT_EQ(Read("Names", "new"), "9") << cut;
        std::string rest = Stored();
        const std::string added = "new=9\r\n";
        rest.erase(rest.find(added), added.size());
        EXPECT_EQ(rest.substr(0, cut), whole.substr(0, cut)) << cut;
    }
}

TEST_F(ProfileFile, IsNotAFolderOrAPipe) {
    ASSERT_EQ(::mkdir(path.c_str(), 0777), 0);
    EXPECT_EQ(Read("A", "k"), "");
    EXPECT_FALSE(Write("A", "k", "1"));
    EXPECT_TRUE(std::filesystem::is_directory(path));

    const std::string pipe = folder.GetFile("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0666), 0);
    const CProfileFile other(pipe);
    EXPECT_EQ(other.Read("A", "k"), "");
    EXPECT_FALSE(other.Write("A", "k", "1"));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(ProfileFile, CannotWriteIntoAMissingFolder) {
    EXPECT_FALSE(CProfileFile(folder.GetFile("no/such/state.ini")).Write("A", "k", "1"));
    EXPECT_FALSE(std::filesystem::exists(folder.GetFile("no")));
}

TEST_F(ProfileFile, KeepsItsPermissionsAndFollowsALink) {
    const std::string target = folder.GetFile("target.ini");
    WriteBytes(target, "[A]\r\nk=1\r\n");
    ASSERT_EQ(::chmod(target.c_str(), 0600), 0);
    ASSERT_EQ(::symlink("target.ini", path.c_str()), 0);
    EXPECT_TRUE(Write("A", "k", "2"));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(ReadBytes(target), "[A]\r\nk=2\r\n");
    struct stat status {};
    ASSERT_EQ(::stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(ProfileFile, StandsAsItWasWhenTheDiskIsFull) {
    const std::string before = "[Names]\r\nk=1\r\n" + std::string(8000, 'x') + "=2\r\n";
    Store(before);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::_exit(Write("Names", "k", "3") ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(Stored(), before);
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));
    EXPECT_TRUE(Write("Names", "k", "3"));
}

// The old or the new text stands whole at every moment, and a temporary file that was left behind is in nobody's way.
TEST_F(ProfileFile, IsWholeAfterAKillAtAnyMoment) {
    const std::string filler(3000, 'f');
    ASSERT_TRUE(Write("Names", "k", "0"));
    ASSERT_TRUE(Write("Names", filler, "1"));
    const std::string rest = "\r\n" + filler + "=1\r\n";
    for (int round = 0; round < 25; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (unsigned i = 0;; ++i)
                Write("Names", "k", std::to_string(i));
        }
        std::this_thread::sleep_for(std::chrono::microseconds(300 + 777 * round));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);

        const std::string stored = Stored();
        ASSERT_EQ(stored.rfind("[Names]\r\nk=", 0), 0U);
        ASSERT_GE(stored.size(), rest.size());
        ASSERT_EQ(stored.substr(stored.size() - rest.size()), rest);
        const std::string value = Read("Names", "k");
        ASSERT_FALSE(value.empty());
        ASSERT_EQ(value.find_first_not_of("0123456789"), std::string::npos);
        ASSERT_TRUE(Write("Names", "k", "0"));
    }
}

TEST_F(ProfileFile, LosesNoKeyOfSeveralWriters) {
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer)
        writers.emplace_back([&, writer] {
            for (int i = 0; i < 10; ++i)
                file.Write("Names", "k" + std::to_string(writer) + "." + std::to_string(i), "1");
        });
    for (std::thread& writer : writers)
        writer.join();
    const std::string stored = Stored();
    EXPECT_EQ(std::count(stored.begin(), stored.end(), '='), 40);
}

} // namespace
