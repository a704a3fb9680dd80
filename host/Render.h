// Prints what the running instance answers: text for people, CSV, or the JSON as it came. Standard output gets results,
// standard error the rest.
#pragma once

#include "host/ControlProtocol.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>
#include <vector>

class IRenderer {
public:
    virtual ~IRenderer() = default;
    virtual void Row(const std::string& json) = 0;
    // The end; also prints a failure.
    virtual void End(const ControlReply& reply) = 0;
};

// {"LIST":[rows],result members}; without rows the result's members alone. list is null for a command without rows.
std::unique_ptr<IRenderer> MakeJsonRenderer(const char* list);

// For people, by command: "tag list" and so on.
std::unique_ptr<IRenderer> MakeTextRenderer(const std::string& command);

// Turns a row or a result into a line; never throws, whatever members there are.
using RenderLine = std::string (*)(const nlohmann::ordered_json&);
// For people: a line per row, and one for the result when it is not empty. Either may be null. A row with a member
// "error" goes to standard error.
std::unique_ptr<IRenderer> MakeLineRenderer(RenderLine row, RenderLine result);

// RFC 4180: a line of headings, then a line per row with these members; one that is missing or null is empty.
std::unique_ptr<IRenderer> MakeCsvRenderer(std::vector<std::string> columns);

// A member as text that is safe on a terminal; "-" when it is null or missing.
std::string MemberText(const nlohmann::ordered_json& json, const char* name);

// Text that is safe on a terminal: control characters as \xNN.
std::string Printable(const std::string& text);
