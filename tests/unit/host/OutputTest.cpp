#include "host/Output.h"
#include "host/HelpText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

TEST(Output, AFullDiskStopsNobodyWhoPrints) {
    const std::unique_ptr<std::FILE, CloseFile> full(std::fopen("/dev/full", "w"));
    ASSERT_NE(full, nullptr);
    std::setbuf(full.get(), nullptr); // as standard error is
    for (int line = 0; line < 3; ++line)
        EXPECT_NO_THROW(Put(full.get(), "line {}\n", line));
    EXPECT_NE(std::ferror(full.get()), 0);
}

TEST(WrappedText, BreaksAtBlanksAndGoesOnInTheSecondColumn) {
    EXPECT_EQ(Wrapped("", 40), "");
    EXPECT_EQ(Wrapped("short\n\nlines", 40), "short\n\nlines\n");
    EXPECT_EQ(Wrapped("one two three", 7), "one two\nthree\n");
    EXPECT_EQ(Wrapped("one two three", 8), "one two\nthree\n");
    const std::string option = "  --name                      ";
    EXPECT_EQ(Wrapped(option + "first second third", 42), option + "first second\n" + std::string(30, ' ') + "third\n");
}

TEST(WrappedText, LeavesWordsWholeThatAreTooLong) {
    EXPECT_EQ(Wrapped("https://example.org/a/long/path and more", 10), "https://example.org/a/long/path\nand more\n");
    EXPECT_EQ(Wrapped("  aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", 40),
              "  aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\n");
}

} // namespace
