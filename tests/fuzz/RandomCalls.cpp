#include "tests/fuzz/RandomCalls.h"

#include "com/Conversion.h"
#include "tests/fuzz/Describe.h"
#include "tests/fuzz/Texts.h"
#include "tests/support/Component.h"

#include <gtest/gtest.h>
#include <OrvDBFaces.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace component_fuzz {

using contract::Member;

namespace {

constexpr unsigned kSeed = 20250307;
constexpr std::size_t kMostObjects = 60;

/// The call's result; of an exception the number inside.
HRESULT Invoke(const com::Ref<IDispatch>& object, const Member& member, std::span<VARIANT> arguments,
               VARIANT* result) {
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if (member.IsWrite()) {
        params.rgdispidNamedArgs = &put;
        params.cNamedArgs = arguments.empty() ? 0 : 1;
    }
    EXCEPINFO exception{};
    const HRESULT outcome =
        object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(member.kind), &params,
                       member.IsWrite() ? nullptr : result, &exception, nullptr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
}

/// No failure that the component has no name for.
bool IsDocumented(HRESULT result) {
    return result != E_UNEXPECTED && result != E_OUTOFMEMORY;
}

VARIANT TextValue(Random& random) {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = random.OneIn(10) ? nullptr : com::Bstr(AnyText(random)).Detach();
    return value;
}

VARIANT NumberValue(Random& random) {
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

} // namespace

RandomCalls::RandomCalls() : library_(support::Component::DllPath(), 1) {}

void RandomCalls::Keep(const com::Ref<IDispatch>& object) {
    if (object && library_.Has(ClassOf(object.Get())) && pool_.size() < kMostObjects) {
        pool_.push_back(object);
    }
}

bool RandomCalls::IsSpared(const contract::Interface& face, const Member& member) const {
    return std::any_of(spared_.begin(), spared_.end(), [&](const Spared& spared) {
        return spared.face == face.id && spared.member == member.name;
    });
}

const std::vector<contract::Interface>& RandomCalls::InterfacesOf(const com::Ref<IDispatch>& object) const {
    return library_.ClassOf(ClassOf(object.Get())).interfaces;
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
        std::printf("%s\n", contract::Title(face, member).c_str());
        std::fflush(stdout);
    }
    com::Variant result;
    EXPECT_TRUE(IsDocumented(Invoke(dispatch, member, arguments, result.Put())))
        << contract::Title(face, member);
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
                Invoke(dispatch, member, {&nothing, 1}, nullptr);
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

VARIANT RandomCalls::Fitting(const contract::Parameter& parameter, Random& random) {
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
    switch (random.Below(10)) {
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
    default:
        return NumberValue(random);
    }
}

void RunSequences(Watchdog& watchdog, unsigned sequences,
                  const std::function<void(Random& random, bool tells)>& run) {
    const unsigned seed = Setting(L"TAM_CALLS_SEED", Setting(L"TAM_FUZZ_SEED", kSeed));
    const unsigned first = Setting(L"TAM_CALLS_ROUND", 0);
    const unsigned seconds = Setting(L"TAM_FUZZ_SECONDS", 0);
    const unsigned otherwise = first != 0 ? first + 1 : seconds != 0 ? ~0u : sequences;
    const unsigned end = Setting(L"TAM_CALLS_SEQUENCES", otherwise);
    const ULONGLONG until = GetTickCount64() + seconds * 1000ull;
    unsigned round = first;
    for (; round < end && (seconds == 0 || GetTickCount64() < until) && !testing::Test::HasFailure();
         ++round) {
        const std::string what = "seed " + std::to_string(seed) + ", sequence " + std::to_string(round);
        SCOPED_TRACE(what);
        watchdog.Begin(what, what);
        Random random(seed, round);
        run(random, first != 0);
    }
    std::printf("%u sequences of calls, seed %u\n", round - first, seed);
}

} // namespace component_fuzz
