# What is loaded into every host is small. Built for size, each source is half of
# what it is at -O3. A host's jobs wait for the parser and for other objects' calls.

# tam_build_small(<target>)
# For a library whose code goes into a DLL, and for the DLL itself. Sections that
# nothing refers to are left out (tam_link_dll).
function(tam_build_small target)
  if(WIN32)
    target_compile_options(${target} PRIVATE
      $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CONFIG:Release>>:-Os$<SEMICOLON>-ffunction-sections$<SEMICOLON>-fdata-sections>)
  endif()
endfunction()

# tam_link_dll(<target>)
# How each DLL is linked: whole in itself, without symbols, the same bytes from the
# same sources. What stands in for the C++ library's exceptions is no part of another
# library: a program that has the C++ library's own cannot have both.
function(tam_link_dll target)
  tam_compile_each(${target})
  target_link_libraries(${target} PRIVATE library_errors)
  target_link_options(${target} PRIVATE -static -s -Wl,--gc-sections
    -Wl,--enable-stdcall-fixup -Wl,--dynamicbase -Wl,--nxcompat -Wl,--no-insert-timestamp
    -Wl,--wrap=malloc)
endfunction()

# tam_build_fast(<file>...)
# For the few sources of such a library that every look-up and every member run through.
function(tam_build_fast)
  if(WIN32)
    # The precompiled header is one of code for size.
    set_source_files_properties(${ARGN} PROPERTIES
      COMPILE_OPTIONS "$<$<CONFIG:Release>:-O2>" SKIP_PRECOMPILE_HEADERS ON)
  endif()
endfunction()
