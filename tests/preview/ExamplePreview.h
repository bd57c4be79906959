#pragma once

#include "mox/preview/MaterialPreview.h"
#include "tests/support/BuildTree.h"

#include <string>
#include <vector>

/// Previews of the examples, for comparison with pictures from a browser.
struct ExamplePreview
{
    ExamplePreview() : Drawer(TestPlugins(), TestEnvironment(), Files, true) {}

    const std::vector<std::string>& ValidationMessages() const
    {
        return Drawer.ValidationMessages();
    }

    Mox::Host::FileDecoder Files;
    Mox::Host::MaterialPreview Drawer;
};
