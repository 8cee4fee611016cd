#include "host/GenericAttribute.h"

#include "core/ValueText.h"
#include "host/DisplayText.h"
#include "host/UnitConverter.h"

#include <optional>
#include <utility>

namespace orv {

namespace {

/// True for as long as this lives.
class Mark {
  public:
    explicit Mark(bool& flag) noexcept : flag_(flag) { flag = true; }
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;
    ~Mark() { flag_ = false; }

  private:
    bool& flag_;
};

/// A new value that goes back to the old one unless it is committed.
template <class T>
class Change {
  public:
    Change(T& field, T value) noexcept : field_(field), old_(std::exchange(field, std::move(value))) {}
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;
    ~Change() {
        if (!committed_) {
            std::swap(field_, old_);
        }
    }
    void Commit() noexcept { committed_ = true; }

  private:
    T& field_;
    T old_;
    bool committed_ = false;
};

bool IsGone(HRESULT result) noexcept {
    return result == CO_E_OBJNOTCONNECTED || result == RPC_E_DISCONNECTED;
}

// The caller's own may be replaced while the type is asked.
// NOLINTNEXTLINE(performance-unnecessary-value-param): held by the copy
std::wstring ReadText(com::Ref<ISNVType> type, HRESULT (STDMETHODCALLTYPE ISNVType::*member)(BSTR*)) {
    com::Bstr text;
    if (type) {
        com::Call(type, member, text.Put());
    }
    return std::wstring(text.View());
}

} // namespace

GenericAttribute::GenericAttribute(const Definition& definition, const OwnerRef& owner)
    : point_(definition, owner)
    , type_(TypeFor(owner, definition.Text(L"SNVTTYPE")))
    , value_(definition.Text(L"VALUE")) {}

template <class Method, class... Arguments>
bool GenericAttribute::Ask(Question question, Method method, Arguments... arguments) {
    GenericOwner* const owner = point_.link ? point_.link->owner : nullptr;
    const auto interceptor = owner != nullptr ? owner->Interceptor() : com::Ref<IAttributeInterceptor>();
    if (!interceptor || asked_[question]) {
        return false;
    }
    const auto self = This<IAttribute>(); // the call may drop the last other reference
    const Mark mark(asked_[question]);
    VARIANT_BOOL handled = VARIANT_FALSE;
    com::ForgetErrors();
    const HRESULT result = (interceptor.Get()->*method)(self.Get(), arguments..., &handled);
    if (IsGone(result)) {
        if (point_.link->owner != nullptr) {
            point_.link->owner->ForgetInterceptor(interceptor);
        }
        return false;
    }
    com::CheckCall(result, interceptor.Get(), __uuidof(IAttributeInterceptor));
    return handled != VARIANT_FALSE;
}

void GenericAttribute::WriteValue(std::wstring value) {
    const auto self = This<IAttribute>();
    // What the interceptor keeps in step did not get the value when it fails.
    Change change(value_, std::move(value));
    Ask(ValueChanged, &IAttributeInterceptor::InterceptAttributeValueChanged);
    change.Commit();
}

void GenericAttribute::Fetch(std::optional<DeviceValues>& values) {
    const auto self = This<IAttribute>();
    if (Ask(DataFromDevice, &IAttributeInterceptor::InterceptGetDataFromDevice)) {
        return;
    }
    GenericOwner* const owner = point_.link ? point_.link->owner : nullptr;
    if (owner == nullptr) {
        return;
    }
    if (!values) {
        const auto object = owner->AppObject(); // the document is the host's
        values = owner->ReadDeviceValues();
    }
    if (const auto value = values->find(point_.Name()); value != values->end()) {
        WriteValue(value->second);
    }
}

bool GenericAttribute::IsUnitDependent() {
    const bool own = point_.definition.Flag(L"UNITDEPENDENT");
    VARIANT_BOOL answer = own ? VARIANT_TRUE : VARIANT_FALSE;
    const bool handled = Ask(UnitsDependent, &IAttributeInterceptor::InterceptIsUnitsDependent, &answer);
    return handled ? answer != VARIANT_FALSE : own;
}

bool GenericAttribute::IsDifferential() {
    const bool own = point_.definition.Flag(L"DIFFERENTIAL");
    VARIANT_BOOL answer = own ? VARIANT_TRUE : VARIANT_FALSE;
    const bool handled = Ask(Differential, &IAttributeInterceptor::InterceptIsDifferential, &answer);
    return handled ? answer != VARIANT_FALSE : own;
}

std::wstring GenericAttribute::EnumDesc() const {
    return ReadText(type_, &ISNVType::get_EnumDesc);
}

std::wstring GenericAttribute::DefaultText() const {
    const Definition& definition = point_.definition;
    return definition.Text(definition.Has(L"DEFAULTVALUE") ? L"DEFAULTVALUE" : L"VALUE");
}

std::wstring GenericAttribute::Limit(const wchar_t* keyword,
                                     HRESULT (STDMETHODCALLTYPE ISNVType::*member)(BSTR*)) const {
    // A type tells its limits in the user's form, an attribute its own in the stored one.
    return point_.definition.Has(keyword) ? point_.definition.Text(keyword)
                                          : tam::MoveDecimalMark(ReadText(type_, member), L".");
}

// The interceptor may give the member that the text stands in another value.
// cppcheck-suppress passedByValue
std::wstring GenericAttribute::Display(std::wstring value) { // NOLINT(performance-unnecessary-value-param)
    const std::wstring type = SNVTName();
    const std::wstring entries = EnumDesc();
    DisplayRule rule{type, entries};
    // What does not follow the unit is shown in the type's own, metric one.
    if (Settings().units == UnitSystem::US && IsUnitDependent()) {
        rule.system = UnitSystem::US;
        rule.isDifference = IsDifferential();
    }
    return DisplayText(value, rule);
}

HRESULT GenericAttribute::get_Parent(IAppObject** value) {
    return Get(value, [&] { return ParentOf(point_.link); });
}

HRESULT GenericAttribute::SetValue() {
    // Somebody is about to edit the value: what may be chosen comes from the
    // device. The editor itself is the driver's.
    return Do([&] {
        std::optional<DeviceValues> values;
        Fetch(values);
    });
}

HRESULT GenericAttribute::get_DispValue(BSTR* value) {
    const auto self = This<IAttribute>();
    return Get(value, [&] { return Display(value_); });
}

HRESULT GenericAttribute::get_DispMin(BSTR* value) {
    const auto self = This<IAttribute>();
    return Get(value, [&] { return Display(Limit(L"MIN", &ISNVType::get_Min)); });
}

HRESULT GenericAttribute::get_DispMax(BSTR* value) {
    const auto self = This<IAttribute>();
    return Get(value, [&] { return Display(Limit(L"MAX", &ISNVType::get_Max)); });
}

HRESULT GenericAttribute::get_DispDefault(BSTR* value) {
    const auto self = This<IAttribute>();
    return Get(value, [&] { return Display(DefaultText()); });
}

HRESULT GenericAttribute::put_Value(BSTR value) {
    return Do([&] { WriteValue(com::Text(value)); });
}

HRESULT GenericAttribute::BackToDefault() {
    return Do([&] { WriteValue(DefaultText()); });
}

HRESULT GenericAttribute::get_DefaultValue(BSTR* value) {
    return Get(value, [&] { return DefaultText(); });
}

HRESULT GenericAttribute::get_IsUnitDependent(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsUnitDependent(); });
}

