#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

using namespace contract;

namespace {

class DispatchTest : public ContractTest {
  protected:
    static void ExpectNotFound(IDispatch* script, DISPID id, WORD flags, std::size_t given) {
        std::vector<VARIANT> values(given, com::Variant(1L).Get());
        com::Variant result;
        const bool isWrite = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS params{values.data(), &put, static_cast<UINT>(given), isWrite && given != 0 ? 1u : 0u};
        EXPECT_EQ(
            script->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result.Put(), nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND)
            << "number " << id << ", flags " << flags << ", " << given << " arguments";
        EXPECT_EQ(result.Get().vt, VT_EMPTY);
    }

    using Body = std::function<void(const Subject& subject, const Interface& face, IDispatch* script)>;
    void ForEachFace(const Body& body) {
        for (const Subject& subject : Scriptables()) {
            for (const Interface& face : InterfacesOf(subject)) {
                SCOPED_TRACE(subject.name + ": " + Narrow(face.name));
                com::Ref<IUnknown> pointer;
                ASSERT_EQ(subject.object->QueryInterface(face.id, pointer.PutVoid()), S_OK);
                body(subject, face, static_cast<IDispatch*>(pointer.Get()));
            }
        }
    }
};

/// Looks several names up at once, as a client does with named arguments.
HRESULT IdsOf(IDispatch* object, std::vector<std::wstring> names, std::vector<DISPID>& ids,
              REFIID reserved = IID_NULL) {
    std::vector<LPOLESTR> texts;
    for (std::wstring& name : names) {
        texts.push_back(name.data());
    }
    ids.assign(names.size(), 77);
    return object->GetIDsOfNames(reserved, texts.data(), static_cast<UINT>(texts.size()), LOCALE_USER_DEFAULT,
                                 ids.data());
}

TEST_F(DispatchTest, KnowsNoOtherName) {
    ForEachFace([](const Subject&, const Interface&, IDispatch* script) {
        for (const wchar_t* name : {L"NoSuchMember", L"", L"Name ", L"get_Name"}) {
            std::vector<DISPID> ids;
            EXPECT_EQ(IdsOf(script, {name}, ids), DISP_E_UNKNOWNNAME) << Narrow(name);
            EXPECT_EQ(ids[0], DISPID_UNKNOWN);
        }
    });
}

TEST_F(DispatchTest, TellsAKnownNameBesideAnUnknownOne) {
    ForEachFace([](const Subject&, const Interface& face, IDispatch* script) {
        for (const Member& member : face.members) {
            SCOPED_TRACE(Title(face, member));
            std::vector<DISPID> ids;
            EXPECT_EQ(IdsOf(script, {member.name, L"noSuchArgument", L"norThis"}, ids), DISP_E_UNKNOWNNAME);
            EXPECT_EQ(ids, (std::vector<DISPID>{member.id, DISPID_UNKNOWN, DISPID_UNKNOWN}));
        }
    });
}

TEST_F(DispatchTest, KnowsNothingAfterAnUnknownName) {
    ForEachFace([](const Subject&, const Interface& face, IDispatch* script) {
        std::vector<DISPID> ids;
        EXPECT_EQ(IdsOf(script, {L"noSuchMember", face.members.front().name}, ids), DISP_E_UNKNOWNNAME);
        EXPECT_EQ(ids, (std::vector<DISPID>{DISPID_UNKNOWN, DISPID_UNKNOWN}));
    });
}

TEST_F(DispatchTest, NumbersNamedArgumentsByTheirPlaces) {
    ForEachFace([](const Subject&, const Interface& face, IDispatch* script) {
        for (const Member& member : face.members) {
            if (member.Given() == 0 || member.IsWrite()) {
                continue;
            }
            SCOPED_TRACE(Title(face, member));
            std::vector<std::wstring> names{member.name};
            std::vector<DISPID> expected{member.id};
            for (std::size_t i = 0; i < member.Given(); ++i) {
                names.push_back(member.parameters[i].name);
                expected.push_back(static_cast<DISPID>(i));
            }
            std::vector<DISPID> ids;
            EXPECT_EQ(IdsOf(script, names, ids), S_OK);
            EXPECT_EQ(ids, expected);
        }
    });
}

TEST_F(DispatchTest, KnowsArgumentNamesOfAnotherInterface) {
    const auto module = Module();
    std::vector<DISPID> ids;
    EXPECT_EQ(IdsOf(module.Get(), {L"LoadFromXmlStream", L"xml"}, ids), S_OK);
    EXPECT_EQ(ids, (std::vector<DISPID>{0x203, 0}));
    EXPECT_EQ(IdsOf(module.Get(), {L"LoadFromXmlStream", L"text"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{0x203, DISPID_UNKNOWN}));
}

TEST_F(DispatchTest, RefusesAReservedInterface) {
    ForEachFace([](const Subject&, const Interface& face, IDispatch* script) {
        std::vector<DISPID> ids;
        EXPECT_EQ(IdsOf(script, {face.members.front().name}, ids, IID_IDispatch), DISP_E_UNKNOWNINTERFACE);
        DISPPARAMS none{};
        EXPECT_EQ(script->Invoke(face.members.front().id, IID_IDispatch, LOCALE_USER_DEFAULT,
                                 DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr),
                  DISP_E_UNKNOWNINTERFACE);
    });
}

TEST_F(DispatchTest, RefusesMissingArrays) {
    ForEachFace([](const Subject&, const Interface& face, IDispatch* script) {
        DISPID id = 0;
        std::wstring name = face.members.front().name;
        LPOLESTR text = name.data();
        EXPECT_EQ(script->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_USER_DEFAULT, &id), E_INVALIDARG);
        EXPECT_EQ(script->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, nullptr), E_INVALIDARG);
        EXPECT_EQ(script->Invoke(face.members.front().id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                 nullptr, nullptr, nullptr, nullptr),
                  E_INVALIDARG);
    });
}

