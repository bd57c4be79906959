#pragma once

#include "tests/numbers/FloatTarget.h"

#include <string>
#include <vector>

/// A pair of programs for a browser.
struct BrowserRun
{
    const char* Language; ///< "essl" or "wgsl"
    std::string Vertex;
    std::string Fragment;
};

/// The contents of a uniform block.
struct RunBlock
{
    std::string Name;
    Mox::Host::DrawUniforms Uniforms;
};

/// The output of a program, or why there is none.
struct RunResult
{
    std::vector<Numbers> Pixels;
    std::string Error;
};

/// Draws the same input with each pair of programs in a headless browser with software rendering.
/// @param expressions rows of the image
/// @param blocks used by all programs
/// @throws std::runtime_error if the browser does not draw at all
std::vector<RunResult> DrawInBrowser(const std::vector<BrowserRun>& runs, std::size_t expressions,
                                     const std::vector<Numbers>& inputs,
                                     const std::vector<RunBlock>& blocks = {});

/// Compiles the MSL fragment programs of CgCases with a C++ compiler and runs them.
/// @param rows number of expressions in each program
/// @param blocks used by all programs, in the order of their numbers
/// @throws std::runtime_error with the compiler's messages
std::vector<RunResult> RunMsl(const std::vector<std::string>& programs,
                              const std::vector<std::size_t>& rows,
                              const std::vector<Numbers>& inputs,
                              const std::vector<RunBlock>& blocks = {});
