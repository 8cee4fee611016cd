# The second compiler for 32-bit Windows: clang over the headers and libraries
# of the cross tool chain, which it does not find by itself. "./tam check"
# compiles with it and links nothing: gcc's C++ library is no match for clang's
# objects here. What is shipped and tested comes from gcc.
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w32.cmake")
set(tam_gcc "${CMAKE_CXX_COMPILER}")
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${TAM_TRIPLE})
set(CMAKE_CXX_COMPILER_TARGET ${TAM_TRIPLE})

# The archive of gcc's own functions lies in the folder of this gcc's version.
execute_process(COMMAND ${tam_gcc} -print-libgcc-file-name
  OUTPUT_VARIABLE tam_gcc_folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(tam_gcc_folder "${tam_gcc_folder}" DIRECTORY)
set(tam_cxx_headers "${tam_gcc_folder}/include/c++")
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES
  "${tam_cxx_headers}" "${tam_cxx_headers}/${TAM_TRIPLE}" "${tam_cxx_headers}/backward")
foreach(kind EXE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-L${tam_gcc_folder}")
endforeach()
