#include "tests/fault/Imports.h"
#include "tests/fault/Injection.h"
#include "tests/fault/Slots.h"
#include "tests/internal/Channel.h"
#include "tests/support/Fixture.h"

#include "com/Object.h"

#include <functional>
#include <iostream>
#include <string>
#include <vector>

// Calls by name on a component that was just loaded: what they need of its type
// libraries is read there and then, and the arguments are brought to their types.

namespace {

using namespace fault;
using namespace support;

/// Long enough that its text needs memory.
constexpr long kNumber = 1234567890;
constexpr const wchar_t* kNumberText = L"1234567890";

constexpr CLSID kGenericClass = {
    0x5D7C3A10, 0x2B64, 0x4F0E, {0x8C, 0x21, 0x70, 0x3A, 0x96, 0x44, 0x1E, 0x58}};

constexpr CLSID kLibraryClass = {
    0x5D7C3A11, 0x2B64, 0x4F0E, {0x8C, 0x21, 0x70, 0x3A, 0x96, 0x44, 0x1E, 0x58}};

/// One call of one member.
struct Call {
    com::Ref<IDispatch> object;
    std::wstring member;
    WORD flags;
    /// Last one first.
    std::vector<VARIANT> arguments;
};

class CallingFaultTest : public ::testing::Test {
  protected:
    /// Makes the object and the arguments; not under the fault.
    using Prepare = std::function<Call(const Component& component)>;
    /// What the call did, in words; `result` is what it answered.
    using Read = std::function<std::wstring(const VARIANT& result)>;
    struct Job {
        const char* name;
        Prepare prepare;
        Read read;
        std::wstring before;
        std::wstring after;
    };

    /// For the kinds that such a call meets, each fault once and for ever.
    void CountAll(const Job& job) {
        std::cout << job.name;
        for (const Kind kind : {Kind::Memory, Kind::Text}) {
            const int once = Count(kind, Mode::Once, job);
            const int forEver = Count(kind, Mode::ForEver, job);
            EXPECT_GT(once, 0);
            EXPECT_GE(once, forEver);
            RecordProperty(NameOf(kind), once + forEver);
            std::cout << " " << NameOf(kind) << " " << once << "+" << forEver;
        }
        std::cout << std::endl;
    }

    com::Ref<IAppObject> NewModule(const Component& component) {
        auto module = component.NewModule();
        com::Check(module->putref_XmlSNVTDoc(catalogue_.Get()));
        const com::Bstr stream(Stream(L"<In1><SNVTCOMPATIBILITYLIST>105,95</SNVTCOMPATIBILITYLIST></In1>"
                                      L"<In2><SNVTCOMPATIBILITYLIST>95</SNVTCOMPATIBILITYLIST></In2>",
                                      {}, L"<Gain><SNVTTYPE>105</SNVTTYPE></Gain>"));
        com::Check(module.As<ITamObject>()->LoadFromXmlStream(stream.Get()));
        return module;
    }

  private:
    /// The number of faults until the call can be made.
    int Count(Kind kind, Mode mode, const Job& job) {
        for (int n = 1;; ++n) {
            const testing::ScopedTrace trace(__FILE__, __LINE__,
                                             std::string(NameOf(kind)) + " " + std::to_string(n));
            const bool happened = RunUnder(kind, n, mode, job);
            if (!happened || HasFailure()) {
                return n - 1;
            }
        }
    }
    bool RunUnder(Kind kind, int n, Mode mode, const Job& job) {
        const Component component;
        const Imports imports(component.Module());
        Slots slots(component.Module());
        ReplaceTypes(slots);
        Call call = job.prepare(component);
        bool happened = false;
        {
            com::Variant result;
            HRESULT answer = S_OK;
            {
                const Injection injection(kind, n, mode);
                answer = Make(call, result);
                happened = injection.HasHappened();
            }
            EXPECT_EQ(answer, happened ? E_OUTOFMEMORY : S_OK);
            EXPECT_EQ(job.read(result.Get()), happened ? job.before : job.after);
        }
        com::Variant result;
        EXPECT_EQ(Make(call, result), S_OK) << "nothing of the fault is kept";
        EXPECT_EQ(job.read(result.Get()), job.after);
        result.Put();
        call.object.Reset();
        release_();
        SetErrorInfo(0, nullptr);
        EXPECT_EQ(component.CanUnload(), S_OK) << "objects of the component are still alive";
        EXPECT_TRUE(watcher_.Take().empty());
        return happened;
    }
    /// What the type libraries are asked.
    static void ReplaceTypes(Slots& slots) {
        com::Ref<ITypeLib> library;
        const std::wstring path = Component::DllPath() + L"\\2";
        com::Check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
        slots.Replace<Kind::Text, &ITypeLib::GetTypeInfoOfGuid>(library.Get());
        com::Ref<ITypeInfo> info;
        com::Check(library->GetTypeInfoOfGuid(__uuidof(IAppObject), info.Put()));
        slots.Replace<Kind::Text, &ITypeInfo::GetTypeAttr, &ITypeInfo::GetFuncDesc,
                      &ITypeInfo::GetRefTypeInfo>(info.Get());
    }
    /// The member's own failure comes as an exception.
    static HRESULT Make(Call& call, com::Variant& result) {
        LPOLESTR name = call.member.data();
        DISPID id = DISPID_UNKNOWN;
        const HRESULT known = call.object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
        if (FAILED(known)) {
            return known;
        }
        const bool isWrite = call.flags == DISPATCH_PROPERTYPUT;
        DISPID put = DISPID_PROPERTYPUT;
        std::vector<VARIANT> arguments = call.arguments;
        DISPPARAMS params{arguments.data(), isWrite ? &put : nullptr, static_cast<UINT>(arguments.size()),
                          isWrite ? 1u : 0u};
        EXCEPINFO exception{};
        const HRESULT answer = call.object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, call.flags, &params,
                                                   isWrite ? nullptr : result.Put(), &exception, nullptr);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        return answer == DISP_E_EXCEPTION ? exception.scode : answer;
    }

