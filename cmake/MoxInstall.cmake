# Installation folders. Programs, library, plug-ins and environment find each other by relative
# paths, so the installed tree can be moved as a whole.
include(CMakePackageConfigHelpers)

file(RELATIVE_PATH programs_to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(mox PROPERTIES INSTALL_RPATH $ORIGIN/${programs_to_libraries})

# For users of the command line.
install(TARGETS mox RUNTIME COMPONENT Runtime)
if(MOX_BUILD_DECODE)
  # This program needs none of our libraries.
  install(TARGETS mox_decode_program
    RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/mox COMPONENT Runtime)
endif()
install(TARGETS mox_core mox_library mox_surface
  LIBRARY DESTINATION ${MOX_PLUGIN_FOLDER} COMPONENT Runtime)
install(DIRECTORY plugins/library/nodes DESTINATION ${MOX_PLUGIN_FOLDER} COMPONENT Runtime)
install(DIRECTORY environment DESTINATION ${MOX_DATA_FOLDER} COMPONENT Runtime)
install(FILES mox/document/schema/material.rng mox/nodefile/schema/node.rng
  DESTINATION ${MOX_DATA_FOLDER} COMPONENT Runtime)
install(FILES ${PROJECT_BINARY_DIR}/help/mox.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Runtime)
install(FILES tools/mox/completions/mox.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME mox COMPONENT Runtime)
install(FILES tools/mox/completions/mox.fish
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT Runtime)
install(FILES tools/mox/completions/mox.zsh
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions RENAME _mox COMPONENT Runtime)

# For authors of plug-ins and programs: the libraries and their public headers, for CMake and
# pkg-config.
include(cmake/MoxHeaders.cmake)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Mox)
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_to_prefix
  ${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})

# mox_install_component(NAME TARGETS TARGET... DESCRIPTION TEXT REQUIRES PACKAGES [LIBS FLAGS]
# [CFLAGS FLAGS]): installs static libraries as Mox::NAME and mox-NAME.pc, with the pkg-config
# packages that they require and additional linker flags.
function(mox_install_component name)
  cmake_parse_arguments(PARSE_ARGV 1 component "" "DESCRIPTION;REQUIRES;LIBS;CFLAGS" "TARGETS")
  install(TARGETS ${component_TARGETS} EXPORT Mox-${name} COMPONENT Development
    ARCHIVE COMPONENT Development FILE_SET HEADERS COMPONENT Development)
  install(EXPORT Mox-${name} NAMESPACE Mox:: DESTINATION ${package_folder} COMPONENT Development)
  list(TRANSFORM component_TARGETS PREPEND -l)
  list(JOIN component_TARGETS " " libraries)
  string(STRIP "${libraries} ${component_LIBS}" component_LIBS)
  configure_file(cmake/mox-component.pc.in ${PROJECT_BINARY_DIR}/mox-${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/mox-${name}.pc
    DESTINATION ${pkgconfig_folder} COMPONENT Development)
endfunction()

install(TARGETS mox_materials EXPORT Mox-materials
  LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
  FILE_SET HEADERS COMPONENT Development)
install(EXPORT Mox-materials NAMESPACE Mox:: DESTINATION ${package_folder} COMPONENT Development)
configure_file(cmake/mox.pc.in ${PROJECT_BINARY_DIR}/mox.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/mox.pc DESTINATION ${pkgconfig_folder} COMPONENT Development)

mox_install_component(host TARGETS mox_host
  DESCRIPTION "Materials for programs: documents, graphs, edits, checks and shader programs"
  REQUIRES "mox libpng libxxhash" LIBS "-ldl -pthread" CFLAGS -DBOOST_DLL_USE_STD_FS)
mox_install_component(editor TARGETS mox_editor
  DESCRIPTION "Editing of a material by several windows"
  REQUIRES "mox-host nlohmann_json")
if(MOX_BUILD_COMPILER)
  mox_install_component(compile TARGETS mox_compile
    DESCRIPTION "Shader programs of materials in SPIR-V"
    REQUIRES "mox-host spirv" LIBS -lglslang-default-resource-limits)
endif()
if(MOX_BUILD_PICTURES)
  mox_install_component(pictures TARGETS mox_pictures
    DESCRIPTION "Diagrams of the graphs of materials"
    REQUIRES mox-host)
endif()
if(MOX_BUILD_PREVIEW)
  mox_install_component(preview TARGETS mox_preview mox_decode mox_decoded
    DESCRIPTION "Images of materials, drawn with Vulkan"
    REQUIRES "mox-compile glm" LIBS -ldl)
endif()

configure_package_config_file(cmake/MoxConfig.cmake.in ${PROJECT_BINARY_DIR}/MoxConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS MOX_PLUGIN_FOLDER)
# Before 1.0, every minor version may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MoxConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MoxConfig.cmake ${PROJECT_BINARY_DIR}/MoxConfigVersion.cmake
  cmake/MoxPlugin.cmake cmake/MoxPlugin.map
  DESTINATION ${package_folder} COMPONENT Development)

# Documentation, with the files and folders to which it has relative links.
set(document_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/mox-materials)
install(FILES README.md CHANGELOG.md DESTINATION ${document_folder} COMPONENT Documentation)
install(DIRECTORY docs examples environment
  DESTINATION ${document_folder} COMPONENT Documentation)
install(FILES bench/results.md DESTINATION ${document_folder}/bench COMPONENT Documentation)
install(FILES tools/setup.sh DESTINATION ${document_folder}/tools COMPONENT Documentation)
install(DIRECTORY plugins/surface
  DESTINATION ${document_folder}/plugins COMPONENT Documentation)

# Debian packages: run cpack in the build folder.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME mox-materials)
set(CPACK_PACKAGE_CONTACT "The developers of Mox Materials <developers@mox.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL Runtime Development Documentation)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME mox-materials)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS
  "fonts-dejavu-core, graphviz, libvulkan1, mesa-vulkan-drivers")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "Materials for shader programs\nThe program mox, its node types and the environments.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME mox-materials-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "mox-materials (= ${PROJECT_VERSION}), libboost-dev, libxml2-dev")
# Required by programs but not by plug-ins. Only the component compile needs the packages from
# glslang-dev to spirv-tools, only preview libglm-dev, and only editor nlohmann-json3-dev.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "libpng-dev, libxxhash-dev, glslang-dev, glslang-tools, \
spirv-tools, libglm-dev, nlohmann-json3-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "Materials for shader programs: development files\nHeaders, libraries and build rules for plug-ins and programs.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME mox-materials-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_DOCUMENTATION_DESCRIPTION
  "Materials for shader programs: documents and examples\nDocuments, example materials, a plug-in and a program to start from.")
if(MOX_BUILD_PYTHON)
  list(APPEND CPACK_COMPONENTS_ALL Python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-mox)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  # The module is compiled for one version of Python.
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "mox-materials (= ${PROJECT_VERSION}), python3 (>= 3.11), python3 (<< 3.12)")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "graphviz, libvulkan1, mesa-vulkan-drivers")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-numpy")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/cmake/python3-mox/postinst;${PROJECT_SOURCE_DIR}/cmake/python3-mox/prerm")
  set(CPACK_COMPONENT_PYTHON_DESCRIPTION
    "Materials for shader programs: package for Python\nOpening, checking, changing, compiling and drawing materials from Python.")
endif()
include(CPack)
