#include "bench/Doctor.h"

#include "bench/Text.h"
#include "com/Registry.h"
#include "com/RegistryLibraries.h"
#include "com/RegistryOwners.h"
#include "com/RegistryView.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <ios>
#include <optional>

namespace bench::doctor {

namespace {

constexpr const wchar_t* kClasses = L"Software\\Classes\\";

struct Known {
    Group group;
    const wchar_t* progId;
    const wchar_t* clsid;
};

constexpr Known kKnown[] = {
    {Group::Component, L"O_Tam_id.CDBAppObject", L"{17C37AEC-B03B-4DB2-9F7D-EC0E31E7B3DD}"},
    {Group::Component, L"O_Tam_id.TamObjectManager", L"{46A878FC-BDB5-4C88-99CB-C68525CD151B}"},
    {Group::HostServices, L"UnitManager.Converter", L""},
    {Group::HostServices, L"ORV.QB.Interop.Compilers.CompilersInterop", L""},
    {Group::HostServices, L"O_Generic.CDBAppObject", L""},
    {Group::HostServices, L"OrvHost.LibraryService", L""},
    {Group::HostServices, L"", L"{1D816F43-BC81-46F7-B17D-EE81B559E78F}"}};

struct KnownLibrary {
    std::vector<Group> groups;
    const wchar_t* name;
    const wchar_t* id;
};

const KnownLibrary kLibraries[] = {
    {{Group::Component}, L"O_Tam_id", L"{D912E3A3-F582-410E-89B0-8DEFF4425AFA}"},
    {{Group::Component, Group::HostServices}, L"OrvDBFaces", L"{23539202-4C9D-4BB1-86C0-E65E8B10D209}"},
    {{Group::HostServices}, L"OrvHost", L"{03814B01-E40D-4C62-B843-0733B9AFEBC8}"}};

/// The first library in this project's DLL of a group, which no other DLL has.
const wchar_t* OwnLibrary(Group group) {
    return group == Group::Component ? kLibraries[0].id : kLibraries[2].id;
}

/// The part of the registry that clients of so many bits have.
REGSAM ViewOf(int bits) {
    return bits == kBits ? 0 : com::OtherView();
}

std::wstring ReadAt(HKEY root, const std::wstring& path, REGSAM view) {
    const com::RegistryKey key = com::OpenKey(root, (kClasses + path).c_str(), view);
    std::wstring text = key ? com::ReadText(key) : std::wstring();
    if (text.size() > 1 && text.front() == L'"' && text.back() == L'"') {
        text = text.substr(1, text.size() - 2);
    }
    return text;
}

/// The file as this process reaches it. A name without a folder is the system's.
std::wstring Reached(std::wstring file, int bits) {
    if (file.find(L'\\') == std::wstring::npos) {
        wchar_t windows[MAX_PATH] = {};
        GetSystemWindowsDirectoryW(windows, MAX_PATH);
        file = windows + (L"\\System32\\" + file);
    }
    return bits == kBits ? file : com::PathOfOtherKind(file);
}

int BitsOf(WORD machine) {
    switch (machine) {
    case IMAGE_FILE_MACHINE_I386:
        return 32;
    case IMAGE_FILE_MACHINE_AMD64:
        return 64;
    default:
        return 0;
    }
}

/// The head of a program or DLL; nothing of another file.
std::optional<IMAGE_FILE_HEADER> HeadOf(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    IMAGE_DOS_HEADER dos{};
    struct {
        DWORD signature;
        IMAGE_FILE_HEADER header;
    } nt{};
    if (!file.read(reinterpret_cast<char*>(&dos), sizeof dos) || dos.e_magic != IMAGE_DOS_SIGNATURE ||
        !file.seekg(dos.e_lfanew) || !file.read(reinterpret_cast<char*>(&nt), sizeof nt) ||
        nt.signature != IMAGE_NT_SIGNATURE) {
        return std::nullopt;
    }
    return nt.header;
}

/// Any maker's DLL may have a service; one by the name of this project's has to be it.
bool MayHaveClass(Group group, const std::wstring& file, bool isOurs) {
    return isOurs || (group == Group::HostServices &&
                      !SameKey(file.substr(file.find_last_of(L'\\') + 1), L"OrvHost.dll"));
}

/// The key of a class may be in either part of the registry.
void AddProgram(Class& entry, int bits, HKEY root) {
    for (const REGSAM view : {ViewOf(bits), ViewOf(96 - bits)}) {
        const std::wstring program =
            com::ProgramOf(ReadAt(root, L"CLSID\\" + entry.clsid + L"\\LocalServer32", view));
        if (!program.empty()) {
            const std::wstring reached = Reached(program, bits);
            const auto head = HeadOf(reached);
            const Content content = com::FileExists(reached) ? Content::Right : Content::Nothing;
            entry.servers.push_back({bits, root == HKEY_CURRENT_USER, program, content,
                                     head ? BitsOf(head->Machine) : 0, false, true});
            return;
        }
    }
}

void AddServer(Class& entry, int bits, HKEY root) {
    const std::wstring file = ReadAt(root, L"CLSID\\" + entry.clsid + L"\\InprocServer32", ViewOf(bits));
    if (file.empty()) {
        if (entry.group == Group::HostServices) {
            AddProgram(entry, bits, root);
        }
        return;
    }
    const std::wstring reached = Reached(file, bits);
    const auto head = HeadOf(reached);
    Server server{bits,           root == HKEY_CURRENT_USER,        file,
                  Content::Other, head ? BitsOf(head->Machine) : 0, false};
    if (!com::FileExists(reached)) {
        server.content = Content::Nothing;
    } else if (server.fileBits != 0 && (head->Characteristics & IMAGE_FILE_DLL) != 0) {
        server.isOurs = com::HoldsLibrary(reached, OwnLibrary(entry.group));
        server.content = MayHaveClass(entry.group, file, server.isOurs) ? Content::Right : Content::OtherDll;
    }
    entry.servers.push_back(server);
}

void AddLibrary(Library& library, int bits, HKEY root) {
    const std::wstring place =
        ReadAt(root, L"TypeLib\\" + library.id + L"\\1.0\\0\\win" + std::to_wstring(bits), 0);
    if (place.empty()) {
        return;
    }
    const std::wstring file = com::LibraryFile(place);
    const std::wstring reached = Reached(file, bits);
    const auto head = HeadOf(reached);
    Content content = Content::Nothing;
    if (com::FileExists(reached)) {
        const bool isRight = com::HoldsLibrary(reached + place.substr(file.size()), library.id);
        content = isRight ? Content::Right : Content::Other;
    }
    library.files.push_back(
        {bits, root == HKEY_CURRENT_USER, place, content, head ? BitsOf(head->Machine) : 0, false});
}

/// Two paths may lead to one file.
void FindHidden(Class& entry) {
    for (Server& server : entry.servers) {
        for (const Server& other : entry.servers) {
            if (server.isForUser && !other.isForUser && server.bits == other.bits &&
                !com::SameFile(Reached(server.file, server.bits), Reached(other.file, other.bits))) {
                server.hidden = other.file;
            }
        }
    }
}

template <class Kinds>
Class ExamineClass(const Known& known, const Kinds& kinds) {
    Class entry{known.group, known.progId, known.clsid, known.clsid, false, {}};
    if (!entry.progId.empty()) {
        entry.clsid = ReadAt(HKEY_CURRENT_USER, entry.progId + L"\\CLSID", 0);
        entry.isNameForUser = !entry.clsid.empty();
        if (entry.clsid.empty()) {
            entry.clsid = ReadAt(HKEY_LOCAL_MACHINE, entry.progId + L"\\CLSID", 0);
        }
    }
    for (const int bits : kinds) {
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            if (!entry.clsid.empty()) {
                AddServer(entry, bits, root);
            }
        }
    }
    FindHidden(entry);
    return entry;
}

template <class Kinds>
Library ExamineLibrary(const KnownLibrary& known, const Kinds& kinds) {
    Library library{known.groups, known.name, known.id, {}};
    for (const int bits : kinds) {
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            AddLibrary(library, bits, root);
        }
    }
    return library;
}

} // namespace

Machine Examine() {
    Machine machine;
    machine.kinds = com::OtherView() == 0 ? std::vector<int>{kBits} : std::vector<int>{32, 64};
    for (const Known& known : kKnown) {
        machine.classes.push_back(ExamineClass(known, machine.kinds));
    }
    for (const KnownLibrary& known : kLibraries) {
        machine.libraries.push_back(ExamineLibrary(known, machine.kinds));
    }
    return machine;
}

const Server* ServerFor(const std::vector<Server>& servers, int bits) {
    for (const Server& server : servers) {
        if (server.bits == bits) {
            return &server;
        }
    }
    return nullptr;
}

const Server* LibraryFor(const std::vector<Server>& files, int bits) {
    const Server* const file = ServerFor(files, bits);
    return file == nullptr && bits == 64 ? ServerFor(files, 32) : file;
}

} // namespace bench::doctor
