#include "com/RegistryOwners.h"

#include "com/Dll.h"
#include "com/Registry.h"
#include "com/RegistryView.h"

#include <algorithm>
#include <iterator>

namespace com {

namespace {

// The system's proxies, which read the type library: by the virtual table and by name.
constexpr const wchar_t* kSystemProxies[] = {L"{00020424-0000-0000-C000-000000000046}",
                                             L"{00020420-0000-0000-C000-000000000046}"};

std::wstring ClassKey(const std::wstring& clsid) {
    return L"CLSID\\" + clsid;
}

std::wstring ReadClassesText(HKEY root, const std::wstring& path, REGSAM view) {
    const RegistryKey key = OpenKey(root, (kClassesPath + path).c_str(), view);
    return key ? ReadText(key) : std::wstring();
}

/// The program of a command line; its path may have blanks without being quoted.
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

} // namespace

std::wstring TextOfGuid(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

bool SameText(const std::wstring& left, const std::wstring& right) {
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

bool FileExists(const std::wstring& path) {
    if (path.find(L'\\') != std::wstring::npos) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    return !path.empty() && SearchPathW(nullptr, path.c_str(), nullptr, 0, nullptr, nullptr) != 0;
}

std::wstring LibraryFile(std::wstring path) {
    if (const auto number = path.find_last_of(L'\\');
        number != std::wstring::npos &&
        path.find_first_not_of(L"0123456789", number + 1) == std::wstring::npos) {
        path.resize(number);
    }
    return path;
}

std::wstring RegistryOwners::Text(const std::wstring& path, REGSAM view) const {
    std::wstring text = ReadClassesText(root_, path, view);
    if (text.empty() && sees_ == Sees::Machine) {
        text = ReadClassesText(HKEY_LOCAL_MACHINE, path, view);
    }
    return text;
}

std::wstring RegistryOwners::ClassOfName(const std::wstring& progId) const {
    return Text(progId + L"\\CLSID");
}

std::wstring RegistryOwners::FileOf(const std::wstring& clsid) const {
    std::wstring file = Text(ClassKey(clsid) + L"\\InprocServer32");
    return file.empty() ? ProgramOf(Text(ClassKey(clsid) + L"\\LocalServer32")) : file;
}

bool RegistryOwners::ClassExists(const std::wstring& clsid) const {
    return FileExists(FileOf(clsid)) || OtherKindHas(clsid);
}

bool RegistryOwners::AnotherFileHas(const std::wstring& clsid) const {
    const std::wstring file = FileOf(clsid);
    return !SameText(file, ThisDll().FilePath()) && FileExists(file);
}

bool RegistryOwners::OtherKindHas(const std::wstring& clsid) const {
    const REGSAM view = OtherView();
    const std::wstring file = view == 0 ? std::wstring() : Text(ClassKey(clsid) + L"\\InprocServer32", view);
    return !file.empty() && !SameText(file, ThisDll().FilePath()) && FileExists(PathOfOtherKind(file));
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
    return !library.empty() &&
           std::ranges::none_of(libraries, [&](const std::wstring& own) { return SameText(library, own); }) &&
           LibraryExists(library);
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

/// In any version and any language, for either kind of process.
bool RegistryOwners::LibraryExists(const std::wstring& id) const {
    const std::wstring library = L"TypeLib\\" + id;
    for (const std::wstring& version : KeyNames(library)) {
        for (const std::wstring& language : KeyNames(library + L"\\" + version)) {
            const std::wstring key = library + L"\\" + version + L"\\" + language + L"\\";
            if (FileExists(LibraryFile(Text(key + kThisKind))) ||
                FileExists(PathOfOtherKind(LibraryFile(Text(key + kOtherKind))))) {
                return true;
            }
        }
    }
    return false;
}

} // namespace com
