#include "bench/WholeFile.h"

#include "bench/Text.h"

#include <windows.h>

#include <memory>

namespace bench {

namespace {

constexpr const char* kCannot = "cannot be written";

struct CloseFileHandle {
    using pointer = HANDLE;
    void operator()(HANDLE file) const noexcept { CloseHandle(file); }
};
using File = std::unique_ptr<HANDLE, CloseFileHandle>;

/// Empty when there is none; the reason is the last error.
File Open(const std::wstring& path, DWORD disposition) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, disposition,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return nullptr;
    }
    return File(file);
}

void Write(const File& file, std::string_view bytes, const std::wstring& path) {
    DWORD written = 0;
    if (WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == FALSE) {
        ThrowFileError(path, kCannot, GetLastError());
    }
    if (written != bytes.size()) {
        ThrowFileError(path, kCannot, ERROR_DISK_FULL);
    }
}

/// Writes to what stands at the path and is no file on a disk. False when a
/// file stands there that may be written, or nothing.
bool WriteToDevice(const std::wstring& path, std::string_view bytes) {
    const File there = Open(path, OPEN_EXISTING);
    const DWORD error = there ? ERROR_SUCCESS : GetLastError();
    // Who may do everything on a machine could replace a file that is marked as read-only.
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        ThrowFileError(path, kCannot, ERROR_ACCESS_DENIED);
    }
    if (!there) {
        // A missing folder is told by whoever makes the file.
        if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) {
            ThrowFileError(path, kCannot, error);
        }
        return false;
    }
    if (GetFileType(there.get()) == FILE_TYPE_DISK) {
        return false;
    }
    Write(there, bytes, path);
    return true;
}

/// A file beside the one that is to be written; gone with this object unless
/// it was put in place.
class FileBeside {
  public:
    explicit FileBeside(const std::wstring& path) : path_(path) {
        // Another run may write the same file at the same time, and one that was ended leaves its own.
        constexpr int kMostNames = 100;
        for (int number = 1; !file_; ++number) {
            name_ = path + L"." + std::to_wstring(number) + L".part";
            file_ = Open(name_, CREATE_NEW);
            if (!file_ && (GetLastError() != ERROR_FILE_EXISTS || number == kMostNames)) {
                ThrowFileError(path, kCannot, GetLastError());
            }
        }
    }
    ~FileBeside() {
        file_.reset();
        if (!isInPlace_) {
            DeleteFileW(name_.c_str());
        }
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    void Fill(std::string_view bytes) {
        Write(file_, bytes, path_);
        if (FlushFileBuffers(file_.get()) == FALSE) {
            ThrowFileError(path_, kCannot, GetLastError());
        }
        file_.reset();
    }

    void PutInPlace() {
        if (MoveFileExW(name_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) ==
            FALSE) {
            ThrowFileError(path_, kCannot, GetLastError());
        }
        isInPlace_ = true;
    }

  private:
    std::wstring path_;
    std::wstring name_;
    File file_;
    bool isInPlace_ = false;
};

} // namespace

void WriteWholeFile(const std::wstring& path, std::string_view bytes) {
    if (WriteToDevice(path, bytes)) {
        return;
    }
    FileBeside beside(path);
    beside.Fill(bytes);
    beside.PutInPlace();
}

} // namespace bench
