# What goes where. Programs, library, plug-ins and environment find each other by their places
# relative to each other, so the installed tree may be moved as a whole.
include(CMakePackageConfigHelpers)

file(RELATIVE_PATH programs_to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(mox PROPERTIES INSTALL_RPATH $ORIGIN/${programs_to_libraries})

# For users.
install(TARGETS mox RUNTIME COMPONENT Runtime)
if(MOX_BUILD_DECODE)
  # It needs no library of this tree.
  install(TARGETS mox_decode_program
    RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/mox COMPONENT Runtime)
endif()
install(TARGETS mox_materials EXPORT MoxMaterials
  LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development)
install(TARGETS mox_core mox_library mox_surface
  LIBRARY DESTINATION ${MOX_PLUGIN_FOLDER} COMPONENT Runtime)
install(DIRECTORY plugins/library/nodes DESTINATION ${MOX_PLUGIN_FOLDER} COMPONENT Runtime)
install(DIRECTORY environment DESTINATION ${MOX_DATA_FOLDER} COMPONENT Runtime)
install(FILES mox/document/schema/material.rng mox/nodefile/schema/node.rng
  DESTINATION ${MOX_DATA_FOLDER} COMPONENT Runtime)
install(FILES ${PROJECT_BINARY_DIR}/help/mox.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Runtime)
install(FILES ${PROJECT_BINARY_DIR}/help/mox.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME mox COMPONENT Runtime)
install(FILES ${PROJECT_BINARY_DIR}/help/mox.fish
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT Runtime)
install(FILES ${PROJECT_BINARY_DIR}/help/mox.zsh
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions RENAME _mox COMPONENT Runtime)

# For authors of plug-ins and hosts: the headers of the two libraries that come with them.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Mox)
install(DIRECTORY mox DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development
  FILES_MATCHING PATTERN "*.h" PATTERN nodes EXCLUDE PATTERN plugin EXCLUDE
  PATTERN compile EXCLUDE PATTERN pictures EXCLUDE PATTERN preview EXCLUDE
  PATTERN decode EXCLUDE PATTERN decoders EXCLUDE PATTERN editor EXCLUDE PATTERN server EXCLUDE PATTERN xml EXCLUDE PATTERN ElementRule.h EXCLUDE PATTERN MaterialReader.h EXCLUDE
  PATTERN MaterialRules.h EXCLUDE PATTERN MaterialWriter.h EXCLUDE
  PATTERN CatalogueJson.h EXCLUDE PATTERN JsonCursor.h EXCLUDE PATTERN JsonText.h EXCLUDE PATTERN RecordJson.h EXCLUDE
  PATTERN StepJson.h EXCLUDE)
install(TARGETS mox_host EXPORT MoxHost ARCHIVE COMPONENT Development)
foreach(part Materials Host)
  install(EXPORT Mox${part} NAMESPACE Mox:: DESTINATION ${package_folder} COMPONENT Development)
endforeach()
configure_package_config_file(cmake/MoxConfig.cmake.in ${PROJECT_BINARY_DIR}/MoxConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS MOX_PLUGIN_FOLDER)
# Below 1.0 every minor version may change what programs are written against.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MoxConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MoxConfig.cmake ${PROJECT_BINARY_DIR}/MoxConfigVersion.cmake
  cmake/MoxPlugin.cmake cmake/MoxPlugin.map
  DESTINATION ${package_folder} COMPONENT Development)

set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_to_prefix
  ${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})
foreach(package mox mox-host)
  configure_file(cmake/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${pkgconfig_folder} COMPONENT Development)
endforeach()

# Debian packages: cpack in the build folder.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME mox-materials)
set(CPACK_PACKAGE_CONTACT "The developers of Mox Materials <developers@mox.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL Runtime Development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME mox-materials)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS
  "fonts-dejavu-core, graphviz, libvulkan1, mesa-vulkan-drivers")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "Materials for shader programs\nThe program mox, its node types and what surrounds every material.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME mox-materials-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "mox-materials (= ${PROJECT_VERSION}), libboost-dev, libxml2-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "libpng-dev, libxpm-dev, libxxhash-dev, nlohmann-json3-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "Materials for shader programs: development files\nHeaders, libraries and build rules for plug-ins and hosts.")
include(CPack)
