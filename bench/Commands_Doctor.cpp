#include "bench/Commands.h"
#include "bench/Doctor.h"
#include "bench/Table.h"
#include "bench/Text.h"

#include <algorithm>
#include <string>
#include <vector>

namespace bench {

namespace {

using doctor::kBits;
using doctor::Server;

std::string Scope(const Server& server) {
    return server.isForUser ? "user" : "machine";
}

Json ServersJson(const std::vector<Server>& servers) {
    Json all = Json::array();
    for (const Server& server : servers) {
        all.push_back({{"bits", server.bits},
                       {"for", Scope(server)},
                       {"file", Utf8(server.file)},
                       {"fileExists", server.content != doctor::Content::Nothing},
                       {"fileBits", server.fileBits == 0 ? Json() : Json(server.fileBits)}});
    }
    return all;
}

Json ClassesJson(const doctor::Machine& machine) {
    Json classes = Json::array();
    for (const doctor::Class& entry : machine.classes) {
        classes.push_back({{"progId", entry.progId.empty() ? Json() : Json(Utf8(entry.progId))},
                           {"of", entry.group == doctor::Group::Component ? "component" : "host services"},
                           {"clsid", entry.clsid.empty() ? Json() : Json(Utf8(entry.clsid))},
                           {"servers", ServersJson(entry.servers)}});
    }
    return classes;
}

Json LibrariesJson(const doctor::Machine& machine) {
    Json libraries = Json::array();
    for (const doctor::Library& library : machine.libraries) {
        libraries.push_back(
            {{"name", Utf8(library.name)}, {"id", Utf8(library.id)}, {"files", ServersJson(library.files)}});
    }
    return libraries;
}

/// The file that a client comes to and where that is registered.
std::string FileText(const Server& server) {
    return Scope(server) + ": " + Utf8(server.file);
}

/// With what is wrong with it.
std::string ShownClass(const std::vector<Server>& servers, int bits) {
    const Server* const server = doctor::ServerFor(servers, bits);
    if (server == nullptr) {
        return "not registered";
    }
    switch (server->content) {
    case doctor::Content::Nothing:
        return FileText(*server) + "; the file is not there";
    case doctor::Content::Other:
        return FileText(*server) + "; the file is no DLL of 32 or 64 bits";
    default:
        break;
    }
    if (server->isProgram) {
        return FileText(*server) + "; a program of its own";
    }
    if (server->fileBits != bits) {
        return FileText(*server) + "; a " + std::to_string(server->fileBits) + "-bit file";
    }
    return FileText(*server) +
           (server->content == doctor::Content::Right ? "" : "; another DLL, or a damaged one");
}

std::string ShownLibrary(const std::vector<Server>& files, int bits) {
    const Server* const file = doctor::LibraryFor(files, bits);
    if (file == nullptr) {
        return "not registered";
    }
    std::string place =
        FileText(*file) +
        (file->bits == bits ? "" : "; registered for " + std::to_string(file->bits) + "-bit clients");
    switch (file->content) {
    case doctor::Content::Nothing:
        return place + "; the file is not there";
    case doctor::Content::Other:
        return place + "; the file holds no such type library";
    default:
        return place;
    }
}

/// A paragraph below its mark.
void Tell(std::string mark, const std::string& text, Answer& answer) {
    for (const std::string& line : Wrap(text, answer.Width() - mark.size())) {
        answer.Line(mark + line);
        mark = "  ";
    }
}

void TellMachine(const doctor::Machine& machine, Answer& answer) {
    for (const int bits : machine.kinds) {
        Fields fields;
        for (const doctor::Class& entry : machine.classes) {
            fields.Add(Utf8(entry.Title()), ShownClass(entry.servers, bits));
        }
        for (const doctor::Library& library : machine.libraries) {
            fields.Add("Type library " + Utf8(library.name), ShownLibrary(library.files, bits));
        }
        answer.Heading("What a " + std::to_string(bits) + "-bit client finds");
        answer.Add(fields);
    }
}

} // namespace

void Doctor(Answer& answer) {
    const doctor::Machine machine = doctor::Examine();
    const std::vector<doctor::Finding> findings = doctor::Judge(machine, ProgramFolder());
    const bool has64 = machine.kinds.size() > 1;
    answer.data["bits"] = kBits;
    answer.data["systemBits"] = has64 ? 64 : 32;
    answer.data["folder"] = Utf8(ProgramFolder());
    answer.data["classes"] = ClassesJson(machine);
    answer.data["typeLibraries"] = LibrariesJson(machine);
    Json& told = answer.data["findings"] = Json::array();
    answer.Line("This is the " + std::to_string(kBits) + "-bit bench on " + (has64 ? "64" : "32") +
                "-bit Windows. It takes the DLLs beside it; other programs take what is registered.");
    TellMachine(machine, answer);
    answer.Heading("Findings (" + std::to_string(findings.size()) + ")");
    for (const doctor::Finding& finding : findings) {
        told.push_back({{"bits", finding.bits},
                        {"kind", finding.isFault ? "fault" : "note"},
                        {"what", finding.what},
                        {"advice", finding.advice}});
        Tell("- ", finding.what, answer);
        Tell("  ", finding.advice, answer);
    }
    if (findings.empty()) {
        answer.Line("Everything that a client needs is registered.");
    }
    if (std::ranges::any_of(findings,
                            [](const auto& finding) { return finding.isFault && finding.bits == kBits; })) {
        throw BenchError(REGDB_E_CLASSNOTREG, "a " + std::to_string(kBits) +
                                                  "-bit client does not find all that it needs; the findings "
                                                  "say what to do");
    }
}

} // namespace bench
