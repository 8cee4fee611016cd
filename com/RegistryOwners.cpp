// A registration takes nothing from another maker, and its removal takes away only what
// is its own. So both ask who has a name: a class belongs to the file that its key names,
// an interface to the type library or proxy that marshals it. Files are compared, not
// paths, and an owner whose file is gone has nothing any more.
#include "com/RegistryOwners.h"

#include "com/Dll.h"
#include "com/Handles.h"
#include "com/Registry.h"
#include "com/RegistryLibraries.h"
#include "com/RegistryView.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string_view>
#include <tuple>

namespace com {

namespace {

// The system's proxies, which read the type library: by the virtual table and by name.
constexpr const wchar_t* kSystemProxies[] = {L"{00020424-0000-0000-C000-000000000046}",
                                             L"{00020420-0000-0000-C000-000000000046}"};

std::wstring ClassKey(const std::wstring& clsid) {
    return L"CLSID\\" + clsid;
}

std::wstring ReadClassesText(HKEY root, const std::wstring& path, REGSAM view, const wchar_t* value) {
    const RegistryKey key = OpenKey(root, (kClassesPath + path).c_str(), view);
    return key ? ReadText(key, value) : std::wstring();
}

std::wstring FoundByName(const std::wstring& name) {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(path.size());
        const DWORD length = SearchPathW(nullptr, name.c_str(), nullptr, room, path.data(), nullptr);
        path.resize(length);
        if (length < room) {
            return path;
        }
    }
}

/// Empty when it cannot be opened.
Handle OpenFound(const std::wstring& path, DWORD access) {
    const bool hasFolder = path.find(L'\\') != std::wstring::npos;
    const std::wstring found = hasFolder ? path : FoundByName(path);
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return OwnFile(CreateFileW(found.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
}

/// A file that is neither a program nor a DLL, such as one of a copy that was cut off, has no
/// class.
bool MayHaveClasses(const std::wstring& path) {
    if (!FileExists(path)) {
        return false;
    }
    const Handle file = OpenFound(path, FILE_READ_DATA);
    std::array<char, 2> mark{};
    DWORD read = 0;
    return !file || ReadFile(file.get(), mark.data(), mark.size(), &read, nullptr) == FALSE ||
           std::string_view(mark.data(), read) == "MZ";
}

/// Volume and number of a file; nothing when it cannot be opened.
std::optional<std::tuple<DWORD, DWORD, DWORD>> IdentityOf(const std::wstring& path) {
    const Handle file = OpenFound(path, FILE_READ_ATTRIBUTES);
    if (!file) {
        return std::nullopt;
    }
    BY_HANDLE_FILE_INFORMATION facts{};
    // Some network redirectors number no file; every file would be the same one there.
    if (GetFileInformationByHandle(file.get(), &facts) == FALSE ||
        (facts.nFileIndexHigh == 0 && facts.nFileIndexLow == 0)) {
        return std::nullopt;
    }
    return std::tuple(facts.dwVolumeSerialNumber, facts.nFileIndexHigh, facts.nFileIndexLow);
}

/// False where the file may be there and only cannot be reached.
bool IsGone(DWORD error) {
    constexpr DWORD kGone[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_DRIVE,
                               ERROR_INVALID_NAME,   ERROR_BAD_PATHNAME,   ERROR_DIRECTORY};
    return std::ranges::find(kGone, error) != std::end(kGone);
}

std::wstring Unquoted(const std::wstring& path) {
    return path.size() > 1 && path.front() == L'"' && path.back() == L'"' ? path.substr(1, path.size() - 2)
                                                                          : path;
}

} // namespace

std::wstring TextOfGuid(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

bool FileExists(const std::wstring& path) {
    if (path.find(L'\\') != std::wstring::npos) {
        const DWORD attributes = GetFileAttributesW(path.c_str());
        return attributes == INVALID_FILE_ATTRIBUTES ? !IsGone(GetLastError())
                                                     : (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    }
    return !path.empty() && !FoundByName(path).empty();
}

std::wstring ProgramOf(const std::wstring& command) {
    if (command.starts_with(L'"')) {
        return command.substr(1, command.find(L'"', 1) - 1);
    }
    for (auto end = command.find(L' '); end != std::wstring::npos; end = command.find(L' ', end + 1)) {
        if (FileExists(command.substr(0, end))) {
            return command.substr(0, end);
        }
    }
    return command;
}

bool SameFile(const std::wstring& left, const std::wstring& right) {
    if (SameText(left, right)) {
        return true;
    }
    const auto identity = IdentityOf(left);
    return identity && identity == IdentityOf(right);
}

std::wstring RegistryOwners::Text(const std::wstring& path, REGSAM view, const wchar_t* value) const {
    std::wstring text = ReadClassesText(root_, path, view, value);
    if (text.empty() && sees_ == Sees::Machine) {
        text = ReadClassesText(HKEY_LOCAL_MACHINE, path, view, value);
    }
    return text;
}

RegistryTree RegistryOwners::Tree(const std::wstring& path) const {
    const std::wstring key = kClassesPath + path;
    return OpenKey(root_, key.c_str()) ? ReadTree(root_, key) : RegistryTree();
}

std::wstring RegistryOwners::ClassOfName(const std::wstring& progId) const {
    return Text(progId + L"\\CLSID");
}

std::wstring RegistryOwners::FileOf(const std::wstring& clsid, REGSAM view) const {
    const auto reached = [&](const std::wstring& path) { return view == 0 ? path : PathOfOtherKind(path); };
    std::wstring file = reached(Unquoted(Text(ClassKey(clsid) + L"\\InprocServer32", view)));
    if (FileExists(file)) {
        return file;
    }
    const std::wstring program = reached(ProgramOf(Text(ClassKey(clsid) + L"\\LocalServer32", view)));
    return program.empty() ? file : program;
}

bool RegistryOwners::ClassExists(const std::wstring& clsid) const {
    return MayHaveClasses(FileOf(clsid)) || OtherKindHas(clsid);
}

bool RegistryOwners::AnotherFileHas(const std::wstring& clsid) const {
    const std::wstring file = FileOf(clsid);
    return MayHaveClasses(file) && !SameFile(file, ThisDll().FilePath());
}

bool RegistryOwners::OtherKindHas(const std::wstring& clsid) const {
    const REGSAM view = OtherView();
    const std::wstring file = view == 0 ? std::wstring() : FileOf(clsid, view);
    return MayHaveClasses(file) && !SameFile(file, ThisDll().FilePath());
}

bool RegistryOwners::AnotherMarshals(const std::wstring& iid, std::span<const std::wstring> libraries) const {
    const std::wstring key = L"Interface\\" + iid;
    const auto isProxy = [](const std::wstring& proxy) {
        return std::ranges::none_of(kSystemProxies,
                                    [&](const wchar_t* systems) { return SameText(proxy, systems); });
    };
    const std::wstring proxy = Text(key + L"\\ProxyStubClsid32");
    if (!proxy.empty() && isProxy(proxy) && ClassExists(proxy)) {
        return true;
    }
    const std::wstring library = Text(key + L"\\TypeLib");
    if (std::ranges::none_of(libraries, [&](const std::wstring& own) { return SameText(library, own); })) {
        return !library.empty() && LibraryExists(library);
    }
    const std::wstring version = Text(key + L"\\TypeLib", 0, L"Version");
    return !version.empty() && !SameText(version, L"1.0") && VersionExists(library, version);
}

std::vector<std::wstring> RegistryOwners::KeyNames(const std::wstring& path) const {
    std::vector<std::wstring> names;
    const auto add = [&](HKEY root) {
        if (const RegistryKey key = OpenKey(root, (kClassesPath + path).c_str())) {
            std::ranges::move(SubkeyNames(key), std::back_inserter(names));
        }
    };
    add(root_);
    if (sees_ == Sees::Machine) {
        add(HKEY_LOCAL_MACHINE);
    }
    return names;
}

/// In any version.
bool RegistryOwners::LibraryExists(const std::wstring& id) const {
    return std::ranges::any_of(KeyNames(L"TypeLib\\" + id),
                               [&](const std::wstring& version) { return VersionExists(id, version); });
}

/// In any language, for either kind of process.
bool RegistryOwners::VersionExists(const std::wstring& id, const std::wstring& version) const {
    const std::wstring ofVersion = std::wstring(L"TypeLib\\").append(id).append(L"\\").append(version);
    return std::ranges::any_of(KeyNames(ofVersion), [&](const std::wstring& language) {
        const std::wstring key = std::wstring(ofVersion).append(L"\\").append(language).append(L"\\");
        return FileExists(LibraryFile(Text(key + kThisKind))) ||
               FileExists(PathOfOtherKind(LibraryFile(Text(key + kOtherKind))));
    });
}

} // namespace com
