#include "Commands.h"
#include "DocumentSource.h"
#include "LoadPlugins.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/json/RecordJson.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* bindingsFooter = R"(Examples:
  mox bindings rim.xml > rim.bindings.xml
  mox bindings --read rim.bindings.xml
  mox bindings rim.xml --json | jq -r '.bindings[].tag'
)";

std::vector<Host::PluginBinding> BindingsOfMaterial(const std::string& file,
                                                    const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    return Host::CreateBindings(Host::WithoutErrors([&](auto& problems) {
        return Host::OpenMaterial(ReadDocument(file, problems), plugins, problems);
    }));
}

} // namespace

void AddBindingsCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand(
        "bindings", "Print the bindings of a material, or of a bindings document");
    auto file = std::make_shared<std::string>();
    auto isRead = std::make_shared<bool>(false);
    auto isJson = std::make_shared<bool>(false);
    AddDocument(*command, "FILE", *file);
    command->add_flag("--read", *isRead, "Read FILE as a bindings document");
    command->add_flag("--json", *isJson, "Print JSON instead of XML");
    command->footer(bindingsFooter);
    command->callback([=, &common] {
        const auto bindings = *isRead ? Host::ParseBindings(SourceName(*file), ReadSource(*file))
                                      : BindingsOfMaterial(*file, common);
        std::cout << (*isJson ? Host::FormatBindingsAsJson(bindings)
                              : Host::FormatBindings(bindings));
    });
}

} // namespace Mox::Tool
