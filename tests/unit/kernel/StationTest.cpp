#include "tests/unit/kernel/KernelFixture.h"

#include <array>

using testing::ElementsAre;

using KernelStation = KernelFixture;

TEST_F(KernelStation, NameFillsItsBuffer) {
    std::array<char, QL_STATION_NAME_SIZE> buffer;
    buffer.fill('x');
    ASSERT_EQ(m_kernel.GetStationName(Connect(), buffer.data(), 0, 0, 0, 0, 0), QL_OK);
    EXPECT_EQ(std::string(buffer.data(), buffer.size()), std::string("PLANT\0\0\0\0\0\0\0\0\0\0\0", 16));
    EXPECT_EQ(m_kernel.GetStationName(Connect(), nullptr, 0, 0, 0, 0, 0), QL_INVALID_ARGUMENT);
}

TEST_F(KernelStation, IsActiveUntilItIsMadePassive) {
    const std::uint8_t handle = Connect();
    std::uint32_t status = 9;
    ASSERT_EQ(m_kernel.GetStationStatus(handle, status), QL_OK);
    EXPECT_EQ(status, 0U);
    m_kernel.SetStationActive(false);
    ASSERT_EQ(m_kernel.GetStationStatus(handle, status), QL_OK);
    EXPECT_NE(status, 0U);
    m_kernel.SetStationActive(true);
    ASSERT_EQ(m_kernel.GetStationStatus(handle, status), QL_OK);
    EXPECT_EQ(status, 0U);
}

TEST_F(KernelStation, AStationWithoutANameHasOnlyPlainTagNames) {
    Kernel kernel({}, m_history);
    std::uint8_t handle = 0;
    ASSERT_EQ(kernel.Connect("test", 1, 0, handle), QL_OK);
    std::array<char, QL_STATION_NAME_SIZE> buffer;
    buffer.fill('x');
    EXPECT_EQ(kernel.GetStationName(handle, buffer.data(), 0, 0, 0, 0, 0), QL_OK);
    EXPECT_STREQ(buffer.data(), "");
    std::uint32_t id = 0;
    ASSERT_EQ(kernel.AddTag(Tag("A"), id), AddTagResult::Added);
    EXPECT_EQ(kernel.GetTagIdWithStation(handle, "A", id), QL_OK);
    EXPECT_EQ(id, 0U);
    EXPECT_EQ(kernel.GetTagIdWithStation(handle, ":A", id), QL_NO_SUCH_TAG);
}

TEST_F(KernelStation, SettingsAreChecked) {
    KernelSettings settings = Settings();
    EXPECT_EQ(Kernel::Fault(settings), nullptr);
    settings.stationName = std::string(15, 'x');
    EXPECT_EQ(Kernel::Fault(settings), nullptr);
    for (const std::string& name : {std::string(16, 'x'), std::string("A:B"), std::string("A\n")}) {
        settings.stationName = name;
        EXPECT_NE(Kernel::Fault(settings), nullptr) << name;
    }
}

TEST_F(KernelStation, WhileNobodyHasLoggedInTheBufferStays) {
    std::array<char, QL_USER_NAME_SIZE> buffer{"user"};
    EXPECT_EQ(m_kernel.GetCurrentUserName(Connect(), buffer.data()), QL_NO_VALUE);
    EXPECT_STREQ(buffer.data(), "user");
}

TEST_F(KernelStation, TheUsersNameIsGivenAsFarAsTheBufferGoes) {
    const std::uint8_t gate = Connect();
    std::array<char, QL_USER_NAME_SIZE> buffer;
    m_kernel.SetCurrentUserName("J\xC3\xB6rg");
    ASSERT_EQ(m_kernel.GetCurrentUserName(gate, buffer.data()), QL_OK);
    EXPECT_STREQ(buffer.data(), "J\xC3\xB6rg");
    m_kernel.SetCurrentUserName(std::string(86, 'u') + "\xC3\xB6");
    ASSERT_EQ(m_kernel.GetCurrentUserName(gate, buffer.data()), QL_OK);
    EXPECT_EQ(std::string(buffer.data()), std::string(86, 'u'));
    EXPECT_EQ(m_kernel.GetCurrentUserName(gate, nullptr), QL_INVALID_ARGUMENT);
}

TEST_F(KernelStation, FoldersAreKnownByNumberAndNeverCut) {
    std::array<char, QL_FOLDER_SIZE> buffer{};
    EXPECT_EQ(m_kernel.GetProductFolder(4, buffer.data(), 0), QL_INVALID_ARGUMENT);
    EXPECT_TRUE(m_kernel.SetProductFolder(4, "/data/project"));
    EXPECT_TRUE(m_kernel.SetProductFolder(5, "/" + std::string(258, 'f')));
    EXPECT_FALSE(m_kernel.SetProductFolder(5, "/" + std::string(259, 'f')));
    ASSERT_EQ(m_kernel.GetProductFolder(4, buffer.data(), 0), QL_OK);
    EXPECT_STREQ(buffer.data(), "/data/project");
    ASSERT_EQ(m_kernel.GetProductFolder(5, buffer.data(), 0), QL_OK);
    EXPECT_EQ(std::string(buffer.data()).size(), 259U);
    EXPECT_EQ(m_kernel.GetProductFolder(4, nullptr, 0), QL_INVALID_ARGUMENT);
}

TEST_F(KernelStation, TheHelpPathIsNeverCut) {
    std::array<char, QL_FOLDER_SIZE> buffer{};
    EXPECT_EQ(m_kernel.GetHelpPath(buffer.data()), QL_INVALID_ARGUMENT);
    EXPECT_TRUE(m_kernel.SetHelpPath("/share/help/"));
    EXPECT_FALSE(m_kernel.SetHelpPath(std::string(QL_FOLDER_SIZE, '/')));
    ASSERT_EQ(m_kernel.GetHelpPath(buffer.data()), QL_OK);
    EXPECT_STREQ(buffer.data(), "/share/help/");
    EXPECT_EQ(m_kernel.GetHelpPath(nullptr), QL_INVALID_ARGUMENT);
}

TEST_F(KernelStation, TraceKeepsTheLevelsOfItsMask) {
    std::vector<std::string> lines;
    KernelSettings settings = Settings();
    settings.traceMask = QL_TRACE_HISTORY;
    settings.trace = [&](unsigned level, const char* text) { lines.push_back(std::to_string(level) + " " + text); };
    Kernel kernel(settings, m_history);
    kernel.Trace(QL_TRACE_HISTORY, "begin %s of thread");
    kernel.Trace(0x10, "other");
    kernel.Trace(QL_TRACE_HISTORY, nullptr);
    kernel.SetTraceMask(0x10);
    kernel.Trace(QL_TRACE_HISTORY, "masked");
    kernel.Trace(0x11, "some of its bits");
    EXPECT_THAT(lines, ElementsAre("32 begin %s of thread", "17 some of its bits"));
    m_kernel.SetTraceMask(~0U);
    m_kernel.Trace(1, "to nobody");
}