    com::Ref<Converter> converter_ = Converter::Make();
    HostClass converterClass_{kConverterClass, kConverterProgId, [this](REFIID iid, void** out) {
                                  return converter_->QueryInterface(iid, out);
                              }};
    /// What a channel object wraps.
    com::Ref<Recorder> generic_ = Recorder::Make(L"generic", {&__uuidof(IAppObject)});
    HostClass genericClass_{kGenericClass, internal_tests::kGenericProgId,
                            [this](REFIID iid, void** out) { return generic_->QueryInterface(iid, out); }};
    com::Ref<Recorder> library_ = Recorder::Make(L"library service", {&__uuidof(ILibraryService)});
    HostClass libraryClass_{kLibraryClass, internal_tests::kLibraryProgId,
                            [this](REFIID iid, void** out) { return library_->QueryInterface(iid, out); }};
    bench::BoxWatcher watcher_;
    Document catalogue_ =
        Parse(L"<Catalogue><SNVT_105 Factor='100' Z3Region='4'><Name>Temperature</Name>"
              L"<Type>SignedNumeric</Type><Unit>degC</Unit><Min>-5</Min><Max>50</Max><Length>2</Length>"
              L"</SNVT_105><SNVT_95><Name>Switch</Name><Type>Enum</Type></SNVT_95></Catalogue>");

  protected:
    /// Lets go of the objects that the job holds.
    std::function<void()> release_ = [] {};
};

VARIANT Object(IDispatch* object) {
    VARIANT value{};
    value.vt = VT_DISPATCH;
    value.pdispVal = object; // borrowed
    return value;
}

TEST_F(CallingFaultTest, AssignmentOfANumberToAText) {
    com::Ref<IAttribute> attribute;
    release_ = [&] { attribute.Reset(); };
    CountAll(
        {"a number assigned to a text        ",
         [&](const Component& component) {
             const auto attributes = support::Object(NewModule(component), &IAppObject::get_Attributes);
             attribute = Item(attributes, &IAttributes::get_Item, L"1");
             com::Check(attribute->put_Value(com::Bstr(L"before").Get()));
             return Call{
                 attribute.As<IDispatch>(), L"Value", DISPATCH_PROPERTYPUT, {com::Variant(kNumber).Get()}};
         },
         [&](const VARIANT&) { return Text(attribute, &IAttribute::get_Value); }, L"before", kNumberText});
}

TEST_F(CallingFaultTest, ObjectOfATypedArgument) {
    com::Ref<ICompatibleSNVTs> list, other;
    release_ = [&] {
        list.Reset();
        other.Reset();
    };
    CountAll({"an object for a typed argument     ",
              [&](const Component& component) {
                  const auto inputs = support::Object(NewModule(component), &IAppObject::get_Inputs);
                  const auto listOf = [&](const wchar_t* index) {
                      return support::Object(Item(inputs, &IInputs::get_Item, index),
                                             &IInput::get_SNVTCompatibles);
                  };
                  list = listOf(L"1");
                  other = listOf(L"2");
                  return Call{
                      list.As<IDispatch>(), L"Merge", DISPATCH_METHOD, {Object(other.As<IClonable>().Get())}};
              },
              [&](const VARIANT& result) {
                  const bool isObject = result.vt == VT_DISPATCH && result.pdispVal != nullptr;
                  const auto merged =
                      isObject ? com::Query<ICompatibleSNVTs>(result.pdispVal) : com::Ref<ICompatibleSNVTs>();
                  return merged ? Text(merged, &ICompatibleSNVTs::ToString) : std::wstring(L"nothing");
              },
              L"nothing", L"95"});
}

TEST_F(CallingFaultTest, NumberInAVariableForATextByReference) {
    com::Variant variable(kNumber);
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = variable.Address();
    CountAll({"a number in a variable, for a text ",
              [&](const Component& component) {
                  const auto manager = component.Create<ITamObjectManager>(__uuidof(::TamObjectManager));
                  com::Check(manager->Init(HostContext().Get()));
                  // By its slot: a failing search of the library would be kept.
                  VARIANT_BOOL isKnown = VARIANT_FALSE;
                  com::Check(manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &isKnown));
                  return Call{manager.As<IDispatch>(),
                              L"CreateTamInternalAppObject",
                              DISPATCH_METHOD,
                              {Object(nullptr), reference}};
              },
              [&](const VARIANT& result) {
                  EXPECT_EQ(variable.Get().vt, VT_I4) << "nothing was written to it";
                  const bool isObject = result.vt == VT_DISPATCH && result.pdispVal != nullptr;
                  const auto made = isObject ? com::Query<ITamInternalAppObject>(result.pdispVal)
                                             : com::Ref<ITamInternalAppObject>();
                  return made ? Text(made, &ITamInternalAppObject::get_TamInternalObjectKey)
                              : std::wstring(L"nothing");
              },
              L"nothing", kNumberText});
}

} // namespace
