#pragma once

#include "com/Object.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

namespace tam {

/// Tells whether an identifier names an object of this family and makes the
/// objects of channels. All but `IsTamObject` ask first whether the firmware
/// library of the device lists the module object at all.
class TamObjectManager final : public com::DualObject<TamObjectManager, ITamObjectManager> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamObjectManager); }
    static const IID& MembersId() noexcept { return __uuidof(::TamObjectManagerMembers); }

    STDMETHODIMP IsTamInternalObject(BSTR identifier, VARIANT_BOOL* value) override;
    STDMETHODIMP IsTamObject(BSTR identifier, VARIANT_BOOL* value) override;
    STDMETHODIMP CreateTamInternalAppObject(BSTR* internalObjectKey, IDispatch* device,
                                            IAppObject** value) override;
    STDMETHODIMP CreateTemplateTamInternalObject(IAppObject** value) override;
    STDMETHODIMP Init(IDispatch* deviceContext) override;

  private:
    enum class Library : short { NotSearched = 0, Found = 1, NotFound = 2 };

    /// Searches once for the life of the manager. Called before Init it shows
    /// a message and ends the process.
    bool IsTamLibraryAvailable();
    bool SearchLibrary() const;

    com::Ref<IDispatch> deviceContext_;
    Library library_ = Library::NotSearched;
};

} // namespace tam
