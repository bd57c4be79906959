#include "Commands.h"
#include "ProgramHelp.h"
#include "Signals.h"
#include "mox/host/Excerpt.h"
#include "mox/host/NearestName.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <new>
#include <system_error>
#include <unistd.h>

namespace {

constexpr const char* programFooter = R"(Environment:
  MOX_PLUGIN_PATH  Folders with plug-ins, separated by colons. They are searched after the folders
                   of --plugins and before the folder installed with mox.
  MOX_NODE_PATH    Folders with node files, separated by colons. They are searched after the
                   folders of --nodes.

Exit status:
  0  Success.
  1  An input is invalid, or an output cannot be written. For mox diff: the materials differ.
  2  The command line is invalid. For mox diff: or a material cannot be read.

Examples:
  mox export examples/two_maths.xml
  mox export materials -o shaders
  mox catalogue
  mox export --help
)";

/// Describes the first argument if it should be a command but is not.
std::string FormatUnknownCommand(const CLI::App& program, const std::string& argument)
{
    const std::string text = "there is no command \"" + argument + "\"";
    std::error_code error;
    if (std::filesystem::exists(argument, error))
        return text + "; the command comes before the file, as in \"mox check FILE\"";
    std::vector<Mox::Host::RightName> names;
    for (const Mox::Tool::CommandHelp& command : Mox::Tool::DescribeProgram(program).Commands)
        names.push_back({command.Name});
    return text + Mox::Host::SuggestName(argument, names);
}

/// Describes an option that neither the command nor the program has.
std::string FormatUnknownOption(const CLI::App& program, const std::string& argument)
{
    std::vector<Mox::Host::RightName> names;
    const auto addOptions = [&](const Mox::Tool::CommandHelp& command) {
        for (const Mox::Tool::ArgumentHelp& option : command.Arguments) {
            for (const std::string& name : option.Names) {
                if (name.starts_with("--"))
                    names.push_back({name});
            }
        }
    };
    const Mox::Tool::ProgramHelp help = Mox::Tool::DescribeProgram(program);
    for (const Mox::Tool::CommandHelp& command : help.Commands) {
        if (program.got_subcommand(command.Name))
            addOptions(command);
    }
    addOptions(help.Program);
    const std::string option = argument.substr(0, argument.find('='));
    return "there is no option \"" + option + "\"" + Mox::Host::SuggestName(option, names);
}

/// Reports an unknown argument, if any, because it is more informative than a missing one.
std::string FormatUsageError(const CLI::App* program, const CLI::Error& error)
{
    constexpr bool withCommands = true;
    const std::vector<std::string> unknown = program->remaining(withCommands);
    std::string text = error.what();
    if (!unknown.empty()) {
        if (unknown.front().starts_with('-'))
            text = FormatUnknownOption(*program, unknown.front());
        else if (program->get_subcommands().empty())
            text = FormatUnknownCommand(*program, unknown.front());
        else
            text = "\"" + unknown.front() + "\" was not expected";
    } else if (program->get_subcommands().empty() && error.get_name() == "RequiredError") {
        text = "a command is required, as in \"mox check FILE\"";
    }
    return "mox: " + Mox::Host::MessageLine(text) + "\nRun with --help for more information.\n";
}

/// Opens the standard streams that are closed, so that no other file gets one of their descriptors
/// and receives the program's output. They remain unusable: input is opened only for writing, and
/// outputs only for reading.
void OccupyStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) // open uses the lowest free number, which is this one
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

/// @returns the exit status
int RunProgram(int argc, char** argv)
{
    using namespace Mox::Tool;
    CLI::App program("Create, check and preview materials, and export their shader programs.",
                     "mox");
    program.require_subcommand(1);
    program.fallthrough();
    program.failure_message(FormatUsageError);
    program.set_version_flag("--version", "mox " MOX_VERSION, "Print the version and exit");
    CommonOptions common;
    program
        .add_option("--plugins", common.PluginFolders,
                    "Additional folder with plug-ins; may be repeated")
        ->type_name("DIR")
        ->allow_extra_args(false);
    program
        .add_option("--nodes", common.NodeFolders,
                    "Additional folder with node files; may be repeated")
        ->type_name("DIR")
        ->allow_extra_args(false);
    AddExportCommand(program, common);
    AddCheckCommand(program, common);
    AddDiffCommand(program, common);
    AddConvertCommand(program, common);
#ifdef MOX_HAS_EDITOR
    AddEditCommand(program, common);
#endif
    AddFormatCommand(program, common);
    AddApplyCommand(program, common);
    AddBindingsCommand(program, common);
    AddCatalogueCommand(program, common);
#ifdef MOX_HAS_PICTURES
    AddGraphCommand(program, common);
#endif
    AddNewCommand(program, common);
#ifdef MOX_HAS_PREVIEW
    AddPreviewCommand(program, common);
#endif
    AddCompleteCommand(program, common);
    AddManualCommand(program);
    program.footer(programFooter); // commands would inherit it if it were set earlier
    int status = 0;
    try {
        program.parse(argc, argv);
    } catch (const CLI::RuntimeError& error) {
        status = error.get_exit_code();
    } catch (const CLI::ParseError& error) {
        status = program.exit(error) == 0 ? 0 : usageStatus;
    }
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "mox: the output cannot be written\n";
        return std::max(status, failureStatus);
    }
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    OccupyStandardStreams();
    std::signal(SIGXFSZ, SIG_IGN); // so that writing reports an error, as on a full disk
    Mox::Tool::CleanUpOnSignals();
    try {
        return RunProgram(argc, argv);
    } catch (const std::bad_alloc&) {
        std::cerr << "mox: there is not enough memory\n";
        return Mox::Tool::failureStatus;
    } catch (const std::exception& error) {
        std::cerr << "mox: " << Mox::Host::MessageLine(error.what()) << '\n';
        return Mox::Tool::failureStatus;
    }
}
