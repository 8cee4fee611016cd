#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"
#include "tests/support/ByNameDouble.h"

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace dialogs {

/// An object of a host that is reached by name alone.
class NamedObject final : public support::ByNameDouble {
  public:
    using Get = std::function<com::Variant(std::span<const VARIANT> arguments)>;
    using Put = std::function<void(const VARIANT& value)>;

    static com::Ref<NamedObject> Make() { return com::Ref<NamedObject>::Own(new NamedObject); }

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

    /// A collection's _NewEnum is its enumerator.
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params, VARIANT* result,
                        EXCEPINFO* exception, UINT* argument) override;

    /// Objects that exist.
    static inline int live = 0;

  private:
    NamedObject() { ++live; }
    ~NamedObject() override { --live; }
    HRESULT Call(std::size_t member, WORD flags, DISPPARAMS& params, VARIANT* result,
                 EXCEPINFO* exception) override;

    struct Member {
        Get get;
        Put put;
    };
    Member& Find(const std::wstring& name);

    /// As the names.
    std::vector<Member> members_;
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
