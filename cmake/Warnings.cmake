# Warnings are errors in both builds. The interface headers that the IDL
# compiler writes are included as SYSTEM and stay out of it.
add_library(tam_warnings INTERFACE)
target_compile_options(tam_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion -Wshadow
  -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual -Woverloaded-virtual
  -Wnull-dereference -Wimplicit-fallthrough)
