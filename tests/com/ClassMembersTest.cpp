// What the object's own IDispatch says of itself: the type information lists all
// members that a name reaches, with the numbers, kinds and arguments that a call
// by name takes.

#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

using namespace contract;

namespace {

INVOKEKIND WithoutReference(INVOKEKIND kind) {
    return kind == INVOKE_PROPERTYPUTREF ? INVOKE_PROPERTYPUT : kind;
}

/// What a call by name can do: the first interface that has the name gives its
/// number, and for each kind of access the first that has it gives the arguments.
std::vector<Member> Reachable(const std::vector<Interface>& interfaces) {
    std::vector<Member> members;
    for (const Interface& face : interfaces) {
        for (const Member& member : face.members) {
            const auto first = std::find_if(members.begin(), members.end(),
                                            [&](const Member& m) { return SameName(m.name, member.name); });
            const bool isKnown = std::any_of(members.begin(), members.end(), [&](const Member& m) {
                return SameName(m.name, member.name) &&
                       WithoutReference(m.kind) == WithoutReference(member.kind);
            });
            if (!isKnown) {
                const DISPID id = first == members.end() ? member.id : first->id;
                members.push_back(member);
                members.back().id = id;
            }
        }
    }
    return members;
}

/// A member in words, all that a caller by name must know of it.
std::string InWords(const Member& member) {
    std::string text = std::to_string(member.id) + " " + Narrow(member.name) + " " +
                       std::to_string(static_cast<int>(member.kind)) + "(";
    std::string result;
    for (const Parameter& parameter : member.parameters) {
        const std::string type = std::to_string(parameter.type) + Narrow(parameter.typeName);
        if (parameter.result) {
            result = type;
        } else {
            text += type + (parameter.byReference ? "&" : "") + (parameter.optional ? "?" : "") +
                    (parameter.in ? " in" : "") + (parameter.out ? " out" : "") + ", ";
        }
    }
    return text + ") " + result;
}

std::vector<std::string> InWords(const std::vector<Member>& members) {
    std::vector<std::string> words;
    for (const Member& member : members) {
        words.push_back(InWords(member));
    }
    std::sort(words.begin(), words.end());
    return words;
}

/// The numbers of a member and its arguments, from an object or from type information.
template <class Ask>
std::vector<DISPID> IdsOf(std::vector<std::wstring> names, Ask&& ask) {
    std::vector<LPOLESTR> texts;
    for (std::wstring& name : names) {
        texts.push_back(name.data());
    }
    std::vector<DISPID> ids(texts.size(), 77);
    EXPECT_EQ(ask(texts.data(), static_cast<UINT>(texts.size()), ids.data()), S_OK);
    return ids;
}

com::Ref<ITypeInfo> InfoOf(const com::Ref<IDispatch>& script) {
    com::Ref<ITypeInfo> info;
    UINT count = 0;
    EXPECT_EQ(script->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(script->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), S_OK);
    return info;
}

class ClassMembersTest : public ContractTest {
  protected:
    /// The component's objects, whose classes have a dispinterface.
    std::vector<Subject> OwnSubjects() {
        auto subjects = Scriptables();
        std::erase_if(subjects, [](const Subject& subject) { return !Own().Has(*subject.classId); });
        return subjects;
    }
};

TEST_F(ClassMembersTest, ListAllThatANameReaches) {
    for (const Class& entry : Own().Classes()) {
        SCOPED_TRACE(Narrow(entry.name));
        ASSERT_TRUE(entry.byName);
        EXPECT_EQ(InWords(Reachable(entry.interfaces)), InWords(entry.byName->members));
    }
}

TEST_F(ClassMembersTest, HaveTheNumbersThatTheObjectAnswersForTheirNames) {
    std::size_t names = 0;
    for (const Subject& subject : OwnSubjects()) {
        SCOPED_TRACE(subject.name);
        const auto script = subject.object.As<IDispatch>();
        const auto info = InfoOf(script);
        for (const Member& member : ClassOf(subject).byName->members) {
            SCOPED_TRACE(Narrow(member.name));
            std::vector<std::wstring> asked{member.name};
            for (const Parameter& parameter : member.parameters) {
                if (!parameter.result && !parameter.name.empty()) {
                    asked.push_back(parameter.name);
                }
            }
            const auto answered = IdsOf(asked, [&](LPOLESTR* texts, UINT count, DISPID* ids) {
                return script->GetIDsOfNames(IID_NULL, texts, count, LOCALE_USER_DEFAULT, ids);
            });
            const auto told = IdsOf(asked, [&](LPOLESTR* texts, UINT count, DISPID* ids) {
                return info->GetIDsOfNames(texts, count, ids);
            });
            EXPECT_EQ(member.id, answered.front());
            EXPECT_EQ(told, answered);
            ++names;
        }
    }
    EXPECT_GT(names, 400U);
}

TEST_F(ClassMembersTest, AreWhatTheObjectsOwnDispatchDescribes) {
    for (const Subject& subject : OwnSubjects()) {
        SCOPED_TRACE(subject.name);
        const auto script = subject.object.As<IDispatch>();
        const auto info = InfoOf(script);
        const TYPEATTR attributes = AttributesOf(*info.Get());
        EXPECT_TRUE(attributes.guid == ClassOf(subject).byName->id);
        EXPECT_EQ(attributes.typekind, TKIND_DISPATCH);
        EXPECT_EQ(attributes.cFuncs, ClassOf(subject).byName->members.size());
        com::Ref<IUnknown> byName;
        EXPECT_EQ(subject.object->QueryInterface(attributes.guid, byName.PutVoid()), S_OK);
        EXPECT_EQ(byName.Get(), static_cast<IUnknown*>(script.Get()))
            << "clients ask for what they were told";
        ITypeInfo* out = info.Get();
        EXPECT_EQ(script->GetTypeInfo(1, LOCALE_USER_DEFAULT, &out), DISP_E_BADINDEX);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(script->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
        EXPECT_EQ(script->GetTypeInfoCount(nullptr), E_POINTER);
    }
}

// The host services have no list: their own IDispatch describes the default interface.
TEST_F(ClassMembersTest, AreThoseOfTheDefaultInterfaceWhereThereIsNoList) {
    for (const Subject& subject : Scriptables()) {
        if (!ClassOf(subject).byName) {
            const auto info = InfoOf(subject.object.As<IDispatch>());
            EXPECT_TRUE(AttributesOf(*info.Get()).guid == InterfacesOf(subject).front().id) << subject.name;
        }
    }
}

TEST_F(ClassMembersTest, AreCalledThroughTheirNumbers) {
    const auto script = Module().As<IDispatch>();
    const auto info = InfoOf(script);
    const auto idOf = [&](const wchar_t* name) {
        return IdsOf({name}, [&](LPOLESTR* texts, UINT count,
                                 DISPID* ids) { return info->GetIDsOfNames(texts, count, ids); })
            .front();
    };
    const com::Bstr stream(
        L"<Tam><Name>B</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>1</TamObjID></Tam>");
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = stream.Get();
    std::vector<VARIANT> values{value};
    EXPECT_EQ(
        support::Invoke(script.Get(), idOf(L"LoadFromXmlStream"), DISPATCH_METHOD, values, nullptr, nullptr),
        S_OK);
    com::Variant result;
    std::vector<VARIANT> none;
    EXPECT_EQ(support::Invoke(script.Get(), idOf(L"Name"), DISPATCH_PROPERTYGET, none, result.Put(), nullptr),
              S_OK);
    EXPECT_EQ(std::wstring(L"B"), result.Get().bstrVal);
}

} // namespace
