# Writes the editor's pages as a C++ source file.
# Usage: cmake -DFOLDER=pages -DOUTPUT=EmbeddedPages.cpp -P EmbedPages.cmake
set(names index.html app.js app.css)
set(targets / /app.js /app.css)
set(types text/html text/javascript text/css)

set(arrays "")
set(entries "")
foreach(name target type IN ZIP_LISTS names targets types)
  if(NOT EXISTS ${FOLDER}/${name})
    set(entries "")
    break() # the pages are only useful together
  endif()
  file(READ ${FOLDER}/${name} bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  string(MAKE_C_IDENTIFIER ${name} array)
  string(APPEND arrays "constexpr char ${array}[] = {${bytes}'\\0'};\n")
  string(APPEND entries
    "    {\"${target}\", \"${type}; charset=utf-8\", {${array}, sizeof(${array}) - 1}},\n")
endforeach()
if(entries STREQUAL "")
  set(arrays "")
  set(pages "    return {};\n")
else()
  set(pages "    static constexpr Page pages[] = {\n${entries}    };\n    return pages;\n")
endif()
file(WRITE ${OUTPUT} "#include \"mox/server/Page.h\"

namespace Mox::Host {
namespace {

${arrays}
} // namespace

std::span<const Page> EmbeddedPages()
{
${pages}}

} // namespace Mox::Host
")
