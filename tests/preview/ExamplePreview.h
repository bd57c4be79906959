#pragma once

#include "mox/preview/MaterialPreview.h"
#include "tests/support/Browser.h"
#include "tests/support/BuildTree.h"
#include "tests/support/DeviceTest.h"

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

/// Tests that compare previews with pictures from a browser.
class BrowserPictureTest : public DeviceTest<ExamplePreview>
{
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        if (!HasBrowser())
            GTEST_SKIP() << "no browser was found";
        if (Get().Drawer.DeviceName().find("llvmpipe") == std::string::npos)
            GTEST_SKIP() << "other devices filter textures anisotropically";
    }

    /// A preview of a document at time 0.
    static Mox::Host::Picture Draw(const std::filesystem::path& file, const Mox::Host::Mesh& mesh,
                                   std::uint32_t size)
    {
        Mox::Host::PreviewOptions options;
        options.Width = options.Height = size;
        Mox::Host::ProblemList problems;
        const Mox::Host::Picture picture = Get().Drawer.RenderMaterial(
            Mox::Host::ReadMaterialDocument(file), mesh, options, problems);
        problems.ThrowFirstError();
        return picture;
    }
};
