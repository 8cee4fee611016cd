#pragma once

#include "com/Object.h"
#include "host/XmlDocument.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <string>

namespace orv {

/// What a device says about its firmware: the document of its versions and
/// their object libraries, and the version that it runs. Without a document
/// until one is loaded.
class DeviceContext final : public com::DualObject<DeviceContext, IDeviceContext, IDeviceContextSetup> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::DeviceContext); }

    // IDeviceContext
    HRESULT STDMETHODCALLTYPE get_Document(IDispatch** value) override { return Answer(value, document_); }
    HRESULT STDMETHODCALLTYPE get_FirmwareVersion(BSTR* value) override { return Answer(value, version_); }

    // IDeviceContextSetup; what fails to load leaves the document as it was
    HRESULT STDMETHODCALLTYPE Load(BSTR path) override {
        return Do([&] { document_ = LoadXmlFile(com::Text(path), errDeviceDocument); });
    }
    HRESULT STDMETHODCALLTYPE LoadXml(BSTR xml) override {
        return Do([&] { document_ = LoadXmlText(com::View(xml), errDeviceDocument); });
    }
    HRESULT STDMETHODCALLTYPE put_FirmwareVersion(BSTR value) override { return Store(version_, value); }

  private:
    tam::dom::Document document_;
    std::wstring version_;
};

} // namespace orv
