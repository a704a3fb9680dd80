// The backup and restore procedure of a simulated device: its states, and that what was saved is put back.
#include "tests/unit/simulator/Site.h"

#include "simulator/model/Standard.h"

#include <atomic>

namespace sim::testing {
namespace {

constexpr LocalTime SECOND = 100;
constexpr BACSTAC_OBJECT_ID DEVICE{OBJ_DEVICE, 1234};
constexpr BACSTAC_OBJECT_ID STATES{OBJ_MULTI_STATE_VALUE, 2};
constexpr BACSTAC_OBJECT_ID SAVED{OBJ_FILE, 1};

// ReinitializeDevice without a password.
const std::string START_BACKUP = "00 05 01 14 09 02";
const std::string END_BACKUP = "00 05 01 14 09 03";
const std::string START_RESTORE = "00 05 01 14 09 04";
const std::string END_RESTORE = "00 05 01 14 09 05";
const std::string ABORT_RESTORE = "00 05 01 14 09 06";
const std::string DONE = "20 01 14";
const std::string IN_PROGRESS = "50 01 14 91 00 91 02";
const std::string DENIED = "50 01 14 91 05 91 1D";
const std::string READ_FILE = "00 05 01 06 C4 02 80 00 01 0E 31 00 21 04 0F";

class Backup : public ::testing::Test {
protected:
    void SetUp() override {
        Site.Config.Clock = [this] { return m_now.load(); };
        DeviceConfig device = SmallDevice(Site.Block);
        BackupConfig& backup = device.Backup.emplace();
        backup.Files = {SAVED};
        Configure(backup);
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    virtual void Configure(BackupConfig&) {}
    void Pass(LocalTime time) { m_now += time; }
    std::string ReadOfDevice(const std::string& property) {
        return Site.Ask("00 05 01 0C 0C 02 00 04 D2 " + property).substr(9 + 15 + 3 * (property.size() + 1) / 3);
    }
    std::string Status() { return ReadOfDevice("19 70"); }
    BackupState State() { return Site.FirstDevice().GetBackupState(); }
    std::optional<Value> Present(BACSTAC_OBJECT_ID id) {
        return Site.FirstDevice().GetProperty(id, PROP_PRESENT_VALUE);
    }

    RunningSite Site;

private:
    std::atomic<LocalTime> m_now{0};
};

TEST_F(Backup, TellsItsFilesAndItsState) {
    EXPECT_EQ(ReadOfDevice("19 9A"), "3E C4 02 80 00 01 3F");
    EXPECT_EQ(ReadOfDevice("19 9A 29 00"), "3E 21 01 3F");
    EXPECT_EQ(Status(), "3E 91 00 3F");
    EXPECT_EQ(ReadOfDevice("1A 01 52"), "3E 91 00 3F");
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
    EXPECT_EQ(ReadOfDevice("1A 01 52"), "3E 91 03 3F");
    EXPECT_EQ(Status(), "3E 91 05 3F");
    EXPECT_EQ(Site.Ask(END_BACKUP), DONE);
    EXPECT_EQ(Status(), "3E 91 00 3F");
}

TEST_F(Backup, RefusesWhatDoesNotFitTheState) {
    EXPECT_EQ(Site.Ask(END_BACKUP), DENIED);
    EXPECT_EQ(Site.Ask(END_RESTORE), DENIED);
    EXPECT_EQ(Site.Ask(ABORT_RESTORE), DENIED);
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
    EXPECT_EQ(Site.Ask("00 05 02 14 09 02"), "50 02 14 91 00 91 02"); // by another request
    EXPECT_EQ(Site.Ask(START_RESTORE), IN_PROGRESS);
    EXPECT_EQ(Site.Ask("00 05 01 14 09 01"), IN_PROGRESS); // warmstart
    EXPECT_EQ(Site.Ask(END_RESTORE), DENIED);
    EXPECT_EQ(Site.Ask(ABORT_RESTORE), DENIED);
    EXPECT_EQ(State(), BackupState::performingBackup);
}

TEST_F(Backup, PutsBackWhatItSaved) {
    ASSERT_TRUE(Site.FirstDevice().SetProperty(STATES, PROP_PRESENT_VALUE, Value::Unsigned(2)));
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
    const auto saved = Site.FirstDevice().FileOctets(SAVED);
    ASSERT_TRUE(saved && saved->starts_with("configuration of device 1234\n"));
    EXPECT_EQ(Site.Ask(END_BACKUP), DONE);

    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 55 3E 21 04 3F"), "20 01 0F");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 6E 29 00 3E 21 01 3F"), "20 01 0F"); // one state text
    EXPECT_EQ(Site.Ask(START_RESTORE), DONE);
    EXPECT_EQ(State(), BackupState::performingRestore);
    EXPECT_EQ(Status(), "3E 91 03 3F");
    EXPECT_EQ(Present(STATES), Value::Unsigned(4));
    EXPECT_EQ(Site.Ask(END_RESTORE), DONE);
    EXPECT_EQ(Present(STATES), Value::Unsigned(2));
    EXPECT_EQ(Site.FirstDevice().GetProperty(STATES, PROP_STATE_TEXT)->Count(), 4U);
    EXPECT_EQ(Site.FirstDevice().GetProperty(DEVICE, PROP_DATABASE_REVISION), Value::Unsigned(2));
    EXPECT_TRUE(Site.FirstDevice().GetProperty(DEVICE, PROP_LAST_RESTORE_TIME).has_value());
}

TEST_F(Backup, RefusesAForeignConfiguration) {
    EXPECT_EQ(Site.Ask(START_RESTORE), DONE);
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 01 0E 31 00 61 78 0F"), "30 01 07 09 00");
    EXPECT_EQ(Site.Ask(END_RESTORE), "50 01 14 91 00 91 2E");
    EXPECT_EQ(State(), BackupState::restoreFailure);
    EXPECT_EQ(Status(), "3E 91 00 3F");
}

TEST_F(Backup, AbortsARestore) {
    EXPECT_EQ(Site.Ask(START_RESTORE), DONE);
    EXPECT_EQ(Site.Ask(ABORT_RESTORE), DONE);
    EXPECT_EQ(State(), BackupState::idle);
}

TEST_F(Backup, GivesUpWhenTheFilesAreNotUsed) {
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
    Pass(299 * SECOND);
    EXPECT_EQ(Site.Ask(READ_FILE).substr(0, 11), "30 01 06 10");
    Pass(299 * SECOND);
    EXPECT_EQ(State(), BackupState::performingBackup);
    Pass(1 * SECOND);
    EXPECT_EQ(State(), BackupState::backupFailure);
    EXPECT_EQ(Status(), "3E 91 00 3F");
    EXPECT_EQ(Site.Ask(END_BACKUP), DENIED);
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
}

TEST_F(Backup, TakesTheFailureTimeoutFromAClient) {
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 00 04 D2 19 99 3E 21 02 3F"), "20 01 0F");
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
    Pass(2 * SECOND);
    EXPECT_EQ(State(), BackupState::backupFailure);
}

class SlowBackup : public Backup {
protected:
    void Configure(BackupConfig& backup) override {
        backup.BackupPreparation = 10;
        backup.RestorePreparation = 20;
        backup.CompletionTime = 5;
    }
};

TEST_F(SlowBackup, IsBusyWhileItPreparesItself) {
    EXPECT_EQ(ReadOfDevice("1A 01 53"), "3E 21 0A 3F");
    EXPECT_EQ(ReadOfDevice("1A 01 55"), "3E 21 14 3F");
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
    Pass(10 * SECOND - 1);
    EXPECT_EQ(State(), BackupState::preparingForBackup);
    EXPECT_EQ(Site.Ask(READ_FILE), "50 01 06 91 00 91 03");
    EXPECT_EQ(Site.Ask(END_BACKUP), IN_PROGRESS);
    Pass(1);
    EXPECT_EQ(State(), BackupState::performingBackup);
    EXPECT_EQ(Site.Ask(READ_FILE).substr(0, 11), "30 01 06 10");
}

TEST_F(SlowBackup, TakesItsTimeToBeItselfAgain) {
    EXPECT_EQ(Site.Ask(START_RESTORE), DONE);
    Pass(19 * SECOND);
    EXPECT_EQ(State(), BackupState::preparingForRestore);
    Pass(1 * SECOND);
    ASSERT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 01 19 2A 3E 21 00 3F"), "20 01 0F"); // the file is emptied
    EXPECT_EQ(Site.Ask(END_RESTORE), "50 01 14 91 00 91 2E");
    Pass(1 * SECOND);
    EXPECT_EQ(Site.Ask(START_BACKUP), DONE);
    Pass(10 * SECOND);
    EXPECT_EQ(Site.Ask(END_BACKUP), DONE);
    EXPECT_EQ(State(), BackupState::idle);
    EXPECT_EQ(Status(), "3E 91 05 3F");
    Pass(5 * SECOND);
    EXPECT_EQ(Status(), "3E 91 00 3F");
}

class DraftBackup : public Backup {
protected:
    void Configure(BackupConfig& backup) override {
        backup.BackupPreparation = 1;
        backup.OldNumbers = true;
    }
};

TEST_F(DraftBackup, HasItsPreparationTimesUnderOldNumbers) {
    EXPECT_EQ(ReadOfDevice("1A 01 3B"), "3E 21 01 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 1A 01 53"), "50 01 0C 91 02 91 20");
}

} // namespace
} // namespace sim::testing
