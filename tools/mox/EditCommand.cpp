#include "Browser.h"
#include "Commands.h"
#include "DocumentSource.h"
#include "LoadEnvironment.h"
#include "LoadPlugins.h"
#include "NumberCheck.h"
#include "Signals.h"
#include "Targets.h"
#include "mox/server/EditorServer.h"

#ifdef MOX_HAS_PREVIEW
#include "DecodeOptions.h"
#include "EditorPainter.h"
#include "mox/preview/MeshShapes.h"
#endif

#include <filesystem>
#include <iostream>
#include <system_error>

namespace Mox::Tool {

namespace {

constexpr const char* editFooter =
    R"(Prints the address of the editor and opens it in a browser. The address
works on this machine only. It contains a secret: anyone who knows the
address can change the material. The program ends ten seconds after the last
page is closed, after thirty minutes without a page, or on Ctrl+C. Unsaved
changes are stored next to the document. The next mox edit of the document
offers to restore them.

Examples:
  mox edit rim.xml
  mox edit rim.xml --mesh house.glb
  mox edit new.xml --no-browser --port 8080
)";

struct EditOptions
{
    std::string File;
    std::uint16_t Port = 0;
    bool HasBrowser = true;
    std::string Environment;
#ifdef MOX_HAS_PREVIEW
    std::string Mesh;
    Host::DecodeSettings Files;
#endif
};

std::map<std::string, std::shared_ptr<const Host::ProgramFormat>> MakeAllFormats()
{
    std::map<std::string, std::shared_ptr<const Host::ProgramFormat>> made;
    for (const std::string& word : TargetWords())
        made.emplace(word,
                     std::move(MakeFormats({word}, Languages::Precision::Full, false).front()));
    return made;
}

/// Serves the document until the server stops.
/// @returns the signal that stopped it, or 0
int Serve(const EditOptions& options, const CommonOptions& common)
{
    if (IsStandardInput(options.File))
        throw CLI::ValidationError("FILE",
                                   "the editor saves to a file, so it cannot edit standard input");
    const Host::PluginSet plugins = LoadPlugins(common);
    const Host::Environment environment = LoadEnvironment(options.Environment);
    Host::EditorServices services;
    services.Plugins = &plugins;
    services.Environment = &environment;
    services.Formats = MakeAllFormats();
    services.Proof = MakeTargetCheck();
#ifdef MOX_HAS_PREVIEW
    services.Pictures = std::make_shared<EditorPainter>(plugins, environment, options.Files);
    if (!options.Mesh.empty()) {
        services.Mesh = std::make_shared<const Host::LoadedMesh>(
            PackMesh(Host::FindMesh(options.Mesh, Host::FileDecoder(options.Files))));
    }
#endif
    Host::EditorSession session(options.File, services);
    Host::ServerSettings settings;
    settings.Port = options.Port;
    StopOnSignal stop;
    Host::EditorServer server(session, settings);
    std::cout << server.Address() << std::endl; // flushed because the caller waits for it
    if (std::error_code error; !std::filesystem::exists(options.File, error))
        std::cerr << "mox: " << options.File << ": does not exist yet; saving creates it\n";
    Browser browser;
    if (settings.Pages.empty())
        std::cerr << "mox: this program was built without the page of the editor, so a browser "
                     "cannot use the address\n";
    else if (options.HasBrowser && !browser.Open(server.Address()))
        std::cerr
            << "mox: no browser could be started; open the address in one, or press Ctrl+C to "
               "end the program\n";
    server.Run(stop.Token());
    if (session.Document().IsUnsaved())
        std::cerr << "mox: " << options.File
                  << ": the next mox edit of this file offers to restore the unsaved changes\n";
    return stop.Signal();
}

void Edit(const EditOptions& options, const CommonOptions& common)
{
    if (const int signal = Serve(options, common)) {
        std::cout.flush();
        EndBySignal(signal);
    }
}

} // namespace

void AddEditCommand(CLI::App& program, const CommonOptions& common)
{
    constexpr int largestPort = 65535;
    auto* command = program.add_subcommand("edit", "Edit a material in a browser");
    const auto options = std::make_shared<EditOptions>();
    command
        ->add_option("FILE", options->File,
                     "Material document; saving creates it if it does not exist")
        ->type_name("")
        ->required();
    command->add_option("--port", options->Port, "TCP port; by default the system chooses one")
        ->type_name("N")
        ->transform(IntegerIn(1, largestPort));
    command->add_flag_callback(
        "--no-browser", [options] { options->HasBrowser = false; },
        "Print the address without opening a browser");
    AddEnvironmentOption(*command, options->Environment);
#ifdef MOX_HAS_PREVIEW
    command
        ->add_option("--mesh", options->Mesh,
                     "Mesh to show the material on: \"sphere\", \"plane\", \"cube\", or an .obj, "
                     ".gltf or .glb file")
        ->type_name("MESH");
    AddDecodeOptions(*command, options->Files.Limits);
#endif
    command->footer(editFooter);
    command->callback([options, &common] { Edit(*options, common); });
}

} // namespace Mox::Tool
