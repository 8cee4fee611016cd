#pragma once

#include <windows.h>

#include <string>

namespace fault {

/// What can be made to fail.
enum class Kind {
    Memory,   // operator new of the component
    Text,     // BSTR allocations and the platform's conversions
    Dom,      // methods of the DOM that the component calls
    Host,     // methods of the host's objects
    Creation, // objects made by class or ProgID
    File,     // looking for files, reading and writing them
};
inline constexpr Kind kKinds[] = {Kind::Memory, Kind::Text,     Kind::Dom,
                                  Kind::Host,   Kind::Creation, Kind::File};

const char* NameOf(Kind kind) noexcept;
/// What a failed call of this kind answers, or what its lack of an answer is taken for.
HRESULT CodeOf(Kind kind) noexcept;
/// The system's words for it.
std::wstring SystemText(HRESULT code);

/// Once: the n-th call alone fails. ForEver: it and all later ones.
enum class Mode { Once, ForEver };

/// While it lives, calls of one kind fail, counted from 1 since its beginning.
/// Only those of this thread count. n = 0 fails none.
class Injection {
  public:
    Injection(Kind kind, int n, Mode mode) noexcept;
    ~Injection();
    Injection(const Injection&) = delete;
    Injection& operator=(const Injection&) = delete;

    /// Whether there was an n-th call.
    bool HasHappened() const noexcept;
    int Calls() const noexcept;
};

/// Asked by what stands in the place of a call; counts it.
bool Fails(Kind kind) noexcept;

} // namespace fault
