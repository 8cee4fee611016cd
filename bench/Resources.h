#pragma once

// Numbers of the program's resources, for its code and its resource script.

// The type library of the interfaces that the bench implements itself.
#define TAMBENCH_TYPE_LIBRARY 1

// The database compiler's class: apart from the program's own manifest, so
// that a run can do without it.
#define TAMBENCH_COMPILER_MANIFEST 10

#ifndef RC_INVOKED
namespace bench {
inline constexpr int kCompilerManifest = TAMBENCH_COMPILER_MANIFEST;
}
#endif
