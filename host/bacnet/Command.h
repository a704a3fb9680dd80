// A command of the program that talks to BACnet devices, as data: what it takes, what it does, how it prints. The
// command line is built from these rows, and the running instance finds what to do by the same rows.
#pragma once

#include "host/ControlProtocol.h"
#include "host/Render.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

class CBacnetCall;

enum class Arity : std::uint8_t {
    Required, // one argument that has to be there
    Optional,
    Two,   // both or none, joined with a newline
    Some,  // one or more, joined with newlines
    Any,   // none or more
    Switch // an option without a value; "1" when it is there
};

struct CommandOption {
    const char* option; // "DEVICE" or "--priority"
    const char* key;    // of the argument
    const char* help;
    Arity arity = Arity::Optional;
};

struct BacnetCommand {
    const char* group; // null: a command of its own
    const char* name;
    const char* help; // null: a step of another command, which is none itself
    std::span<const CommandOption> options;
    const char* list; // name of the rows in JSON; null: there is one result
    ControlReply (*run)(CBacnetCall& call);
    RenderLine row = nullptr;
    RenderLine result = nullptr;
    std::span<const char* const> csv = {}; // columns of --csv; empty: the command has no such option
    bool asksPassword = false;             // takes --password or --password-fd
    bool needsNetwork = true;              // false: no traffic at all

    std::string FullName() const { return group == nullptr ? name : group + std::string(" ") + name; }
};

// Arguments that many commands have.
inline constexpr CommandOption DEVICE_ARGUMENT{
    "DEVICE", "device", "Instance, IP[:port], or NET:MAC of a station behind a router", Arity::Required};
inline constexpr CommandOption OBJECT_ARGUMENT{"OBJECT", "object", "As analog-input:1, ai:1 or 0:1", Arity::Required};
inline constexpr CommandOption PRIORITY_OPTION{"--priority", "priority", "Priority, 1 to 16"};

// All commands in the order of the help.
std::span<const BacnetCommand* const> BacnetCommands();
// By its full name; null when there is none.
const BacnetCommand* FindBacnetCommand(std::string_view fullName);

// One family each.
std::span<const BacnetCommand> DirectoryCommands();
std::span<const BacnetCommand> ReadCommands();
std::span<const BacnetCommand> WriteCommands();
std::span<const BacnetCommand> RangeCommands();
std::span<const BacnetCommand> ObjectCommands();
std::span<const BacnetCommand> FileCommands();
std::span<const BacnetCommand> DeviceCommands();
std::span<const BacnetCommand> AlarmCommands();
std::span<const BacnetCommand> NetworkCommands();
