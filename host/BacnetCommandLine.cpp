#include "host/BacnetCommandLine.h"

#include "base/NumberText.h"
#include "host/ControlClient.h"
#include "host/DataFolder.h"
#include "host/LocalStation.h"
#include "host/Password.h"
#include "host/Render.h"
#include "host/Run.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/FileTransfer.h"

#include <CLI/CLI.hpp>
#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace {

using RowTaker = std::function<void(const std::string&)>;

// Longer than any wait that a command can be told.
constexpr auto LONGEST_SILENCE = std::chrono::minutes(11);

const CLI::Validator IS_DESCRIPTOR(
    [](const std::string& text) {
        const auto number = ParseU32(text);
        return number && *number <= 0xFFFF ? std::string() : "not the number of an open file descriptor: " + text;
    },
    "NUMBER");

struct BacnetInvocation {
    RunOptions site; // configuration, data folder and form of the output
    ControlRequest request;
    bool csv = false;
    bool asksPassword = false;
    std::optional<int> passwordDescriptor;
    FileTransfer file;
};

// Where requests go, found at the first one: to the instance that runs on the data folder, or to a stack of our own.
class CDestination {
public:
    explicit CDestination(const RunOptions& options) : m_options(options) {}

    ControlReply Ask(const ControlRequest& request, const RowTaker& onRow, bool needsNetwork) {
        if (!m_isFound) {
            std::string error;
            if (!Find(needsNetwork, error))
                return {EXIT_FAILED, error, {}};
            m_isFound = true;
        }
        return m_local ? m_local->Run(request, onRow) : CControlClient::Ask(m_folder, request, onRow, LONGEST_SILENCE);
    }

private:
    bool Find(bool needsNetwork, std::string& error) {
        m_folder = AbsolutePath(m_options.data.empty() ? DefaultDataFolder() : m_options.data);
        if (CControlClient::HasInstance(m_folder))
            return true;
        Config config;
        if (!ReadOptions(m_options, MissingConfig::IsDefault, config, m_folder, error))
            return false;
        if (CControlClient::HasInstance(m_folder))
            return true;
        m_local = std::make_unique<CLocalStation>(config, m_folder);
        return m_local->Open(needsNetwork, error);
    }

    const RunOptions& m_options;
    bool m_isFound = false;
    std::string m_folder;
    std::unique_ptr<CLocalStation> m_local;
};

std::unique_ptr<IRenderer> RendererOf(const BacnetCommand& command, const BacnetInvocation& invocation) {
    if (invocation.site.json)
        return MakeJsonRenderer(command.list);
    if (invocation.csv)
        return MakeCsvRenderer({command.csv.begin(), command.csv.end()});
    return MakeLineRenderer(command.row, command.result);
}

bool TakePassword(BacnetInvocation& invocation, std::string& error) {
    std::string password;
    if (invocation.passwordDescriptor) {
        if (!ReadPassword(*invocation.passwordDescriptor, password, error))
            return false;
    } else if (!invocation.asksPassword) {
        return true;
    } else if (!AskPassword("Password: ", password, error)) {
        return false;
    }
    invocation.request.arguments["password"] = password;
    return true;
}

int Run(const BacnetCommand& command, BacnetInvocation& invocation) {
    std::string error;
    if (!TakePassword(invocation, error))
        return ReportFailure(EXIT_FAILED, error, invocation.site.json);
    const auto renderer = RendererOf(command, invocation);
    CDestination destination(invocation.site);
    const ControlReply reply = destination.Ask(
        invocation.request, [&](const std::string& row) { renderer->Row(row); }, command.needsNetwork);
    renderer->End(reply);
    return reply.code;
}

std::string TransferredLine(const nlohmann::ordered_json& result) {
    return result.contains("records")
               ? MemberText(result, "records") + " records, " + MemberText(result, "octets") + " octets"
               : MemberText(result, "octets") + " octets";
}

int RunTransfer(ControlReply (*transfer)(const FileTransfer&, const AskStep&), BacnetInvocation& invocation) {
    CDestination destination(invocation.site);
    const ControlReply reply = transfer(invocation.file, [&](const ControlRequest& request) {
        return destination.Ask(
            request, [](const std::string&) {}, true);
    });
    const auto renderer = invocation.site.json ? MakeJsonRenderer(nullptr) : MakeLineRenderer(nullptr, TransferredLine);
    renderer->End(reply);
    return reply.code;
}

std::string Joined(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values)
        text += (&value == &values.front() ? "" : "\n") + value;
    return text;
}

