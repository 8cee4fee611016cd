# Type libraries and interface headers from IDL, with the IDL compiler of the
# cross tool chain and Wine's system interfaces.
find_program(TAM_WIDL NAMES ${TAM_TRIPLE}-widl widl REQUIRED)
set(TAM_WIDL_FLAGS -m32 -I "${CMAKE_SOURCE_DIR}/idl" -I /usr/include/wine/wine/windows
  -L /usr/lib/i386-linux-gnu/wine/i386-windows)

# tam_idl(<name> [DEPENDS <other tlb names>])
# writes <name>.h and <name>.tlb into the current binary folder.
function(tam_idl name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  set(deps "")
  foreach(other ${ARG_DEPENDS})
    list(APPEND deps "${CMAKE_CURRENT_BINARY_DIR}/${other}.tlb" "${CMAKE_SOURCE_DIR}/idl/${other}.idl")
  endforeach()
  add_custom_command(
    OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}.h"
    COMMAND ${TAM_WIDL} ${TAM_WIDL_FLAGS} -L "${CMAKE_CURRENT_BINARY_DIR}" -h
      -o "${CMAKE_CURRENT_BINARY_DIR}/${name}.h" "${CMAKE_SOURCE_DIR}/idl/${name}.idl"
    DEPENDS "${CMAKE_SOURCE_DIR}/idl/${name}.idl" ${deps}
    VERBATIM)
  # The library's own list of interfaces is kept in the coclasses, which the
  # compiler answers with a harmless remark on identifiers seen twice.
  add_custom_command(
    OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}.tlb"
    COMMAND ${TAM_WIDL} ${TAM_WIDL_FLAGS} -L "${CMAKE_CURRENT_BINARY_DIR}" -t
      -o "${CMAKE_CURRENT_BINARY_DIR}/${name}.tlb" "${CMAKE_SOURCE_DIR}/idl/${name}.idl"
    DEPENDS "${CMAKE_SOURCE_DIR}/idl/${name}.idl" ${deps}
    VERBATIM)
endfunction()
