# Warnings are errors in both builds. The interface headers that the IDL
# compiler writes are included as SYSTEM and stay out of it.
add_library(tam_warnings INTERFACE)
target_compile_options(tam_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion
  # Where sources are compiled together, a local name meets those of other files.
  $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wshadow>
  -Wold-style-cast -Wcast-qual -Woverloaded-virtual
  -Wnull-dereference -Wimplicit-fallthrough)
if(NOT WIN32)
  # A COM interface has no destructor: its objects end by their last Release.
  target_compile_options(tam_warnings INTERFACE -Wnon-virtual-dtor)
endif()
