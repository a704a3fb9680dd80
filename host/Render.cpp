#include "host/Render.h"

#include "host/Output.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <sstream>

namespace {

using Json = nlohmann::ordered_json;

// Never throws: what the instance gave is parsed once already, an unexpected kind prints as JSON.
std::string ValueText(const Json& value) {
    if (value.is_string())
        return Printable(value.get<std::string>());
    if (value.is_number_float())
        return fmt::format("{}", value.get<double>());
    return value.is_null() ? std::string("-") : value.dump();
}

std::string Member(const Json& json, const char* name) {
    return MemberText(json, name);
}

Json Parse(const std::string& text) {
    Json json = Json::parse(text, nullptr, false);
    return json.is_object() ? json : Json::object();
}

void PrintFailure(const ControlReply& reply) {
    std::istringstream lines(reply.error); // several faults of one configuration
    for (std::string line; std::getline(lines, line);)
        Put(stderr, "bdc: {}\n", Printable(line));
}

class CJsonRenderer : public IRenderer {
public:
    explicit CJsonRenderer(const char* list) : m_list(list != nullptr ? list : "") {}

    void Row(const std::string& json) override {
        if (m_list.empty()) // the progress of a command whose result comes at the end
            return;
        Put(stdout, "{}{}", m_rows++ == 0 ? "{\"" + m_list + "\":[\n" : ",\n", json);
    }

    void End(const ControlReply& reply) override {
        Json rest = Parse(reply.result);
        if (reply.code != EXIT_DONE) {
            rest["code"] = reply.code;
            rest["error"] = reply.error;
        }
        const std::string members = rest.dump(-1, ' ', false, Json::error_handler_t::replace);
        if (m_list.empty() || (m_rows == 0 && reply.code != EXIT_DONE))
            Put(stdout, "{}\n", members);
        else
            Put(stdout, "{}]{}{}\n", m_rows == 0 ? "{\"" + m_list + "\":[" : "\n", rest.empty() ? "" : ",",
                members.substr(1));
    }

private:
    const std::string m_list;
    std::uint64_t m_rows = 0;
};

class CCsvRenderer : public IRenderer {
public:
    explicit CCsvRenderer(std::vector<std::string> columns) : m_columns(std::move(columns)) {
        for (const std::string& column : m_columns)
            Put(stdout, "{}{}", &column == &m_columns.front() ? "" : ",", column);
        Put(stdout, "\r\n");
    }

    void Row(const std::string& json) override {
        const Json row = Parse(json);
        std::string line;
        for (const std::string& column : m_columns)
            line += (line.empty() && &column == &m_columns.front() ? "" : ",") + Field(row, column);
        Put(stdout, "{}\r\n", line);
    }

    void End(const ControlReply& reply) override { PrintFailure(reply); }

private:
    static std::string Field(const Json& row, const std::string& column) {
        const auto value = row.find(column);
        if (value == row.end() || value->is_null())
            return {};
        return value->is_string() ? Quoted(value->get<std::string>()) : ValueText(*value);
    }

    static std::string Quoted(const std::string& text) {
        if (text.find_first_of(",\"\r\n") == std::string::npos)
            return text;
        std::string quoted = "\"";
        for (const char character : text)
            quoted += character == '"' ? "\"\"" : std::string(1, character);
        return quoted + "\"";
    }

    const std::vector<std::string> m_columns;
};

// A line per row and per result, made by two functions; either may be null.
class CTextRenderer : public IRenderer {
public:
    using Line = RenderLine;
    CTextRenderer(Line row, Line result, std::FILE* rows) : m_row(row), m_result(result), m_rows(rows) {}

    void Row(const std::string& json) override {
        if (m_row == nullptr)
            return;
        const Json row = Parse(json);
        std::string line = m_row(row);
        line.erase(line.find_last_not_of(' ') + 1); // of a last column without a value
        Put(row.contains("error") ? stderr : m_rows, "{}\n", line);
    }