TEST_F(DispatchTest, RefusesMalformedArguments) {
    ForEachFace([](const Subject&, const Interface& face, IDispatch* script) {
        VARIANT value{};
        DISPID name = 0;
        for (DISPPARAMS params : {DISPPARAMS{nullptr, nullptr, 1, 0}, DISPPARAMS{&value, &name, 1, 2},
                                  DISPPARAMS{&value, nullptr, 1, 1}, DISPPARAMS{nullptr, &name, 0, 1}}) {
            for (const DISPID id : {face.members.front().id, DISPID{0x7777}}) {
                EXPECT_EQ(script->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &params,
                                         nullptr, nullptr, nullptr),
                          E_INVALIDARG);
            }
        }
    });
}

TEST_F(DispatchTest, KnowsNoOtherNumber) {
    ForEachFace([](const Subject&, const Interface&, IDispatch* script) {
        for (const DISPID id : std::array<DISPID, 3>{0x7777, -5, DISPID_UNKNOWN}) {
            for (const int flags :
                 {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                  DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF}) {
                ExpectNotFound(script, id, static_cast<WORD>(flags), 0);
                ExpectNotFound(script, id, static_cast<WORD>(flags), 1);
            }
        }
    });
}

// The platform's type information lists them as functions, with these numbers.
TEST_F(DispatchTest, HasNoMembersOfTheSystemsInterfaces) {
    ForEachFace([](const Subject&, const Interface&, IDispatch* script) {
        for (const DISPID id :
             {0x60000000, 0x60000001, 0x60000002, 0x60010000, 0x60010001, 0x60010002, 0x60010003}) {
            for (UINT given = 0; given < 7; ++given) {
                ExpectNotFound(script, id, DISPATCH_METHOD, given);
            }
        }
    });
}

