#include "ProgramHelp.h"

namespace Mox::Tool {

namespace {

// CLI11 appends the choices to the placeholder: "LIST:{cg,hlsl}".

std::string PlaceholderIn(const std::string& typeName)
{
    return typeName.substr(0, typeName.find(':'));
}

std::vector<std::string> ChoicesIn(const std::string& typeName)
{
    const std::size_t begin = typeName.find('{');
    const std::size_t end = typeName.rfind('}');
    if (begin == std::string::npos || end == std::string::npos)
        return {};
    return CLI::detail::split(typeName.substr(begin + 1, end - begin - 1), ',');
}

ArgumentHelp DescribeArgument(const CLI::Option& option)
{
    ArgumentHelp help;
    help.IsPositional = option.get_positional();
    help.IsRequired = option.get_required();
    help.IsRepeated = option.get_expected_max() > 1;
    help.Text = option.get_description();
    help.Choices = ChoicesIn(option.get_type_name());
    if (help.IsPositional) {
        help.Value = option.get_name(true, false);
        help.Names = {help.Value};
        return help;
    }
    for (const std::string& name : option.get_snames())
        help.Names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        help.Names.push_back("--" + name);
    if (option.get_expected_max() > 0 && option.get_type_size() > 0)
        help.Value = PlaceholderIn(option.get_type_name());
    help.Default = option.get_default_str();
    return help;
}

CommandHelp DescribeCommand(const CLI::App& command)
{
    CommandHelp help{command.get_name(), command.get_description(), {}, command.get_footer()};
    const CLI::App* program = command.get_parent();
    for (const CLI::Option* option : command.get_options({})) {
        if (!program || option != command.get_help_ptr())
            help.Arguments.push_back(DescribeArgument(*option));
    }
    return help;
}

} // namespace

ProgramHelp DescribeProgram(const CLI::App& program)
{
    ProgramHelp help{DescribeCommand(program), {}};
    const auto isListed = [](const CLI::App* command) { return !command->get_group().empty(); };
    for (const CLI::App* command : program.get_subcommands(isListed))
        help.Commands.push_back(DescribeCommand(*command));
    return help;
}

} // namespace Mox::Tool