void AddOption(CLI::App& app, BacnetInvocation& invocation, const CommandOption& option) {
    const std::string key = option.key;
    const auto takeOne = [&invocation, key](const std::string& value) { invocation.request.arguments[key] = value; };
    const auto takeMany = [&invocation, key](const std::vector<std::string>& values) {
        invocation.request.arguments[key] = Joined(values);
    };
    switch (option.arity) {
    case Arity::Required:
        app.add_option_function<std::string>(option.option, takeOne, option.help)->required();
        break;
    case Arity::Optional:
        app.add_option_function<std::string>(option.option, takeOne, option.help);
        break;
    case Arity::Two:
        app.add_option_function<std::vector<std::string>>(option.option, takeMany, option.help)->expected(2);
        break;
    case Arity::Some:
        app.add_option_function<std::vector<std::string>>(option.option, takeMany, option.help)->required();
        break;
    case Arity::Any:
        app.add_option_function<std::vector<std::string>>(option.option, takeMany, option.help);
        break;
    case Arity::Switch:
        app.add_flag_callback(
            option.option, [takeOne] { takeOne("1"); }, option.help);
        break;
    }
}

void AddCommonOptions(CLI::App& app, BacnetInvocation& invocation, const std::string& footer) {
    app.add_option("--data", invocation.site.data, "Data folder");
    app.add_option("--config", invocation.site.config,
                   "Configuration file, where no instance runs; bdc.toml in the data folder if not given");
    app.add_flag("--json", invocation.site.json, "The result as one JSON document");
    app.footer(footer + "\nWhere no instance runs, the command opens the ports of the configuration itself: UDP port "
                        "47808 on all addresses if there is none.");
}

void AddFileCommands(CLI::App& app, const std::shared_ptr<BacnetInvocation>& invocation, const std::string& footer,
                     std::function<int()>& run) {
    struct Direction {
        const char* name;
        const char* help;
        ControlReply (*transfer)(const FileTransfer&, const AskStep&);
    };
    CLI::App& group = *app.add_subcommand("file", "Files of devices");
    group.require_subcommand(1);
    for (const auto& [name, help, transfer] :
         {Direction{"get", "Copies a device's file to this machine", GetFile},
          Direction{"put", "Writes a file of this machine into a device's file", PutFile}}) {
        CLI::App& sub = *group.add_subcommand(name, std::string(help) + "; records are lines of hexadecimal pairs");
        sub.add_option("DEVICE", invocation->file.device, DEVICE_ARGUMENT.help)->required();
        sub.add_option("INSTANCE", invocation->file.instance, "Instance of the file object")->required();
        sub.add_option("PATH", invocation->file.path, "File on this machine")->required();
        AddCommonOptions(sub, *invocation, footer);
        sub.callback([&run, invocation, transfer = transfer] {
            run = [invocation, transfer] { return RunTransfer(transfer, *invocation); };
        });
    }
}

} // namespace

void AddBacnetCommands(CLI::App& app, const std::string& footer, std::function<int()>& run) {
    const auto invocation = std::make_shared<BacnetInvocation>();
    const std::map<std::string, const char*> groupHelp{{"router", "Routers between networks"},
                                                       {"bbmd", "Broadcast management devices"}};
    std::map<std::string, CLI::App*> groups;
    for (const BacnetCommand* const command : BacnetCommands()) {
        if (command->help == nullptr)
            continue;
        CLI::App* parent = &app;
        if (command->group != nullptr) {
            CLI::App*& group = groups[command->group];
            if (group == nullptr) {
                group = app.add_subcommand(command->group, groupHelp.at(command->group));
                group->require_subcommand(1);
            }
            parent = group;
        }
        CLI::App& sub = *parent->add_subcommand(command->name, command->help);
        for (const CommandOption& option : command->options)
            AddOption(sub, *invocation, option);
        if (!command->csv.empty())
            sub.add_flag("--csv", invocation->csv, "Comma-separated lines (RFC 4180)");
        if (command->asksPassword) {
            auto* const prompt = sub.add_flag("--password", invocation->asksPassword, "Asks for the device's password");
            sub.add_option("--password-fd", invocation->passwordDescriptor,
                           "Reads the device's password from this file descriptor")
                ->check(IS_DESCRIPTOR)
                ->excludes(prompt);
        }
        AddCommonOptions(sub, *invocation, footer);
        sub.callback([&run, invocation, command] {
            invocation->request.command = command->FullName();
            run = [invocation, command] { return Run(*command, *invocation); };
        });
    }
    AddFileCommands(app, invocation, footer, run);
}
