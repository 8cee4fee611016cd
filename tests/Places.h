#pragma once

#include <filesystem>

namespace tests {

/// The folder of the running test program.
std::filesystem::path ProgramFolder();

/// The top of the sources, or of what of them is packed with the test programs: the nearest
/// folder above the program that has the samples. TAM_ROOT names it for a build that lies
/// elsewhere. No path of the machine that built a program is in it.
const std::filesystem::path& TopFolder();

} // namespace tests
