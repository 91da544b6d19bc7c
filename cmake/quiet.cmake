# SPDX-License-Identifier: Apache-2.0
# cmake -DCOMMAND=... -DOUTPUT=FILE -P quiet.cmake: runs a command that talks too much, and shows what it said only when
# it failed.
execute_process(
  COMMAND ${COMMAND}
  RESULT_VARIABLE status
  OUTPUT_VARIABLE said
  ERROR_VARIABLE said)
if(NOT status EQUAL 0)
  file(REMOVE "${OUTPUT}")
  message(FATAL_ERROR "${said}")
endif()
