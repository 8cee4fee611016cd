#include "com/CallArguments.h"

#include "tests/com/EveryMember.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ios>
#include <ostream>
#include <string>
#include <vector>

using namespace contract;

namespace {

constexpr UINT kUntouched = 99;
constexpr const wchar_t* kTooLong = L"99999999999";

/// What a call came to, and the argument that it is blamed on.
struct Answer {
    HRESULT result = S_OK;
    UINT wrong = kUntouched;

    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* stream) {
    *stream << "HRESULT " << std::hex << answer.result << std::dec << ", argument " << answer.wrong;
}

VARIANT Typed(VARTYPE type) {
    VARIANT value{};
    value.vt = type;
    return value;
}

VARIANT Object(VARTYPE type, IUnknown* object) {
    VARIANT value = Typed(type);
    value.punkVal = object; // borrowed
    return value;
}

VARIANT LeftOut() {
    VARIANT value = Typed(VT_ERROR);
    value.scode = DISP_E_PARAMNOTFOUND;
    return value;
}

VARIANT Variable(VARIANT& variable) {
    VARIANT value = Typed(VT_BYREF | VT_VARIANT);
    value.pvarVal = &variable;
    return value;
}

/// The names that a call of the member has to give.
std::vector<DISPID> Needed(const Member& member) {
    return member.IsWrite() ? std::vector<DISPID>{DISPID_PROPERTYPUT} : std::vector<DISPID>{};
}

/// Names for all arguments of a member, as they stand in a call: last one first.
std::vector<DISPID> AllNames(const Member& member) {
    std::vector<DISPID> names;
    for (std::size_t i = member.Given(); i > 0; --i) {
        names.push_back(static_cast<DISPID>(i - 1));
    }
    return names;
}

bool IsTyped(const Parameter& parameter) {
    return !parameter.result && parameter.type != VT_VARIANT;
}

/// Wrong calls of every member: each is refused with the exact answer, and the
/// member is not run.
class CallArgumentsTest : public EveryMemberTest {
  protected:
    void ExpectRefused(const Place& place, std::vector<VARIANT> values, std::vector<DISPID> names,
                       const Answer& expected, VARIANT* result = nullptr) {
        DISPPARAMS params{values.data(), names.data(), static_cast<UINT>(values.size()),
                          static_cast<UINT>(names.size())};
        Answer answer;
        answer.result = Face(place)->Invoke(place.member.id, IID_NULL, LOCALE_USER_DEFAULT,
                                            static_cast<WORD>(place.member.kind), &params, result, nullptr,
                                            &answer.wrong);
        EXPECT_EQ(answer, expected);
        EXPECT_EQ(Shown(), L"");
        ++refused_;
    }

    /// A call with one argument exchanged.
    void ExpectRefused(const Place& place, std::size_t argument, const VARIANT& value, HRESULT result) {
        SCOPED_TRACE(Narrow(place.member.parameters[argument].name) + " as type " + std::to_string(value.vt));
        Arguments arguments(place.member, Fill::Something, place.supply);
        auto values = arguments.Script();
        const std::size_t index = values.size() - 1 - argument;
        values[index] = value;
        const bool isNamed = result == DISP_E_TYPEMISMATCH;
        ExpectRefused(place, values, Needed(place.member),
                      {result, isNamed ? static_cast<UINT>(index) : kUntouched});
    }

    /// A call made in another way has the result that it has by name, in the
    /// order of the declaration.
    void ExpectAsDeclared(const Place& place, const std::function<Outcome(Arguments&, const Fresh&)>& call) {
        const Fresh first = NewObject(place);
        Arguments declared(place.member, Fill::Something, first.supply);
        const Outcome expected = declared.ByName(first.face.Get());
        const std::wstring shown = Shown();
        const Fresh second = NewObject(place);
        Arguments arguments(place.member, Fill::Something, second.supply);
        EXPECT_EQ(call(arguments, second), expected);
        EXPECT_EQ(Shown(), shown);
    }

    using ArgumentBody =
        std::function<void(const Place& place, std::size_t argument, const Parameter& parameter)>;
    void ForEachArgument(const ArgumentBody& body) {
        ForEachMember([&](const Place& place) {
            for (std::size_t i = 0; i < place.member.parameters.size(); ++i) {
                if (!place.member.parameters[i].result) {
                    body(place, i, place.member.parameters[i]);
                }
            }
        });
    }

    std::size_t Refused() const { return refused_; }

    /// An object without IDispatch.
    com::Ref<IUnknown> Enumerator() {
        return support::Object(support::Object(Module(), &IAppObject::get_Inputs), &IInputs::get_NewEnum);
    }

