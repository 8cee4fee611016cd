#include "tests/internal/Recorder.h"

#include "com/Boundary.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <utility>

namespace internal_tests {

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

/// A value from the stack, borrowed for the call.
VARIANT FromWords(const Parameter& parameter, const DWORD* words) {
    VARIANT value{};
    if (parameter.type == VT_VARIANT) {
        std::memcpy(&value, words, sizeof(value));
        return value;
    }
    value.vt = parameter.type;
    std::memcpy(&value.lVal, words, parameter.Words() * sizeof(DWORD));
    return value;
}

/// The platform's copy takes its source as changeable and does not change it.
HRESULT Copy(VARIANT* to, VARIANT from) {
    return VariantCopy(to, &from);
}

HRESULT Raise(HRESULT code, const std::wstring& description) {
    LeaveError(description);
    return code;
}

} // namespace

/// The tables of slots. On this platform every argument lies on the stack as
/// words and the callee takes them away, so a slot is known by its number and
/// the count of its words.
struct Slots {
    using Face = Recorder::Face;
    static constexpr std::size_t kCount = 96;
    static constexpr std::size_t kMaximumWords = 6;
    static constexpr std::size_t kFirst = 7;

    static HRESULT STDMETHODCALLTYPE QueryInterface(Face* self, REFIID iid, void** out) {
        return self->owner->QueryInterface(iid, out);
    }
    static ULONG STDMETHODCALLTYPE AddRef(Face* self) { return self->owner->AddRef(); }
    static ULONG STDMETHODCALLTYPE Release(Face* self) { return self->owner->Release(); }
    static HRESULT STDMETHODCALLTYPE GetTypeInfoCount(Face*, UINT* count) {
        *count = 0;
        return S_OK;
    }
    static HRESULT STDMETHODCALLTYPE GetTypeInfo(Face*, UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }
    static HRESULT STDMETHODCALLTYPE GetIDsOfNames(Face* self, REFIID, LPOLESTR* names, UINT, LCID,
                                                   DISPID* ids) {
        return self->owner->IdOf(names[0], ids);
    }
    static HRESULT STDMETHODCALLTYPE Invoke(Face* self, DISPID id, REFIID, LCID, WORD flags,
                                            DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                                            UINT* argumentError) {
        return self->owner->InvokeById(id, flags, params, result, exception, argumentError);
    }

    template <std::size_t>
    using Word = DWORD;

    template <std::size_t Slot, class Indexes>
    struct Thunk;
    template <std::size_t Slot, std::size_t... Index>
    struct Thunk<Slot, std::index_sequence<Index...>> {
        static HRESULT STDMETHODCALLTYPE Enter(Face* self, Word<Index>... words) {
            const std::array<DWORD, sizeof...(Index) + 1> all{words..., 0};
            return self->owner->Called(*self->info, Slot, all.data());
        }
    };

    using Row = std::array<const void*, kMaximumWords + 1>;
    template <std::size_t Slot, std::size_t... Words>
    static Row MakeRow(std::index_sequence<Words...>) {
        return {reinterpret_cast<const void*>(&Thunk<Slot, std::make_index_sequence<Words>>::Enter)...};
    }
    template <std::size_t... Slot>
    static std::array<Row, kCount> MakeRows(std::index_sequence<Slot...>) {
        return {MakeRow<Slot>(std::make_index_sequence<kMaximumWords + 1>())...};
    }

    /// The table of one interface; made once.
    static const void* const* TableOf(const FaceInfo& face) {
        static const auto rows = MakeRows(std::make_index_sequence<kCount>());
        static std::map<const FaceInfo*, std::vector<const void*>> tables;
        std::vector<const void*>& table = tables[&face];
        if (table.empty()) {
            table = {reinterpret_cast<const void*>(&QueryInterface),
                     reinterpret_cast<const void*>(&AddRef),
                     reinterpret_cast<const void*>(&Release),
                     reinterpret_cast<const void*>(&GetTypeInfoCount),
                     reinterpret_cast<const void*>(&GetTypeInfo),
                     reinterpret_cast<const void*>(&GetIDsOfNames),
                     reinterpret_cast<const void*>(&Invoke)};
            for (const Member& member : face.members) {
                table.push_back(rows.at(member.slot).at(member.Words()));
            }
        }
        return table.data();
    }
};

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
    if (member_.result.type == VT_VARIANT) {
        VariantInit(static_cast<VARIANT*>(place_));
        return Copy(static_cast<VARIANT*>(place_), value);
    }
    if (member_.result.type == VT_DISPATCH || member_.result.type == VT_UNKNOWN) {
        const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
        return isObject ? Answer(value.punkVal) : DISP_E_TYPEMISMATCH;
    }
    VARIANT converted{};
    VARIANT given = value;
    const HRESULT result = VariantChangeType(&converted, &given, 0, member_.result.type);
    if (SUCCEEDED(result)) {
        const bool isShort = converted.vt == VT_I2 || converted.vt == VT_BOOL;
        std::memcpy(place_, &converted.lVal, converted.vt == VT_R8 ? 8 : isShort ? 2 : 4);
    }
    return result;
}

