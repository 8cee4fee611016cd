#include "tests/support/Recorder.h"

#include "com/Boundary.h"
#include "tests/support/RecorderSlots.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <utility>

// A recorder is any interface without a class being written for it. Its pointers
// lead to tables of slots that are made from the type library (RecorderSlots.h):
// each slot takes the words of its arguments as they were handed over and gives them to
// Called, which reads them by the member's description, writes the call down and
// answers. A call by name goes through the library's own IDispatch to the same slot.

namespace support {

namespace {

/// Names that were asked for by name; an identifier is a position, from 1.
std::vector<std::wstring>& Names() {
    static std::vector<std::wstring> names;
    return names;
}

HRESULT (*currentGate)() = nullptr;

HRESULT Gate() {
    return currentGate != nullptr ? currentGate() : S_OK;
}

/// A value as it was handed over, borrowed for the call.
VARIANT FromWords(const Parameter& parameter, const ULONG_PTR* words) {
    VARIANT value{};
    if (parameter.type == VT_VARIANT && !parameter.byReference) {
        const void* const place = kIs64Bit ? reinterpret_cast<const void*>(*words) : words;
        std::memcpy(&value, place, sizeof(value));
        return value;
    }
    value.vt = static_cast<VARTYPE>(parameter.byReference ? parameter.type | VT_BYREF : parameter.type);
    std::memcpy(&value.lVal, words, parameter.Words() * sizeof(ULONG_PTR));
    return value;
}

/// Bytes of a result that is handed out through a place.
std::size_t SizeOf(VARTYPE type) {
    switch (type) {
    case VT_I2:
    case VT_BOOL:
        return 2;
    case VT_R8:
        return 8;
    case VT_BSTR:
        return sizeof(BSTR);
    default:
        return 4;
    }
}

/// The platform's copy takes its source as changeable and does not change it.
HRESULT Copy(VARIANT* to, VARIANT from) {
    return VariantCopy(to, &from);
}

HRESULT Raise(HRESULT code, const std::wstring& description) {
    com::Ref<ICreateErrorInfo> info;
    com::Check(CreateErrorInfo(info.Put()));
    info->SetDescription(com::Bstr(description).Get());
    info->SetSource(com::Bstr(L"Double").Get());
    info->SetHelpFile(com::Bstr(kRecorderHelpFile).Get());
    info->SetHelpContext(kRecorderHelpContext);
    info->SetGUID(kRecorderIid);
    SetErrorInfo(0, info.As<IErrorInfo>().Get());
    return code;
}

} // namespace

std::vector<Call>& Calls() {
    static std::vector<Call> calls;
    return calls;
}

std::vector<std::wstring> Said(std::wstring_view label) {
    std::vector<std::wstring> texts;
    for (const Call& call : Calls()) {
        if (label.empty() || call.label == label) {
            texts.push_back(call.text);
        }
    }
    return texts;
}

HRESULT Invocation::Answer(const VARIANT& value) const {
    if (place_ == nullptr) {
        return E_POINTER;
    }
    const VARTYPE type = member_.Result()->type;
    if (type == VT_VARIANT) {
        VariantInit(static_cast<VARIANT*>(place_));
        return Copy(static_cast<VARIANT*>(place_), value);
    }
    if (type == VT_DISPATCH || type == VT_UNKNOWN) {
        const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
        return isObject ? Answer(value.punkVal) : DISP_E_TYPEMISMATCH;
    }
    VARIANT converted{};
    VARIANT given = value;
    const HRESULT result = VariantChangeType(&converted, &given, 0, type);
    if (SUCCEEDED(result)) {
        std::memcpy(place_, &converted.lVal, SizeOf(converted.vt));
    }
    return result;
}

HRESULT Invocation::Answer(IUnknown* object) const {
    if (object == nullptr) {
        *static_cast<void**>(place_) = nullptr;
        return S_OK;
    }
    return object->QueryInterface(member_.Result()->ObjectId(), static_cast<void**>(place_));
}

HRESULT Invocation::Answer(const com::Ref<Recorder>& object) const {
    return Answer(object ? object->As<IUnknown>().Get() : nullptr);
}

com::Ref<Recorder> Recorder::Make(std::wstring label, std::initializer_list<const IID*> faces) {
    auto recorder = com::Ref<Recorder>::Own(new Recorder(std::move(label)));
    for (const IID* iid : faces) {
        const Interface& info = InterfaceOf(*iid);
        recorder->faces_.push_back(Face{RecorderSlots::TableOf(info), recorder.Get(), &info});
    }
    if (recorder->faces_.empty()) {
        const Interface& info = InterfaceOf(IID_IDispatch);
        recorder->faces_.push_back(Face{RecorderSlots::TableOf(info), recorder.Get(), &info});
    }
    return recorder;
}

HRESULT Recorder::QueryInterface(REFIID iid, void** out) {
    *out = nullptr;
    if (const auto refused = refusals_.find(TextOf(iid)); refused != refusals_.end()) {
        return refused->second;
    }
    if (iid == kRecorderIid) {
        *out = this;
    }
    if (iid == IID_ISupportErrorInfo) {
        *out = &support_;
    }
    for (Face& face : faces_) {
        const bool isFirst = &face == &faces_.front() && (iid == IID_IUnknown || iid == IID_IDispatch);
        if (*out == nullptr && (isFirst || face.info->id == iid)) {
            *out = &face;
        }
    }
    if (*out == nullptr) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG Recorder::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        references_ = 0x40000000; // what its end calls must not end it twice
        delete this;
    }
    return left;
}

