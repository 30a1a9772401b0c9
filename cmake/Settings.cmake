# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# What every target of this project is compiled with: warnings, strict Qt, sanitizers.

add_library(zySettings INTERFACE)

target_compile_definitions(zySettings INTERFACE
    QT_NO_KEYWORDS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_STRICT_ITERATORS)

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(zySettings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    # Qt's qCDebug() leaves a macro's variable arguments empty.
    target_compile_options(zySettings INTERFACE
        $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>)
    if(ZYWEBSOCKET_WARNINGS_AS_ERRORS)
        target_compile_options(zySettings INTERFACE -Werror)
    endif()
endif()

if(ZYWEBSOCKET_SANITIZE)
    list(JOIN ZYWEBSOCKET_SANITIZE "," sanitizers)
    add_compile_options(-fsanitize=${sanitizers} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${sanitizers})
endif()
