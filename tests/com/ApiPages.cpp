#include "tests/com/ApiPages.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <ios>
#include <ostream>
#include <set>
#include <sstream>

namespace contract {

using namespace support;

namespace {

std::string Code(const std::string& text) {
    return "`" + text + "`";
}

std::string Hexadecimal(long number) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << static_cast<unsigned long>(number);
    return text.str();
}

/// The members of the name, which are the ways to use it.
std::vector<const Member*> Kinds(const Interface& face, const Member& first) {
    std::vector<const Member*> kinds;
    for (const Member& member : face.members) {
        if (member.name == first.name) {
            kinds.push_back(&member);
        }
    }
    return kinds;
}

std::string Access(const std::vector<const Member*>& kinds) {
    std::string access;
    for (const Member* member : kinds) {
        access += access.empty() ? "" : ", ";
        access += member->kind == INVOKE_FUNC          ? "call"
                  : member->kind == INVOKE_PROPERTYGET ? "read"
                  : member->kind == INVOKE_PROPERTYPUT ? "write"
                                                       : "set";
    }
    return access;
}

/// The type as the IDL files write it, without "by reference".
std::string TypeOf(const Parameter& parameter) {
    switch (parameter.type) {
    case VT_BSTR:
        return "BSTR";
    case VT_BOOL:
        return "VARIANT_BOOL";
    case VT_VARIANT:
        return "VARIANT";
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return Narrow(parameter.typeName) + "*";
    default:
        return Narrow(parameter.typeName);
    }
}

std::string Argument(const Parameter& parameter) {
    const std::string text =
        TypeOf(parameter) + (parameter.byReference ? "*" : "") + " " + Narrow(parameter.name);
    return parameter.optional ? "[" + text + "]" : text;
}

/// What the member takes and answers: `(BSTR Name) → VARIANT_BOOL`, or a
/// property's type alone.
std::string Shape(const Member& member) {
    std::string arguments;
    std::string result;
    for (const Parameter& parameter : member.parameters) {
        if (parameter.result) {
            result = TypeOf(parameter);
        } else if (member.IsWrite()) {
            result = TypeOf(parameter); // the value that is written
        } else {
            arguments += (arguments.empty() ? "" : ", ") + Argument(parameter);
        }
    }
    const bool isPlainProperty = member.kind != INVOKE_FUNC && arguments.empty();
    if (isPlainProperty) {
        return Code(result);
    }
    return Code("(" + arguments + ")" + (result.empty() ? "" : " -> " + result));
}

void WriteMembers(std::ostream& out, const Interface& face) {
    out << "| member | number | access | type | what it is |\n| --- | --- | --- | --- | --- |\n";
    std::set<std::wstring> seen;
    std::size_t hidden = 0;
    for (const Member& member : face.members) {
        if (member.isHidden) {
            ++hidden;
        } else if (seen.insert(member.name).second) {
            out << "| " << Code(Narrow(member.spelling)) << " | "
                << (member.id == DISPID_NEWENUM ? "-4" : Hexadecimal(member.id)) << " | "
                << Access(Kinds(face, member)) << " | " << Shape(member) << " | " << Narrow(member.help)
                << " |\n";
        }
    }
    if (hidden != 0) {
        out << "\nThe first " << hidden << " slots are reserved and not called.\n";
    }
}

void WriteInterface(std::ostream& out, const Interface& face) {
    out << "\n## " << Narrow(face.name) << "\n\n" << Narrow(face.help) << "\n";
    out << "Identifier " << Code(Narrow(TextOf(face.id))) << ".\n\n";
    WriteMembers(out, face);
}

void WriteClasses(std::ostream& out, const TypeLibrary& library) {
    out << "\n## Classes\n\nA host makes those that say so; the others it gets from them.\n"
        << "What stands after \"by name\" lists all members that a script reaches on the object.\n\n"
        << "| class | what it is | made by a host | identifier | interfaces, the default one first |\n"
        << "| --- | --- | --- | --- | --- |\n";
    for (const Class& entry : library.Classes()) {
        std::string faces;
        for (const Interface& face : entry.interfaces) {
            faces += (faces.empty() ? "" : ", ") + Code(Narrow(face.name));
        }
        if (entry.byName) {
            faces += "; by name " + Code(Narrow(entry.byName->name));
        }
        out << "| " << Code(Narrow(entry.name)) << " | " << Narrow(entry.help) << " | "
            << (entry.creatable ? "yes" : "no") << " | " << Code(Narrow(TextOf(entry.id))) << " | " << faces
            << " |\n";
    }
}

void WriteEnumeration(std::ostream& out, const Enumeration& entry) {
    out << "\n## " << Narrow(entry.name) << "\n\n"
        << Narrow(entry.help) << "\n\n| name | number |\n| --- | --- |\n";
    for (const EnumerationValue& value : entry.values) {
        out << "| " << Code(Narrow(value.name)) << " | " << Hexadecimal(value.number) << " |\n";
    }
}

constexpr const char* kMade =
    "Made by `./tam api` from the built type libraries. Change the help strings in `idl/`, not this page.\n";

std::string PageOf(const TypeLibrary& library, const std::vector<const Interface*>& faces) {
    std::ostringstream out;
    out << "# " << Narrow(library.Name()) << "\n\n"
        << Narrow(library.Help()) << ". Library " << Code(Narrow(TextOf(library.Id()))) << ".\n\n"
        << kMade;
    if (!library.Classes().empty()) {
        WriteClasses(out, library);
    }
    for (const Interface* face : faces) {
        WriteInterface(out, *face);
    }
    for (const Enumeration& entry : library.Enumerations()) {
        WriteEnumeration(out, entry);
    }
    return out.str();
}

/// How a heading is linked to.
std::string Anchor(std::string heading) {
    std::transform(heading.begin(), heading.end(), heading.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return heading;
}

std::string FileOf(const TypeLibrary& library) {
    return Narrow(library.Name()) + ".md";
}

} // namespace

std::vector<ApiPage> ApiPages(const TypeLibrary& faces, const TypeLibrary& component,
                              const TypeLibrary& services) {
    std::ostringstream index;
    index
        << "# Interfaces and classes\n\n"
        << kMade << "\n"
        << "\"read\" and \"write\" are the two sides of a property, \"set\" is a write of an object "
        << "(`Set` in\nscripts), \"call\" is a method. An argument in brackets may be left out. Numbers are "
        << "DISPIDs.\n[The host's guide](../host-guide.md) says in which order a host uses them.\n";
    std::vector<ApiPage> pages;
    std::set<std::wstring> told;
    for (const TypeLibrary* library : std::array{&faces, &component, &services}) {
        std::vector<const Interface*> own;
        for (const Interface& face : library->Interfaces()) {
            if (told.insert(TextOf(face.id)).second) {
                own.push_back(&face);
            }
        }
        index << "\n## [" << Narrow(library->Name()) << "](" << FileOf(*library) << ")\n\n";
        for (const Interface* face : own) {
            const std::string name = Narrow(face->name);
            index << "- [" << name << "](" << FileOf(*library) << "#" << Anchor(name)
                  << "): " << Narrow(face->help) << "\n";
        }
        pages.push_back({FileOf(*library), PageOf(*library, own)});
    }
    pages.push_back({"README.md", index.str()});
    return pages;
}

} // namespace contract
