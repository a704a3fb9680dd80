// The pages of the console's help as they are built from docs/help.
#include "module/console/ConsolePages.h"
#include "tests/unit/host/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

using ::testing::HasSubstr;

const fs::path HELP = fs::path(BDC_BINARY_DIR) / "share/bdc/help/BDC";

std::string Read(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// The first group of each match.
std::vector<std::string> Matches(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> matches;
    for (std::sregex_iterator it(text.begin(), text.end(), expression), end; it != end; ++it)
        matches.push_back((*it)[1]);
    return matches;
}

std::vector<fs::path> AllPages() {
    std::vector<fs::path> pages;
    for (const fs::directory_entry& entry : fs::directory_iterator(HELP))
        if (entry.path().extension() == ".html")
            pages.push_back(entry.path());
    return pages;
}

TEST(HelpPages, EveryTabHasOneUnderItsContext) {
    for (std::size_t i = 0; i < PAGE_COUNT; ++i) {
        const std::string page = Read(HELP / (std::to_string(i + 1) + ".html"));
        EXPECT_THAT(page, HasSubstr(std::string("<h1>") + PAGE_LABELS[i] + "</h1>"));
        EXPECT_THAT(page, HasSubstr(std::string("<title>") + PAGE_LABELS[i] + " - BACnet configuration console"));
    }
}

TEST(HelpPages, EveryLinkHasItsTarget) {
    constexpr std::size_t OTHERS = 2; // of users and of values
    ASSERT_EQ(AllPages().size(), PAGE_COUNT + OTHERS);
    for (const fs::path& page : AllPages()) {
        const auto links = Matches(Read(page), "href=\"([^\"#]*)");
        EXPECT_GT(links.size(), PAGE_COUNT) << page;
        for (const std::string& link : links)
            EXPECT_TRUE(fs::is_regular_file(HELP / link)) << page << ": " << link;
    }
}

TEST(HelpPages, EveryPageIsReachedFromEachOther) {
    for (const fs::path& page : AllPages())
        for (const fs::path& other : AllPages())
            EXPECT_THAT(Read(page), HasSubstr("href=\"" + other.filename().string() + "\""));
}

TEST(HelpPages, NoMarkdownIsLeftInThem) {
    for (const fs::path& page : AllPages()) {
        const std::string text = Read(page);
        EXPECT_THAT(Matches(text, "(\\]\\([^)]*\\))"), ::testing::IsEmpty()) << page;
        EXPECT_THAT(Matches(text, "(<p>\\|)"), ::testing::IsEmpty()) << page << ": a table";
    }
}

TEST(HelpPages, TheyFollowTheDesktopsDarkMode) {
    EXPECT_THAT(Read(HELP / "style.css"), HasSubstr("@media (prefers-color-scheme: dark)"));
    for (const fs::path& page : AllPages())
        EXPECT_THAT(Read(page), HasSubstr("<link rel=\"stylesheet\" href=\"style.css\">")) << page;
}

TEST(HelpPages, TheCommandsInThemExist) {
    std::set<std::string> commands;
    for (const fs::path& page : AllPages())
        for (const std::string& command : Matches(Read(page), "<code>bdc ([a-z]+( [a-z]+)?)"))
            commands.insert(command);
    EXPECT_GT(commands.size(), 10U);
    for (const std::string& command : commands) {
        std::istringstream words(command);
        std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
        arguments.push_back("--help");
        EXPECT_EQ(RunBdc(arguments).code, 0) << command;
    }
}

TEST(HelpPages, TheWayToTheFirstUserIsToldWhereItIsLookedFor) {
    EXPECT_THAT(Read(HELP / "1.html"), HasSubstr("<a href=\"users.html\">"));
    EXPECT_THAT(Read(HELP / "users.html"), HasSubstr("bdc user add NAME --administrator"));
}

} // namespace
