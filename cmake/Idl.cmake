# Type libraries and interface headers from IDL, with the IDL compiler of the
# cross tool chain and Wine's system interfaces. A type library is made for one
# kind of system: the offsets of members in it are in bytes.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(TAM_WIDL NAMES ${TAM_TRIPLE}-widl widl REQUIRED)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(tam_widl_system -m64 -L /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
else()
  set(tam_widl_system -m32 -L /usr/lib/i386-linux-gnu/wine/i386-windows)
endif()
set(TAM_MEMBERS_FOLDER "${CMAKE_BINARY_DIR}/idl/members")
set(TAM_WIDL_FLAGS ${tam_widl_system} -I "${CMAKE_SOURCE_DIR}/idl" -I "${TAM_MEMBERS_FOLDER}" -I /usr/include/wine/wine/windows)

file(GLOB tam_idl_files CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/idl/*.idl")

# tam_idl(<name> [DEPENDS <other tlb names>])
# writes <name>.h and <name>.tlb into the current binary folder.
function(tam_idl name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  set(deps ${tam_idl_files}) # they include each other
  foreach(other ${ARG_DEPENDS})
    list(APPEND deps "${CMAKE_CURRENT_BINARY_DIR}/${other}.tlb")
  endforeach()
  foreach(kind h t)
    if(kind STREQUAL "h")
      set(output "${CMAKE_CURRENT_BINARY_DIR}/${name}.h")
    else()
      set(output "${CMAKE_CURRENT_BINARY_DIR}/${name}.tlb")
    endif()
    set(arguments ${TAM_WIDL_FLAGS} -L "${CMAKE_CURRENT_BINARY_DIR}" -${kind} "${CMAKE_SOURCE_DIR}/idl/${name}.idl")
    string(REPLACE ";" "|" arguments "${arguments}")
    add_custom_command(OUTPUT "${output}"
      COMMAND ${CMAKE_COMMAND} "-DWIDL=${TAM_WIDL}" "-DARGUMENTS=${arguments}" "-DOUTPUT=${output}"
        -P "${CMAKE_SOURCE_DIR}/cmake/RunIdlCompiler.cmake"
      DEPENDS "${CMAKE_SOURCE_DIR}/cmake/RunIdlCompiler.cmake" "${TAM_MEMBERS_FOLDER}/made" ${deps}
      COMMENT "Compiling ${name}.idl (-${kind})"
      VERBATIM)
  endforeach()
endfunction()
