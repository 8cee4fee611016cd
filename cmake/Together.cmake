# Up to forty sources of a program are compiled as one where the preset says so
# (CMAKE_UNITY_BUILD): reading the headers and making the same templates is most of
# what a source costs. The builds with clang compile each source alone, which shows
# whether it includes what it uses, and whether a name hides another.
set(CMAKE_UNITY_BUILD_BATCH_SIZE 40)

# tam_compile_each(<target>)
# Each source alone. For the DLLs: what is shipped does not hang on how a build is made fast.
function(tam_compile_each target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD OFF)
endfunction()

# tam_compile_alone(<source>...)
# For sources in whose files a name stands that another file of the folder has too.
function(tam_compile_alone)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
