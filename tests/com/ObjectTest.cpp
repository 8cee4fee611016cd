#include "tests/com/Subjects.h"

#include <ocidl.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace contract;

namespace {

class ObjectTest : public ContractTest {
  protected:
    /// Every interface that an object promises, IUnknown first.
    std::vector<IID> Promised(const Subject& subject) {
        std::vector<IID> promised{IID_IUnknown};
        if (!subject.classId) {
            promised.push_back(IID_IEnumVARIANT);
            return promised;
        }
        promised.insert(promised.end(), {IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo});
        for (const Interface& face : InterfacesOf(subject)) {
            promised.push_back(face.id);
        }
        if (ClassOf(subject).byName) {
            promised.push_back(ClassOf(subject).byName->id);
        }
        return promised;
    }
    /// All identifiers of the libraries.
    std::set<std::wstring> Known() {
        std::set<std::wstring> known;
        for (const TypeLibrary* library : {&Own(), &Faces(), &Services()}) {
            for (const Interface& face : library->Interfaces()) {
                known.insert(TextOf(face.id));
            }
            for (const Class& entry : library->Classes()) {
                if (entry.byName) {
                    known.insert(TextOf(entry.byName->id));
                }
            }
        }
        return known;
    }
};

com::Ref<IUnknown> As(const com::Ref<IUnknown>& object, REFIID iid) {
    com::Ref<IUnknown> face;
    EXPECT_EQ(object->QueryInterface(iid, face.PutVoid()), S_OK) << Narrow(TextOf(iid));
    return face;
}

TEST_F(ObjectTest, AnswersEveryInterfaceFromEveryOther) {
    for (const Subject& subject : Subjects()) {
        SCOPED_TRACE(subject.name);
        for (const IID& from : Promised(subject)) {
            const auto face = As(subject.object, from);
            ASSERT_TRUE(face);
            EXPECT_EQ(As(face, from), face) << "asked for itself";
            for (const IID& to : Promised(subject)) {
                const auto other = As(face, to);
                ASSERT_TRUE(other);
                EXPECT_EQ(As(other, from), face) << "there and back";
                for (const IID& third : Promised(subject)) {
                    EXPECT_EQ(As(other, third), As(face, third)) << "by way of another";
                }
            }
        }
    }
}

TEST_F(ObjectTest, HasOneIdentity) {
    for (const Subject& subject : Subjects()) {
        SCOPED_TRACE(subject.name);
        const auto identity = As(subject.object, IID_IUnknown);
        for (const IID& iid : Promised(subject)) {
            EXPECT_EQ(As(As(subject.object, iid), IID_IUnknown), identity);
        }
    }
}

TEST_F(ObjectTest, DiffersFromEveryOtherObject) {
    std::set<IUnknown*> identities;
    const auto subjects = Subjects();
    for (const Subject& subject : subjects) {
        EXPECT_TRUE(identities.insert(As(subject.object, IID_IUnknown).Get()).second) << subject.name;
    }
}

TEST_F(ObjectTest, RefusesAllOtherInterfacesAndEmptiesTheOut) {
    for (const Subject& subject : Subjects()) {
        SCOPED_TRACE(subject.name);
        std::set<std::wstring> others = Known();
        for (const IID& iid : Promised(subject)) {
            others.erase(TextOf(iid));
        }
        for (const IID& iid :
             {IID_IClassFactory, IID_IMarshal, IID_IPersistStream, IID_NULL, IID_IEnumUnknown}) {
            others.insert(TextOf(iid));
        }
        for (const std::wstring& text : others) {
            IID iid{};
            ASSERT_EQ(IIDFromString(text.c_str(), &iid), S_OK);
            void* out = &iid;
            EXPECT_EQ(subject.object->QueryInterface(iid, &out), E_NOINTERFACE) << Narrow(text);
            EXPECT_EQ(out, nullptr) << Narrow(text);
        }
    }
}

TEST_F(ObjectTest, RefusesANullOutOfQueryInterface) {
    for (const Subject& subject : Subjects()) {
        SCOPED_TRACE(subject.name);
        for (const IID& iid : Promised(subject)) {
            EXPECT_EQ(As(subject.object, iid)->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
            EXPECT_EQ(As(subject.object, iid)->QueryInterface(IID_IClassFactory, nullptr), E_POINTER);
        }
    }
}

TEST_F(ObjectTest, CountsEveryReference) {
    for (const Subject& subject : Subjects()) {
        SCOPED_TRACE(subject.name);
        IUnknown* object = subject.object.Get();
        const ULONG before = object->AddRef();
        EXPECT_EQ(object->AddRef(), before + 1);
        for (const IID& iid : Promised(subject)) {
            const auto face = As(subject.object, iid);
            EXPECT_EQ(face->AddRef(), before + 3) << "one count for all interfaces";
            EXPECT_EQ(face->Release(), before + 2);
        }
        EXPECT_EQ(object->Release(), before);
        object->Release();
    }
}

TEST_F(ObjectTest, TellsItsClass) {
    for (const Subject& subject : Scriptables()) {
        SCOPED_TRACE(subject.name);
        const auto provider = subject.object.As<IProvideClassInfo>();
        ASSERT_TRUE(provider);
        com::Ref<ITypeInfo> info;
        ASSERT_EQ(provider->GetClassInfo(info.Put()), S_OK);
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
        EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
        EXPECT_TRUE(attributes->guid == *subject.classId);
        info->ReleaseTypeAttr(attributes);
        EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
    }
}

TEST_F(ObjectTest, GivesErrorObjectsOnItsInterfacesAlone) {
    for (const Subject& subject : Scriptables()) {
        SCOPED_TRACE(subject.name);
        const auto errors = subject.object.As<ISupportErrorInfo>();
        ASSERT_TRUE(errors);
        std::set<std::wstring> others = Known();
        for (const Interface& face : InterfacesOf(subject)) {
            EXPECT_EQ(errors->InterfaceSupportsErrorInfo(face.id), S_OK) << Narrow(face.name);
            others.erase(TextOf(face.id));
        }
        for (const std::wstring& text : others) {
            IID iid{};
            IIDFromString(text.c_str(), &iid);
            EXPECT_EQ(errors->InterfaceSupportsErrorInfo(iid), S_FALSE) << Narrow(text);
        }
        EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IClassFactory), S_FALSE);
    }
}

