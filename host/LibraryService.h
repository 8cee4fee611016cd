#pragma once

#include "com/Object.h"
#include "host/Library.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

namespace orv {

/// The object library as generic objects and drivers reach it. The service is its own
/// library: both say nothing but where definitions lie, which is one setting
/// for the whole host.
class LibraryService final
    : public com::DualObject<LibraryService, ILibraryService, ILibrary, ILibraryFolder> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::LibraryService); }

    // ILibraryService
    HRESULT STDMETHODCALLTYPE get_Library(ILibrary** value) override {
        return Get(value, [&] { return This<ILibrary>(); });
    }

    // ILibrary
    HRESULT STDMETHODCALLTYPE DefinitionDocument(BSTR identifier, IDispatch** value) override {
        return Get(value, [&] { return com::Ref<IDispatch>(LoadDefinition(com::View(identifier))); });
    }

    // ILibraryFolder
    HRESULT STDMETHODCALLTYPE get_Folder(BSTR* value) override { return Get(value, LibraryFolder); }
    HRESULT STDMETHODCALLTYPE put_Folder(BSTR value) override {
        return Do([&] { SetLibraryFolder(com::View(value)); });
    }
};

} // namespace orv
