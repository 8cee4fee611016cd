#pragma once

#include "view/model/Recovery.h"

#include <cstddef>
#include <string>
#include <vector>

namespace view {

/// Tells when one of the files that were read is another one on the disk.
class FileWatch {
  public:
    /// Files as they were when they were read.
    void Watch(std::vector<StampedFile> files);
    const std::vector<StampedFile>& Files() const noexcept { return files_; }

    /// The program itself wrote the file of this number.
    void MarkRead(std::size_t file, FileStamp stamp) { files_.at(file).stamp = stamp; }

    /// A look at all files, in their order, now and then: the paths of those that have changed
    /// since they were read or told of. One that is gone has not; one that is written at the
    /// moment is told of when two looks have seen the same.
    std::vector<std::wstring> Look(const std::vector<FileStamp>& now);

  private:
    std::vector<StampedFile> files_;
    std::vector<FileStamp> seen_;
};

} // namespace view
