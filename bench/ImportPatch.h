#pragma once

#include <windows.h>

#include <functional>

namespace bench {

/// Puts another function in the place of one that a DLL imports; the
/// import is as it was when this object is gone.
class ImportPatch {
  public:
    /// Does nothing when the DLL imports no such function.
    ImportPatch(HMODULE dll, const char* function, const void* replacement);
    ~ImportPatch();
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    bool IsImported() const noexcept { return slot_ != nullptr; }
    /// The function that the DLL imported.
    template <class F>
    F Original() const noexcept {
        return reinterpret_cast<F>(original_);
    }

  private:
    ULONG_PTR* slot_ = nullptr;
    ULONG_PTR original_ = 0;
};

/// Calls `each` with the place of every address that a DLL imports.
void ForEachImport(HMODULE dll, const std::function<void(ULONG_PTR* slot)>& each);

/// Writes a word of a loaded image that is not meant to be written.
void WriteProtected(ULONG_PTR* place, ULONG_PTR value) noexcept;

} // namespace bench
