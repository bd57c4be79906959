#pragma once

#include <string>

/// A square from -1 to 1 that faces z and shows the whole image upright.
inline const std::string squareObj = "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                                     "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                                     "f 1/1 2/2 3/3 4/4\n";

/// The same as glTF, in which v points down in the image.
std::string MakeSquareGltf();
