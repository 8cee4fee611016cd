// What is wrong with a machine's registration and what to do about it. This half only judges
// what Doctor.cpp read from the registry and from the heads of the files.

#include "bench/Doctor.h"
#include "bench/Text.h"

#include <windows.h>

#include <algorithm>
#include <map>

namespace bench::doctor {

namespace {

std::string KindName(int bits) {
    return std::to_string(bits) + "-bit";
}

const char* DllOf(Group group) {
    return group == Group::Component ? "O_Tam_id.dll" : "OrvHost.dll";
}

/// The command that registers a DLL for clients of so many bits. regsvr32 has to
/// be of their kind; a 64-bit system has both in folders whose names mislead.
std::string RegisterCommand(const Machine& machine, Group group, int bits, const std::wstring& folder) {
    const bool is32On64 = bits == 32 && machine.kinds.size() > 1;
    const std::string program =
        is32On64 ? "%SystemRoot%\\SysWOW64\\regsvr32" : "%SystemRoot%\\System32\\regsvr32";
    const std::string dll = bits == kBits ? Utf8(folder) + DllOf(group) : DllOf(group);
    return program + " \"" + dll + "\"" +
           (bits == kBits ? "" : " in the folder of the " + KindName(bits) + " build");
}

enum class Problem { None, NoName, OtherClass, NoClass, OnlyOtherKind, NoFile, NoDll, OtherBits };

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
    if (server->content != Content::Right) {
        return server->content == Content::Nothing ? Problem::NoFile : Problem::NoDll;
    }
    return server->fileBits == bits ? Problem::None : Problem::OtherBits;
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
    default:
        return client + "cannot make " + names + ": the registered file is a " + KindName(96 - bits) +
               " DLL.";
    }
}

void JudgeClasses(const Machine& machine, Group group, int bits, const std::wstring& folder,
                  std::vector<Finding>& findings) {
    std::map<Problem, std::string> names;
    for (const Class& entry : machine.classes) {
        const Problem problem = ProblemOf(entry, bits);
        if (entry.group == group && problem != Problem::None) {
            std::string& list = names[problem];
            list += (list.empty() ? "" : ", ") + Utf8(entry.Title());
        }
    }
    const std::string command = RegisterCommand(machine, group, bits, folder) + ".";
    for (const auto& [problem, list] : names) {
        const bool isService = group == Group::HostServices;
        findings.push_back({bits, true, Told(problem, bits, list),
                            isService ? "Install the host for " + KindName(bits) +
                                            " programs, or on a machine without a host run " + command
                                      : "Run " + command});
    }
}

/// What the user has registered hides what the machine has.
void JudgeHidden(const Machine& machine, int bits, std::vector<Finding>& findings) {
    for (const Class& entry : machine.classes) {
        std::vector<const Server*> own;
        for (const Server& server : entry.servers) {
            if (server.bits == bits) {
                own.push_back(&server);
            }
        }
        if (own.size() > 1 && !SameKey(own.front()->file, own.back()->file)) {
            findings.push_back(
                {bits, false,
                 "For this user " + Utf8(own.front()->file) + " hides " + Utf8(own.back()->file) +
                     ", which the machine has for " + Utf8(entry.Title()) + ".",
                 "If that is not wanted, run regsvr32 /u /n /i:user \"" + Utf8(own.front()->file) + "\"."});
            return;
        }
    }
}

bool HasClasses(const Machine& machine, int bits) {
    return std::ranges::any_of(machine.classes, [bits](const Class& entry) {
        return entry.group == Group::Component && ProblemOf(entry, bits) == Problem::None;
    });
}

/// Proxies between apartments are made from the type library, and development
/// tools list it.
void JudgeLibraries(const Machine& machine, int bits, const std::wstring& folder,
                    std::vector<Finding>& findings) {
    for (const Library& library : machine.libraries) {
        const Server* const file = LibraryFor(library.files, bits);
        if ((file != nullptr && file->content == Content::Right) || !HasClasses(machine, bits)) {
            continue;
        }
        const std::string name = "type library " + Utf8(library.name);
        std::string what = "The registered file of the " + name;
        if (file == nullptr) {
            what = "The " + name + " is not registered for " + KindName(bits) + " clients";
        } else {
            what += file->content == Content::Nothing ? " is not there" : " holds none";
        }
        findings.push_back({bits, true, what + ": calls from another apartment fail.",
                            "Run " + RegisterCommand(machine, Group::Component, bits, folder) + "."});
    }
}

} // namespace

std::vector<Finding> Judge(const Machine& machine, const std::wstring& folder) {
    std::vector<Finding> findings;
    for (const int bits : machine.kinds) {
        JudgeClasses(machine, Group::Component, bits, folder, findings);
        JudgeClasses(machine, Group::HostServices, bits, folder, findings);
        JudgeLibraries(machine, bits, folder, findings);
        JudgeHidden(machine, bits, findings);
    }
    return findings;
}

} // namespace bench::doctor
