#pragma once

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Dll.h"
#include "com/Ref.h"
#include "tests/support/TypeLibrary.h"

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace support {

class Recorder;

/// Asked of an object to learn whether it is a double.
inline constexpr IID kRecorderIid = {
    0x5B1D4C0A, 0x53F1, 0x4E64, {0x8D, 0x63, 0x1D, 0x5C, 0x90, 0x0B, 0x72, 0x11}};

// What a failing double's error object tells beside its description, the
// source "Double" and kRecorderIid.
inline constexpr const wchar_t* kRecorderHelpFile = L"double.hlp";
inline constexpr DWORD kRecorderHelpContext = 4711;
/// Both as an Outcome prints them.
inline constexpr const wchar_t* kRecorderHelp = L"double.hlp#4711";

/// A call that reached a double.
struct Call {
    const Recorder* target = nullptr;
    std::wstring label;
    std::wstring face;
    unsigned slot = 0;
    /// Such as: put Path
    std::wstring member;
    /// Such as: inner.put Path("x")
    std::wstring text;
    /// It came through IDispatch.
    bool isByName = false;
};

/// The calls of all doubles of the program, in order.
std::vector<Call>& Calls();
/// Their texts; with a label, of the doubles with that label alone.
std::vector<std::wstring> Said(std::wstring_view label = {});

/// A call as its handler sees it.
class Invocation {
  public:
    Invocation(const Member& member, std::span<const VARIANT> inputs, void* place)
        : member_(member), inputs_(inputs), place_(place) {}
    const VARIANT& Input(std::size_t index) const { return inputs_[index]; }
    std::wstring TextInput(std::size_t index) const { return com::Text(inputs_[index].bstrVal); }
    /// Hands out the result, in the type that the member gives it.
    HRESULT Answer(const VARIANT& value) const;
    HRESULT Answer(IUnknown* object) const;
    HRESULT Answer(const com::Ref<Recorder>& object) const;
    HRESULT Answer(const std::wstring& text) const { return Answer(com::Variant(text).Get()); }

  private:
    const Member& member_;
    std::span<const VARIANT> inputs_;
    void* place_;
};

/// A host object with any interfaces of the type libraries. It writes down every call
/// and answers with what was put before, what the test gave it, or a value of
/// its own that tells the slot. What a method gets as its first argument is
/// kept under the method's name, as a property is.
class Recorder {
  public:
    using Handler = std::function<HRESULT(const Invocation& call)>;

    static com::Ref<Recorder> Make(std::wstring label, std::initializer_list<const IID*> faces);
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    HRESULT QueryInterface(REFIID iid, void** out);
    ULONG AddRef() noexcept { return ++references_; }
    ULONG Release();

    template <class I>
    com::Ref<I> As() {
        com::Ref<I> face;
        QueryInterface(__uuidof(I), face.PutVoid());
        return face;
    }
    const std::wstring& Label() const noexcept { return label_; }

    void Set(const std::wstring& name, const std::wstring& text) { values_[name] = com::Variant(text); }
    void Set(const std::wstring& name, const wchar_t* text) { Set(name, std::wstring(text)); }
    void Set(const std::wstring& name, long number) { values_[name] = com::Variant(number); }
    void Set(const std::wstring& name, bool flag);
    void Set(const std::wstring& name, IUnknown* object);
    template <class I>
    void Set(const std::wstring& name, const com::Ref<I>& object) {
        Set(name, static_cast<IUnknown*>(object.Get()));
    }
    void Set(const std::wstring& name, const com::Ref<Recorder>& object);
    /// What was put or given, printed; "none" when nothing was.
    std::wstring Value(const std::wstring& name) const;
    /// An object that was put or given; empty when it is none.
    template <class I>
    com::Ref<I> Kept(const std::wstring& name) const {
        const auto found = values_.find(name);
        const bool isObject = found != values_.end() &&
                              (found->second.Get().vt == VT_DISPATCH || found->second.Get().vt == VT_UNKNOWN);
        return isObject ? com::Ref<I>(static_cast<I*>(found->second.Get().pdispVal)) : com::Ref<I>();
    }
    /// Calls instead of the plain answer; by the label of the member.
    void On(const std::wstring& label, Handler handler) { handlers_[label] = std::move(handler); }
    /// Fails a member with an error object; by its label. An empty label fails all.
    void Fail(const std::wstring& label, HRESULT code, const std::wstring& description = L"refused");
    /// Fails a member with a code alone; a success lets it pass.
    void Refuse(const std::wstring& label, HRESULT code) { failures_[label] = Failing{code, {}}; }
    void FailNoMore() { failures_.clear(); }
    /// Asked before each call of any double is carried out; a failure is the
    /// call's answer. An empty gate lets all pass.
    static void SetGate(HRESULT (*gate)()) noexcept;
    /// Refuses an interface. One of its own is then reached by name alone.
    void HideFace(REFIID iid, HRESULT refusal = E_NOINTERFACE);
    /// Says of one interface that it sets no error object when it fails.
    void DenyErrorsOf(REFIID iid) noexcept { errorlessFace_ = iid; }
    /// By name, an object is taken by plain assignment alone.
    void TakeObjectsByPlainAssignment() noexcept { takesPlainObjects_ = true; }
    /// A member that nobody gave an answer fails with this code, without an error object.
    void RefuseOthers(HRESULT code = E_NOTIMPL) noexcept { refusal_ = code; }
    /// Calls by name go to another object.
    void SetNames(com::Ref<IDispatch> names) { names_ = std::move(names); }
    /// How often a member was called that has this label.
    std::size_t Times(std::wstring_view label) const;
    /// References beside the test's own one.
    ULONG Others() const noexcept { return references_ - 1; }
    /// Lets go of what was put or given.
    void Forget() { values_.clear(); }
    /// Changes the answers that nobody gave.
    void Reseed(long seed) noexcept { seed_ = seed; }

    /// For the slots: a call with its arguments as they lie on the stack.
    HRESULT Called(const Interface& face, unsigned slot, const ULONG_PTR* words);
    HRESULT IdOf(const wchar_t* name, DISPID* id);
    HRESULT InvokeById(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                       UINT* argumentError);

  private:
    struct Failing {
        HRESULT code;
        /// None where it leaves no error object.
        std::optional<std::wstring> description;
    };
    /// What an interface pointer of this object points to.
    struct Face {
        const void* const* table;
        Recorder* owner;
        const Interface* info;
    };
    friend struct RecorderSlots;

    /// Says that each interface sets an error object when it fails.
    class Support final : public ISupportErrorInfo {
      public:
        explicit Support(Recorder& recorder) : recorder_(recorder) {}
        virtual ~Support() = default;
        STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
            return recorder_.QueryInterface(iid, out);
        }
        STDMETHODIMP_(ULONG) AddRef() override { return recorder_.AddRef(); }
        STDMETHODIMP_(ULONG) Release() override { return recorder_.Release(); }
        STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
            return recorder_.SetsErrorsOf(iid) ? S_OK : S_FALSE;
        }

      private:
        Recorder& recorder_;
    };

    explicit Recorder(std::wstring label) : label_(std::move(label)), support_(*this) {}
    ~Recorder() = default;
    bool SetsErrorsOf(REFIID iid) const {
        const auto isFace = [&](const Face& face) { return face.info->id == iid; };
        return iid != errorlessFace_ && std::any_of(faces_.begin(), faces_.end(), isFace);
    }
    HRESULT AnswerPlainly(const Member& member, std::span<const VARIANT> inputs, void* place);
    com::Variant OwnAnswer(const Member& member) const;

    std::wstring label_;
    std::list<Face> faces_;
    std::map<std::wstring, com::Variant> values_;
    std::map<std::wstring, Handler> handlers_;
    std::map<std::wstring, Failing> failures_;
    std::map<std::wstring, HRESULT> refusals_;
    long seed_ = 0;
    Support support_;
    IID errorlessFace_ = IID_NULL;
    bool isInvoking_ = false;
    bool takesPlainObjects_ = false;
    HRESULT refusal_ = S_OK;
    com::Ref<IDispatch> names_;
    ULONG references_ = 1;
    com::LiveCount live_;
};

/// The double behind an object; null for objects that are none.
Recorder* RecorderOf(IUnknown* object);
/// Its label; "object" for any other object.
std::wstring LabelOf(IUnknown* object);
/// A value as a person reads it; a double by its label.
std::wstring Print(const VARIANT& value);

} // namespace support
