#include "base/DurableFile.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

unsigned ModeOf(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

std::size_t FilesIn(const CTempFolder& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()));
}

} // namespace

TEST(ReadWholeFile, GivesEveryByte) {
    const CTempFolder folder;
    const std::string bytes = std::string("ab\0c", 4) + std::string(200000, 'x');
    folder.Put("a", bytes);
    folder.Put("empty", "");
    std::string text = "former";
    EXPECT_EQ(ReadWholeFile(folder.File("a"), bytes.size(), text), FileRead::Ok);
    EXPECT_EQ(text, bytes);
    EXPECT_EQ(ReadWholeFile(folder.File("empty"), 0, text), FileRead::Ok);
    EXPECT_EQ(text, "");
}

TEST(ReadWholeFile, TellsAMissingFileFromOneThatCannotBeRead) {
    const CTempFolder folder;
    std::string text = "former";
    std::string error;
    EXPECT_EQ(ReadWholeFile(folder.File("none"), 10, text, &error), FileRead::Missing);
    EXPECT_EQ(error, folder.File("none") + ": cannot be opened: No such file or directory");
    EXPECT_EQ(ReadWholeFile(folder.Path(), 10, text, &error), FileRead::Failed);
    EXPECT_EQ(error, folder.Path() + ": is not a regular file");
    ASSERT_EQ(mkfifo(folder.File("pipe").c_str(), 0600), 0);
    EXPECT_EQ(ReadWholeFile(folder.File("pipe"), 10, text, &error), FileRead::Failed) << "and waits for no writer";
    folder.Put("file", "");
    EXPECT_EQ(ReadWholeFile(folder.File("file/x"), 10, text, &error), FileRead::Failed);
    EXPECT_EQ(text, "former");
}

TEST(ReadWholeFile, RefusesWhatIsLongerThanTheLimit) {
    const CTempFolder folder;
    folder.Put("a", "abcd");
    std::string text;
    std::string error;
    EXPECT_EQ(ReadWholeFile(folder.File("a"), 4, text, &error), FileRead::Ok);
    EXPECT_EQ(ReadWholeFile(folder.File("a"), 3, text, &error), FileRead::Failed);
    EXPECT_EQ(error, folder.File("a") + ": is larger than 3 bytes");
    EXPECT_EQ(text, "abcd");
}

// The kernel's own files say that their size is 0.
TEST(ReadWholeFile, DoesNotTrustTheSizeThatTheSystemStates) {
    std::string text;
    ASSERT_EQ(ReadWholeFile("/proc/self/status", 1 << 20, text), FileRead::Ok);
    EXPECT_NE(text.find("\nPid:\t" + std::to_string(getpid()) + "\n"), std::string::npos);
    std::string error;
    EXPECT_EQ(ReadWholeFile("/proc/self/status", 100, text, &error), FileRead::Failed);
    EXPECT_EQ(error, "/proc/self/status: is larger than 100 bytes");
}

TEST(ReplaceWholeFile, LeavesTheNewTextAndNoTemporary) {
    const CTempFolder folder;
    std::string error;
    ASSERT_TRUE(ReplaceWholeFile(folder.File("a"), "a longer first text", FileAccess::OwnerOnly, &error)) << error;
    ASSERT_TRUE(ReplaceWholeFile(folder.File("a"), "short", FileAccess::OwnerOnly, &error)) << error;
    EXPECT_EQ(folder.Get("a"), "short");
    EXPECT_EQ(FilesIn(folder), 1U);
}

TEST(ReplaceWholeFile, OwnerOnlyCountsWhateverWasThereBefore) {
    const CTempFolder folder;
    folder.Put("a", "old");
    folder.Put("a.tmp", "left behind");
    ASSERT_EQ(chmod(folder.File("a").c_str(), 0644), 0);
    ASSERT_EQ(chmod(folder.File("a.tmp").c_str(), 0644), 0);
    ASSERT_TRUE(ReplaceWholeFile(folder.File("a"), "new", FileAccess::OwnerOnly));
    EXPECT_EQ(ModeOf(folder.File("a")), 0600U);
}

TEST(ReplaceWholeFile, AsBeforeKeepsTheModeOfTheFileAndHeedsTheMaskForANewOne) {
    const CTempFolder folder;
    folder.Put("a", "old");
    ASSERT_EQ(chmod(folder.File("a").c_str(), 0640), 0);
    ASSERT_TRUE(ReplaceWholeFile(folder.File("a"), "new", FileAccess::AsBefore));
    EXPECT_EQ(ModeOf(folder.File("a")), 0640U);
    const mode_t former = umask(0027);
    EXPECT_TRUE(ReplaceWholeFile(folder.File("b"), "new", FileAccess::AsBefore));
    umask(former);
    EXPECT_EQ(ModeOf(folder.File("b")), 0640U);
}

TEST(ReplaceWholeFile, ReplacesTheFileThatALinkNames) {
    const CTempFolder folder;
    fs::create_directory(folder.File("elsewhere"));
    folder.Put("elsewhere/real", "old");
    fs::create_symlink("elsewhere/real", folder.File("link"));
    ASSERT_TRUE(ReplaceWholeFile(folder.File("link"), "new", FileAccess::AsBefore));
    EXPECT_TRUE(fs::is_symlink(folder.File("link")));
    EXPECT_EQ(folder.Get("elsewhere/real"), "new");
}

