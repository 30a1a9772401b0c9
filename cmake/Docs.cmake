# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# The target "docs": guides and interface as a site in html/ of the build directory. It is no part of
# "all"; what it has made is installed as the component "doc".

find_program(ZYWEBSOCKET_DOXYGEN doxygen)
find_program(ZYWEBSOCKET_DOT dot)
find_program(ZYWEBSOCKET_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(ZYWEBSOCKET_PYTHON python3)

set(site ${PROJECT_BINARY_DIR}/html)
install(DIRECTORY ${site}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libzywebsocket-doc COMPONENT doc OPTIONAL)

if(NOT ZYWEBSOCKET_DOXYGEN OR NOT ZYWEBSOCKET_DOT OR NOT ZYWEBSOCKET_PYTHON)
    message(STATUS "No target \"docs\": it needs doxygen, dot and python3")
    return()
endif()

set(docs ${PROJECT_SOURCE_DIR}/docs)
set(guides ${PROJECT_BINARY_DIR}/guides)
set(headers ${PROJECT_BINARY_DIR}/src/include)
configure_file(${docs}/site/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(docs
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${site} ${guides}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${site}
    COMMAND ${CMAKE_COMMAND} -E env PYTHONDONTWRITEBYTECODE=1
        ${ZYWEBSOCKET_PYTHON} ${docs}/site/guides.py ${PROJECT_SOURCE_DIR} ${guides}
    COMMAND ${ZYWEBSOCKET_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${docs}/protocol ${site}/protocol
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${docs}/images ${site}
    COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/LICENSE ${site}/LICENSE
    COMMENT "Writing the documents as a site to ${site}"
    VERBATIM)
