# mox_add_plugin(NAME SOURCE...): adds a module that exports only the two entry functions of a
# plug-in. It works the same in this tree and after find_package(Mox).
function(mox_add_plugin name)
  set(exports ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/MoxPlugin.map)
  add_library(${name} MODULE ${ARGN})
  target_link_libraries(${name} PRIVATE Mox::materials)
  # Templates of the standard library have default visibility, so only a linker script can hide
  # them.
  target_link_options(${name} PRIVATE -Wl,--version-script=${exports})
  if(NOT MOX_BUILD_FUZZERS) # clang's fuzzers leave some sanitizer symbols to the program
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS ${exports}
    BUILD_RPATH_USE_ORIGIN ON
    # Plug-ins are installed into the folder mox next to the library.
    INSTALL_RPATH $ORIGIN/..)
  if(DEFINED MOX_PLUGIN_OUTPUT_DIRECTORY)
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${MOX_PLUGIN_OUTPUT_DIRECTORY})
  endif()
endfunction()