    void End(const ControlReply& reply) override {
        if (m_result != nullptr && !reply.result.empty()) {
            const std::string text = m_result(Parse(reply.result));
            if (!text.empty())
                Put(stdout, "{}\n", text);
        }
        PrintFailure(reply);
    }

private:
    const Line m_row;
    const Line m_result;
    std::FILE* const m_rows;
};

std::string TagLine(const Json& tag) {
    return fmt::format("{:<47} {:<8} {} {}", Member(tag, "name"), Member(tag, "type"), Member(tag, "value"),
                       Member(tag, "unit"));
}

std::string TagValueLine(const Json& tag) {
    return Member(tag, "value");
}

std::string CountLine(const Json& row) {
    const std::string name = Member(row, "tag");
    return fmt::format("{:<47} {:>10}", name == "-" ? "(tag id " + Member(row, "id") + ")" : name,
                       Member(row, "records"));
}

std::string CountResult(const Json& result) {
    return result.contains("tag") ? Member(result, "records")
                                  : fmt::format("{:<47} {:>10}", "total", Member(result, "records"));
}

std::string RecordLine(const Json& record) {
    return Member(record, "time") + "  " + Member(record, "value");
}

std::string ProgressLine(const Json& status) {
    return fmt::format("{} of {} objects ({} %), device {}, {}", Member(status, "current"), Member(status, "total"),
                       Member(status, "percent"), Member(status, "device"), Member(status, "object"));
}

std::string TransferResult(const Json& result) {
    if (result.contains("started"))
        return "started";
    return fmt::format("ended {}, {} errors", Member(result, "lastTransferTime"), Member(result, "errors"));
}

std::size_t Count(const Json& json, const char* list) {
    const auto found = json.find(list);
    return found == json.end() ? 0 : found->size();
}

std::string NetworkLine(const Json& port) {
    std::string line = fmt::format("network {:<10}{}", Member(port, "number"), Member(port, "address"));
    if (Member(port, "enabled") == "false")
        line += ", switched off";
    if (port.contains("toldNumber") && port["toldNumber"] != port["number"])
        line += ", number " + Member(port, "toldNumber") + " by what others say";
    if (port.contains("foreign"))
        line +=
            ", foreign device of " + Member(port["foreign"], "bbmd") + ": " + Member(port["foreign"], "registration");
    if (port.contains("bbmd"))
        line += fmt::format(", BBMD of {} with {} foreign devices", Count(port["bbmd"], "table"),
                            Count(port["bbmd"], "foreignDevices"));
    return line + "\n";
}

std::string StatusText(const Json& status) {
    const Json history = status.contains("history") ? status["history"] : Json::object();
    const std::string time = Member(history, "lastTransferTime");
    const bool isRunning = Member(history, "running") == "true";
    std::string text = fmt::format("bdc {}, process {}, {} s on {}\n", Member(status, "version"),
                                   Member(status, "process"), Member(status, "seconds"), Member(status, "folder"));
    text += fmt::format("{} tags, {} devices known\n", Member(status, "tags"), Member(status, "devices"));
    if (status.contains("networks"))
        for (const Json& port : status["networks"])
            text += port.is_object() ? NetworkLine(port) : std::string();
    text += fmt::format("history transfer  {}\n", isRunning ? "running: " + ProgressLine(history) : "not running");
    text += fmt::format("last transfer     {}\n", time.empty() || time == "-" ? "never" : time);
    text += "errors            " + Member(history, "errors");
    if (Member(history, "errors") != "0")
        text += ", the last one: " + Member(history, "lastError");
    return text;
}

struct TextForm {
    const char* command;
    CTextRenderer::Line row;
    CTextRenderer::Line result;
};

constexpr TextForm TEXT_FORMS[] = {
    {"history count", CountLine, CountResult},
    {"history query", RecordLine, nullptr},
    {"history transfer", ProgressLine, TransferResult},
    {"status", nullptr, StatusText},
    {"tag get", nullptr, TagValueLine},
    {"tag list", TagLine, nullptr},
    {"tag set", nullptr, TagValueLine},
};

} // namespace

std::string MemberText(const Json& json, const char* name) {
    const auto found = json.find(name);
    return found == json.end() ? std::string("-") : ValueText(*found);
}

std::string Printable(const std::string& text) {
    std::string printable;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7F)
            printable += fmt::format("\\x{:02X}", code);
        else
            printable += character;
    }
    return printable;
}

std::unique_ptr<IRenderer> MakeJsonRenderer(const char* list) {
    return std::make_unique<CJsonRenderer>(list);
}

std::unique_ptr<IRenderer> MakeCsvRenderer(std::vector<std::string> columns) {
    return std::make_unique<CCsvRenderer>(std::move(columns));
}

std::unique_ptr<IRenderer> MakeLineRenderer(RenderLine row, RenderLine result) {
    return std::make_unique<CTextRenderer>(row, result, stdout);
}

std::unique_ptr<IRenderer> MakeTextRenderer(const std::string& command) {
    for (const TextForm& form : TEXT_FORMS) {
        if (command == form.command)
            return std::make_unique<CTextRenderer>(form.row, form.result,
                                                   command == "history transfer" ? stderr : stdout);
    }
    return std::make_unique<CTextRenderer>(nullptr, nullptr, stdout);
}
