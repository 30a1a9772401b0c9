# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Finds the Qt that ZYWEBSOCKET_QT names. Targets are ${qt}::Core and so on: the versionless Qt::Core
# would let the users of the installed library link whichever Qt they found first.

if(NOT DEFINED ZYWEBSOCKET_QT)
    find_package(Qt5 5.15 QUIET COMPONENTS WebSockets)
    set(default_qt 6)
    if(Qt5_FOUND)
        set(default_qt 5)
    endif()
endif()
set(ZYWEBSOCKET_QT ${default_qt} CACHE STRING "Major version of Qt: 5 or 6")
set_property(CACHE ZYWEBSOCKET_QT PROPERTY STRINGS 5 6)

if(ZYWEBSOCKET_QT EQUAL 5)
    set(qt_minimum 5.15)
elseif(ZYWEBSOCKET_QT EQUAL 6)
    set(qt_minimum 6.4)
else()
    message(FATAL_ERROR "ZYWEBSOCKET_QT is ${ZYWEBSOCKET_QT}; it may be 5 or 6")
endif()
set(qt Qt${ZYWEBSOCKET_QT})
# What is installed of the library; those of both Qts go side by side.
set(library_name zyWebsocket)
if(ZYWEBSOCKET_QT EQUAL 6)
    set(library_name zyWebsocket-qt6)
endif()
find_package(${qt} ${qt_minimum} REQUIRED COMPONENTS Core Network WebSockets)
