#include "host/Files.h"
#include "host/DataFolder.h"
#include "host/LockFile.h"
#include "tests/unit/host/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

TEST(Files, WriteReplacesTheWholeFileAndLeavesNoTemporary) {
    const CTempFolder folder;
    std::string error;
    ASSERT_TRUE(WriteFileDurably(folder.File("a"), "a longer first text", error)) << error;
    ASSERT_TRUE(WriteFileDurably(folder.File("a"), "short", error)) << error;
    EXPECT_EQ(folder.Get("a"), "short");
    EXPECT_FALSE(folder.Has("a.new"));
    struct stat status {};
    ASSERT_EQ(stat(folder.File("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST(Files, AFailedWriteLeavesTheOldFile) {
    const CTempFolder folder;
    folder.Put("a", "old");
    std::filesystem::create_symlink("/dev/full", folder.File("a.new"));
    std::string error;
    EXPECT_FALSE(WriteFileDurably(folder.File("a"), "new", error));
    EXPECT_EQ(error, folder.File("a.new") + ": cannot be written: No space left on device");
    EXPECT_EQ(folder.Get("a"), "old");
    EXPECT_FALSE(WriteFileDurably(folder.File("missing/a"), "new", error));
}

TEST(Files, ReadRefusesWhatIsNoFileOrTooLarge) {
    const CTempFolder folder;
    folder.Put("a", std::string("ab\0c", 4));
    std::string text;
    std::string error;
    ASSERT_TRUE(ReadFile(folder.File("a"), 4, text, error));
    EXPECT_EQ(text, std::string("ab\0c", 4));
    EXPECT_FALSE(ReadFile(folder.File("a"), 3, text, error));
    EXPECT_EQ(error, folder.File("a") + ": is larger than 3 bytes");
    EXPECT_EQ(text.size(), 4U) << "a failed read leaves the text alone";
    ASSERT_EQ(mkfifo(folder.File("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(ReadFile(folder.File("pipe"), 4, text, error)) << "and does not wait for a writer";
    EXPECT_FALSE(ReadFile(folder.Path(), 4, text, error));
}

TEST(DataFolder, IsMadeWithItsParentsForTheUserOnly) {
    const CTempFolder folder;
    std::string error;
    ASSERT_TRUE(EnsureFolder(folder.File("a/b/c"), error)) << error;
    ASSERT_TRUE(EnsureFolder(folder.File("a/b/c"), error)) << error;
    struct stat status {};
    ASSERT_EQ(stat(folder.File("a/b/c").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
    folder.Put("file", "");
    EXPECT_FALSE(EnsureFolder(folder.File("file"), error));
    EXPECT_EQ(error, folder.File("file") + ": is not a folder");
    EXPECT_FALSE(EnsureFolder(folder.File("file/x"), error));
}

TEST(LockFile, HoldsTheProcessNumberAndComesFreeWithItsOwner) {
    const CTempFolder folder;
    std::string error;
    {
        CLockFile lock;
        ASSERT_TRUE(lock.Acquire(folder.File("lock"), error)) << error;
        EXPECT_TRUE(lock.IsHeld());
        EXPECT_EQ(folder.Get("lock"), std::to_string(getpid()) + "\n");
    }
    CLockFile next;
    EXPECT_TRUE(next.Acquire(folder.File("lock"), error)) << error;
}

TEST(LockFile, RefusesASecondOwnerAtOnceAndNamesTheFirst) {
    const CTempFolder folder;
    std::string error;
    CLockFile first;
    ASSERT_TRUE(first.Acquire(folder.File("lock"), error)) << error;
    CLockFile second;
    EXPECT_FALSE(second.Acquire(folder.File("lock"), error));
    EXPECT_EQ(error, folder.File("lock") + ": another instance is running (process " + std::to_string(getpid()) + ")");
    EXPECT_FALSE(second.IsHeld());
    EXPECT_EQ(folder.Get("lock"), std::to_string(getpid()) + "\n") << "the refused one has touched the file";
}

TEST(LockFile, SurvivesWhatAnotherOwnerWroteIntoIt) {
    const CTempFolder folder;
    folder.Put("lock", "\xFF\xFEgarbage that is longer than a number");
    std::string error;
    CLockFile first;
    ASSERT_TRUE(first.Acquire(folder.File("lock"), error)) << error;
    folder.Put("lock", "");
    CLockFile second;
    EXPECT_FALSE(second.Acquire(folder.File("lock"), error));
    EXPECT_EQ(error, folder.File("lock") + ": another instance is running");
}

TEST(LockFile, ComesFreeWhenItsProcessIsKilled) {
    const CTempFolder folder;
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        CLockFile lock;
        std::string error;
        const char result = lock.Acquire(folder.File("lock"), error) ? 'y' : 'n';
        if (write(ready[1], &result, 1) == 1)
            pause();
        _exit(0);
    }
    char result = 0;
    ASSERT_EQ(read(ready[0], &result, 1), 1);
    EXPECT_EQ(result, 'y');
    std::string error;
    CLockFile lock;
    EXPECT_FALSE(lock.Acquire(folder.File("lock"), error));
    EXPECT_NE(error.find("process " + std::to_string(child)), std::string::npos) << error;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(lock.Acquire(folder.File("lock"), error)) << error;
    close(ready[0]);
    close(ready[1]);
}
