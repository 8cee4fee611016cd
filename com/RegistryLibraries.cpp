// Type libraries in the registry. A library that lies in several DLLs is registered with
// the file of one of them. That one may be removed, so another must be found that has
// the library too and that is registered itself.
#include "com/RegistryLibraries.h"

#include "com/Boundary.h"
#include "com/Dll.h"
#include "com/Handles.h"
#include "com/RegistryView.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <new>
#include <string_view>

namespace com {

namespace {

std::wstring IdOf(ITypeLib& library) {
    TLIBATTR* attributes = nullptr;
    Check(library.GetLibAttr(&attributes));
    const GUID id = attributes->guid;
    library.ReleaseTLibAttr(attributes);
    return TextOfGuid(id);
}

/// The first bytes of a type library that is a file of its own.
constexpr std::string_view kFileMarks[] = {"MSFT", "SLTG"};

bool IsLibraryFile(const std::wstring& path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Handle file =
        OwnFile(CreateFileW(path.c_str(), FILE_READ_DATA, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    std::array<char, 4> bytes{};
    DWORD read = 0;
    return file && ReadFile(file.get(), bytes.data(), bytes.size(), &read, nullptr) != FALSE &&
           std::ranges::find(kFileMarks, std::string_view(bytes.data(), read)) != std::end(kFileMarks);
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

/// Where a library is registered for this kind of process.
std::wstring RegisteredPlace(const std::wstring& id, const RegistryOwners& owners) {
    return owners.Text(DllLibrary{{}, id, {}, {}}.KindKey(kThisKind));
}

RegistryTree* Child(RegistryTree& tree, const std::wstring& name) {
    const auto found = std::ranges::find_if(
        tree.keys, [&](const RegistryTree& child) { return SameText(child.name, name); });
    return found == tree.keys.end() ? nullptr : &*found;
}

RegistryTree& MadeChild(RegistryTree& tree, const std::wstring& name) {
    if (RegistryTree* const child = Child(tree, name)) {
        return *child;
    }
    tree.keys.push_back({name, {}, {}});
    return tree.keys.back();
}

void RemoveChild(RegistryTree& tree, const std::wstring& name) {
    std::erase_if(tree.keys, [&](const RegistryTree& child) { return SameText(child.name, name); });
}

void SetText(RegistryTree& tree, const std::wstring& text) {
    std::erase_if(tree.values, [](const RegistryTree::Value& value) { return value.name.empty(); });
    tree.values.push_back(TextValue({}, text));
}

/// A text with the values of the environment's variables in it.
std::wstring Expanded(const std::wstring& text) {
    std::wstring expanded(ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), L'\0');
    ExpandEnvironmentStringsW(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
    return expanded.substr(0, expanded.find(L'\0'));
}

/// The text of a key's default value; empty when it has none.
std::wstring TextOf(const RegistryTree& tree) {
    for (const RegistryTree::Value& value : tree.values) {
        if (value.name.empty() && (value.type == REG_SZ || value.type == REG_EXPAND_SZ)) {
            std::wstring text(value.data.size() / sizeof(wchar_t), L'\0');
            std::memcpy(text.data(), value.data.data(), text.size() * sizeof(wchar_t));
            text.resize(std::min(text.find(L'\0'), text.size()));
            return value.type == REG_SZ ? text : Expanded(text);
        }
    }
    return {};
}

} // namespace

std::wstring DllLibrary::Folder() const {
    return file.substr(0, file.find_last_of(L'\\') + 1);
}

std::wstring DllLibrary::Help() const {
    Bstr help;
    Check(library->GetDocumentation(-1, nullptr, help.Put(), nullptr, nullptr));
    return std::wstring(help.View());
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

bool HoldsLibrary(const std::wstring& place, const std::wstring& id) {
    const std::wstring file = LibraryFile(place);
    const int number = file.size() == place.size() ? 1 : _wtoi(place.c_str() + file.size() + 1);
    if (!IsLibraryFile(file) && !HasLibrary(file, number)) {
        return false;
    }
    Ref<ITypeLib> library;
    const HRESULT result = LoadTypeLibEx(place.c_str(), REGKIND_NONE, library.Put());
    if (result == E_OUTOFMEMORY) {
        throw std::bad_alloc();
    }
    return SUCCEEDED(result) && SameText(IdOf(*library.Get()), id);
}

bool BelongsToAnother(const DllLibrary& library, const RegistryOwners& owners) {
    const std::wstring place = RegisteredPlace(library.id, owners);
    return !place.empty() && !SameFile(LibraryFile(place), ThisDll().FilePath()) &&
           HoldsLibrary(place, library.id);
}

bool LibrarySharers::IsOneOfThem(const std::wstring& file) const {
    const auto first = FindLibrary(file, 1);
    return first &&
           std::ranges::any_of(ids_, [&](const std::wstring& id) { return SameText(id, first->id); });
}

bool LibrarySharers::Have(const DllLibrary& library, const RegistryOwners& owners) const {
    return IsOneOfThem(LibraryFile(RegisteredPlace(library.id, owners)));
}

std::optional<DllLibrary> LibrarySharers::Heir(const DllLibrary& library, int resource,
                                               const RegistryOwners& owners) const {
    for (const std::wstring& id : ids_) {
        const std::wstring file = LibraryFile(RegisteredPlace(id, owners));
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

bool LibrarySharers::HasAnothersFile(const RegistryTree& version) const {
    for (const RegistryTree& language : version.keys) {
        for (const RegistryTree& system : language.keys) {
            const std::wstring named = LibraryFile(TextOf(system));
            const std::wstring file = SameText(system.name, kOtherKind) ? PathOfOtherKind(named) : named;
            if (FileExists(file) && !IsOneOfThem(file)) {
                return true;
            }
        }
    }
    return false;
}

RegistryTree LibrarySharers::Keys(const DllLibrary& library, bool isRegistered,
                                  const RegistryOwners& owners) const {
    RegistryTree keys = owners.Tree(library.Key());
    RegistryTree& version = MadeChild(keys, L"1.0");
    RegistryTree& language = MadeChild(version, L"0");
    RemoveChild(language, kThisKind);
    std::wstring otherFile;
    if (const RegistryTree* const other = Child(language, kOtherKind)) {
        otherFile = LibraryFile(TextOf(*other));
        if (!FileExists(PathOfOtherKind(otherFile))) {
            otherFile.clear();
            RemoveChild(language, kOtherKind);
        }
    }
    const bool isAnothers = HasAnothersFile(version);
    if (isRegistered) {
        SetText(MadeChild(language, kThisKind), library.path);
    }
    if (isAnothers) {
        return keys;
    }
    if (isRegistered || !otherFile.empty()) {
        const std::wstring& file = isRegistered ? library.file : otherFile;
        SetText(version, library.Help());
        SetText(MadeChild(version, L"FLAGS"), L"0");
        SetText(MadeChild(version, L"HELPDIR"), file.substr(0, file.find_last_of(L'\\') + 1));
    } else {
        RemoveChild(keys, L"1.0");
    }
    return keys;
}

} // namespace com
