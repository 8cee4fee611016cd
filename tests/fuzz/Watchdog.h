#pragma once

#include <windows.h>

#include <atomic>
#include <string>

namespace component_fuzz {

/// Ends the process when a round does not end. What the round was about lies in
/// a file all the while, so that neither a hang nor a crash loses it. The file is
/// that of one round or of the next, never a part of one.
class Watchdog {
  public:
    /// `keepFile` is where the current round's input lies.
    explicit Watchdog(std::wstring keepFile);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /// A round begins: its input and a line that says how to run it again. Throws
    /// when the input cannot be kept.
    void Begin(const std::string& input, const std::string& what);
    /// The input stays, under a name of the round's own. Returns that name.
    std::wstring Keep(unsigned round);
    const std::wstring& File() const noexcept { return keepFile_; }

  private:
    static DWORD WINAPI Watch(void* self);

    std::wstring keepFile_;
    std::string what_;
    std::atomic<ULONGLONG> began_{0};
    HANDLE stop_ = nullptr;
    HANDLE thread_ = nullptr;
};

/// A number from the environment, or the value for when it is not there.
unsigned Setting(const wchar_t* name, unsigned otherwise);
/// A file of this run's own for what is kept, in the folder that TAM_FUZZ_KEEP names, otherwise
/// beside the program: the same program may run in another Wine prefix at the same time.
std::wstring KeepFile(const wchar_t* name);

} // namespace component_fuzz
