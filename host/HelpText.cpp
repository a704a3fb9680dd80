#include "host/HelpText.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

constexpr std::size_t SECOND_COLUMN = 30; // where the description of an option or a command begins

class CHelpFormatter : public CLI::Formatter {
public:
    CHelpFormatter() { column_width(SECOND_COLUMN); }

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        return Wrapped(CLI::Formatter::make_help(app, std::move(name), mode), HELP_COLUMNS);
    }
    // The first line tells which arguments may be left out.
    std::string make_option_opts(const CLI::Option* option) const override {
        return option->get_positional() ? std::string() : CLI::Formatter::make_option_opts(option);
    }
};

void AppendWrapped(std::string& to, std::string_view line, std::size_t columns) {
    const std::size_t indent = line.starts_with(' ') ? SECOND_COLUMN : 0;
    for (bool isFirst = true; !line.empty() || isFirst; isFirst = false) {
        const std::size_t room = isFirst ? columns : columns - indent;
        std::size_t length = line.size();
        if (length > room) {
            const std::size_t blank = line.rfind(' ', room);
            const bool isInText = blank != std::string_view::npos && blank > (isFirst ? indent : 0);
            length = isInText ? blank : std::min(line.find(' ', room), line.size());
        }
        to.append(isFirst ? 0 : indent, ' ').append(line.substr(0, length)).append("\n");
        line.remove_prefix(std::min(length + 1, line.size()));
    }
}

} // namespace

std::shared_ptr<CLI::FormatterBase> HelpFormatter() {
    return std::make_shared<CHelpFormatter>();
}

std::string Wrapped(std::string_view text, std::size_t columns) {
    std::string wrapped;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        AppendWrapped(wrapped, text.substr(0, end), columns);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return wrapped;
}
