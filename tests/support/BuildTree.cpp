#include "tests/support/BuildTree.h"

using namespace Mox::Host;

const PluginSet& TestPlugins()
{
    static const PluginSet plugins = [] {
        PluginSet set;
        set.LoadFolder(DefaultPluginFolder());
        return set;
    }();
    return plugins;
}

const Environment& TestEnvironment()
{
    static const Environment environment = ReadEnvironment(DefaultEnvironmentFolder());
    return environment;
}