HRESULT GenericAttribute::get_Min(BSTR* value) {
    return Get(value, [&] { return Limit(L"MIN", &ISNVType::get_Min); });
}

HRESULT GenericAttribute::get_Max(BSTR* value) {
    return Get(value, [&] { return Limit(L"MAX", &ISNVType::get_Max); });
}

HRESULT GenericAttribute::get_IsMacroConnected(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsMacroKey(point_.link, point_.GlobalKey()); });
}

HRESULT GenericAttribute::SetType(ISNVType* newType) {
    return Do([&] {
        com::CheckSet(newType);
        const auto self = This<IAttribute>();
        Change change(type_, com::Ref<ISNVType>(newType));
        Ask(TypeChanged, &IAttributeInterceptor::InterceptTypeChanged);
        change.Commit();
    });
}

HRESULT GenericAttribute::get_IsDifferential(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsDifferential(); });
}

HRESULT GenericAttribute::GetDataFromDevice() {
    return Do([&] {
        std::optional<DeviceValues> values;
        Fetch(values);
    });
}

HRESULT GenericAttribute::Flag(const wchar_t* keyword, VARIANT_BOOL* value) {
    return Get(value, [&] { return point_.definition.Flag(keyword); });
}

HRESULT GenericAttribute::Text(const wchar_t* keyword, BSTR* value) {
    return Get(value, [&] { return point_.definition.Text(keyword); });
}

HRESULT GenericAttribute::Number(const wchar_t* keyword, long* value) {
    return Get(value, [&] { return point_.definition.Number(keyword); });
}

} // namespace orv