HRESULT Invocation::Answer(IUnknown* object) const {
    if (object == nullptr) {
        *static_cast<void**>(place_) = nullptr;
        return S_OK;
    }
    return object->QueryInterface(member_.result.iid, static_cast<void**>(place_));
}

com::Ref<Recorder> Recorder::Make(std::wstring label, std::initializer_list<const IID*> faces) {
    auto recorder = com::Ref<Recorder>::Own(new Recorder(std::move(label)));
    for (const IID* iid : faces) {
        const FaceInfo& info = FaceOf(*iid);
        recorder->faces_.push_back(Face{Slots::TableOf(info), recorder.Get(), &info});
    }
    if (recorder->faces_.empty()) {
        const FaceInfo& info = FaceOf(IID_IDispatch);
        recorder->faces_.push_back(Face{Slots::TableOf(info), recorder.Get(), &info});
    }
    return recorder;
}

HRESULT Recorder::QueryInterface(REFIID iid, void** out) {
    *out = nullptr;
    for (const auto& [refused, refusal] : refusals_) {
        if (iid == refused) {
            return refusal;
        }
    }
    if (iid == kRecorderIid) {
        *out = this;
    }
    if (iid == IID_ISupportErrorInfo) {
        *out = &support_;
    }
    for (Face& face : faces_) {
        const bool isFirst = &face == &faces_.front() && (iid == IID_IUnknown || iid == IID_IDispatch);
        if (*out == nullptr && (isFirst || face.info->iid == iid)) {
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

std::wstring Recorder::Value(const std::wstring& name) const {
    const auto found = values_.find(name);
    return found != values_.end() ? Print(found->second.Get()) : L"none";
}

void Recorder::Fail(const std::wstring& label, HRESULT code, const std::wstring& description) {
    failures_[label] = Failing{code, description};
}

void Recorder::HideFace(REFIID iid, HRESULT refusal) {
    refusals_.emplace_back(iid, refusal);
}

void Recorder::SetGate(HRESULT (*gate)()) noexcept {
    currentGate = gate;
}

HRESULT Recorder::Called(const FaceInfo& face, unsigned slot, const DWORD* words) {
    const com::Ref<Recorder> alive(this);
    const Member& member = face.At(slot);
    std::vector<VARIANT> inputs;
    std::wstring arguments;
    for (const Parameter& input : member.inputs) {
        inputs.push_back(FromWords(input, words));
        words += input.Words();
        arguments += (arguments.empty() ? L"" : L", ") + Print(inputs.back());
    }
    Calls().push_back(
        {this, label_, face.name, slot, label_ + L"." + member.label + L"(" + arguments + L")", isInvoking_});

    if (const HRESULT refused = Gate(); FAILED(refused)) {
        return refused;
    }
    for (const std::wstring& label : {member.label, std::wstring()}) {
        const auto failing = failures_.find(label);
        if (failing != failures_.end()) {
            return Raise(failing->second.code, failing->second.description);
        }
    }
    void* place = nullptr;
    if (member.HasResult()) {
        std::memcpy(&place, words, sizeof(place));
    }
    const auto handler = handlers_.find(member.label);
    if (handler != handlers_.end()) {
        const Handler called = handler->second; // which may replace itself
        return called(Invocation(member, inputs, place));
    }
    return AnswerPlainly(member, inputs, place);
}

HRESULT Recorder::AnswerPlainly(const Member& member, std::span<const VARIANT> inputs, void* place) {
    if (!inputs.empty() && (member.kind & INVOKE_PROPERTYGET) == 0) {
        com::Variant kept;
        Copy(kept.Put(), inputs[0]);
        values_[member.name] = std::move(kept);
    }
    if (!member.HasResult()) {
        return S_OK;
    }
    auto found = values_.find(member.name);
    if (found == values_.end() || (member.kind & INVOKE_PROPERTYGET) == 0) {
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
    switch (member.result.type) {
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
        value.pdispVal = Make(text, {member.result.iid == IID_IUnknown ? &IID_IDispatch : &member.result.iid})
                             ->As<IDispatch>()
                             .Detach();
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
        if (face.info->dispatch && SUCCEEDED(face.info->dispatch->GetIDsOfNames(&text, 1, id))) {
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
bool Offers(const FaceInfo& face, const std::wstring& name, WORD flags) {
    return std::any_of(face.members.begin(), face.members.end(), [&](const Member& member) {
        return (member.kind & flags) != 0 && _wcsicmp(member.name.c_str(), name.c_str()) == 0;
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
        if (answer == DISP_E_MEMBERNOTFOUND && face.info->dispatch &&
            Offers(*face.info, std::wstring(name.View()), ownFlags) &&
            SUCCEEDED(face.info->dispatch->GetIDsOfNames(&text, 1, &own))) {
            answer =
                face.info->dispatch->Invoke(&face, own, ownFlags, params, result, exception, argumentError);
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

} // namespace internal_tests
