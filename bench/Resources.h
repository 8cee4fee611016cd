#pragma once

// Numbers of the program's resources, for its code and its resource script.

// The type library of the interfaces that the bench implements itself.
#define TAMBENCH_TYPE_LIBRARY 1

// The database compiler's class: apart from the program's own manifest, so
// that a run can do without it.
#define TAMBENCH_COMPILER_MANIFEST 10

// In the compiler's place a class that cannot be created.
#define TAMBENCH_NO_COMPILER_MANIFEST 11

#ifndef RC_INVOKED
namespace bench {
inline constexpr int kCompilerManifest = TAMBENCH_COMPILER_MANIFEST;
inline constexpr int kNoCompilerManifest = TAMBENCH_NO_COMPILER_MANIFEST;
} // namespace bench
#endif