  private:
    std::size_t refused_ = 0;
};

TEST_F(CallArgumentsTest, RefusesAnArgumentTooMany) {
    ForEachMember([&](const Place& place) {
        Arguments arguments(place.member, Fill::Something, place.supply);
        auto values = arguments.Script();
        values.insert(place.member.IsWrite() ? values.end() : values.begin(), com::Variant(1L).Get());
        ExpectRefused(place, values, Needed(place.member), {DISP_E_BADPARAMCOUNT});
        const Member& member = place.member;
        const bool isRead = member.kind == INVOKE_PROPERTYGET && member.Given() == 0;
        if (!isRead && !member.IsWrite()) {
            com::Variant result;
            ExpectRefused(place, values, {}, {DISP_E_BADPARAMCOUNT}, result.Put());
            EXPECT_EQ(result.Get().vt, VT_EMPTY);
        }
    });
    EXPECT_GT(Refused(), 250u);
}

TEST_F(CallArgumentsTest, RefusesAnArgumentTooFew) {
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        if (member.Given() == 0 || member.parameters[member.Given() - 1].optional) {
            return;
        }
        Arguments arguments(member, Fill::Something, place.supply);
        auto values = arguments.Script();
        values.erase(values.begin());
        ExpectRefused(place, values, {}, {DISP_E_BADPARAMCOUNT});
    });
    EXPECT_GT(Refused(), 80u);
}

TEST_F(CallArgumentsTest, NamesTheArgumentOfTheWrongType) {
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I4, 0, 1);
    VARIANT list = Typed(VT_ARRAY | VT_I4);
    list.parray = array;
    const com::Bstr text(L"1");
    VARIANT word = Typed(VT_BSTR);
    word.bstrVal = text.Get();
    ForEachArgument([&](const Place& place, std::size_t i, const Parameter& parameter) {
        if (!IsTyped(parameter)) {
            return;
        }
        ExpectRefused(place, i, list, DISP_E_TYPEMISMATCH);
        ExpectRefused(place, i, Typed(VT_NULL), DISP_E_TYPEMISMATCH);
        ExpectRefused(place, i, Typed(VT_BYREF | VT_VARIANT), DISP_E_TYPEMISMATCH);
        if (parameter.type == VT_DISPATCH) {
            ExpectRefused(place, i, Typed(VT_EMPTY), DISP_E_TYPEMISMATCH);
            ExpectRefused(place, i, word, DISP_E_TYPEMISMATCH);
        } else {
            ExpectRefused(place, i, Typed(VT_DISPATCH), DISP_E_TYPEMISMATCH);
        }
    });
    SafeArrayDestroy(array);
    EXPECT_GT(Refused(), 400u);
}

TEST_F(CallArgumentsTest, NamesTheReferenceWithoutAPlace) {
    ForEachArgument([&](const Place& place, std::size_t i, const Parameter& parameter) {
        for (const int type :
             std::initializer_list<int>{VT_BSTR, VT_I4, VT_BOOL, VT_DISPATCH, VT_ARRAY | VT_VARIANT}) {
            if (parameter.byReference && parameter.type == type) {
                continue; // the member refuses that one
            }
            VARIANT nowhere = Typed(static_cast<VARTYPE>(VT_BYREF | type));
            ExpectRefused(place, i, nowhere, DISP_E_TYPEMISMATCH);
            ExpectRefused(place, i, Variable(nowhere), DISP_E_TYPEMISMATCH);
            VARIANT variable = Variable(nowhere);
            if (IsTyped(parameter)) {
                ExpectRefused(place, i, Variable(variable), DISP_E_TYPEMISMATCH);
            }
        }
    });
    EXPECT_GT(Refused(), 1500u);
}

TEST_F(CallArgumentsTest, NamesTheVariableInsideAVariable) {
    const auto module = Module();
    const com::Bstr text(L"1");
    VARIANT word = Typed(VT_BSTR);
    word.bstrVal = text.Get();
    VARIANT object = Object(VT_DISPATCH, module.Get());
    ForEachArgument([&](const Place& place, std::size_t i, const Parameter& parameter) {
        if (!IsTyped(parameter)) {
            return;
        }
        VARIANT inner = Variable(parameter.type == VT_DISPATCH ? object : word);
        ExpectRefused(place, i, Variable(inner), DISP_E_TYPEMISMATCH);
        VARIANT itself = Variable(itself);
        ExpectRefused(place, i, Variable(itself), DISP_E_TYPEMISMATCH);
    });
    EXPECT_GT(Refused(), 200u);
}

TEST_F(CallArgumentsTest, NamesTheFirstOfSeveralWrongArguments) {
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        const auto first = std::find_if(member.parameters.begin(), member.parameters.end(), IsTyped);
        if (member.Given() < 2 || first == member.parameters.end()) {
            return;
        }
        const std::vector<VARIANT> values(member.Given(), Typed(VT_NULL));
        const auto place1 = static_cast<std::size_t>(first - member.parameters.begin());
        ExpectRefused(place, values, Needed(member),
                      {DISP_E_TYPEMISMATCH, static_cast<UINT>(values.size() - 1 - place1)});
    });
    EXPECT_GT(Refused(), 10u);
}

TEST_F(CallArgumentsTest, NamesNoArgumentOfATypeThatThereIsNot) {
    ForEachArgument([&](const Place& place, std::size_t i, const Parameter& parameter) {
        if (IsTyped(parameter)) {
            ExpectRefused(place, i, Typed(VT_CLSID), DISP_E_BADVARTYPE);
        }
    });
    EXPECT_GT(Refused(), 80u);
}

