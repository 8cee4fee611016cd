#pragma once

#include "view/model/Recovery.h"

#include <windows.h>

#include <string>
#include <vector>

namespace view {

/// The size and the time of a file; none of both when there is no file.
FileStamp StampOf(const std::wstring& file) noexcept;

/// What is unsaved, kept on the disk until Remove: a program that ends without being asked, in
/// whatever way, leaves its file behind.
class RecoveryFile {
  public:
    RecoveryFile();
    ~RecoveryFile();
    RecoveryFile(const RecoveryFile&) = delete;
    RecoveryFile& operator=(const RecoveryFile&) = delete;

    /// Writes what is unsaved. A disk that takes nothing is no reason to stop the work: the
    /// answer is false then.
    bool Keep(const Recovery& recovery) noexcept;
    void Remove() noexcept;

    struct Left {
        std::wstring path;
        Recovery recovery;
    };
    /// The files of programs that run no more. Damaged ones are removed.
    static std::vector<Left> FindLeft();

  private:
    HANDLE alive_ = nullptr;
    std::wstring path_;
};

} // namespace view
