#pragma once

#include "com/Dom.h"
#include "internal/ForwardAppObject.h"
#include "internal/InterceptorLink.h"
#include "internal/TamInternalAttribute.h"
#include "internal/TamInternalInput.h"
#include "internal/TamInternalOutput.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>

namespace tam {

/// The application object of one channel of a module. It wraps the host's
/// generic object, which does nearly all the work, and keeps it in step with
/// the module.
class TamInternalAppObject final
    : public com::Object<TamInternalAppObject, ForwardAppObject<TamInternalAppObject>,
                         com::Face<TamInternalAppObject, ITamInternalAppObject>,
                         com::Face<TamInternalAppObject, IAttributeInterceptor>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamInternalAppObject); }
    static const IID& MembersId() noexcept { return __uuidof(::TamInternalAppObjectMembers); }

    /// Throws when the host's generic object or library service cannot be created.
    TamInternalAppObject();
    ~TamInternalAppObject() override;

    // The component's own side.
    void SetUp(std::wstring internalObjectKey, com::Ref<IDispatch> device);
    template <class I>
    com::Ref<I> Inner() const {
        return inner_;
    }

    // IAppObject: what is not handed to the inner object
    STDMETHODIMP get_CDBDimension(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_DDBDimension(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_SDBDimension(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP Create() override;
    STDMETHODIMP get_Stream(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_Inputs(IInputs** value) override { return Answer(value, inputs_); }
    STDMETHODIMP get_Outputs(IOutputs** value) override { return Answer(value, outputs_); }
    STDMETHODIMP get_Attributes(IAttributes** value) override { return Answer(value, attributes_); }
    STDMETHODIMP XMLSave(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP get_ExportIndex(short* value) override;
    STDMETHODIMP get_NumObjects(short* value) override { return Answer(value, short{0}); }
    STDMETHODIMP get_IsHidden(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_IsVirtual(VARIANT_BOOL* value) override { return Answer(value, true); }

    // ITamInternalAppObject
    STDMETHODIMP get_TamDeviceKey(BSTR* value) override;
    STDMETHODIMP get_TamInternalObjectKey(BSTR* value) override { return Answer(value, internalObjectKey_); }
    STDMETHODIMP get_TamObjectContainer(IDispatch** value) override;
    STDMETHODIMP get_TempTamDeviceKey(BSTR* value) override { return Answer(value, temporaryDeviceKey_); }
    STDMETHODIMP put_TempTamDeviceKey(BSTR value) override { return Store(temporaryDeviceKey_, value); }
    STDMETHODIMP get_TempTamInternalObjectKey(BSTR* value) override {
        return Answer(value, temporaryInternalObjectKey_);
    }
    STDMETHODIMP put_TempTamInternalObjectKey(BSTR value) override {
        return Store(temporaryInternalObjectKey_, value);
    }
    STDMETHODIMP get_TamDevice(IDispatch** value) override { return Answer(value, device_); }
    STDMETHODIMP get_Status(long* value) override { return Answer(value, status_); }
    STDMETHODIMP put_Status(long value) override;

    // IAttributeInterceptor
    STDMETHODIMP InterceptGetDataFromDevice(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptAttributeValueChanged(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptTypeChanged(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptIsUnitsDependent(IAttribute* attribute, VARIANT_BOOL* isUnitsDependent,
                                           VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptIsDifferential(IAttribute* attribute, VARIANT_BOOL* isDifferential,
                                         VARIANT_BOOL* value) override;

  private:
    com::Ref<ITamInternalAppObject> AsChannel() noexcept { return This<ITamInternalAppObject>(); }
    std::wstring DeviceKey() const;
    com::Ref<IDispatch> Container();

    // Creation
    void WrapPoints();
    void ApplyVisibility();
    dom::Document DefinitionDocument() const;
    dom::Node FindAttributeDefinition(IAttribute& attribute) const;

    // Interception
    void FillFromDevice(IAttribute& attribute);
    com::Ref<IAttribute> MirrorOf(IAttribute& attribute);
    void AnswerFlag(IAttribute* attribute, const wchar_t* name, VARIANT_BOOL* answer) const;

    com::Ref<IAppObject> inner_;
    com::Ref<IDispatch> device_;
    std::wstring internalObjectKey_;
    com::Owned<TamInternalInputs> inputs_;
    com::Owned<TamInternalOutputs> outputs_;
    com::Owned<TamInternalAttributes> attributes_;
    com::Ref<ILibraryService> library_;
    std::wstring temporaryDeviceKey_;
    std::wstring temporaryInternalObjectKey_;
    long status_ = 0;
    com::Ref<InterceptorLink> interceptor_;
};

} // namespace tam