void Recorder::Set(const std::wstring& name, bool flag) {
    VARIANT& value = *values_[name].Put();
    value.vt = VT_BOOL;
    value.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

void Recorder::Set(const std::wstring& name, IUnknown* object) {
    VARIANT& value = *values_[name].Put();
    value.vt = VT_UNKNOWN;
    value.punkVal = com::Ref<IUnknown>(object).Detach();
}

void Recorder::Set(const std::wstring& name, const com::Ref<Recorder>& object) {
    Set(name, object ? object->As<IUnknown>().Get() : nullptr);
}

std::size_t Recorder::Times(std::wstring_view label) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        Calls(), [&](const Call& call) { return call.target == this && call.member == label; }));
}

std::wstring Recorder::Value(const std::wstring& name) const {
    const auto found = values_.find(name);
    return found != values_.end() ? Print(found->second.Get()) : L"none";
}

void Recorder::Fail(const std::wstring& label, HRESULT code, const std::wstring& description) {
    failures_[label] = Failing{code, description};
}

void Recorder::HideFace(REFIID iid, HRESULT refusal) {
    refusals_[TextOf(iid)] = refusal;
}

void Recorder::SetGate(HRESULT (*gate)()) noexcept {
    currentGate = gate;
}

HRESULT Recorder::Called(const Interface& face, unsigned slot, const ULONG_PTR* words) {
    const com::Ref<Recorder> alive(this);
    const Member& member = face.At(slot);
    const std::wstring label = member.Label();
    std::vector<VARIANT> inputs;
    std::wstring arguments;
    for (const Parameter& input : member.Inputs()) {
        inputs.push_back(FromWords(input, words));
        words += input.Words();
        arguments += (arguments.empty() ? L"" : L", ") + Print(inputs.back());
    }
    Calls().push_back(
        {this, label_, face.name, slot, label, label_ + L"." + label + L"(" + arguments + L")", isInvoking_});

    if (const HRESULT refused = Gate(); FAILED(refused)) {
        return refused;
    }
    for (const std::wstring& failed : {label, std::wstring()}) {
        const auto failing = failures_.find(failed);
        if (failing != failures_.end() && FAILED(failing->second.code)) {
            const auto& [code, description] = failing->second;
            return description ? Raise(code, *description) : code;
        }
    }
    void* place = nullptr;
    if (member.Result() != nullptr) {
        std::memcpy(&place, words, sizeof(place));
    }
    const auto handler = handlers_.find(label);
    if (handler != handlers_.end()) {
        const Handler called = handler->second; // which may replace itself
        return called(Invocation(member, inputs, place));
    }
    return AnswerPlainly(member, inputs, place);
}

HRESULT Recorder::AnswerPlainly(const Member& member, std::span<const VARIANT> inputs, void* place) {
    const auto found = values_.find(member.name);
    const bool isGiven = found != values_.end() && (member.kind & INVOKE_PROPERTYGET) != 0;
    if (!isGiven && FAILED(refusal_)) {
        return refusal_;
    }
    if (!inputs.empty() && (member.kind & INVOKE_PROPERTYGET) == 0) {
        com::Variant kept;
        Copy(kept.Put(), inputs[0]);
        values_[member.name] = std::move(kept);
    }
    if (member.Result() == nullptr) {
        return S_OK;
    }
    if (!isGiven) {
        const com::Variant own = OwnAnswer(member);
        return Invocation(member, inputs, place).Answer(own.Get());
    }
    return Invocation(member, inputs, place).Answer(found->second.Get());
}

