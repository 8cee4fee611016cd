#pragma once

#include "tests/support/ImportPatch.h"

#include <list>

namespace fault {

/// What the component imports, replaced by calls that an Injection can make
/// fail. Undone at the end, before the component is unloaded.
class Imports {
  public:
    explicit Imports(HMODULE component);
    ~Imports();
    Imports(const Imports&) = delete;
    Imports& operator=(const Imports&) = delete;

  private:
    void Replace(HMODULE dll, const char* function, const void* replacement);

    std::list<support::ImportPatch> patches_;
};

} // namespace fault