TEST_F(DispatchTest, HasNoWriteOfAPropertyThatIsOnlyRead) {
    const auto module = Module();
    const com::Bstr text(L"x");
    for (const wchar_t* name : {L"Name", L"ID", L"Category", L"NodeType", L"IsHidden", L"Inputs"}) {
        DISPID id = DISPID_UNKNOWN;
        ASSERT_EQ(IdOf(module.Get(), name, id), S_OK);
        for (const int flags : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF}) {
            VARIANT value{};
            value.vt = VT_BSTR;
            value.bstrVal = text.Get();
            std::vector<VARIANT> values{value};
            EXPECT_EQ(support::Invoke(module.Get(), id, static_cast<WORD>(flags), values, nullptr, nullptr),
                      DISP_E_MEMBERNOTFOUND)
                << Narrow(name);
        }
    }
}

TEST_F(DispatchTest, TakesNamedArgumentsInAnyOrder) {
    const auto module = Module();
    std::vector<DISPID> ids;
    ASSERT_EQ(IdsOf(module.Get(), {L"XMLSave", L"document", L"parentNode"}, ids), S_OK);
    const auto bySlot = support::Parse(L"<Host/>");
    ASSERT_EQ(module->XMLSave(support::Root(bySlot).Get(), bySlot.Get()), S_OK);
    EXPECT_NE(support::Xml(bySlot.Get()).find(L"<O_Tam_id>"), std::wstring::npos);
    for (const bool documentFirst : {true, false}) {
        const auto document = support::Parse(L"<Host/>");
        const auto root = support::Root(document);
        std::array<VARIANT, 2> values{};
        values[0].vt = values[1].vt = VT_DISPATCH;
        values[documentFirst ? 0 : 1].pdispVal = document.Get();
        values[documentFirst ? 1 : 0].pdispVal = root.Get();
        std::array<DISPID, 2> names{ids[documentFirst ? 1 : 2], ids[documentFirst ? 2 : 1]};
        DISPPARAMS params{values.data(), names.data(), 2, 2};
        EXPECT_EQ(module->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr,
                                 nullptr, nullptr),
                  S_OK);
        EXPECT_EQ(support::Xml(document.Get()), support::Xml(bySlot.Get()));
    }
}

TEST_F(DispatchTest, NamesTheWrongArgumentInTheCallersOrder) {
    const auto module = Module();
    const auto document = support::Parse(L"<Host/>");
    VARIANT node{};
    node.vt = VT_DISPATCH;
    node.pdispVal = document.Get();
    VARIANT number{};
    number.vt = VT_R8;
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(module.Get(), L"XMLSave", id), S_OK);
    // Arguments stand last one first: the first one of two has index 1.
    std::vector<VARIANT> firstWrong{node, number};
    UINT wrong = 99;
    EXPECT_EQ(support::Invoke(module.Get(), id, DISPATCH_METHOD, firstWrong, nullptr, nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 1u);
    std::vector<VARIANT> lastWrong{number, node};
    EXPECT_EQ(support::Invoke(module.Get(), id, DISPATCH_METHOD, lastWrong, nullptr, nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(support::Xml(document.Get()).find(L"O_Tam_id"), std::wstring::npos);
}

TEST_F(DispatchTest, LeavesTheArgumentIndexAloneWhenTheTypesAreRight) {
    const auto module = Module();
    const com::Bstr text(L"12");
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text.Get();
    std::vector<VARIANT> values{value};
    UINT wrong = 99;
    EXPECT_EQ(support::Invoke(module.Get(), 0x105, DISPATCH_PROPERTYPUT, values, nullptr, nullptr, &wrong),
              S_OK)
        << "a text that is a number is taken for one";
    EXPECT_EQ(wrong, 99u);
}

TEST_F(DispatchTest, TakesTheCallWithoutPlacesForResults) {
    const auto module = Module();
    std::vector<VARIANT> none;
    EXPECT_EQ(support::Invoke(module.Get(), 0x112, DISPATCH_PROPERTYGET, none, nullptr, nullptr), S_OK);
}

} // namespace
