# mox_add_plugin(NAME SOURCE...): a module that lets nothing be seen but the two functions by which
# a plug-in is entered, in the folder where the programs look for plug-ins.
function(mox_add_plugin name)
  set(exports ${PROJECT_SOURCE_DIR}/mox/plugin/exports.map)
  add_library(${name} MODULE ${ARGN})
  target_link_libraries(${name} PRIVATE mox_materials)
  # Templates of the standard library have default visibility, so hiding needs the linker's help.
  target_link_options(${name} PRIVATE -Wl,--version-script=${exports} -Wl,--no-undefined)
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    LINK_DEPENDS ${exports}
    LIBRARY_OUTPUT_DIRECTORY ${MOX_PLUGIN_OUTPUT_DIRECTORY}
    BUILD_RPATH_USE_ORIGIN ON)
endfunction()
