# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
#
# What tests of the client need: a printer under control, and a proxy that cuts connections.

target_sources(zy_testkit PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/cuttingproxy.cpp ${CMAKE_CURRENT_LIST_DIR}/cuttingproxy.h
    ${CMAKE_CURRENT_LIST_DIR}/scriptedprinter.cpp ${CMAKE_CURRENT_LIST_DIR}/scriptedprinter.h)
