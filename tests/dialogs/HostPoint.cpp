#include "tests/dialogs/HostPoint.h"

#include "com/Boundary.h"
#include "com/Enumerator.h"
#include "core/RunTimeError.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <utility>

namespace dialogs {

namespace {

com::Variant ObjectResult(IDispatch* object) {
    return com::Variant(object);
}

com::Variant EnumeratorOf(const std::vector<HostPoint*>& points) {
    std::vector<com::Ref<IDispatch>> items;
    for (const HostPoint* point : points) {
        items.emplace_back(point->object);
    }
    com::Variant result;
    VARIANT* value = result.Put();
    value->vt = VT_UNKNOWN;
    value->punkVal = com::MakeEnumerator(std::move(items)).Detach();
    return result;
}

} // namespace

void NamedObject::Add(std::wstring name, Get get, Put put) {
    names_.push_back(std::move(name));
    members_.push_back({std::move(get), std::move(put)});
}

NamedObject::Member& NamedObject::Find(const std::wstring& name) {
    const auto found = std::find(names_.begin(), names_.end(), name);
    return members_.at(static_cast<std::size_t>(found - names_.begin()));
}

void NamedObject::Replace(const std::wstring& name, Get get) {
    Find(name).get = std::move(get);
}

void NamedObject::Break(const std::wstring& name, std::int32_t code) {
    Break(name, code, name + L" is out of order");
}

void NamedObject::Break(const std::wstring& name, std::int32_t code, const std::wstring& text) {
    Member& member = Find(name);
    const auto raise = [text, code] { throw tam::RunTimeError(code, L"Host", text); };
    member.get = [raise](auto) -> com::Variant {
        raise();
        return {};
    };
    member.put = [raise](const VARIANT&) { raise(); };
}

void NamedObject::AddText(std::wstring name, const std::wstring& text) {
    Add(std::move(name), [text](auto) { return com::Variant(text); });
}

STDMETHODIMP NamedObject::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                                 VARIANT* result, EXCEPINFO* exception, UINT* argument) {
    OLECHAR enumerator[] = L"_NewEnum";
    LPOLESTR name = enumerator;
    if (id == DISPID_NEWENUM && FAILED(GetIDsOfNames(IID_NULL, &name, 1, 0, &id))) {
        return DISP_E_MEMBERNOTFOUND;
    }
    return ByNameDouble::Invoke(id, iid, locale, flags, params, result, exception, argument);
}

HRESULT NamedObject::Call(std::size_t index, WORD flags, DISPPARAMS& params, VARIANT* result,
                          EXCEPINFO* exception) {
    Member& member = members_.at(index);
    const std::span<const VARIANT> arguments(params.rgvarg, params.cArgs);
    const auto failure = com::Attempt([&] {
        if ((flags & DISPATCH_PROPERTYPUT) != 0) {
            member.put(arguments.front());
        } else {
            com::Variant answer = member.get(arguments);
            if (result != nullptr) {
                *result = answer.Detach();
            }
        }
    });
    if (!failure || failure->description.empty() || exception == nullptr) {
        return failure ? failure->code : S_OK;
    }
    *exception = {};
    if (HRESULT_FACILITY(failure->code) == FACILITY_CONTROL) {
        exception->wCode = static_cast<WORD>(HRESULT_CODE(failure->code)); // as script engines of old do
    } else {
        exception->scode = failure->code;
    }
    exception->bstrSource = com::Bstr(failure->source).Detach();
    exception->bstrDescription = com::Bstr(failure->description).Detach();
    return DISP_E_EXCEPTION;
}

HostPoint::HostPoint(std::wstring name, std::wstring initial, const std::wstring& genType)
    : value(std::move(initial)), type(NamedObject::Make()), object(NamedObject::Make()) {
    type->AddText(L"GenType", genType);
    object->AddText(L"Name", name);
    object->Add(
        L"Value", [this](auto) { return com::Variant(value); },
        [this](const VARIANT& written) {
            if (refusesWrites) {
                throw tam::RunTimeError(NamedObject::kRaised, L"Host", kRefusal);
            }
            value = com::Text(written.bstrVal);
            writes.push_back(value);
        });
    object->Add(L"SNVTType", [held = type](auto) { return ObjectResult(held.Get()); });
}

void HostPoint::SetFields(std::vector<HostPoint*> points, Walk walk) {
    const auto fields = NamedObject::Make();
    const auto count = static_cast<long>(points.size());
    const auto item = [points](std::span<const VARIANT> arguments) {
        const VARIANT& key = arguments.front();
        if (key.vt == VT_I4) {
            return ObjectResult(points.at(static_cast<std::size_t>(key.lVal - 1))->object.Get());
        }
        for (const HostPoint* point : points) {
            VARIANT none{};
            DISPPARAMS params{&none, nullptr, 0, 0};
            com::Variant name;
            point->object->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, &params, name.Put(), nullptr,
                                  nullptr);
            if (com::View(name.Get().bstrVal) == com::View(key.bstrVal)) {
                return ObjectResult(point->object.Get());
            }
        }
        throw com::CallError(DISP_E_BADINDEX);
    };
    if (walk != Walk::ByEnumeratorAlone) {
        fields->Add(L"Item", item);
    }
    if (walk != Walk::ByCount) {
        fields->Add(L"_NewEnum", [points](auto) { return EnumeratorOf(points); });
    } else {
        fields->Add(L"Count", [count](auto) { return com::Variant(count); });
    }
    object->Add(L"Fields", [fields](auto) { return ObjectResult(fields.Get()); });
}

} // namespace dialogs
