# What `cmake --install` puts below the prefix. All paths inside the installed files are
# relative, so that the tree can be moved.
include(CMakePackageConfigHelpers)
set(tarnlet_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tarnlet)

install(TARGETS tarnlet EXPORT tarnlet-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES ${tarnlet_packages} DESTINATION ${TARNLET_PACKAGE_DIR} COMPONENT runtime)
if(TARGET tarnlet_tool)
    install(TARGETS tarnlet_tool DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/rules.md
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/tarnlet COMPONENT tool)
endif()

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tarnlet TYPE INCLUDE COMPONENT development)

file(RELATIVE_PATH pkgconfig_to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
cmake_path(SET pkgconfig_to_prefix NORMALIZE ${pkgconfig_to_prefix})
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix ${pkgconfig_to_prefix})
configure_file(${CMAKE_CURRENT_LIST_DIR}/tarnlet.pc.in ${CMAKE_BINARY_DIR}/tarnlet.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/tarnlet.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(EXPORT tarnlet-targets NAMESPACE tarnlet:: DESTINATION ${tarnlet_cmake_dir}
    COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/tarnlet-config.cmake.in
    ${CMAKE_BINARY_DIR}/tarnlet-config.cmake INSTALL_DESTINATION ${tarnlet_cmake_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tarnlet-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/tarnlet-config.cmake
    ${CMAKE_BINARY_DIR}/tarnlet-config-version.cmake
    DESTINATION ${tarnlet_cmake_dir} COMPONENT development)
