#include "tests/fuzz/Describe.h"
#include "tests/fuzz/Random.h"
#include "tests/fuzz/Watchdog.h"
#include "tests/support/Fixture.h"

#include <cmath>
#include <cstdio>
#include <deque>
#include <limits>

// Calls in any order with any arguments, by name as a script makes them: of a
// module, its collections, points, lists and types.

namespace component_fuzz {

using namespace support;
using contract::Member;

namespace {

constexpr unsigned kSeed = 20250307;
constexpr unsigned kSequences = 40;
constexpr int kCalls = 150;
constexpr std::size_t kMostObjects = 60;

constexpr const wchar_t* kCatalogue =
    L"<SNVT_105><Name>Temperature</Name><Type>SignedNumeric</Type><Min>-5</Min><Max>50</Max><Length>2</"
    L"Length>"
    L"</SNVT_105><SNVT_36><Name>String</Name><Type>Textual</Type><Length>31</Length></SNVT_36>"
    L"<SNVT_95><Name>Switch</Name><Type>Enum</Type></SNVT_95>"
    L"<SNVT_83><Name>State</Name><Type>Bitfield</Type><Length>2</Length></SNVT_83>";

class MemberFuzzTest : public ComponentTest {
  protected:
    void SetUp() override {
        ComponentTest::SetUp();
        own_.emplace(Component::DllPath(), 1);
        SetCatalogue(kCatalogue);
        catalogue_ = Parse(std::wstring(L"<Catalogue>") + kCatalogue + L"</Catalogue>");
        document_ = Parse(L"<Valve><UserName>a</UserName><OutReferences><A>1</A></OutReferences></Valve>");
        UseCompiler();
        UseDatabaseLocation();
        watchdog_.emplace(KeepFolder() + L"calls.txt");
        // Its OK would keep a rename open that it refuses.
        Watcher().OnBox([](HWND window, const bench::Box& box) {
            return !box.isMessageBox && PostMessageW(window, WM_COMMAND, IDCANCEL, 0) != FALSE;
        });
    }
    void TearDown() override {
        watchdog_.reset();
        catalogue_.Reset();
        document_.Reset();
        own_.reset();
        ComponentTest::TearDown();
    }

    void Run(unsigned seed, unsigned round, bool tells) {
        Random random(seed, round);
        Begin();
        for (int call = 0; call < kCalls && !HasFailure(); ++call) {
            CallOne(random, tells);
        }
        End();
        EXPECT_EQ(Dll().CanUnload(), S_OK) << "objects of the component are still alive";
    }

    Watchdog& Dog() { return *watchdog_; }

  private:
    void Begin() {
        com::Check(NewModule()->putref_XmlSNVTDoc(catalogue_.Get()));
        const std::wstring point =
            L"<SNVTTYPE>105</SNVTTYPE><SNVTCOMPATIBILITYLIST>105,95</SNVTCOMPATIBILITYLIST>";
        Keep(Loaded(Stream(L"<AI3_In1>" + point + L"</AI3_In1><B_In>" + point + L"</B_In>",
                           L"<AI3_Out>" + point + L"</AI3_Out>",
                           L"<AI3_Gain>" + point +
                               L"</AI3_Gain><T><SNVTTYPE>36</SNVTTYPE></T><E><SNVTTYPE>95"
                               L"</SNVTTYPE></E><S><SNVTTYPE>83</SNVTTYPE></S>"))
                 .As<IDispatch>());
    }

    /// Lets go of all that the calls tied together, as a host has to.
    void End() {
        for (const auto& object : pool_) {
            const CLSID id = ClassOf(object.Get());
            for (const auto& face : own_->ClassOf(id).interfaces) {
                for (const Member& member : face.members) {
                    if (member.kind == INVOKE_PROPERTYPUTREF) {
                        com::Ref<IDispatch> dispatch;
                        VARIANT nothing{};
                        nothing.vt = VT_DISPATCH;
                        object->QueryInterface(face.id, dispatch.PutVoid());
                        Invoke(dispatch, member, {&nothing, 1}, nullptr);
                    }
                }
            }
        }
        for (const auto& object : pool_) {
            if (const auto module = object.As<IAppObject>()) {
                module->Destroy();
            }
        }
        pool_.clear();
        Boxes();
        SetErrorInfo(0, nullptr);
    }

