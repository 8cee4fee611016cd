# cmake -DWIDL=… -DARGUMENTS=a|b|… -P RunIdlCompiler.cmake
# Runs the IDL compiler and shows what it says, but for one remark: it sees the
# host interfaces twice, once imported and once in the library that it refers
# to, and calls their identifiers duplicates.
string(REPLACE "|" ";" arguments "${ARGUMENTS}")
execute_process(COMMAND "${WIDL}" ${arguments}
  RESULT_VARIABLE status OUTPUT_VARIABLE said ERROR_VARIABLE complained)
string(REGEX REPLACE "warning: duplicate uuid [^\n]*\n" "" complained "${complained}")
if(NOT "${said}${complained}" STREQUAL "")
  message("${said}${complained}")
endif()
if(NOT status EQUAL 0)
  message(FATAL_ERROR "The IDL compiler failed.")
endif()
