#pragma once

#include <string>
#include <vector>

namespace bench::doctor {

/// What lies where the registry says.
enum class Content {
    Nothing,
    /// A DLL that may have the class, or whatever holds the type library.
    Right,
    /// A DLL that has not what this project's DLL of the class has: another, or a damaged one.
    OtherDll,
    /// Neither.
    Other
};

/// A class or a type library as one place of the registry has it: for clients of so
/// many bits, for the machine or for the user.
struct Server {
    int bits = 0;
    bool isForUser = false;
    std::wstring file;
    Content content = Content::Nothing;
    /// Of a program or DLL; 0 of anything else.
    int fileBits = 0;
    /// A DLL of this project, by the type library in it; of a class only.
    bool isOurs = false;
    /// Not a DLL but a program of its own, which has objects for clients of both kinds.
    bool isProgram = false;
    /// The file that the machine has for the same clients, where this one is the user's and
    /// another; empty otherwise.
    std::wstring hidden{};
};

enum class Group { Component, HostServices };

/// One of the classes that a host uses or lends.
struct Class {
    Group group;
    /// Empty for a class that is made by its identifier only.
    std::wstring progId;
    /// What a client gets for the name; the class's own identifier without one.
    std::wstring clsid;
    /// The identifier that the name should stand for; empty where any maker's will do.
    std::wstring expected;
    /// The user has the name, which hides the machine's.
    bool isNameForUser = false;
    /// In the order in which a client looks: the user's first.
    std::vector<Server> servers;
    /// What a reader knows the class by.
    std::wstring Title() const { return progId.empty() ? clsid : progId; }
};

struct Library {
    /// Whose classes need it; both groups' where it is shared.
    std::vector<Group> groups;
    std::wstring name;
    std::wstring id;
    std::vector<Server> files;
};

/// What is wrong for clients of so many bits, and what to do about it.
struct Finding {
    int bits;
    /// False: worth knowing, and no client fails by it.
    bool isFault;
    std::string what;
    std::string advice;
};

struct Machine {
    /// The kinds of process that this system has: 32, or 32 and 64.
    std::vector<int> kinds;
    std::vector<Class> classes;
    std::vector<Library> libraries;
};

/// Bits of this program.
constexpr int kBits = sizeof(void*) * 8;

/// Reads the registry and the heads of the files; makes no object.
Machine Examine();

/// What a client of so many bits comes to; null when it finds nothing.
const Server* ServerFor(const std::vector<Server>& servers, int bits);
/// The same of a type library: a 64-bit client takes the file for 32-bit clients where
/// there is no other.
const Server* LibraryFor(const std::vector<Server>& files, int bits);

/// `folder` is where this program and the DLLs of its own kind lie.
std::vector<Finding> Judge(const Machine& machine, const std::wstring& folder);

} // namespace bench::doctor