TEST_F(ObjectTest, DescribesEachInterfaceByItsOwnTypeInformation) {
    for (const Subject& subject : Scriptables()) {
        SCOPED_TRACE(subject.name);
        for (const Interface& face : InterfacesOf(subject)) {
            SCOPED_TRACE(Narrow(face.name));
            const com::Ref<IUnknown> pointer = As(subject.object, face.id);
            auto* const dispatch =
                static_cast<IDispatch*>(pointer.Get()); // dual: the interface is an IDispatch
            UINT count = 0;
            EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
            EXPECT_EQ(count, 1u);
            EXPECT_EQ(dispatch->GetTypeInfoCount(nullptr), E_POINTER);
            com::Ref<ITypeInfo> info;
            ASSERT_EQ(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), S_OK);
            TYPEATTR* attributes = nullptr;
            ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
            EXPECT_TRUE(attributes->guid == face.id);
            info->ReleaseTypeAttr(attributes);
            auto* out = reinterpret_cast<ITypeInfo*>(&count);
            EXPECT_EQ(dispatch->GetTypeInfo(1, LOCALE_USER_DEFAULT, &out), DISP_E_BADINDEX);
            EXPECT_EQ(out, nullptr);
            EXPECT_EQ(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
        }
    }
}

// The library.

TEST_F(ObjectTest, HasItsLibrariesInItsResources) {
    EXPECT_EQ(Own().Name(), L"O_Tam_id");
    EXPECT_EQ(Faces().Name(), L"OrvDBFaces");
    EXPECT_EQ(Services().Name(), L"OrvHost");
    com::Ref<ITypeLib> library;
    EXPECT_EQ(LoadTypeLibEx(support::Component::DllPath().c_str(), REGKIND_NONE, library.Put()), S_OK);
    com::Bstr name;
    library->GetDocumentation(-1, name.Put(), nullptr, nullptr, nullptr);
    EXPECT_EQ(name.View(), L"O_Tam_id");
}

TEST_F(ObjectTest, TellsOneInterfaceAlikeInBothLibraries) {
    std::map<std::wstring, const Interface*> host;
    for (const Interface& face : Faces().Interfaces()) {
        host[TextOf(face.id)] = &face;
    }
    for (const Class& entry : Own().Classes()) {
        for (const Interface& face : entry.interfaces) {
            const auto found = host.find(TextOf(face.id));
            if (found == host.end()) {
                continue;
            }
            SCOPED_TRACE(Narrow(face.name));
            ASSERT_EQ(face.members.size(), found->second->members.size());
            for (std::size_t i = 0; i < face.members.size(); ++i) {
                EXPECT_TRUE(SameName(face.members[i].name, found->second->members[i].name));
                EXPECT_EQ(face.members[i].id, found->second->members[i].id);
                EXPECT_EQ(face.members[i].slot, found->second->members[i].slot);
            }
        }
    }
}

TEST_F(ObjectTest, NumbersItsMembersApart) {
    for (const Class& entry : Own().Classes()) {
        SCOPED_TRACE(Narrow(entry.name));
        std::map<DISPID, std::wstring> taken;
        for (const Interface& face : entry.interfaces) {
            for (const Member& member : face.members) {
                if (member.id == DISPID_VALUE || member.id == DISPID_NEWENUM) {
                    continue; // tested below
                }
                const std::wstring place = face.name + L"." + member.name;
                const auto [other, isNew] = taken.emplace(member.id, place);
                EXPECT_TRUE(isNew || other->second == place)
                    << Narrow(place) << " has the number of " << Narrow(other->second);
            }
        }
    }
}

TEST_F(ObjectTest, HasItemAsDefaultMemberAndNewEnumAtMinusFour) {
    for (const TypeLibrary* library : {&Own(), &Faces(), &Services()}) {
        for (const Interface& face : library->Interfaces()) {
            for (const Member& member : face.members) {
                SCOPED_TRACE(Title(face, member));
                EXPECT_EQ(SameName(member.name, L"Item"), member.id == DISPID_VALUE);
                EXPECT_EQ(SameName(member.name, L"NewEnum"), member.id == DISPID_NEWENUM);
            }
        }
    }
    for (const auto clsid : {__uuidof(::CDBInputs), __uuidof(::CDBOutputs), __uuidof(::CDBAttributes),
                             __uuidof(::CCompatibleSNVTs)}) {
        std::set<DISPID> ids;
        for (const Interface& face : Own().ClassOf(clsid).interfaces) {
            for (const Member& member : face.members) {
                ids.insert(member.id);
            }
        }
        EXPECT_TRUE(ids.contains(DISPID_VALUE));
        EXPECT_TRUE(ids.contains(DISPID_NEWENUM));
    }
}

} // namespace
