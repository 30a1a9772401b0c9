# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Looks for libdeflate as ZYWEBSOCKET_USE_LIBDEFLATE says: AUTO (if there), ON (or stop), OFF.
# The target libdeflate is there when the library was found.

set(ZYWEBSOCKET_USE_LIBDEFLATE AUTO CACHE STRING "Use libdeflate: AUTO, ON or OFF")
set_property(CACHE ZYWEBSOCKET_USE_LIBDEFLATE PROPERTY STRINGS AUTO ON OFF)

if(ZYWEBSOCKET_USE_LIBDEFLATE STREQUAL "AUTO" OR ZYWEBSOCKET_USE_LIBDEFLATE)
    find_path(LIBDEFLATE_INCLUDE_DIR libdeflate.h)
    find_library(LIBDEFLATE_LIBRARY deflate)
    mark_as_advanced(LIBDEFLATE_INCLUDE_DIR LIBDEFLATE_LIBRARY)
    if(LIBDEFLATE_INCLUDE_DIR AND LIBDEFLATE_LIBRARY)
        message(STATUS "Inflating and compressing with libdeflate: ${LIBDEFLATE_LIBRARY}")
        add_library(libdeflate INTERFACE)
        target_include_directories(libdeflate SYSTEM INTERFACE
            $<BUILD_INTERFACE:${LIBDEFLATE_INCLUDE_DIR}>)
        target_link_libraries(libdeflate INTERFACE $<BUILD_INTERFACE:${LIBDEFLATE_LIBRARY}>)
    elseif(NOT ZYWEBSOCKET_USE_LIBDEFLATE STREQUAL "AUTO")
        message(FATAL_ERROR "libdeflate not found (Debian: libdeflate-dev); "
            "install it or configure with -DZYWEBSOCKET_USE_LIBDEFLATE=AUTO")
    endif()
endif()
