#include "tests/fuzz/RandomCalls.h"

#include "com/Conversion.h"
#include "tests/fuzz/RandomValues.h"
#include "tests/fuzz/Rounds.h"
#include "tests/support/Component.h"
#include "tests/support/Describe.h"

#include <gtest/gtest.h>
#include <OrvDBFaces.h>

#include <algorithm>
#include <cstdio>
#include <span>

namespace component_fuzz {

using support::Member;

namespace {

constexpr unsigned kSeed = 20250307;
constexpr std::size_t kMostObjects = 60;

/// How a script makes a call.
struct Form {
    WORD flags;
    /// Of the first arguments.
    std::vector<DISPID> names;
    bool hasResult;
    bool wantsWrong;
};

Form UsualForm(const Member& member, std::size_t given) {
    const bool isNamed = member.IsWrite() && given != 0;
    return {static_cast<WORD>(member.kind), std::vector<DISPID>(isNamed ? 1 : 0, DISPID_PROPERTYPUT),
            !member.IsWrite(), false};
}

/// Names for some of the arguments, at times of others or twice the same.
std::vector<DISPID> AnyNames(const Member& member, std::size_t given, Random& random) {
    std::vector<DISPID> names;
    const std::size_t count = random.Below(static_cast<unsigned>(given + 1));
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t own = given - 1 - i;
        const bool isOwn = !random.OneIn(4);
        names.push_back(isOwn ? static_cast<DISPID>(own) : static_cast<DISPID>(random.Below(4)));
    }
    if (!names.empty() && (member.IsWrite() ? !random.OneIn(6) : random.OneIn(12))) {
        names.front() = DISPID_PROPERTYPUT;
    }
    return names;
}

Form AnyForm(const Member& member, std::size_t given, Random& random) {
    Form form = UsualForm(member, given);
    if (random.OneIn(6)) {
        form.flags = static_cast<WORD>(random.OneIn(3) ? random.Below(16) : form.flags | random.Below(16));
    }
    if (random.OneIn(4)) {
        form.names = AnyNames(member, given, random);
    }
    form.hasResult = random.OneIn(6) ? !form.hasResult : form.hasResult;
    form.wantsWrong = random.OneIn(2);
    return form;
}

/// The call's result; of an exception the number inside.
HRESULT Invoke(const com::Ref<IDispatch>& object, const Member& member, Form form,
               std::span<VARIANT> arguments, VARIANT* result) {
    DISPPARAMS params{arguments.data(), form.names.data(), static_cast<UINT>(arguments.size()),
                      static_cast<UINT>(form.names.size())};
    EXCEPINFO exception{};
    UINT wrong = 0;
    const HRESULT outcome =
        object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, form.flags, &params,
                       form.hasResult ? result : nullptr, &exception, form.wantsWrong ? &wrong : nullptr);
    EXPECT_TRUE(wrong == 0 || wrong < arguments.size()) << support::Title({}, member);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
}

/// No failure that the component has no name for.
bool IsDocumented(HRESULT result) {
    return result != E_UNEXPECTED && result != E_OUTOFMEMORY;
}

} // namespace

RandomCalls::RandomCalls() : library_(support::Component::DllPath(), 1) {}

void RandomCalls::Keep(const com::Ref<IDispatch>& object) {
    if (object && library_.Has(support::ClassOf(object.Get())) && pool_.size() < kMostObjects) {
        pool_.push_back(object);
    }
}

bool RandomCalls::IsSpared(const support::Interface& face, const Member& member) const {
    return std::any_of(spared_.begin(), spared_.end(), [&](const Spared& spared) {
        return spared.face == face.id && spared.member == member.name;
    });
}

const std::vector<support::Interface>& RandomCalls::InterfacesOf(const com::Ref<IDispatch>& object) const {
    return library_.ClassOf(support::ClassOf(object.Get())).interfaces;
}

