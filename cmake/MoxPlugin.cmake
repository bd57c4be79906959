# mox_add_plugin(NAME SOURCE...): a module that lets nothing be seen but the two functions by which
# a plug-in is entered. It works alike in this tree and behind find_package(Mox).
function(mox_add_plugin name)
  set(exports ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/MoxPlugin.map)
  add_library(${name} MODULE ${ARGN})
  target_link_libraries(${name} PRIVATE Mox::materials)
  # Templates of the standard library have default visibility, so hiding needs the linker's help.
  target_link_options(${name} PRIVATE -Wl,--version-script=${exports})
  if(NOT MOX_BUILD_FUZZERS) # with fuzzers, clang leaves parts of the sanitizers to the program
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS ${exports}
    BUILD_RPATH_USE_ORIGIN ON
    # A plug-in is installed into the folder mox beside the library.
    INSTALL_RPATH $ORIGIN/..)
  if(DEFINED MOX_PLUGIN_OUTPUT_DIRECTORY)
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${MOX_PLUGIN_OUTPUT_DIRECTORY})
  endif()
endfunction()
