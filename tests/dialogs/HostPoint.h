#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace dialogs {

/// An object of a host that is reached by name alone.
class NamedObject final : public IDispatch {
  public:
    using Get = std::function<com::Variant(std::span<const VARIANT> arguments)>;
    using Put = std::function<void(const VARIANT& value)>;

    static com::Ref<NamedObject> Make() { return com::Ref<NamedObject>::Own(new NamedObject); }
    virtual ~NamedObject() { --live; }

    /// The number of the errors that broken members raise unless told otherwise.
    static constexpr std::int32_t kRaised = static_cast<std::int32_t>(0x80041234);
    void Add(std::wstring name, Get get, Put put = {});
    /// The member of this name answers otherwise from now on.
    void Replace(const std::wstring& name, Get get);
    /// A member of this name that fails from now on, with an error text as
    /// a script's object raises it.
    void Break(const std::wstring& name, std::int32_t code = kRaised);
    /// The same with a text of its own.
    void Break(const std::wstring& name, std::int32_t code, const std::wstring& text);
    /// A member that always has this text.
    void AddText(std::wstring name, const std::wstring& text);

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                        UINT*) override;

    /// Objects that exist.
    static inline int live = 0;

  private:
    NamedObject() { ++live; }

    struct Member {
        std::wstring name;
        Get get;
        Put put;
    };
    Member& Find(const std::wstring& name);

    std::vector<Member> members_;
    ULONG references_ = 1;
};

/// A data point of a host: what it is, and what was written to it.
struct HostPoint {
    HostPoint(std::wstring name, std::wstring value, const std::wstring& genType);
    HostPoint(const HostPoint&) = delete;
    HostPoint& operator=(const HostPoint&) = delete;

    /// What the collection of the fields offers.
    enum class Walk { ByEnumerator, ByCount, ByEnumeratorAlone };
    /// Makes it a structure of these fields, found by name or position unless
    /// the collection can only be walked.
    void SetFields(std::vector<HostPoint*> points, Walk walk = Walk::ByEnumerator);

    std::wstring value;
    std::vector<std::wstring> writes;
    bool refusesWrites = false;
    /// What a refused write says.
    static constexpr const wchar_t* kRefusal = L"The value is locked";
    com::Ref<NamedObject> type;
    com::Ref<NamedObject> object;
};

} // namespace dialogs
