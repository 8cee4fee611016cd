#include "points/CDBAttributes.h"

#include "common/ErrorReport.h"

namespace tam {

com::Ref<CDBAttribute> CDBAttributes::AddItem(const std::wstring& name, const dom::Node& definition,
                                              PointOwner* owner, const std::function<void()>& mayAdd) {
    auto attribute = CDBAttribute::Make(name);
    attribute->SetOwner(owner); // before the definition is read: the owner has the default value
    attribute->ReadDefinition(definition);
    mayAdd();
    items_.Add(name, attribute);
    // Without a type this fails, and the attribute stays where it is.
    attribute->CreateEditor();
    return attribute;
}

STDMETHODIMP CDBAttributes::XmlLoad(IDispatch* element) {
    const auto kept = This<_CDBAttributes>(); // a message of the host may drop the last reference
    Trap(L"O_Tam_id Class Module CDBAttributes", L"Sub XmlLoad", [&] {
        // Values are restored by the application object; this walk only checks
        // that each saved name is known.
        ForEachSaved(
            dom::NodeOf(element), [] {}, [](const com::Ref<CDBAttribute>&, const dom::Node&) {});
    });
    return S_OK;
}

} // namespace tam
