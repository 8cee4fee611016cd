#pragma once

#include <windows.h>

namespace bench {

/// Puts another function in the place of one that a DLL imports; the import is as it was
/// when this object is gone.
class ImportPatch {
  public:
    /// Does nothing when the DLL imports no such function.
    ImportPatch(HMODULE dll, const char* function, const void* replacement);
    ~ImportPatch();
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

  private:
    ULONG_PTR* slot_ = nullptr;
    ULONG_PTR original_ = 0;
};

} // namespace bench
