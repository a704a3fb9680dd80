// Prints what the running instance answers: text for people, CSV, or the JSON as it came. Standard output gets results,
// standard error the rest.
#pragma once

#include "host/ControlProtocol.h"

#include <memory>
#include <string>

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

// RFC 4180: a line of headings, then a line per record of "history query".
std::unique_ptr<IRenderer> MakeCsvRenderer();

// Text that is safe on a terminal: control characters as \xNN.
std::string Printable(const std::string& text);