TEST_F(CallArgumentsTest, TellsANumberThatIsOutOfRange) {
    const com::Bstr text(kTooLong);
    VARIANT word = Typed(VT_BSTR);
    word.bstrVal = text.Get();
    VARIANT number = Typed(VT_R8);
    number.dblVal = 1e300;
    ForEachArgument([&](const Place& place, std::size_t i, const Parameter& parameter) {
        if (parameter.type == VT_I2 || parameter.type == VT_I4) {
            ExpectRefused(place, i, word, DISP_E_OVERFLOW);
            ExpectRefused(place, i, number, DISP_E_OVERFLOW);
        }
    });
    EXPECT_GT(Refused(), 15u);
}

TEST_F(CallArgumentsTest, MissesARequiredArgumentThatIsLeftOut) {
    ForEachArgument([&](const Place& place, std::size_t i, const Parameter& parameter) {
        if (IsTyped(parameter) && !parameter.optional) {
            ExpectRefused(place, i, LeftOut(), DISP_E_PARAMNOTOPTIONAL);
        }
    });
    EXPECT_GT(Refused(), 80u);
}

TEST_F(CallArgumentsTest, KnowsNoOtherNameOfAnArgument) {
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        if (member.Given() == 0) {
            return;
        }
        Arguments arguments(member, Fill::Something, place.supply);
        const auto values = arguments.Script();
        const auto behindTheLast = static_cast<DISPID>(member.Given());
        for (const DISPID name : {behindTheLast, DISPID{-7}, DISPID{DISPID_UNKNOWN}}) {
            ExpectRefused(place, values, {name}, {DISP_E_PARAMNOTFOUND, 0});
        }
        if (!member.IsWrite()) {
            ExpectRefused(place, values, {DISPID_PROPERTYPUT}, {DISP_E_PARAMNOTFOUND, 0});
            auto names = AllNames(member);
            names.back() = behindTheLast;
            ExpectRefused(place, values, names, {DISP_E_PARAMNOTFOUND, static_cast<UINT>(names.size() - 1)});
        }
    });
    EXPECT_GT(Refused(), 400u);
}

TEST_F(CallArgumentsTest, WantsTheNameOfAValueToWrite) {
    ForEachMember([&](const Place& place) {
        if (place.member.IsWrite()) {
            Arguments arguments(place.member, Fill::Something, place.supply);
            ExpectRefused(place, arguments.Script(), {}, {DISP_E_PARAMNOTFOUND, 0});
            ExpectRefused(place, arguments.Script(), {0}, {DISP_E_PARAMNOTFOUND, 0});
        }
    });
    EXPECT_GT(Refused(), 60u);
}

TEST_F(CallArgumentsTest, RefusesTwoValuesForOneArgument) {
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        if (member.Given() < 2 || member.IsWrite()) {
            return;
        }
        Arguments arguments(member, Fill::Something, place.supply);
        const auto values = arguments.Script();
        const std::vector<DISPID> same(member.Given(), 0);
        ExpectRefused(place, values, same, {DISP_E_PARAMNOTFOUND, 1});
        ExpectRefused(place, values, {0}, {DISP_E_PARAMNOTFOUND, 0}); // the first one has its place
    });
    EXPECT_GT(Refused(), 20u);
}

TEST_F(CallArgumentsTest, RefusesAnObjectOfAnotherClass) {
    ForEachArgument([&](const Place& place, std::size_t i, const Parameter& parameter) {
        if (parameter.type != VT_DISPATCH) {
            return;
        }
        // What an IDispatch is asked for, an enumerator is none.
        const auto stranger = parameter.interfaceId ? com::Ref<IUnknown>(place.supply.element) : Enumerator();
        ExpectRefused(place, i, Object(VT_UNKNOWN, stranger.Get()), DISP_E_TYPEMISMATCH);
        if (parameter.interfaceId) {
            ExpectRefused(place, i, Object(VT_DISPATCH, place.supply.element.Get()), DISP_E_TYPEMISMATCH);
        }
    });
    EXPECT_GT(Refused(), 60u);
}

TEST_F(CallArgumentsTest, TakesAllArgumentsByTheirNames) {
    std::size_t count = 0;
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        if (member.Given() == 0 || member.IsWrite()) {
            return;
        }
        ExpectAsDeclared(place, [&](Arguments& named, const Fresh& fresh) {
            return named.ByName(fresh.face.Get(), AllNames(member));
        });
        ++count;
    });
    EXPECT_GT(count, 40u);
}

// A caller need not hold an object by the interface that a member takes.
TEST_F(CallArgumentsTest, TakesAnObjectByItsIdentity) {
    std::size_t count = 0;
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        const bool hasObject = std::ranges::any_of(member.parameters, [](const Parameter& parameter) {
            return !parameter.result && parameter.type == VT_DISPATCH;
        });
        if (!hasObject) {
            return;
        }
        ExpectAsDeclared(place, [](Arguments& identities, const Fresh& fresh) {
            identities.UseIdentities();
            return identities.ByName(fresh.face.Get());
        });
        ++count;
    });
    EXPECT_GT(count, 30u);
}

} // namespace
