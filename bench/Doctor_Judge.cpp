// What is wrong with a machine's registration and what to do about it. This half only judges
// what Doctor.cpp read from the registry and from the heads of the files.

#include "bench/Doctor.h"
#include "bench/Text.h"

#include <windows.h>

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace bench::doctor {

namespace {

std::string KindName(int bits) {
    return std::to_string(bits) + "-bit";
}

const char* DllOf(Group group) {
    return group == Group::Component ? "O_Tam_id.dll" : "OrvHost.dll";
}

/// A call of regsvr32 for clients of so many bits. The program has to be of their kind; a
/// 64-bit system has both in folders whose names mislead.
std::string Regsvr32(const Machine& machine, int bits, const std::string& options, const std::string& dll) {
    const bool is32On64 = bits == 32 && machine.kinds.size() > 1;
    return (is32On64 ? "%SystemRoot%\\SysWOW64\\regsvr32" : "%SystemRoot%\\System32\\regsvr32") + options +
           " \"" + dll + "\"";
}

/// The same of this project's DLL of a group. Where that of another kind lies is not known.
std::string Regsvr32(const Machine& machine, int bits, const std::string& options, Group group,
                     const std::wstring& folder) {
    return bits == kBits ? Regsvr32(machine, bits, options, Utf8(folder) + DllOf(group))
                         : Regsvr32(machine, bits, options, DllOf(group)) + " in the folder of the " +
                               KindName(bits) + " build";
}

constexpr const char* kForUser = " /n /i:user";
constexpr const char* kAwayForUser = " /u /n /i:user";

/// The command that registers this project's DLL of a group: for the user where the user's
/// entry is what is wrong, since it hides the machine's.
std::string RegisterCommand(const Machine& machine, Group group, int bits, const std::wstring& folder,
                            bool isForUser) {
    return Regsvr32(machine, bits, isForUser ? kForUser : "", group, folder);
}

enum class Problem { None, NoName, OtherClass, NoClass, OnlyOtherKind, NoFile, NoDll, OtherBits, OtherDll };

Problem ProblemOf(const Class& entry, int bits) {
    if (entry.clsid.empty()) {
        return Problem::NoName;
    }
    if (!entry.expected.empty() && !SameKey(entry.expected, entry.clsid)) {
        return Problem::OtherClass;
    }
    const Server* const server = ServerFor(entry.servers, bits);
    if (server == nullptr) {
        return entry.servers.empty() ? Problem::NoClass : Problem::OnlyOtherKind;
    }
    switch (server->content) {
    case Content::Nothing:
        return Problem::NoFile;
    case Content::Other:
        return Problem::NoDll;
    default:
        break;
    }
    if (server->fileBits != bits && !server->isProgram) {
        return Problem::OtherBits;
    }
    return server->content == Content::Right ? Problem::None : Problem::OtherDll;
}

std::string Told(Problem problem, int bits, const std::string& names) {
    const std::string client = "A " + KindName(bits) + " client ";
    switch (problem) {
    case Problem::NoName:
        return client + "does not find the name of " + names + " (0x800401F3): nothing is registered.";
    case Problem::OtherClass:
        return client + "gets a class of another maker for " + names + ".";
    case Problem::NoClass:
        return client + "cannot make " + names + " (0x80040154): not registered.";
    case Problem::OnlyOtherKind:
        return client + "cannot make " + names + " (0x80040154): registered for " + KindName(96 - bits) +
               " clients only.";
    case Problem::NoFile:
        return client + "cannot make " + names + ": the registered file is not there.";
    case Problem::NoDll:
        return client + "cannot make " + names + ": the registered file is no DLL of 32 or 64 bits.";
    case Problem::OtherDll:
        return client + "cannot make " + names + ": the registered file is another DLL, or a damaged one.";
    default:
        return client + "cannot make " + names + ": the registered file is a " + KindName(96 - bits) +
               " DLL.";
    }
}

void JudgeClasses(const Machine& machine, Group group, int bits, const std::wstring& folder,
                  std::vector<Finding>& findings) {
    // By what is wrong, and whether the user's entry is.
    std::map<std::pair<Problem, bool>, std::string> names;
    for (const Class& entry : machine.classes) {
        const Problem problem = ProblemOf(entry, bits);
        if (entry.group == group && problem != Problem::None) {
            const Server* const server = ServerFor(entry.servers, bits);
            const bool isForUser = entry.isNameForUser || (server != nullptr && server->isForUser);
            std::string& list = names[{problem, isForUser}];
            list += (list.empty() ? "" : ", ") + Utf8(entry.Title());
        }
    }
    for (const auto& [found, list] : names) {
        const auto& [problem, isForUser] = found;
        const std::string command = RegisterCommand(machine, group, bits, folder, isForUser) + ".";
        const bool mayBeAHosts = group == Group::HostServices && !isForUser;
        findings.push_back({bits, true, Told(problem, bits, list),
                            mayBeAHosts ? "Install the host for " + KindName(bits) +
                                              " programs, or on a machine without a host run " + command
                                        : "Run " + command});
    }
}

/// What takes a user's entry away that hides the machine's.
std::string AdviceOnHidden(const Machine& machine, const Class& entry, const Server& server,
                           const std::wstring& folder) {
    const std::string unless = "If that is not wanted, ";
    if (server.isOurs) {
        return unless + "run " + Regsvr32(machine, server.bits, kAwayForUser, Utf8(server.file)) + ".";
    }
    const std::string away = Regsvr32(machine, server.bits, kAwayForUser, entry.group, folder);
    if (server.content == Content::Nothing) {
        // A file that is gone cannot take its entries away; another copy of it does.
        return unless + "run " + away + ".";
    }
    if (entry.group == Group::Component) {
        // What a DLL takes away is its own, so that it has to be its own first.
        return unless + "run " + Regsvr32(machine, server.bits, kForUser, entry.group, folder) + ", then " +
               away + ".";
    }
    const bool is32On64 = server.bits == 32 && machine.kinds.size() > 1;
    return unless +
           "uninstall the program that the file belongs to, or delete HKEY_CURRENT_USER\\Software\\" +
           "Classes\\" + (is32On64 ? "Wow6432Node\\" : "") + "CLSID\\" + Utf8(entry.clsid) + ".";
}

/// What the user has registered hides what the machine has.
void JudgeHidden(const Machine& machine, int bits, const std::wstring& folder,
                 std::vector<Finding>& findings) {
    struct Hidden {
        const Class* entry;
        const Server* server;
        std::string names;
    };
    // The classes of a DLL are one finding.
    std::vector<Hidden> all;
    for (const Class& entry : machine.classes) {
        for (const Server& server : entry.servers) {
            if (server.bits != bits || server.hidden.empty()) {
                continue;
            }
            const auto same = std::ranges::find_if(all, [&](const Hidden& other) {
                return SameKey(other.server->file, server.file) &&
                       SameKey(other.server->hidden, server.hidden);
            });
            if (same == all.end()) {
                all.push_back({&entry, &server, Utf8(entry.Title())});
            } else {
                same->names += ", " + Utf8(entry.Title());
            }
        }
    }
    for (const auto& [entry, server, names] : all) {
        findings.push_back({bits, false,
                            "For this user " + Utf8(server->file) + " hides " + Utf8(server->hidden) +
                                ", which the machine has for " + names + ".",
                            AdviceOnHidden(machine, *entry, *server, folder)});
    }
}

/// The group whose registered classes need a library, which are this project's; nothing when
/// there is none: other makers' services have libraries of their own.
std::optional<Group> NeededBy(const Machine& machine, const Library& library, int bits) {
    for (const Group group : library.groups) {
        const bool isNeeded = std::ranges::any_of(machine.classes, [&](const Class& entry) {
            return entry.group == group && ProblemOf(entry, bits) == Problem::None &&
                   ServerFor(entry.servers, bits)->isOurs;
        });
        if (isNeeded) {
            return group;
        }
    }
    return std::nullopt;
}

/// Proxies between apartments are made from the type library, and development
/// tools list it.
void JudgeLibraries(const Machine& machine, int bits, const std::wstring& folder,
                    std::vector<Finding>& findings) {
    for (const Library& library : machine.libraries) {
        const Server* const file = LibraryFor(library.files, bits);
        const auto group = NeededBy(machine, library, bits);
        if ((file != nullptr && file->content == Content::Right) || !group) {
            continue;
        }
        const std::string name = "type library " + Utf8(library.name);
        std::string what = "The registered file of the " + name;
        if (file == nullptr) {
            what = "The " + name + " is not registered for " + KindName(bits) + " clients";
        } else {
            what += file->content == Content::Nothing ? " is not there" : " holds none";
        }
        const bool isForUser = file != nullptr && file->isForUser;
        findings.push_back({bits, true, what + ": calls from another apartment fail.",
                            "Run " + RegisterCommand(machine, *group, bits, folder, isForUser) + "."});
    }
}

} // namespace

std::vector<Finding> Judge(const Machine& machine, const std::wstring& folder) {
    std::vector<Finding> findings;
    for (const int bits : machine.kinds) {
        JudgeClasses(machine, Group::Component, bits, folder, findings);
        JudgeClasses(machine, Group::HostServices, bits, folder, findings);
        JudgeLibraries(machine, bits, folder, findings);
        JudgeHidden(machine, bits, folder, findings);
    }
    return findings;
}

} // namespace bench::doctor
