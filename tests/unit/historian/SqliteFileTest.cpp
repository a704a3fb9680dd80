// Files that are not, or not quite, a history database.
#include "tests/unit/historian/SqliteTestSupport.h"

#include <set>

namespace {

class SqliteFile : public testing::Test {
protected:
    // A closed history database with a few records.
    std::string MakeDatabase() {
        HistoryError error;
        EXPECT_TRUE(OpenGood(m_path)->Write(Block(7, 1000, 1000), error)) << error.text;
        return FileBytes(m_path);
    }

    // The file is refused, has the same bytes afterwards, and nothing lies beside it.
    std::string RefusedUntouched(const std::string& bytes) {
        WriteFile(m_path, bytes);
        const std::string error = OpenError(m_path);
        EXPECT_TRUE(FileBytes(m_path) == bytes) << error;
        EXPECT_EQ(Names(), std::set<std::string>{"history.db"});
        return error;
    }

    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path.parent_path())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder / "history.db";
};

} // namespace

TEST_F(SqliteFile, ANewFileIsMade) {
    EXPECT_EQ(Total(*OpenGood(m_path)), 0U);
    EXPECT_EQ(Names(), std::set<std::string>{"history.db"});
}

TEST_F(SqliteFile, AnEmptyFileIsTakenAsNew) {
    WriteFile(m_path, "");
    EXPECT_EQ(Total(*OpenGood(m_path)), 0U);
}

TEST_F(SqliteFile, ANameWithOddLettersIsAFileName) {
    const auto path = m_folder / "file:h\xC3\xB6re ?mode=memory#1.db";
    HistoryError error;
    EXPECT_TRUE(OpenGood(path)->Write(Block(7, 1000, 5), error));
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(Total(*OpenGood(path)), 5U);
}

TEST_F(SqliteFile, AFolderThatIsMissingIsReported) {
    EXPECT_NE(OpenError(m_folder / "none/history.db").find("cannot be opened"), std::string::npos);
}

TEST_F(SqliteFile, AFolderIsNotAFile) {
    EXPECT_NE(OpenError(m_folder / "").find("is not a file"), std::string::npos);
}

TEST_F(SqliteFile, AMissingFileIsNotMadeForReadingOnly) {
    SqliteHistoryStore::Settings readOnly;
    readOnly.readOnly = true;
    EXPECT_NE(OpenError(m_path, readOnly).find("cannot be opened"), std::string::npos);
    EXPECT_TRUE(Names().empty());
}

TEST_F(SqliteFile, ATextFileIsRefusedUntouched) {
    EXPECT_NE(RefusedUntouched("[history]\nlimit = 5\n").find("is not a history database"), std::string::npos);
    EXPECT_NE(RefusedUntouched(std::string(5000, 'x')).find("is not a history database"), std::string::npos);
    EXPECT_NE(RefusedUntouched(std::string(5000, '\0')).find("is not a history database"), std::string::npos);
}

TEST_F(SqliteFile, TheDatabaseOfAnotherProgramIsRefusedUntouched) {
    OtherProgram(m_path).Execute("CREATE TABLE record(a); INSERT INTO record VALUES(1)");
    EXPECT_NE(RefusedUntouched(FileBytes(m_path)).find("is the database of another program"), std::string::npos);
}

TEST_F(SqliteFile, TheDatabaseOfAnotherProgramWithALogIsRefusedUntouched) {
    OtherProgram other(m_path);
    other.Execute("PRAGMA journal_mode=WAL; CREATE TABLE record(a); INSERT INTO record VALUES(1)");
    auto log = m_path;
    log += "-wal";
    const std::string bytes = FileBytes(m_path) + FileBytes(log);
    EXPECT_NE(OpenError(m_path), "");
    EXPECT_TRUE(FileBytes(m_path) + FileBytes(log) == bytes);
}

TEST_F(SqliteFile, ADatabaseOfANewerLayoutIsRefusedUntouched) {
    MakeDatabase();
    OtherProgram(m_path).Execute("PRAGMA user_version=2");
    EXPECT_NE(RefusedUntouched(FileBytes(m_path)).find("was made by a newer version (layout 2, known up to 1)"),
              std::string::npos);
}

TEST_F(SqliteFile, ADatabaseOfAnotherLayoutIsRefusedUntouched) {
    MakeDatabase();
    OtherProgram(m_path).Execute("PRAGMA journal_mode=DELETE; ALTER TABLE record ADD COLUMN quality");
    EXPECT_NE(RefusedUntouched(FileBytes(m_path)).find("is not layout 1"), std::string::npos);
}

TEST_F(SqliteFile, AnIndexAddedByAnotherProgramDoesNoHarm) {
    MakeDatabase();
    OtherProgram(m_path).Execute("CREATE INDEX extra ON record(time)");
    HistoryError error;
    const auto store = OpenGood(m_path);
    EXPECT_TRUE(store->Write(Block(8, 1000, 100), error)) << error.text;
    EXPECT_EQ(Total(*store), 1100U);
}

TEST_F(SqliteFile, ACutFileIsRefusedUntouched) {
    const std::string bytes = MakeDatabase();
    ASSERT_GT(bytes.size(), 3U * 4096U);
    for (const std::size_t size : {std::size_t{1}, std::size_t{99}, std::size_t{100}, std::size_t{4095},
                                   std::size_t{4096}, std::size_t{6000}, bytes.size() - 4096, bytes.size() - 1}) {
        EXPECT_NE(RefusedUntouched(bytes.substr(0, size)), "") << size;
    }
}

TEST_F(SqliteFile, ASpoiltSchemaIsRefusedUntouched) {
    std::string bytes = MakeDatabase();
    bytes.replace(100, 3996, 3996, '\xA5');
    EXPECT_NE(RefusedUntouched(bytes).find("is damaged"), std::string::npos);
}

TEST_F(SqliteFile, SpoiltRecordPagesFailTheQueryAndTheWriteInWords) {
    std::string bytes = MakeDatabase();
    bytes.replace(4096, bytes.size() - 4096, bytes.size() - 4096, '\xA5');
    WriteFile(m_path, bytes);
    const auto store = OpenGood(m_path);
    HistoryQuery query;
    query.tagId = 7;
    HistoryError error;
    EXPECT_FALSE(store->Query(
        query, [](const VfiRecord&) { return true; }, error));
    EXPECT_NE(error.text.find("is damaged"), std::string::npos) << error.text;
    std::vector<HistoryCount> counts;
    EXPECT_FALSE(store->Count(counts, error));
    EXPECT_FALSE(store->Write(Block(7, 5000, 10), error));
    EXPECT_NE(error.text.find("is damaged"), std::string::npos) << error.text;
}

TEST_F(SqliteFile, AFileWhoseMakingWasCutShortIsMadeAgain) {
    // What a power failure in the first commit leaves: some of the first pages, and the journal that takes them back.
    // The journal's header (big-endian): magic, no page records, a checksum seed, a database of 0 pages before, sectors
    // of 512 bytes, pages of 4096 bytes.
    std::string journal("\xD9\xD5\x05\xF9\x20\xA1\x63\xD7\0\0\0\0\x12\x34\x56\x78\0\0\0\0\0\0\x02\0\0\0\x10\0", 28);
    journal.resize(512);
    WriteFile(m_path, std::string(4096, '\0'));
    auto journalPath = m_path;
    journalPath += "-journal";
    WriteFile(journalPath, journal);
    EXPECT_EQ(Total(*OpenGood(m_path)), 0U);
    HistoryError error;
    EXPECT_TRUE(OpenGood(m_path)->Write(Block(7, 1000, 5), error)) << error.text;
}
