# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
#
# cmake -DPROGRAM=… -DMAN_PAGE=… -DCOMPLETION=… -P documents.cmake
# Fails when an option or exit code that the program's help names is missing in its man page or
# completion.

file(READ ${MAN_PAGE} man_page)
string(REPLACE "\\-" "-" man_page "${man_page}")
file(READ ${COMPLETION} completion)

set(commands send print pause stop status set version cancel printers discover)
set(help "")
foreach(command IN ITEMS "" LISTS commands)
    execute_process(COMMAND ${PROGRAM} ${command} --help OUTPUT_VARIABLE text RESULT_VARIABLE code)
    if(NOT code EQUAL 0)
        message(FATAL_ERROR "'${command} --help' exits with ${code}")
    endif()
    string(APPEND help "${text}")
endforeach()

string(REGEX MATCHALL "--[a-z][a-z-]+" options "${help}")
list(REMOVE_DUPLICATES options)
list(LENGTH options count)
if(count LESS 15)
    message(FATAL_ERROR "Only ${count} options in the help: ${options}")
endif()
foreach(option IN LISTS options)
    foreach(document IN ITEMS man_page completion)
        # The completion names the timeouts by a pattern as well as in full.
        string(FIND "${${document}}" "${option}" place)
        if(place EQUAL -1)
            message(SEND_ERROR "${option} is missing in the ${document}")
        endif()
    endforeach()
endforeach()

string(REGEX MATCHALL "\n +[0-9]+  [a-z]" codes "${help}")
list(REMOVE_DUPLICATES codes)
list(LENGTH codes count)
if(count LESS 12)
    message(FATAL_ERROR "Only ${count} exit codes in the help")
endif()
foreach(line IN LISTS codes)
    string(REGEX MATCH "[0-9]+" code "${line}")
    string(FIND "${man_page}" "\n.B ${code}\n" place)
    if(place EQUAL -1)
        message(SEND_ERROR "exit code ${code} is missing in the man page")
    endif()
endforeach()

execute_process(COMMAND bash -n ${COMPLETION} RESULT_VARIABLE code)
if(NOT code EQUAL 0)
    message(SEND_ERROR "the completion is no valid bash")
endif()
