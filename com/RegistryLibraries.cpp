// Type libraries in the registry. A library that lies in several DLLs is registered with
// the file of one of them. That one may be removed, so another must be found that has
// the library too and that is registered itself.
#include "com/RegistryLibraries.h"

#include "com/Boundary.h"
#include "com/Dll.h"
#include "com/Handles.h"
#include "com/RegistryView.h"

#include <algorithm>
#include <new>

namespace com {

namespace {

std::wstring IdOf(ITypeLib& library) {
    TLIBATTR* attributes = nullptr;
    Check(library.GetLibAttr(&attributes));
    const GUID id = attributes->guid;
    library.ReleaseTLibAttr(attributes);
    return TextOfGuid(id);
}

/// A path that names no library is taken for a moniker by what loads libraries, so it is
/// looked at first.
bool HasLibrary(const std::wstring& file, int resource) {
    const ModuleHandle module(
        LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    return module != nullptr &&
           FindResourceW(module.get(), MAKEINTRESOURCEW(resource), L"TYPELIB") != nullptr;
}

/// Nothing when the file has no such library. Throws std::bad_alloc.
std::optional<DllLibrary> FindLibrary(const std::wstring& file, int resource) {
    if (!HasLibrary(file, resource)) {
        return std::nullopt;
    }
    std::optional<DllLibrary> found;
    const auto failure = Attempt([&] { found = LoadDllLibrary(file, resource); });
    if (failure && failure->code == E_OUTOFMEMORY) {
        throw std::bad_alloc();
    }
    return found;
}

/// The file that a library is registered with for this kind of process.
std::wstring RegisteredFile(const std::wstring& id, const RegistryOwners& owners) {
    return LibraryFile(owners.Text(DllLibrary{{}, id, {}, {}}.KindKey(kThisKind)));
}

} // namespace

std::wstring DllLibrary::Folder() const {
    return file.substr(0, file.find_last_of(L'\\') + 1);
}

bool DllLibrary::Has(REFGUID type) const {
    Ref<ITypeInfo> info;
    return SUCCEEDED(library->GetTypeInfoOfGuid(type, info.Put()));
}

std::wstring LibraryFile(std::wstring path) {
    if (const auto number = path.find_last_of(L'\\');
        number != std::wstring::npos &&
        path.find_first_not_of(L"0123456789", number + 1) == std::wstring::npos) {
        path.resize(number);
    }
    return path;
}

DllLibrary LoadDllLibrary(const std::wstring& file, int resource) {
    DllLibrary result;
    const std::wstring numbered = file + L"\\" + std::to_wstring(resource);
    Check(LoadTypeLibEx(numbered.c_str(), REGKIND_NONE, result.library.Put()));
    result.id = IdOf(*result.library.Get());
    result.file = file;
    result.path = resource == 1 ? file : numbered;
    return result;
}

bool BelongsToAnother(const DllLibrary& library, const RegistryOwners& owners) {
    const std::wstring file = RegisteredFile(library.id, owners);
    return FileExists(file) && !SameFile(file, ThisDll().FilePath());
}

bool LibrarySharers::Have(const DllLibrary& library, const RegistryOwners& owners) const {
    const auto first = FindLibrary(RegisteredFile(library.id, owners), 1);
    return first &&
           std::ranges::any_of(ids_, [&](const std::wstring& id) { return SameText(id, first->id); });
}

std::optional<DllLibrary> LibrarySharers::Heir(const DllLibrary& library, int resource,
                                               const RegistryOwners& owners) const {
    for (const std::wstring& id : ids_) {
        const std::wstring file = RegisteredFile(id, owners);
        if (!FileExists(file) || SameFile(file, ThisDll().FilePath())) {
            continue;
        }
        auto heir = FindLibrary(file, resource);
        if (heir && SameText(heir->id, library.id)) {
            return heir;
        }
    }
    return std::nullopt;
}

} // namespace com
