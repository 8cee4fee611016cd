#include "appobject/CDBAppObject.h"

#include "com/VariantReference.h"
#include "dialogs/DataPoint.h"
#include "dialogs/frmAbout.h"
#include "dialogs/frmRename.h"
#include "dialogs/ValueEditor.h"

#include <utility>

namespace tam {

namespace {

std::wstring TextOf(const VARIANT& value) {
    com::Variant plain = com::CopyOf(value);
    if (plain.Get().vt == VT_EMPTY || plain.Get().vt == VT_NULL) {
        return {};
    }
    com::Variant text;
    com::Check(VariantChangeType(text.Put(), plain.Address(), 0, VT_BSTR));
    return com::Text(text.Get().bstrVal);
}

/// What the caller takes for a reference to another type cannot become a text.
void CheckTakesText(const VARIANT& target) {
    const VARIANT& place = target.vt == (VT_VARIANT | VT_BYREF) ? *target.pvarVal : target;
    if ((place.vt & VT_BYREF) != 0 && place.vt != (VT_BSTR | VT_BYREF)) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
}

/// Through the references that the caller passed, down to its own text.
void Replace(VARIANT& target, const std::wstring& text) {
    if (target.vt == (VT_VARIANT | VT_BYREF)) {
        Replace(*target.pvarVal, text);
        return;
    }
    if (target.vt == (VT_BSTR | VT_BYREF)) {
        com::Bstr value(text);
        std::swap(*target.pbstrVal, *value.Address());
        return;
    }
    com::Variant value(text);
    com::Check(VariantClear(&target));
    target = value.Detach();
}

} // namespace

STDMETHODIMP CDBAppObject::ShowAbout() {
    return Do([] { ShowAboutBox(); });
}

STDMETHODIMP CDBAppObject::ShowRename(VARIANT* deviceName, BSTR deviceKey, short* choice) {
    if (choice != nullptr && deviceName == nullptr) {
        *choice = 0;
        return com::Refuse(E_POINTER);
    }
    return Get(choice, [&] {
        const std::wstring name = TextOf(*deviceName);
        CheckTakesText(*deviceName);
        frmRename form(RenameState(name, com::Text(deviceKey)));
        const RenameState& state = form.ShowModal();
        if (state.RetValue() == RenameState::kConfirmed) {
            Replace(*deviceName, state.DeviceName());
        }
        return state.RetValue();
    });
}

STDMETHODIMP CDBAppObject::EditValue(IDispatch* dataPoint) {
    return Do([&] {
        const auto editor = MakeValueEditor(GeneralTypeOf(DataPoint(dataPoint).Type().GenType()));
        com::CheckSet(editor.get());
        editor->SetDataPoint(dataPoint);
        editor->ShowModal();
    });
}

} // namespace tam