    void Keep(com::Ref<IDispatch> object) {
        if (object && ClassOf(object.Get()) != CLSID_NULL && pool_.size() < kMostObjects) {
            pool_.push_back(std::move(object));
        }
    }

    void CallOne(Random& random, bool tells) {
        const com::Ref<IDispatch> object = random.Of(pool_);
        const auto& faces = own_->ClassOf(ClassOf(object.Get())).interfaces;
        const auto& face = random.Of(faces);
        const Member& member = random.Of(face.members);
        std::size_t count = member.Given();
        if (random.OneIn(12)) {
            count = random.Below(5);
        }
        std::vector<VARIANT> arguments;
        places_.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t natural = count - 1 - i; // the last one stands first
            const bool isKnown = natural < member.parameters.size();
            arguments.push_back(isKnown && !random.OneIn(5) ? Fitting(member.parameters[natural], random)
                                                            : Any(random));
        }
        com::Ref<IDispatch> dispatch;
        ASSERT_EQ(object->QueryInterface(face.id, dispatch.PutVoid()), S_OK);
        if (tells) {
            std::printf("%s\n", contract::Title(face, member).c_str());
            std::fflush(stdout);
        }
        com::Variant result;
        const bool isWrite = member.IsWrite();
        EXPECT_TRUE(IsDocumented(Invoke(dispatch, member, arguments, isWrite ? nullptr : result.Put())))
            << contract::Title(face, member);
        for (VARIANT& argument : arguments) {
            VariantClear(&argument);
        }
        for (VARIANT& place : places_) {
            VariantClear(&place);
        }
        if (result.Get().vt == VT_DISPATCH || result.Get().vt == VT_UNKNOWN) {
            Keep(com::Query<IDispatch>(result.Get().punkVal));
        }
        if (random.OneIn(10)) {
            Boxes();
        }
    }

    /// The call's result; of an exception the number inside.
    static HRESULT Invoke(const com::Ref<IDispatch>& object, const Member& member,
                          std::span<VARIANT> arguments, VARIANT* result) {
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        if (member.IsWrite()) {
            params.rgdispidNamedArgs = &put;
            params.cNamedArgs = 1;
        }
        EXCEPINFO exception{};
        const HRESULT outcome =
            object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(member.kind), &params,
                           result, &exception, nullptr);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        return outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
    }

    /// No failure that the component has no name for.
    static bool IsDocumented(HRESULT result) { return result != E_UNEXPECTED && result != E_OUTOFMEMORY; }

    VARIANT Fitting(const contract::Parameter& parameter, Random& random) {
        VARIANT value{};
        switch (parameter.type) {
        case VT_BSTR:
            value = TextValue(random);
            break;
        case VT_DISPATCH:
        case VT_UNKNOWN:
            value = ObjectValue(random);
            break;
        case VT_VARIANT:
            value = Any(random);
            break;
        default:
            value = NumberValue(random);
        }
        return parameter.byReference && !parameter.result ? ByReference(value) : value;
    }

    VARIANT ByReference(const VARIANT& value) {
        places_.push_back(value);
        VARIANT reference{};
        reference.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
        reference.byref = &places_.back().lVal;
        if (value.vt == VT_DECIMAL || value.vt == VT_EMPTY || value.vt == VT_NULL || value.vt == VT_ERROR ||
            (value.vt & VT_BYREF) != 0) {
            reference.vt = VT_BYREF | VT_VARIANT;
            reference.pvarVal = &places_.back();
        }
        return reference;
    }

