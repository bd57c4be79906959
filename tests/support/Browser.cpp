#include "tests/support/Browser.h"

#include "mox/Text.h"
#include "mox/host/File.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <stdexcept>

using namespace Mox;
using Materials::Compose;

std::string Quoted(const std::filesystem::path& path)
{
    return Compose("'", path.string(), "'");
}

void RunCommand(const std::string& command, const std::filesystem::path& log)
{
    if (std::system(Compose(command, " >", Quoted(log), " 2>&1").c_str()) != 0)
        throw std::runtime_error(Compose(command, "\n", Host::ReadFile(log)));
}

bool HasBrowser()
{
    return std::system("command -v node >/dev/null && command -v chromium >/dev/null") == 0;
}

nlohmann::json AskBrowser(const nlohmann::json& request, const std::filesystem::path& page)
{
    const TemporaryFolder folder;
    const std::filesystem::path answer = folder.Path() / "answer.json";
    RunCommand(Compose("node " MOX_TEST_DATA "/languages/browser/draw.js ",
                       Quoted(folder.Write("request.json", request.dump())), " ", Quoted(answer),
                       page.empty() ? "" : " " + Quoted(page)),
               folder.Path() / "log");
    return nlohmann::json::parse(Host::ReadFile(answer));
}
