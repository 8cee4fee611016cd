#include "host/GenericInput.h"

#include "core/RunTimeError.h"

namespace orv {

GenericInput::GenericInput(const Definition& definition, const OwnerRef& owner, long index)
    : point_(definition, owner)
    , index_(index)
    , type_(TypeFor(owner, definition.Text(L"SNVTTYPE")))
    , value_(definition.Text(L"VALUE")) {
    compatible_->AddList(definition.Text(L"SNVTCOMPATIBILITYLIST"));
}

HRESULT GenericInput::changeType(VARIANT newType) {
    return Do([&] {
        const auto self = This<IInput>(); // the catalogue is the host's
        type_ = point_.ChangedType(newType);
    });
}

HRESULT GenericInput::get_ConnectedType(ISNVType** value) {
    return Answer(value, connectedType_);
}

HRESULT GenericInput::get_Mandatory(VARIANT_BOOL* value) {
    return Get(value, [&] { return point_.definition.Has(L"MANDATORY"); });
}

HRESULT GenericInput::get_Extended(VARIANT_BOOL* value) {
    return Get(value, [&] { return point_.definition.Flag(L"EXTENDED"); });
}

HRESULT GenericInput::get_CDBPosition(long* value) {
    return Get(value, [&] { return point_.definition.Number(L"CDBPOSITION"); });
}

HRESULT GenericInput::get_Parent(IAppObject** value) {
    return Get(value, [&] { return ParentOf(point_.link); });
}

HRESULT GenericInput::get_IsMacroConnected(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsMacroKey(point_.link, point_.GlobalKey()); });
}

HRESULT GenericInput::put_IsConnected(VARIANT_BOOL value) {
    return Do([&] {
        connected_ = value != VARIANT_FALSE;
        if (!connected_) {
            connectedType_.Reset();
        }
    });
}

HRESULT GenericInput::putref_ConnectedType(IDispatch* value) {
    return Do([&] {
        com::Ref<ISNVType> type = com::Query<ISNVType>(value);
        if (value != nullptr && !type) {
            throw tam::RunTimeError(tam::RunTime::TypeMismatch);
        }
        connectedType_ = std::move(type);
    });
}

HRESULT GenericInput::get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] {
        // An input that names no types takes its own alone.
        return compatible_->IsEmpty() ? com::View(identifier) == TypeId(type_)
                                      : compatible_->Has(com::View(identifier));
    });
}

} // namespace orv