    static VARIANT TextValue(Random& random) {
        VARIANT value{};
        value.vt = VT_BSTR;
        value.bstrVal = random.OneIn(10) ? nullptr : com::Bstr(AnyText(random)).Detach();
        return value;
    }

    VARIANT ObjectValue(Random& random) {
        VARIANT value{};
        // Not VT_UNKNOWN: of one that it has converted, the type library's caller in
        // Wine keeps a reference when the call then fails for another argument.
        value.vt = VT_DISPATCH;
        const std::size_t choice = random.Below(6);
        com::Ref<IDispatch> object;
        if (choice == 0) {
            object = document_.As<IDispatch>();
        } else if (choice == 1) {
            object = Root(document_).As<IDispatch>();
        } else if (choice > 2) {
            object = random.Of(pool_);
        }
        value.pdispVal = object.Detach();
        return value;
    }

    static VARIANT NumberValue(Random& random) {
        static const std::vector<double> numbers = {0,
                                                    1,
                                                    -1,
                                                    2,
                                                    7,
                                                    0.5,
                                                    255,
                                                    32767,
                                                    32768,
                                                    -32768,
                                                    2147483647,
                                                    -2147483648.0,
                                                    4294967296.0,
                                                    1e308,
                                                    std::numeric_limits<double>::infinity(),
                                                    std::numeric_limits<double>::quiet_NaN()};
        const double number = random.Of(numbers);
        const bool isSmall = std::abs(number) <= 32768;
        VARIANT value{};
        switch (random.Below(5)) {
        case 0:
            value.vt = VT_R8;
            value.dblVal = number;
            break;
        case 1:
            value.vt = VT_I2;
            value.iVal = isSmall ? static_cast<short>(static_cast<long>(number)) : short{-1};
            break;
        case 2:
            value.vt = VT_BOOL;
            value.boolVal = isSmall ? static_cast<VARIANT_BOOL>(static_cast<long>(number)) : VARIANT_TRUE;
            break;
        case 3:
            value.vt = VT_DATE;
            value.date = number;
            break;
        default:
            value.vt = VT_I4;
            value.lVal = isSmall ? static_cast<long>(number) : std::numeric_limits<long>::min();
        }
        return value;
    }

    VARIANT Any(Random& random) {
        VARIANT value{};
        switch (random.Below(8)) {
        case 0:
            return value;
        case 1:
            value.vt = VT_NULL;
            return value;
        case 2: // an argument left out
            value.vt = VT_ERROR;
            value.scode = DISP_E_PARAMNOTFOUND;
            return value;
        case 3:
            value.vt = VT_ARRAY | VT_VARIANT;
            value.parray = SafeArrayCreateVector(VT_VARIANT, 0, 2);
            return value;
        case 4:
            return TextValue(random);
        case 5:
            return ObjectValue(random);
        case 6:
            return ByReference(TextValue(random));
        default:
            return NumberValue(random);
        }
    }

    std::optional<contract::TypeLibrary> own_;
    Document catalogue_, document_;
    std::vector<com::Ref<IDispatch>> pool_;
    /// What arguments by reference point to.
    std::deque<VARIANT> places_;
    std::optional<Watchdog> watchdog_;
};

TEST_F(MemberFuzzTest, HoldsForCallsInAnyOrder) {
    const unsigned seed = Setting(L"TAM_CALLS_SEED", kSeed);
    const unsigned first = Setting(L"TAM_CALLS_ROUND", 0);
    const unsigned rounds = Setting(L"TAM_CALLS_SEQUENCES", first != 0 ? first + 1 : kSequences);
    unsigned round = first;
    for (; round < rounds && !HasFailure(); ++round) {
        const std::string what = "seed " + std::to_string(seed) + ", sequence " + std::to_string(round);
        SCOPED_TRACE(what);
        Dog().Begin(what, what);
        Run(seed, round, first != 0);
    }
    std::printf("%u sequences of %d calls, seed %u\n", round - first, kCalls, seed);
}

} // namespace

} // namespace component_fuzz
