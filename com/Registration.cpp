// Registering and unregistering share one plan: the keys and values that this DLL's
// classes, interfaces and type libraries consist of. MakePlan makes it from the classes
// table and the type libraries in the DLL's resources, and leaves out what stays with
// another file. A Snapshot then reads the trees of all keys in the plan. When a step of
// writing or removing fails, it puts them back, so that both are all or nothing.
#include "com/Registration.h"

#include "com/Boundary.h"
#include "com/Dll.h"
#include "com/Handles.h"
#include "com/Registry.h"
#include "com/RegistryLibraries.h"
#include "com/RegistryOwners.h"
#include "com/RegistryView.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace com {

namespace {

/// The automation marshaler, which reads the type library.
constexpr const wchar_t* kAutomationProxy = L"{00020424-0000-0000-C000-000000000046}";

enum class Action { Register, Unregister };

/// What becomes of the keys of a library and its interfaces.
enum class Use { Write, Remove };

struct Entry {
    std::wstring path;
    RegistryTree::Value value;
};

RegistryTree Named(const std::wstring& name) {
    return {name, {}, {}};
}

bool IsEmpty(const RegistryTree& tree) {
    return tree.values.empty() && tree.keys.empty();
}

/// What a registration consists of: whole keys of ours and the values in them,
/// as they are written; or, of a removal, the keys that go and the values that
/// are in them afterwards: those of the same DLL for the other kind of process,
/// and those of the DLL that a shared library goes to.
struct Plan {
    Action action;
    std::set<std::wstring> keys;
    std::vector<Entry> entries;
    /// Keys that are not ours alone: only parts of them are deleted or written.
    std::set<std::wstring> shared;

    void Key(const std::wstring& path) { keys.insert(kClassesPath + path); }
    void Value(const std::wstring& path, const std::wstring& text, const std::wstring& value = {}) {
        entries.push_back({kClassesPath + path, TextValue(value, text)});
    }
    void Tree(const std::wstring& path, const RegistryTree& tree) {
        for (const RegistryTree::Value& value : tree.values) {
            entries.push_back({kClassesPath + path, value});
        }
        for (const RegistryTree& child : tree.keys) {
            Tree(Below(path, child), child);
        }
    }
    /// What makes one content of a key of the other. What both have is not touched.
    void Change(const std::wstring& path, const RegistryTree& before, const RegistryTree& after) {
        const bool losesValue = !std::ranges::all_of(before.values, [&](const RegistryTree::Value& value) {
            return std::ranges::any_of(after.values, [&](const RegistryTree::Value& kept) {
                return SameText(kept.name, value.name);
            });
        });
        if (losesValue || (IsEmpty(after) && !IsEmpty(before))) {
            Key(path);
            Tree(path, after);
            return;
        }
        for (const RegistryTree::Value& value : after.values) {
            if (std::ranges::find(before.values, value) == before.values.end()) {
                entries.push_back({kClassesPath + path, value});
            }
        }
        for (const RegistryTree& child : before.keys) {
            if (Child(after, child.name) == nullptr) {
                Key(Below(path, child));
            }
        }
        for (const RegistryTree& child : after.keys) {
            const RegistryTree* const old = Child(before, child.name);
            Change(Below(path, child), old == nullptr ? Named(child.name) : *old, child);
        }
    }