com::Variant Recorder::OwnAnswer(const Member& member) const {
    com::Variant answer;
    VARIANT& value = *answer.Put();
    const long number = 100 * (seed_ + 1) + static_cast<long>(member.slot);
    const std::wstring text = L"answer " + std::to_wstring(number);
    const IID& iid = member.Result()->ObjectId();
    switch (member.Result()->type) {
    case VT_BOOL:
        value.vt = VT_BOOL;
        value.boolVal = seed_ % 2 == 0 ? VARIANT_TRUE : VARIANT_FALSE;
        break;
    case VT_R8:
        value.vt = VT_R8;
        value.dblVal = static_cast<double>(number) + 0.5;
        break;
    case VT_I2:
    case VT_I4:
        value.vt = VT_I4;
        value.lVal = number;
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        value.vt = VT_DISPATCH;
        value.pdispVal = Make(text, {iid == IID_IUnknown ? &IID_IDispatch : &iid})->As<IDispatch>().Detach();
        break;
    default:
        value.vt = VT_BSTR;
        value.bstrVal = com::Bstr(text).Detach();
        break;
    }
    return answer;
}

HRESULT Recorder::IdOf(const wchar_t* name, DISPID* id) {
    if (const HRESULT refused = Gate(); FAILED(refused)) {
        return refused;
    }
    com::Bstr wanted{std::wstring_view(name)};
    BSTR text = wanted.Get();
    for (const Face& face : faces_) {
        if (face.info->info && SUCCEEDED(face.info->info->GetIDsOfNames(&text, 1, id))) {
            Names().emplace_back(name);
            *id = static_cast<DISPID>(Names().size());
            return S_OK;
        }
    }
    *id = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
}

namespace {

/// Whether a face has a member of this name for this kind of access. A platform
/// does not always answer "no such member" to the write of what can only be read.
bool Offers(const Interface& face, const std::wstring& name, WORD flags) {
    return std::any_of(face.members.begin(), face.members.end(), [&](const Member& member) {
        return (member.kind & flags) != 0 && SameName(member.name, name);
    });
}

} // namespace

HRESULT Recorder::InvokeById(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                             UINT* argumentError) {
    if (id < 1 || static_cast<std::size_t>(id) > Names().size()) {
        return DISP_E_MEMBERNOTFOUND; // nobody asked for it by name: a default member, say
    }
    WORD ownFlags = flags;
    if (takesPlainObjects_ && flags == DISPATCH_PROPERTYPUTREF) {
        return DISP_E_MEMBERNOTFOUND;
    }
    if (takesPlainObjects_ && flags == DISPATCH_PROPERTYPUT) {
        ownFlags = DISPATCH_PROPERTYPUTREF;
    }
    com::Bstr name(Names().at(static_cast<std::size_t>(id) - 1));
    BSTR text = name.Get();
    const bool wasInvoking = std::exchange(isInvoking_, true);
    HRESULT answer = DISP_E_MEMBERNOTFOUND;
    for (Face& face : faces_) {
        DISPID own = DISPID_UNKNOWN;
        if (answer == DISP_E_MEMBERNOTFOUND && face.info->info &&
            Offers(*face.info, std::wstring(name.View()), ownFlags) &&
            SUCCEEDED(face.info->info->GetIDsOfNames(&text, 1, &own))) {
            answer = face.info->info->Invoke(&face, own, ownFlags, params, result, exception, argumentError);
        }
    }
    isInvoking_ = wasInvoking;
    return answer;
}

Recorder* RecorderOf(IUnknown* object) {
    void* found = nullptr;
    if (object == nullptr || FAILED(object->QueryInterface(kRecorderIid, &found))) {
        return nullptr;
    }
    auto* recorder = static_cast<Recorder*>(found);
    recorder->Release();
    return recorder;
}

std::wstring LabelOf(IUnknown* object) {
    const Recorder* recorder = RecorderOf(object);
    return recorder != nullptr ? recorder->Label() : L"object";
}

std::wstring Print(const VARIANT& value) {
    switch (value.vt) {
    case VT_EMPTY:
        return L"empty";
    case VT_BSTR:
        return L"\"" + com::Text(value.bstrVal) + L"\"";
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? L"True" : L"False";
    case VT_I2:
        return std::to_wstring(value.iVal);
    case VT_I4:
        return std::to_wstring(value.lVal);
    case VT_R8:
        return std::to_wstring(value.dblVal);
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return value.punkVal != nullptr ? LabelOf(value.punkVal) : L"nothing";
    default:
        return L"type " + std::to_wstring(value.vt);
    }
}

} // namespace support
