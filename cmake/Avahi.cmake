# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Looks for Avahi's client library as ZYWEBSOCKET_USE_AVAHI says: AUTO (if there), ON (or stop), OFF.
# The target PkgConfig::AVAHI is there when the library was found.

set(ZYWEBSOCKET_USE_AVAHI AUTO CACHE STRING "Find printers with Avahi: AUTO, ON or OFF")
set_property(CACHE ZYWEBSOCKET_USE_AVAHI PROPERTY STRINGS AUTO ON OFF)

if(ZYWEBSOCKET_USE_AVAHI STREQUAL "AUTO" OR ZYWEBSOCKET_USE_AVAHI)
    find_package(PkgConfig QUIET)
    if(PkgConfig_FOUND)
        pkg_check_modules(AVAHI QUIET IMPORTED_TARGET GLOBAL avahi-client)
    endif()
    if(TARGET PkgConfig::AVAHI)
        message(STATUS "Finding printers with Avahi: ${AVAHI_VERSION}")
    elseif(ZYWEBSOCKET_USE_AVAHI STREQUAL "AUTO")
        message(STATUS "Printers are not found by themselves: Avahi's client library is missing "
            "(Debian: libavahi-client-dev)")
    else()
        message(FATAL_ERROR "Avahi's client library not found (Debian: libavahi-client-dev); "
            "install it or configure with -DZYWEBSOCKET_USE_AVAHI=AUTO")
    endif()
endif()
