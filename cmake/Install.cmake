# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# What is installed of the library: headers, CMake package, pkg-config file, the protocol's schemas.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${library_name})

install(TARGETS zyWebsocket EXPORT zyWebsocketTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${public_headers} ${CMAKE_CURRENT_BINARY_DIR}/export/zywebsocket_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${library_name})
install(EXPORT zyWebsocketTargets NAMESPACE zyWebsocket:: DESTINATION ${package_dir})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/zyWebsocketConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/${library_name}Config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/${library_name}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/${library_name}Config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/${library_name}ConfigVersion.cmake
    DESTINATION ${package_dir})

# Relative to the file itself, so that it is right under any prefix.
set(pc_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pc_to_prefix ${pc_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH pc_to_include ${pc_dir} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(${PROJECT_SOURCE_DIR}/cmake/zyWebsocket.pc.in
    ${CMAKE_CURRENT_BINARY_DIR}/${library_name}.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${library_name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/protocol
    DESTINATION ${CMAKE_INSTALL_DATADIR}/${library_name})
