#include "host/DataFolder.h"
#include "host/LockFile.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

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

TEST(DataFolder, TellsWhyAFileOfItWasNotAccepted) {
    const CTempFolder folder;
    folder.Put("directory.dat", "garbage");
    EXPECT_EQ(UnacceptedFile(folder.File("directory.dat")),
              folder.File("directory.dat") + ": is damaged, and no earlier generation is whole: move it away");
    EXPECT_EQ(UnacceptedFile(folder.File("gone")), folder.File("gone") + ": cannot be read: No such file or directory");
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