void RandomCalls::CallOne(Random& random, bool tells) {
    const com::Ref<IDispatch> object = random.Of(pool_);
    const auto& face = random.Of(InterfacesOf(object));
    const Member& member = random.Of(face.members);
    if (IsSpared(face, member)) {
        return;
    }
    const std::size_t count = random.OneIn(12) ? random.Below(5) : member.Given();
    std::vector<VARIANT> arguments;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t natural = count - 1 - i; // the last one stands first
        const bool isKnown = natural < member.parameters.size();
        arguments.push_back(isKnown && !random.OneIn(5) ? Fitting(member.parameters[natural], random)
                                                        : Any(random));
    }
    com::Ref<IDispatch> dispatch;
    ASSERT_EQ(object->QueryInterface(face.id, dispatch.PutVoid()), S_OK);
    if (tells) {
        std::printf("%s\n", support::Title(face, member).c_str());
        std::fflush(stdout);
    }
    com::Variant result;
    const Form form = AnyForm(member, arguments.size(), random);
    EXPECT_TRUE(IsDocumented(Invoke(dispatch, member, form, arguments, result.Put())))
        << support::Title(face, member);
    std::for_each(arguments.begin(), arguments.end(), [](VARIANT& argument) { VariantClear(&argument); });
    std::for_each(places_.begin(), places_.end(), [](VARIANT& place) { VariantClear(&place); });
    places_.clear();
    if (result.Get().vt == VT_DISPATCH || result.Get().vt == VT_UNKNOWN) {
        Keep(com::Query<IDispatch>(result.Get().punkVal));
    }
}

void RandomCalls::Unset(const com::Ref<IDispatch>& object) {
    for (const auto& face : InterfacesOf(object)) {
        com::Ref<IDispatch> dispatch;
        ASSERT_EQ(object->QueryInterface(face.id, dispatch.PutVoid()), S_OK);
        for (const Member& member : face.members) {
            if (member.kind == INVOKE_PROPERTYPUTREF) {
                VARIANT nothing{};
                nothing.vt = VT_DISPATCH;
                Invoke(dispatch, member, UsualForm(member, 1), {&nothing, 1}, nullptr);
            }
        }
    }
}

void RandomCalls::End() {
    std::for_each(pool_.begin(), pool_.end(), [this](const auto& object) { Unset(object); });
    for (const auto& object : pool_) {
        if (const auto module = object.As<IAppObject>()) {
            module->Destroy();
        }
    }
    pool_.clear();
    offered_.clear();
    SetErrorInfo(0, nullptr);
}

VARIANT RandomCalls::Fitting(const support::Parameter& parameter, Random& random) {
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

VARIANT RandomCalls::ByReference(const VARIANT& value) {
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

/// None, one that is offered, or one of those that are called; by its identity
/// at times.
VARIANT RandomCalls::ObjectValue(Random& random) {
    com::Ref<IDispatch> object;
    const std::size_t choice = random.Below(6);
    if (choice < 2 && !offered_.empty()) {
        object = random.Of(offered_);
    } else if (choice > 2) {
        object = random.Of(pool_);
    }
    VARIANT value{};
    value.vt = VT_DISPATCH;
    if (random.OneIn(3)) {
        value.vt = VT_UNKNOWN;
        value.punkVal = object.As<IUnknown>().Detach();
    } else {
        value.pdispVal = object.Detach();
    }
    return value;
}

VARIANT RandomCalls::Any(Random& random) {
    VARIANT value{};
    switch (random.Below(12)) {
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
    case 7:
        return ByReference(ObjectValue(random));
    case 8: { // a script's variable
        places_.push_back(random.OneIn(2) ? TextValue(random) : NumberValue(random));
        value.vt = VT_BYREF | VT_VARIANT;
        value.pvarVal = &places_.back();
        return value;
    }
    case 9:
        return NowhereValue(random);
    case 10: // a variable that holds a reference, to a place or to none
        return ByReference(random.OneIn(2) ? NowhereValue(random) : ByReference(NumberValue(random)));
    default:
        return NumberValue(random);
    }
}

void RunSequences(Watchdog& watchdog, unsigned sequences,
                  const std::function<void(Random& random, bool tells)>& run) {
    const unsigned seed = Setting(L"TAM_CALLS_SEED", Setting(L"TAM_FUZZ_SEED", kSeed));
    const RoundSpan span(L"TAM_CALLS_ROUND", L"TAM_CALLS_SEQUENCES", sequences);
    unsigned round = span.First();
    for (; span.Takes(round) && !testing::Test::HasFailure(); ++round) {
        const std::string what = "seed " + std::to_string(seed) + ", sequence " + std::to_string(round);
        SCOPED_TRACE(what);
        watchdog.Begin(what, what);
        Random random(seed, round);
        run(random, span.IsOne());
    }
    std::printf("%u sequences of calls, seed %u\n", round - span.First(), seed);
}

} // namespace component_fuzz
