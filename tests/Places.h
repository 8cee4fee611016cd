#pragma once

#include <filesystem>

namespace tests {

/// The folder of the running test program.
std::filesystem::path ProgramFolder();

/// Where the build puts the DLLs and the programs that are tested.
std::filesystem::path BinFolder();

/// The top of the sources, or of what of them is packed with the test programs: the nearest
/// folder above the program that has the samples. TAM_ROOT names it for a build that lies
/// elsewhere. No path of the machine that built a program is in it.
const std::filesystem::path& TopFolder();

/// A folder for temporary files that nobody else has: the same program may run several times
/// on one machine. It is empty at first, and goes with all that is in it when this object does.
class OwnFolder {
  public:
    OwnFolder();
    ~OwnFolder();
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;
    const std::filesystem::path& Path() const noexcept { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace tests
