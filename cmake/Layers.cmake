# A folder of the project is a library, and sees the folders that it links and
# no other. Headers are named from the top ("core/Numbers.h"), but the top is in
# no search path: each library brings a folder of its own that holds one link,
# to its sources. So including a layer above does not compile.

# tam_include_link(<name> <variable>)
# Makes that folder for the current source folder, under the name <name>, and
# gives its path.
function(tam_include_link name variable)
  set(folder "${CMAKE_BINARY_DIR}/include/${name}")
  file(MAKE_DIRECTORY "${folder}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${folder}/${name}" SYMBOLIC)
  set(${variable} "${folder}" PARENT_SCOPE)
endfunction()

# tam_layer(<name> [TOOL] SOURCES <file>... [LINKS <library>...])
# TOOL: of the programs alone, no part of a DLL.
function(tam_layer name)
  cmake_parse_arguments(ARG "TOOL" "" "SOURCES;LINKS" ${ARGN})
  tam_include_link(${name} folder)
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${folder}")
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE tam_warnings)
  tam_build_small(${name})
  if(NOT ARG_TOOL)
    tam_compile_each(${name})
  endif()
endfunction()
