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
  foreach(kind h t)
    if(kind STREQUAL "h")
      set(output "${CMAKE_CURRENT_BINARY_DIR}/${name}.h")
    else()
      set(output "${CMAKE_CURRENT_BINARY_DIR}/${name}.tlb")
    endif()
    set(arguments ${TAM_WIDL_FLAGS} -L "${CMAKE_CURRENT_BINARY_DIR}" -${kind} -o "${output}"
      "${CMAKE_SOURCE_DIR}/idl/${name}.idl")
    string(REPLACE ";" "|" arguments "${arguments}")
    add_custom_command(OUTPUT "${output}"
      COMMAND ${CMAKE_COMMAND} "-DWIDL=${TAM_WIDL}" "-DARGUMENTS=${arguments}"
        -P "${CMAKE_SOURCE_DIR}/cmake/RunIdlCompiler.cmake"
      DEPENDS "${CMAKE_SOURCE_DIR}/idl/${name}.idl" "${CMAKE_SOURCE_DIR}/cmake/RunIdlCompiler.cmake" ${deps}
      COMMENT "Compiling ${name}.idl (-${kind})"
      VERBATIM)
  endforeach()
endfunction()