TEST(ReplaceWholeFile, AFullDiskLeavesTheFormerFile) {
    const CTempFolder folder;
    folder.Put("a", "old");
    fs::create_symlink("/dev/full", folder.File("a.tmp"));
    const unsigned mode = ModeOf("/dev/full");
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(folder.File("a"), "new", FileAccess::OwnerOnly, &error));
    EXPECT_EQ(error, folder.File("a.tmp") + ": cannot be written: No space left on device");
    EXPECT_EQ(folder.Get("a"), "old");
    EXPECT_EQ(FilesIn(folder), 1U) << "the temporary file is gone";
    EXPECT_EQ(ModeOf("/dev/full"), mode) << "what is no file keeps its mode";
}

TEST(ReplaceWholeFile, AWriteThatStopsHalfwayLeavesTheFormerFile) {
    const CTempFolder folder;
    folder.Put("a", "old");
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(ReplaceWholeFile(folder.File("a"), std::string(10000, 'x'), FileAccess::AsBefore) ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(folder.Get("a"), "old");
    EXPECT_EQ(FilesIn(folder), 1U);
}

TEST(ReplaceWholeFile, RefusesAMissingFolderAndWhatIsNoFile) {
    const CTempFolder folder;
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(folder.File("missing/a"), "new", FileAccess::AsBefore, &error));
    EXPECT_EQ(error, folder.File("missing/a.tmp") + ": cannot be made: No such file or directory");
    fs::create_directory(folder.File("b"));
    EXPECT_FALSE(ReplaceWholeFile(folder.File("b"), "new", FileAccess::AsBefore, &error));
    EXPECT_EQ(error, folder.File("b") + ": is not a regular file");
    EXPECT_FALSE(ReplaceWholeFile(folder.File("b"), "new", FileAccess::AsBefore)) << "also without an error text";
    EXPECT_EQ(FilesIn(folder), 1U);
}

TEST(FileReplacement, LeavesTheFormerFileWithoutACommit) {
    const CTempFolder folder;
    folder.Put("a", "old");
    {
        CFileReplacement file(folder.File("a"), FileAccess::AsBefore);
        file.Write("n");
        file.Write("ew");
        EXPECT_TRUE(file.Finish());
        EXPECT_EQ(folder.Get("a"), "old");
        EXPECT_EQ(folder.Get("a.tmp"), "new");
    }
    EXPECT_EQ(folder.Get("a"), "old");
    EXPECT_EQ(FilesIn(folder), 1U);
}

TEST(FileReplacement, ARefusedRenameLeavesTheFormerFile) {
    const CTempFolder folder;
    CFileReplacement file(folder.File("a"), FileAccess::AsBefore);
    file.Write("new");
    ASSERT_TRUE(file.Finish());
    fs::create_directory(folder.File("a")); // meanwhile
    std::string error;
    EXPECT_FALSE(file.Commit(&error));
    EXPECT_EQ(error, folder.File("a") + ": cannot be replaced: Is a directory");
    EXPECT_FALSE(file.Commit()) << "and stays refused";
    EXPECT_TRUE(fs::is_directory(folder.File("a")));
}

TEST(PutInPlace, LeavesBothFilesWhereTheRenameIsRefused) {
    const CTempFolder folder;
    folder.Put("fresh", "new");
    folder.Put("a", "old");
    fs::create_directory(folder.File("b"));
    std::string error;
    EXPECT_FALSE(PutInPlace(folder.File("fresh"), folder.File("b"), &error));
    EXPECT_EQ(error, folder.File("b") + ": cannot be replaced: Is a directory");
    EXPECT_EQ(folder.Get("fresh"), "new");
    ASSERT_TRUE(MakeDurable(folder.File("fresh"), &error)) << error;
    ASSERT_TRUE(PutInPlace(folder.File("fresh"), folder.File("a"), &error)) << error;
    EXPECT_EQ(folder.Get("a"), "new");
    EXPECT_FALSE(MakeDurable(folder.File("fresh"), &error));
    EXPECT_EQ(error, folder.File("fresh") + ": cannot be made durable: No such file or directory");
}

TEST(KeepGeneration, GivesTheFileASecondNameInPlaceOfTheFormerGeneration) {
    const CTempFolder folder;
    folder.Put("a", "present");
    folder.Put("a.1", "former generation");
    folder.Put("a.1.tmp", "left behind");
    std::string error;
    ASSERT_TRUE(KeepGeneration(folder.File("a"), folder.File("a.1"), &error)) << error;
    EXPECT_EQ(folder.Get("a.1"), "present");
    ASSERT_TRUE(ReplaceWholeFile(folder.File("a"), "next", FileAccess::AsBefore));
    EXPECT_EQ(folder.Get("a.1"), "present") << "a generation does not change with the file";
    EXPECT_EQ(FilesIn(folder), 2U);
}

TEST(KeepGeneration, KeepsTheFileThatALinkNames) {
    const CTempFolder folder;
    folder.Put("real", "present");
    fs::create_symlink("real", folder.File("a"));
    ASSERT_TRUE(KeepGeneration(folder.File("a"), folder.File("a.1")));
    EXPECT_FALSE(fs::is_symlink(folder.File("a.1")));
    EXPECT_EQ(folder.Get("a.1"), "present");
}

TEST(KeepGeneration, FailsWithoutTheFileAndLeavesTheGeneration) {
    const CTempFolder folder;
    folder.Put("a.1", "former generation");
    std::string error;
    EXPECT_FALSE(KeepGeneration(folder.File("a"), folder.File("a.1"), &error));
    EXPECT_EQ(error, folder.File("a.1") + ": cannot be kept: No such file or directory");
    EXPECT_EQ(folder.Get("a.1"), "former generation");
    folder.Put("a", "present");
    fs::remove(folder.File("a.1"));
    fs::create_directory(folder.File("a.1"));
    EXPECT_FALSE(KeepGeneration(folder.File("a"), folder.File("a.1")));
    EXPECT_EQ(FilesIn(folder), 2U) << "no second name is left behind";
}
