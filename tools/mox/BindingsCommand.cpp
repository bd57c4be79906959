#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/OpenMaterial.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* bindingsFooter = R"(Examples:
  mox bindings rim.xml > rim.bindings.xml
  mox bindings --read rim.bindings.xml
)";

std::vector<Host::PluginBinding> BindingsOfMaterial(const std::string& file,
                                                    const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    Host::ProblemList problems;
    const Host::MaterialGraph graph = Host::OpenMaterial(file, plugins, problems);
    problems.ThrowFirstError();
    return Host::CreateBindings(graph);
}

} // namespace

void AddBindingsCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand(
        "bindings", "Print the bindings of a material, or of a bindings document, as XML");
    auto file = std::make_shared<std::string>();
    auto isRead = std::make_shared<bool>(false);
    command->add_option("FILE", *file, "Material document")->type_name("")->required();
    command->add_flag("--read", *isRead, "FILE is a bindings document: read it back");
    command->footer(bindingsFooter);
    command->callback([=, &common] {
        const auto bindings =
            *isRead ? Host::ReadBindings(*file) : BindingsOfMaterial(*file, common);
        std::cout << Host::FormatBindings(bindings);
    });
}

} // namespace Mox::Tool
