// What the built libraries call things. A library keeps one spelling of names
// that differ in letter case alone, the first one that it meets, be it a
// member's or an argument's. Scripts do not notice; clients that are generated
// from the library, in languages that tell the cases apart, do.

#include "tests/com/HostServices.h"
#include "tests/com/IdlSource.h"
#include "tests/support/TypeLibrary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

using namespace contract;
using namespace support;

namespace {

/// A library of a DLL's resources and the file that it was written in.
struct Place {
    const char* name;
    std::wstring (*dll)();
    int resource;
    const char* idl;
};

void PrintTo(const Place& place, std::ostream* out) {
    *out << place.name;
}

std::vector<std::string> NamesOf(const Enumeration& entry) {
    std::vector<std::string> names;
    std::transform(entry.values.begin(), entry.values.end(), std::back_inserter(names),
                   [](const EnumerationValue& value) { return support::Narrow(value.name); });
    return names;
}

/// The members in slot order.
std::vector<std::string> MembersOf(const Interface& face) {
    std::vector<std::string> names;
    for (const Member& member : face.members) {
        names.push_back(support::Narrow(member.spelling));
    }
    return names;
}

std::vector<std::string> MembersOf(const std::vector<IdlMember>& members) {
    std::vector<std::string> names;
    for (const IdlMember& member : members) {
        names.push_back(member.name);
    }
    return names;
}

/// What the library says of the arguments of the name's first member; it may
/// say less than all.
std::vector<std::string> ArgumentsOf(const Member& member) {
    std::vector<std::string> names;
    for (const Parameter& parameter : member.parameters) {
        if (!parameter.name.empty()) {
            names.push_back(support::Narrow(parameter.name));
        }
    }
    return names;
}

/// One line for each name that differs.
void ExpectSpelt(const std::vector<std::string>& expected, const std::vector<std::string>& names,
                 const std::string& where) {
    ASSERT_EQ(expected.size(), names.size()) << where;
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(expected[i], names[i]) << where;
    }
}

/// The interfaces of all three files, wherever a library repeats one.
std::map<std::string, std::vector<IdlMember>> AllInterfaces() {
    std::map<std::string, std::vector<IdlMember>> all;
    for (const char* const name : {"OrvDBFaces", "O_Tam_id", "OrvHost"}) {
        all.merge(ReadIdl(name).interfaces);
    }
    return all;
}

class NamesTest : public ::testing::TestWithParam<Place> {
  protected:
    const TypeLibrary library{GetParam().dll(), GetParam().resource};
    const IdlSource source = ReadIdl(GetParam().idl);
};

TEST_P(NamesTest, TypesAreSpeltAsInTheSource) {
    EXPECT_EQ(source.library, support::Narrow(library.Name()));
    std::set<std::string> classes;
    for (const Class& entry : library.Classes()) {
        classes.insert(support::Narrow(entry.name));
    }
    EXPECT_EQ(source.classes, classes);
    std::map<std::string, std::vector<std::string>> enumerations;
    for (const Enumeration& entry : library.Enumerations()) {
        enumerations[support::Narrow(entry.name)] = NamesOf(entry);
    }
    EXPECT_EQ(source.enumerations, enumerations);
    std::set<std::string> interfaces;
    for (const Interface& face : library.Interfaces()) {
        interfaces.insert(support::Narrow(face.name));
    }
    for (const auto& [name, members] : source.interfaces) {
        EXPECT_TRUE(interfaces.contains(name)) << name;
    }
}

TEST_P(NamesTest, MembersAreSpeltAsInTheSource) {
    const auto all = AllInterfaces();
    EXPECT_FALSE(library.Interfaces().empty());
    for (const Interface& face : library.Interfaces()) {
        const auto written = all.find(support::Narrow(face.name));
        if (written == all.end()) {
            ADD_FAILURE() << "no file has " << support::Narrow(face.name);
            continue;
        }
        ExpectSpelt(MembersOf(written->second), MembersOf(face), written->first);
    }
}

TEST_P(NamesTest, ArgumentsAreSpeltAsInTheSource) {
    const auto all = AllInterfaces();
    for (const Interface& face : library.Interfaces()) {
        const std::vector<IdlMember>& written = all.at(support::Narrow(face.name));
        for (const Member& member : face.members) {
            const std::string name = support::Narrow(member.spelling);
            const std::vector<std::string> names = ArgumentsOf(member);
            const auto first = std::find_if(written.begin(), written.end(),
                                            [&](const IdlMember& m) { return m.name == name; });
            if (first == written.end()) {
                ADD_FAILURE() << Title(face, member);
                continue;
            }
            std::vector<std::string> expected = first->parameters;
            expected.resize(std::min(expected.size(), names.size()));
            ExpectSpelt(expected, names, Title(face, member));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Libraries, NamesTest,
                         ::testing::Values(Place{"Component", &Component::DllPath, 1, "O_Tam_id"},
                                           Place{"ComponentsFaces", &Component::DllPath, 2, "OrvDBFaces"},
                                           Place{"HostServices", &HostServices::DllPath, 1, "OrvHost"},
                                           Place{"HostServicesFaces", &HostServices::DllPath, 2,
                                                 "OrvDBFaces"}),
                         [](const auto& place) { return std::string(place.param.name); });

TEST(NamesSameInterfaceTest, HasOneSpellingInEveryLibrary) {
    std::map<std::wstring, std::vector<std::string>> known;
    int repeated = 0;
    for (const auto& dll : {Component::DllPath(), HostServices::DllPath()}) {
        for (const int resource : {1, 2}) {
            const TypeLibrary library(dll, resource);
            for (const Interface& face : library.Interfaces()) {
                std::vector<std::string> names = MembersOf(face);
                names.insert(names.begin(), support::Narrow(face.name));
                const auto [entry, isNew] = known.try_emplace(TextOf(face.id), names);
                repeated += isNew ? 0 : 1;
                ExpectSpelt(entry->second, names,
                            support::Narrow(library.Name()) + ", " + support::Narrow(face.name));
            }
        }
    }
    EXPECT_GE(repeated, 35) << "the host interfaces lie in both DLLs";
}

TEST(NamesSourceTest, SpellsANameInOneWay) {
    std::map<std::string, std::set<std::string>> spellings;
    const auto add = [&](const std::string& name) {
        std::string small = name;
        std::transform(small.begin(), small.end(), small.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        spellings[small].insert(name);
    };
    for (const char* const file : {"OrvDBFaces", "O_Tam_id", "OrvHost"}) {
        const IdlSource source = ReadIdl(file);
        add(source.library);
        std::for_each(source.classes.begin(), source.classes.end(), add);
        for (const auto& [name, values] : source.enumerations) {
            add(name);
            std::for_each(values.begin(), values.end(), add);
        }
        for (const auto& [name, members] : source.interfaces) {
            add(name);
            for (const IdlMember& member : members) {
                add(member.name);
                std::for_each(member.parameters.begin(), member.parameters.end(), add);
            }
        }
    }
    EXPECT_GT(spellings.size(), 300U);
    for (const auto& [small, ways] : spellings) {
        EXPECT_EQ(1U, ways.size()) << testing::PrintToString(ways);
    }
}

} // namespace
