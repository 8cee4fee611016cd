# Cross build for Windows with mingw-w64 (POSIX threads variant); programs built
# here run under Wine. The file that includes this one says for which processor:
# TAM_TRIPLE.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${TAM_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TAM_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${TAM_TRIPLE}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${TAM_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
