#pragma once

#include "com/MemberShape.h"
#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <atomic>
#include <map>
#include <string>
#include <vector>

namespace com {

struct GuidLess {
    bool operator()(const GUID& left, const GUID& right) const noexcept;
};

/// An interface (as a dispatch interface) or a class of the DLL's libraries.
struct TypeEntry {
    HRESULT result = E_FAIL;
    /// Empty when the result is a failure.
    Ref<ITypeInfo> info;
    /// The interface's members.
    std::vector<MemberShape> shapes;
};

/// What a DLL of this family keeps once: its handle, its counts of live
/// objects and locks, and the type information of its interfaces.
class Dll {
  public:
    /// Called by DllMain.
    void Attach(HINSTANCE instance) noexcept { instance_ = instance; }
    HINSTANCE Instance() const noexcept { return instance_; }

    /// Full path of the DLL's own file.
    std::wstring FilePath() const;
    /// Folder of the DLL's own file, with the closing backslash.
    std::wstring Folder() const;
    /// Base name of the DLL's own file, without extension.
    std::wstring Name() const;

    /// The entry of an interface or class, good for as long as the module is. A
    /// failure is kept, but for lack of memory. Throws std::bad_alloc, CallError.
    const TypeEntry& Type(REFGUID guid);
    HRESULT TypeInfo(REFGUID guid, ITypeInfo** info) noexcept;

    void ObjectMade() noexcept { ++objects_; }
    void ObjectGone() noexcept { --objects_; }
    void Lock() noexcept { ++locks_; }
    /// False, and nothing changes, where there is no lock to take away.
    bool Unlock() noexcept;
    long Objects() const noexcept { return objects_; }
    bool CanUnload() const noexcept { return objects_ == 0 && locks_ == 0; }

  private:
    /// Loaded once; what does not load is left out.
    const std::vector<Ref<ITypeLib>>& Libraries();

    HINSTANCE instance_ = nullptr;
    std::atomic<long> objects_ = 0;
    std::atomic<long> locks_ = 0;
    bool areLibrariesLoaded_ = false;
    std::vector<Ref<ITypeLib>> libraries_;
    std::map<GUID, TypeEntry, GuidLess> types_;
};

/// The one module of this DLL or program.
Dll& ThisDll() noexcept;

/// Stands after the write of a reference count. GCC 12 at -O3 takes the write
/// for needless, and the object then never ends, where an exception unwinds
/// the function that made the object after it was handed on.
inline void CountIsWritten() noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

/// Counts one live object for as long as it exists.
class LiveCount {
  public:
    LiveCount() noexcept { ThisDll().ObjectMade(); }
    LiveCount(const LiveCount&) noexcept { ThisDll().ObjectMade(); }
    LiveCount& operator=(const LiveCount&) noexcept = default;
    ~LiveCount() { ThisDll().ObjectGone(); }
};

} // namespace com
