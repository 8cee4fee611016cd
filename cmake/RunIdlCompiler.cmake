# cmake -DWIDL=… -DARGUMENTS=a|b|… -DOUTPUT=file -P RunIdlCompiler.cmake
# Runs the IDL compiler and shows what it says, but for one remark: it sees the
# host interfaces twice, once imported and once in the library that it refers
# to, and calls their identifiers duplicates. A file that would come out as it is
# stays as it is: a help text changes no header, and so rebuilds nothing.
# The compiler writes the time into a type library, as a number and as the clock
# on the wall shows it. It is told one that never changes, so that two builds of
# one commit have the same bytes.
set(ENV{WIDL_TIME_OVERRIDE} 946684800) # 2000-01-01
set(ENV{TZ} UTC)
string(REPLACE "|" ";" arguments "${ARGUMENTS}")
cmake_path(GET OUTPUT PARENT_PATH folder)
cmake_path(GET OUTPUT FILENAME file) # the guard of a header is made from its name
file(MAKE_DIRECTORY "${folder}/new")
set(new "${folder}/new/${file}")
execute_process(COMMAND "${WIDL}" -o "${new}" ${arguments}
  RESULT_VARIABLE status OUTPUT_VARIABLE said ERROR_VARIABLE complained)
string(REGEX REPLACE "warning: duplicate uuid [^\n]*\n" "" complained "${complained}")
if(NOT "${said}${complained}" STREQUAL "")
  message("${said}${complained}")
endif()
if(NOT status EQUAL 0)
  message(FATAL_ERROR "The IDL compiler failed.")
endif()
file(COPY_FILE "${new}" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${new}")