  private:
    static std::wstring Below(const std::wstring& path, const RegistryTree& child) {
        return std::wstring(path).append(L"\\").append(child.name);
    }
};

/// True when the name stays as it is: it stands for another class, or the other
/// kind of process still needs it.
bool NameStays(const ClassEntry& entry, const std::wstring& clsid, Action action,
               const RegistryOwners& owners) {
    const std::wstring other = owners.ClassOfName(entry.progId);
    if (other.empty()) {
        return false;
    }
    if (SameText(other, clsid)) {
        return action == Action::Unregister && owners.OtherKindHas(clsid);
    }
    return action == Action::Unregister || (entry.rule == ProgIdRule::Shared && owners.ClassExists(other));
}

/// True when the class stays as it is: another file has it. Registering takes it over,
/// but from another maker the class of a service: our own copies hold our library.
bool ClassStays(const ClassEntry& entry, const std::wstring& clsid, const std::wstring& library,
                Action action, const RegistryOwners& owners) {
    if (!owners.AnotherFileHas(clsid)) {
        return false;
    }
    return action == Action::Unregister ||
           (entry.rule == ProgIdRule::Shared && !HoldsLibrary(owners.FileOf(clsid), library));
}

void PlanClass(Plan& plan, const ClassEntry& entry, const std::wstring& file, const std::wstring& library,
               const RegistryOwners& owners) {
    const std::wstring clsid = TextOfGuid(*entry.id);
    if (ClassStays(entry, clsid, library, plan.action, owners)) {
        return;
    }
    const std::wstring key = L"CLSID\\" + clsid;
    const bool nameIsOurs = entry.progId != nullptr && !NameStays(entry, clsid, plan.action, owners);
    plan.Key(key);
    if (nameIsOurs) {
        plan.Key(entry.progId);
    }
    if (plan.action == Action::Unregister) {
        return;
    }
    plan.Value(key, entry.description);
    plan.Value(key + L"\\InprocServer32", file);
    plan.Value(key + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
    plan.Value(key + L"\\Programmable", L"");
    plan.Value(key + L"\\TypeLib", library);
    plan.Value(key + L"\\Version", L"1.0");
    if (entry.progId != nullptr) {
        plan.Value(key + L"\\ProgID", entry.progId);
    }
    if (nameIsOurs) {
        plan.Value(entry.progId, entry.description);
        plan.Value(std::wstring(entry.progId) + L"\\CLSID", clsid);
    }
}

/// Who has what, and the identifiers of our libraries.
struct Claims {
    RegistryOwners owners;
    /// A library is registered for the machine and for the user each by itself: one for
    /// the user does not end with the machine's.
    RegistryOwners libraryOwners;
    std::vector<std::wstring> libraries;
};

/// The host's own interfaces are in the shared library too: where the machine has the
/// host, its library or its proxy stays with them.
void PlanInterface(Plan& plan, ITypeInfo& info, const TYPEATTR& attributes, const std::wstring& library,
                   Use use, const Claims& claims) {
    const bool dual = (attributes.wTypeFlags & TYPEFLAG_FDUAL) != 0;
    const bool automation = (attributes.wTypeFlags & TYPEFLAG_FOLEAUTOMATION) != 0;
    const bool isInterface = attributes.typekind == TKIND_INTERFACE || attributes.typekind == TKIND_DISPATCH;
    if (!isInterface || !(dual || automation) || attributes.guid == GUID_NULL) {
        return;
    }
    Bstr name;
    Check(info.GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr));
    const std::wstring iid = TextOfGuid(attributes.guid);
    if (claims.owners.AnotherMarshals(iid, claims.libraries)) {
        return;
    }
    const std::wstring key = L"Interface\\" + iid;
    plan.Key(key);
    if (use == Use::Remove) {
        return;
    }
    plan.Value(key, std::wstring(name.View()));
    plan.Value(key + L"\\ProxyStubClsid32", kAutomationProxy);
    plan.Value(key + L"\\TypeLib", library);
    plan.Value(key + L"\\TypeLib", L"1.0", L"Version");
}

/// The keys of the library that no other DLL has. A library is registered once for both
/// kinds of process: what the other kind has of it stays.
void PlanOwnKeys(Plan& plan, const DllLibrary& library, Use use, const RegistryOwners& owners) {
    plan.Key(library.Key());
    const std::wstring other = owners.Text(library.KindKey(kOtherKind));
    const DllLibrary otherLibrary{{}, library.id, LibraryFile(other), other};
    const bool otherStays = !other.empty() && FileExists(PathOfOtherKind(otherLibrary.file));
    const bool isWritten = use == Use::Write;
    if (!isWritten && !otherStays) {
        return;
    }
    const std::wstring version = library.Key() + L"\\1.0";
    plan.Value(version, library.Help());
    if (isWritten) {
        plan.Value(library.KindKey(kThisKind), library.path);
    }
    if (otherStays) {
        plan.Value(library.KindKey(kOtherKind), other);
    }
    plan.Value(version + L"\\FLAGS", L"0");
    plan.Value(version + L"\\HELPDIR", isWritten ? library.Folder() : otherLibrary.Folder());
}

/// What `owner` has too is the owner's: the first library repeats the host interfaces in
/// its class list.
void PlanInterfaces(Plan& plan, const DllLibrary& library, const DllLibrary* owner, Use use,
                    const Claims& claims) {
    ITypeLib& types = *library.library.Get();
    for (UINT i = 0; i < types.GetTypeInfoCount(); ++i) {
        Ref<ITypeInfo> info;
        TYPEATTR* type = nullptr;
        Check(types.GetTypeInfo(i, info.Put()));
        Check(info->GetTypeAttr(&type));
        const auto failure = Attempt([&] {
            if (owner == nullptr || !owner->Has(type->guid)) {
                PlanInterface(plan, *info.Get(), *type, library.id, use, claims);
            }
        });
        info->ReleaseTypeAttr(type);
        if (failure) {
            Check(failure->code);
        }
    }
}

/// Another copy of this DLL gives way. What `shared` has too is that library's.
void PlanOwnLibrary(Plan& plan, const DllLibrary& library, const DllLibrary* shared, const Claims& claims) {
    const bool isRegistered = plan.action == Action::Register;
    if (isRegistered || !BelongsToAnother(library, claims.libraryOwners)) {
        const Use use = isRegistered ? Use::Write : Use::Remove;
        PlanOwnKeys(plan, library, use, claims.libraryOwners);
        PlanInterfaces(plan, library, shared, use, claims);
    }
}

/// A library that several DLLs of a machine carry. The one that was registered last has
/// it, and leaves it to another that is still registered: each may be removed, or go
/// with its folder. Another maker's file keeps it.
void PlanSharedLibrary(Plan& plan, const DllLibrary& library, int resource, const LibrarySharers& sharers,
                       const Claims& claims) {
    const RegistryOwners& owners = claims.libraryOwners;
    const bool isRegistered = plan.action == Action::Register;
    if (BelongsToAnother(library, owners) && !(isRegistered && sharers.Have(library, owners))) {
        return;
    }
    std::optional<DllLibrary> heir;
    if (!isRegistered) {
        heir = sharers.Heir(library, resource, owners);
        PlanInterfaces(plan, library, nullptr, Use::Remove, claims);
    }
    const DllLibrary* const next = isRegistered ? &library : heir ? &*heir : nullptr;
    plan.shared.insert(kClassesPath + library.Key());
    plan.Change(library.Key(), owners.Tree(library.Key()),
                sharers.Keys(next == nullptr ? library : *next, next != nullptr, owners));
    if (next != nullptr) {
        PlanInterfaces(plan, *next, nullptr, Use::Write, claims);
    }
}

Plan MakePlan(const ServerInfo& server, Action action, HKEY root) {
    Plan plan{action, {}, {}, {}};
    const std::wstring file = ThisDll().FilePath();
    // What the user is registered with comes before the machine's: it may not hide that
    // of another maker there. Removing looks at what is removed alone.
    const bool seesMachine = action == Action::Register && root == HKEY_CURRENT_USER;
    using Sees = RegistryOwners::Sees;
    Claims claims{{root, seesMachine ? Sees::Machine : Sees::Root}, {root, Sees::Root}, {}};
    std::vector<DllLibrary> libraries;
    for (int resource = 1; resource <= server.libraries; ++resource) {
        libraries.push_back(LoadDllLibrary(file, resource));
        claims.libraries.push_back(libraries.back().id);
    }
    for (const ClassEntry& entry : server.classes) {
        PlanClass(plan, entry, file, claims.libraries.front(), claims.owners);
    }
    PlanOwnLibrary(plan, libraries.front(), libraries.size() > 1 ? &libraries.back() : nullptr, claims);
    const std::wstring sharerIds[] = {libraries.front().id, TextOfGuid(server.sibling)};
    const LibrarySharers sharers(sharerIds);
    for (std::size_t index = 1; index < libraries.size(); ++index) {
        PlanSharedLibrary(plan, libraries[index], static_cast<int>(index) + 1, sharers, claims);
    }
    return plan;
}

HKEY RootOf(Scope scope) {
    return scope == Scope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

/// The keys that classes, libraries and interfaces lie below.
constexpr const wchar_t* kParents[] = {L"Software\\Classes\\CLSID", L"Software\\Classes\\TypeLib",
                                       L"Software\\Classes\\Interface"};

void DeleteEmptyParents(HKEY root) {
    for (const wchar_t* parent : kParents) {
        DeleteIfEmpty(root, parent);
    }
}

/// Deletes the plan's keys and writes its values. What an older version left in
/// a key must not shine through.
void CarryOut(const Plan& plan, HKEY root) {
    for (const std::wstring& key : plan.keys) {
        DeleteTree(root, key.c_str());
    }
    for (const Entry& entry : plan.entries) {
        WriteValue(root, entry.path.c_str(), entry.value);
    }
    if (plan.action == Action::Unregister) {
        DeleteEmptyParents(root);
    }
}

/// The keys as they are before a change, to go back to. From here on nothing
/// takes memory: lack of it ends a registration before the first write or not
/// at all.
class Snapshot {
  public:
    Snapshot(const Plan& plan, HKEY root) : plan_(plan), root_(root) {
        for (const auto* const keys : {&plan.keys, &plan.shared}) {
            for (const std::wstring& key : *keys) {
                if (OpenKey(root, key.c_str())) {
                    trees_.emplace_back(key, ReadTree(root, key));
                }
            }
        }
        for (const wchar_t* parent : kParents) {
            if (OpenKey(root, parent)) {
                trees_.emplace_back(parent, RegistryTree()); // the key itself, were it empty
            }
        }
    }
    /// Makes the change; when it fails, goes back and throws what it threw.
    template <class F>
    void Guard(F&& change) const {
        const auto failure = Attempt(change);
        if (failure) {
            Restore();
            Check(failure->code);
        }
    }

  private:
    /// A key that may not be changed is as it was. It does not keep the others from becoming so.
    void Restore() const noexcept {
        for (const auto* const keys : {&plan_.keys, &plan_.shared}) {
            for (const std::wstring& key : *keys) {
                Attempt([&] { DeleteTree(root_, key.c_str()); });
            }
        }
        Attempt([&] { DeleteEmptyParents(root_); });
        for (const auto& saved : trees_) {
            Attempt([&] { WriteTree(root_, saved.first.c_str(), saved.second); });
        }
    }

    const Plan& plan_;
    HKEY root_;
    std::vector<std::pair<std::wstring, RegistryTree>> trees_;
};

/// Lets DLLs of this family, of either kind of process, change the registry one after the
/// other: they share keys, and each goes by what it has read. A DLL that keeps the others
/// waiting for long is not waited for.
class Turn {
  public:
    /// Asks for no more than waiting takes: another user's may allow nothing else.
    Turn() : mutex_(CreateMutexExW(nullptr, L"Global\\O_Tam_id.Registration", 0, SYNCHRONIZE)) {
        constexpr DWORD kMilliseconds = 10'000;
        const DWORD result = mutex_ ? WaitForSingleObject(mutex_.get(), kMilliseconds) : WAIT_FAILED;
        isMine_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    }
    ~Turn() {
        if (isMine_) {
            ReleaseMutex(mutex_.get());
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

  private:
    /// Empty where another user's may not be opened.
    Handle mutex_;
    bool isMine_;
};

void Change(const ServerInfo& server, Action action, HKEY root) {
    const Turn turn;
    const Plan plan = MakePlan(server, action, root);
    Snapshot(plan, root).Guard([&] { CarryOut(plan, root); });
}

} // namespace

void Register(const ServerInfo& server, Scope scope) {
    Change(server, Action::Register, RootOf(scope));
}

void Unregister(const ServerInfo& server, Scope scope) {
    Change(server, Action::Unregister, RootOf(scope));
}

} // namespace com
