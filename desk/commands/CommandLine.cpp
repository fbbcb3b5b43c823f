#include "desk/commands/CommandLine.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <sstream>

namespace desk {
namespace {

constexpr int kMistake = 2; // used instead of the parser's own codes, which are 100 and more
constexpr const char* kVersion = "orderdesk " ORDERDESK_VERSION;

std::optional<double> readSeconds(const std::string& text) {
    char* end = nullptr;
    const double seconds = std::strtod(text.c_str(), &end);
    const bool isNumber = !text.empty() && *end == '\0' && seconds >= 0;
    return isNumber ? std::optional(seconds) : std::nullopt;
}

/// Returns the message for a value that is not a number of seconds; empty if it is one.
std::string secondsMistake(std::string& text) {
    return readSeconds(text) ? std::string() : text + " is not a number of seconds, 0 or more";
}

CLI::App* addCommand(CLI::App& app, const char* name, const char* description, ECommand command,
                     CCommandLine& line) {
    CLI::App* added = app.add_subcommand(name, description);
    added->set_version_flag("--version", kVersion, "Print the version and exit");
    added->add_option("FOLDER", line.m_strFolder, "The desk folder; put -- before a name that begins with -")
        ->required()
        ->type_name("");
    added->callback([&line, command] { line.m_eCommand = command; });
    return added;
}

void addCommands(CLI::App& app, CCommandLine& line) {
    CLI::App* added =
        addCommand(app, "new", "Write a desk folder that works without changes", ECommand::New, line);
    added->add_flag("--confirm", line.m_bConfirm,
                    "The folder's user confirms his orders before they are sent");
    addCommand(app, "check", "Report the mistakes and warnings of a desk folder", ECommand::Check, line);
    CLI::App* run =
        addCommand(app, "run", "Run a desk folder until SIGINT, SIGTERM or SIGHUP", ECommand::Run, line);
    run->add_option_function<std::string>(
           "--exit-when-idle", [&line](const std::string& text) { line.m_exitWhenIdle = readSeconds(text); },
           "End when nothing has happened for SECONDS and no quote change is still to come")
        ->check(CLI::Validator(secondsMistake, ""))
        ->type_name("SECONDS");
    CLI::App* journal = addCommand(app, "journal", "Print the journal", ECommand::Journal, line);
    journal->add_flag("--follow", line.m_bFollow, "Also print new lines, until SIGINT or SIGTERM");
    CLI::App* call = addCommand(app, "call", "Call a function of a desk that runs, and print what came of it",
                                ECommand::Call, line);
    const auto addText = [call](const char* name, std::string& text, const char* description) {
        return call->add_option(name, text, description)->type_name("");
    };
    addText("FUNCTION", line.m_call.m_strFunction, "passorder, smartalgopypassorder or cancel")->required();
    addText("JSON", line.m_call.m_strParam, "The parameters of the function, a JSON object")->required();
    // An option for a text cannot distinguish an empty text from none.
    call->add_option_function<std::string>(
            "--algo", [&line](const std::string& text) { line.m_call.m_algo = text; },
            "The settings of an algorithm, a JSON object; only for smartalgopypassorder")
        ->type_name("JSON");
}

/// Returns the message. If the line has no command, the help with the list of commands follows.
std::string mistakeText(const CLI::App* app, const CLI::Error& error) {
    if (!app->get_subcommands().empty()) return CLI::FailureMessage::simple(app, error);
    return std::string(error.what()) + "\n\n" + app->help();
}

CLineEnd lineEnd(const CLI::App& app, const CLI::ParseError& error) {
    std::ostringstream out, err;
    const bool isMistake = app.exit(error, out, err) != 0;
    return {isMistake ? kMistake : 0, isMistake ? err.str() : out.str(), isMistake};
}

} // namespace

std::variant<CCommandLine, CLineEnd> readCommandLine(int argc, const char* const* argv) {
    CLI::App app("Runs the order service on a folder and trades on paper.", "orderdesk");
    app.set_version_flag("--version", kVersion, "Print the version and exit");
    app.require_subcommand(1);
    app.failure_message(mistakeText);
    CCommandLine line;
    addCommands(app, line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return lineEnd(app, error);
    }
    return line;
}

} // namespace desk
