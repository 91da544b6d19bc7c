# SPDX-License-Identifier: Apache-2.0
# cmake -DPROGRAM=... -DOUTPUT=FOLDER -P written_by_program.cmake
# Lets the program write its manual pages, one of all and one of each command, and what completes it in shells.
cmake_policy(VERSION 3.25)

function(written file)
  execute_process(COMMAND ${PROGRAM} ${ARGN} OUTPUT_FILE "${OUTPUT}/${file}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Nothing stays of a command that is gone.
file(REMOVE_RECURSE "${OUTPUT}")
file(MAKE_DIRECTORY "${OUTPUT}/man")
foreach(shell bash zsh fish powershell)
  written(completion.${shell} completion ${shell})
endforeach()
written(man/kvvesk.1 manpage)
# The page names those of the commands at its end.
file(STRINGS "${OUTPUT}/man/kvvesk.1" named REGEX "^\\.BR kvvesk.-.* \\(1\\)")
if(NOT named)
  message(FATAL_ERROR "the manual page names no command")
endif()
foreach(line IN LISTS named)
  string(REGEX REPLACE "^\\.BR kvvesk.-(.*) \\(1\\).*" "\\1" command "${line}")
  string(REPLACE "\\-" "-" command "${command}")
  written(man/kvvesk-${command}.1 manpage ${command})
endforeach()
