#include "host/CommandLine.h"

#include "base/NumberText.h"
#include "host/BacnetCommandLine.h"
#include "host/BacnetNames.h"
#include "host/ControlClient.h"
#include "host/DataFolder.h"
#include "host/Demo.h"
#include "host/HelpText.h"
#include "host/Output.h"
#include "host/Program.h"
#include "host/Render.h"
#include "host/Run.h"
#include "host/TimeText.h"
#include "host/UserCommands.h"
#include "host/Version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <map>
#include <string>

namespace {

constexpr const char* FOOTER = "Exit codes: 0 done, 1 failed, 2 wrong usage, 3 partly done.\n"
                               "A command talks to the instance that runs on the data folder: --data, or "
                               "$XDG_STATE_HOME/bdc, or ~/.local/state/bdc.";

const CLI::Validator IS_TIME(
    [](const std::string& text) {
        return ParseTime(text) ? std::string() : "not a time: " + text + " (YYYY-MM-DD[ hh:mm[:ss]][Z] or @SECONDS)";
    },
    "TIME");

const CLI::Validator IS_INSTANCE(
    [](const std::string& text) {
        const auto number = ParseU32(text);
        return number && *number <= 4194303 ? std::string() : "not an instance from 0 to 4194303: " + text;
    },
    "NUMBER");

const CLI::Validator IS_TYPE(
    [](const std::string& text) { return ObjectTypeByText(text) ? std::string() : "not an object type: " + text; },
    "TYPE");

// What a command line asks for.
struct Invocation {
    std::function<int(Invocation&)> command;
    ControlRequest request;
    const char* list = nullptr; // name of the rows in JSON
    std::string data;
    bool json = false;
    bool csv = false;
    RunOptions run;
    DemoOptions demo;
};

int AskInstance(Invocation& invocation) {
    const std::string folder = AbsolutePath(invocation.data.empty() ? DefaultDataFolder() : invocation.data);
    std::unique_ptr<IRenderer> renderer;
    if (invocation.json)
        renderer = MakeJsonRenderer(invocation.list);
    else
        renderer = invocation.csv ? MakeCsvRenderer({"time", "value"}) : MakeTextRenderer(invocation.request.command);
    const ControlReply reply =
        CControlClient::Ask(folder, invocation.request, [&](const std::string& row) { renderer->Row(row); });
    renderer->End(reply);
    return reply.code;
}

// An argument that goes into the request as it stands.
CLI::Option* AddArgument(CLI::App& app, Invocation& invocation, const std::string& option, const std::string& key,
                         const std::string& help) {
    return app.add_option_function<std::string>(
        option, [&invocation, key](const std::string& value) { invocation.request.arguments[key] = value; }, help);
}

void AddSwitch(CLI::App& app, Invocation& invocation, const std::string& option, const std::string& key,
               const std::string& help) {
    app.add_flag_callback(
        option, [&invocation, key] { invocation.request.arguments[key] = "1"; }, help);
}

struct ClientCommand {
    const char* group; // null: a command of its own
    const char* name;
    const char* help;
    const char* list; // name of the rows in JSON
    void (*addOptions)(CLI::App& app, Invocation& invocation);
};

constexpr ClientCommand CLIENT_COMMANDS[] = {
    {"tag", "list", "All tags with type, value and unit", "tags", [](CLI::App&, Invocation&) {}},
    {"tag", "get", "Value of a tag", nullptr,
     [](CLI::App& app, Invocation& invocation) {
         AddArgument(app, invocation, "NAME", "name", "Name of the tag")->required();
     }},
    {"tag", "set", "Gives a tag a value", nullptr,
     [](CLI::App& app, Invocation& invocation) {
         AddArgument(app, invocation, "NAME", "name", "Name of the tag")->required();
         AddArgument(app, invocation, "VALUE", "value", "Number, 0 or 1, or text, as the tag's type asks")->required();
     }},
    {"history", "transfer", "Starts a history transfer: all, one device, or one object", nullptr,
     [](CLI::App& app, Invocation& invocation) {
         auto* device = AddArgument(app, invocation, "DEVICE", "device", "Device instance")->check(IS_INSTANCE);
         auto* type = AddArgument(app, invocation, "TYPE", "type", "Object type: number or name")->check(IS_TYPE);
         auto* instance = AddArgument(app, invocation, "INSTANCE", "instance", "Object instance")->check(IS_INSTANCE);
         type->needs(device)->needs(instance);
         AddSwitch(app, invocation, "--wait", "wait", "Waits for the end; exit code 3 when there were errors");
     }},
    {"history", "count", "Number of stored records, of a tag or of all", "tags",
     [](CLI::App& app, Invocation& invocation) { AddArgument(app, invocation, "TAG", "tag", "Name of the tag"); }},
    {"history", "query", "Stored records of a tag in the order of time", "rows",
     [](CLI::App& app, Invocation& invocation) {
         AddArgument(app, invocation, "TAG", "tag", "Name of the tag")->required();
         AddArgument(app, invocation, "--from", "from", "First time")->check(IS_TIME);
         AddArgument(app, invocation, "--to", "to", "Last time")->check(IS_TIME);
         AddSwitch(app, invocation, "--all", "all", "Also records that repeat another one in every field");
         app.add_flag("--csv", invocation.csv, "Comma-separated lines (RFC 4180)");
     }},
    {nullptr, "status", "What the running instance does", nullptr, [](CLI::App&, Invocation&) {}},
    {nullptr, "open", "Opens the console after a login, as a click on its tray icon does", nullptr,
     [](CLI::App&, Invocation&) {}},
    {nullptr, "show", "Shows the console without a login", nullptr, [](CLI::App&, Invocation&) {}},
    {nullptr, "stop", "Ends the running instance in order", nullptr, [](CLI::App&, Invocation&) {}},
};

void AddClientCommands(CLI::App& app, Invocation& invocation) {
    std::map<std::string, CLI::App*> groups;
    for (const auto& [name, help] :
         {std::pair("tag", "Tags of the running instance"), std::pair("history", "History of the running instance")}) {
        groups[name] = app.add_subcommand(name, help);
        groups[name]->require_subcommand(1);
    }
    for (const ClientCommand& command : CLIENT_COMMANDS) {
        CLI::App& parent = command.group == nullptr ? app : *groups[command.group];
        CLI::App& sub = *parent.add_subcommand(command.name, command.help);
        const std::string name =
            command.group == nullptr ? command.name : command.group + std::string(" ") + command.name;
        command.addOptions(sub, invocation);
        sub.add_option("--data", invocation.data, "Data folder of the instance");
        sub.add_flag("--json", invocation.json, "The result as one JSON document");
        sub.footer(FOOTER);
        sub.callback([&invocation, name, list = command.list] {
            invocation.request.command = name;
            const bool hasOneResult = name == "history count" && invocation.request.arguments.count("tag") != 0;
            invocation.list = hasOneResult ? nullptr : list;
            invocation.command = AskInstance;
        });
    }
}

void AddRun(CLI::App& app, Invocation& invocation) {
    CLI::App& run = *app.add_subcommand("run", "Runs the driver with its console until a signal ends it");
    run.add_option("--config", invocation.run.config, "Configuration file; bdc.toml in the data folder if not given");
    run.add_option("--data", invocation.run.data, "Data folder; counts before what the configuration says");
    run.add_flag("--headless", invocation.run.headless, "Without a window, also where there is a display");
    run.add_flag("--json", invocation.run.json, "Messages as JSON documents");
    run.footer(FOOTER);
    run.callback([&] { invocation.command = [](Invocation& i) { return RunDriver(i.run); }; });
}

void AddDemo(CLI::App& app, Invocation& invocation) {
    CLI::App& demo = *app.add_subcommand(
        "demo", "Runs a demonstration: simulated devices, and the transfer of their logs into the history");
    DemoOptions& options = invocation.demo;
    demo.add_flag("--once", options.once, "Ends when the transfer is done, with a summary");
    demo.add_flag("--headless", options.headless, "Without a window, also where there is a display");
    demo.add_option("--devices", options.devices, "Simulated devices (3)")->check(CLI::Range(1, 1000));
    demo.add_option("--trends", options.trends, "Logs of each device, the last one a trend-log-multiple (5)")
        ->check(CLI::Range(1, 200));
    demo.add_option("--records", options.records, "Records in each log (250)")->check(CLI::Range(1, 1000000));
    demo.add_option("--port", options.port, "UDP port of the demonstration (47808, or the next free one)")
        ->check(CLI::Range(1, 65535));
    demo.add_option("--data", options.data,
                    "Data folder; $XDG_STATE_HOME/bdc-demo or ~/.local/state/bdc-demo if not given");
    demo.add_flag("--json", options.json, "The summary as a JSON document");
    demo.footer("A later run on the same data folder continues: it stores what has been added to the logs. The site "
                "only grows.\n" +
                std::string(FOOTER));
    demo.callback([&] { invocation.command = [](Invocation& i) { return RunDemo(i.demo); }; });
}

// The command that the words had reached when they went wrong.
const CLI::App& ReachedCommand(const CLI::App& app) {
    const auto reached = app.get_subcommands();
    return reached.empty() ? app : ReachedCommand(*reached.front());
}

std::string FullName(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    return (parent == nullptr ? std::string() : FullName(*parent) + " ") + command.get_name();
}

// A word that nobody knows says more than that another one is missing.
std::string Fault(const CLI::App& command, const CLI::ParseError& error) {
    const auto unknown = command.remaining();
    const bool hasCommands = !command.get_subcommands([](const CLI::App*) { return true; }).empty();
    if (!unknown.empty())
        return "\"" + unknown.front() + "\" is " +
               (unknown.front().starts_with('-') ? "no option of it"
                : hasCommands                    ? "no command"
                                                 : "one word too many");
    return dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && hasCommands ? "a command is missing"
                                                                                     : error.what();
}

int ReportUsage(const CLI::App& app, const CLI::ParseError& error, bool json) {
    const CLI::App& command = ReachedCommand(app);
    const std::string name = FullName(command);
    const std::string fault = Fault(command, error);
    if (json)
        return ReportFailure(EXIT_USAGE, name + ": " + fault, json);
    Put(stderr, "{}: {}\n{} --help tells more.\n", name, fault, name);
    return EXIT_USAGE;
}

int Execute(int argc, char** argv) {
    Invocation invocation;
    CLI::App app("BACnet configuration console and unattended jobs", "bdc");
    app.formatter(HelpFormatter());
    app.set_version_flag("--version", "bdc " BDC_VERSION);
    app.require_subcommand(1);
    app.footer(std::string(FOOTER) + "\nHelp of the console: " + HelpPath() + "BDC/1.html");
    AddRun(app, invocation);
    AddDemo(app, invocation);
    AddClientCommands(app, invocation);
    std::function<int()> otherCommand;
    AddBacnetCommands(app, FOOTER, otherCommand);
    AddUserCommands(app, FOOTER, otherCommand);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& success) { // --help, --version
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        return ReportUsage(app, error, std::find(argv, argv + argc, std::string_view("--json")) != argv + argc);
    }
    return otherCommand ? otherCommand() : invocation.command(invocation);
}

} // namespace

int RunCommandLine(int argc, char** argv) {
    OccupyStandardStreams();
    const int code = Execute(argc, argv);
    std::string error;
    return FlushOutput(error) ? code : ReportFailure(EXIT_FAILED, error, false);
}
