#include "host/bacnet/Command.h"

#include <vector>

namespace {

std::vector<const BacnetCommand*> AllCommands() {
    std::vector<const BacnetCommand*> commands;
    for (const auto family : {DirectoryCommands, ReadCommands, WriteCommands, RangeCommands, ObjectCommands,
                              FileCommands, DeviceCommands, AlarmCommands, NetworkCommands}) {
        for (const BacnetCommand& command : family())
            commands.push_back(&command);
    }
    return commands;
}

} // namespace

std::span<const BacnetCommand* const> BacnetCommands() {
    static const std::vector<const BacnetCommand*> COMMANDS = AllCommands();
    return COMMANDS;
}

const BacnetCommand* FindBacnetCommand(std::string_view fullName) {
    for (const BacnetCommand* const command : BacnetCommands())
        if (command->FullName() == fullName)
            return command;
    return nullptr;
}
