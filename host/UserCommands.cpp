#include "host/UserCommands.h"

#include "host/ControlProtocol.h"
#include "host/DataFolder.h"
#include "host/Output.h"
#include "host/Password.h"
#include "host/Run.h"
#include "host/login/UserManagement.h"
#include "platform/kernel/users/UserStore.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

#include <algorithm>
#include <memory>

namespace {

struct Arguments {
    std::string data;
    bool json = false;
    std::string name;
    std::string group;
    bool isAdministrator = false;
    bool remove = false;
    int passwordDescriptor = -1;
};

using Action = bool (*)(CUserStore& store, const Arguments& arguments, std::string& error);

bool GetPassword(const Arguments& arguments, std::string& password, std::string& error) {
    if (arguments.passwordDescriptor >= 0)
        return ReadPassword(arguments.passwordDescriptor, password, error);
    std::string again;
    if (!AskPassword("Password of " + arguments.name + ": ", password, error) ||
        !AskPassword("The same again: ", again, error))
        return false;
    if (password != again)
        error = "the two passwords differ";
    return password == again;
}

bool Add(CUserStore& store, const Arguments& arguments, std::string& error) {
    std::string password;
    return GetPassword(arguments, password, error) && store.Add(arguments.name, password, error) &&
           (!arguments.isAdministrator || store.SetMember(arguments.name, ADMINISTRATOR_GROUP, true, error));
}

bool SetPassword(CUserStore& store, const Arguments& arguments, std::string& error) {
    std::string password;
    return GetPassword(arguments, password, error) && store.SetPassword(arguments.name, password, error);
}

bool Remove(CUserStore& store, const Arguments& arguments, std::string& error) {
    return store.Remove(arguments.name, error);
}

bool SetGroup(CUserStore& store, const Arguments& arguments, std::string& error) {
    return store.SetMember(arguments.name, arguments.group, !arguments.remove, error);
}

bool List(CUserStore& store, const Arguments& arguments, std::string& error) {
    std::vector<UserInfo> users;
    if (!store.List(users, error))
        return false;
    if (arguments.json) {
        nlohmann::ordered_json rows = nlohmann::ordered_json::array();
        for (const UserInfo& user : users)
            rows.push_back({{"name", user.name}, {"groups", user.groups}});
        Put(stdout, "{}\n", nlohmann::ordered_json{{"users", rows}}.dump());
        return true;
    }
    for (const UserInfo& user : users)
        Put(stdout, "{:<24} {}\n", user.name, fmt::join(user.groups, ", "));
    return true;
}

struct UserCommand {
    const char* name;
    const char* help;
    Action action;
    bool hasName;
    bool hasGroup;
    bool hasPassword;
};

constexpr UserCommand COMMANDS[] = {
    {"add", "Makes a user", Add, true, false, true},
    {"passwd", "Gives a user a new password", SetPassword, true, false, true},
    {"list", "All users with their groups", List, false, false, false},
    {"remove", "Removes a user", Remove, true, false, false},
    {"group", "Puts a user into a group; members of \"administrator\" may open the console", SetGroup, true, true,
     false},
};

int Run(Action action, const Arguments& arguments) {
    umask(0077);
    const std::string folder = AbsolutePath(arguments.data.empty() ? DefaultDataFolder() : arguments.data);
    std::string error;
    if (!EnsureFolder(folder, error))
        return ReportFailure(EXIT_FAILED, error, arguments.json);
    CUserStore store({folder + "/" + USERS_FILE, {}, {}});
    if (!action(store, arguments, error))
        return ReportFailure(EXIT_FAILED, error, arguments.json);
    return EXIT_DONE;
}

} // namespace

void AddUserCommands(CLI::App& app, const std::string& footer, std::function<int()>& run) {
    CLI::App& group = *app.add_subcommand("user", "Users of a data folder, who may open the console");
    group.require_subcommand(1);
    const auto arguments = std::make_shared<Arguments>();
    for (const UserCommand& command : COMMANDS) {
        CLI::App& sub = *group.add_subcommand(command.name, command.help);
        if (command.hasName)
            sub.add_option("NAME", arguments->name, "Name of the user, at most 87 bytes")->required();
        if (command.hasGroup)
            sub.add_option("GROUP", arguments->group, "Name of the group")->required();
        if (command.hasPassword)
            sub.add_option("--password-fd", arguments->passwordDescriptor,
                           "Open file descriptor whose first line is the password; asked on the terminal if not given")
                ->check(CLI::Range(0, 1023));
        if (command.hasGroup)
            sub.add_flag("--remove", arguments->remove, "Takes the user out of the group");
        if (command.action == Add)
            sub.add_flag("--administrator", arguments->isAdministrator, "May open the console");
        sub.add_option("--data", arguments->data, "Data folder");
        sub.add_flag("--json", arguments->json, "The result as one JSON document");
        sub.footer(footer);
        sub.callback([&run, arguments, action = command.action] {
            run = [arguments, action] { return Run(action, *arguments); };
        });
    }
}
