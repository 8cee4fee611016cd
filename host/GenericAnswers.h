#pragma once

#include "com/Object.h"

#include <OrvDBFaces.h>

#include <string>

namespace orv {

/// IAppObject with what a generic object only stores, and what it has no more
/// to say to. A member that is ignored succeeds and changes nothing.
template <class Derived>
class GenericAnswers : public com::Face<Derived, IAppObject> {
  public:
    STDMETHODIMP get_Path(BSTR* value) override { return Tell(value, path_); }
    STDMETHODIMP put_Path(BSTR value) override { return Store(path_, value); }
    STDMETHODIMP get_Tag(BSTR* value) override { return Tell(value, tag_); }
    STDMETHODIMP put_Tag(BSTR value) override { return Store(tag_, value); }
    STDMETHODIMP get_key(BSTR* value) override { return Tell(value, key_); }
    STDMETHODIMP put_key(BSTR value) override { return Store(key_, value); }
    STDMETHODIMP get_UniqueID(BSTR* value) override { return Tell(value, uniqueId_); }
    STDMETHODIMP put_UniqueID(BSTR value) override { return Store(uniqueId_, value); }
    STDMETHODIMP get_Stream(BSTR* value) override { return Tell(value, stream_); }
    STDMETHODIMP put_Stream(BSTR value) override { return Store(stream_, value); }
    STDMETHODIMP get_Language(long* value) override { return Tell(value, language_); }
    STDMETHODIMP put_Language(long value) override {
        language_ = value;
        return S_OK;
    }

    // The library holds definitions, no data sheets and no plug-ins.
    STDMETHODIMP get_DatasheetAvailable(VARIANT_BOOL* value) override { return Tell(value, false); }
    STDMETHODIMP get_PlugInAvailable(VARIANT_BOOL* value) override { return Tell(value, false); }
    STDMETHODIMP get_NodeType(long* value) override { return Tell(value, 6L); }
    STDMETHODIMP get_Icon(IDispatch** value) override { return Tell(value, com::Ref<IDispatch>()); }
    // All that a generic object keeps goes through its XML.
    STDMETHODIMP Save(VARIANT) override { return S_OK; }
    STDMETHODIMP Load(VARIANT) override { return S_OK; }
    STDMETHODIMP get_IntelStream(VARIANT* value) override {
        return com::Return(__uuidof(IAppObject), value, [] { return com::Variant(); });
    }
    // A generic object has no sheet to repaint: it calls nobody back.
    STDMETHODIMP CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP put_ManageShortFloat(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP get_NumObjects(short* value) override { return Tell(value, short{1}); }
    STDMETHODIMP get_IsHidden(VARIANT_BOOL* value) override { return Tell(value, false); }
    STDMETHODIMP get_IsVirtual(VARIANT_BOOL* value) override { return Tell(value, false); }

  protected:
    const std::wstring& Key() const noexcept { return key_; }

  private:
    template <class T, class V>
    static HRESULT Tell(T* out, const V& answer) noexcept {
        return com::Return(__uuidof(IAppObject), out, [&]() -> const V& { return answer; });
    }
    static HRESULT Store(std::wstring& field, BSTR value) noexcept {
        return com::Guard(__uuidof(IAppObject), [&] { field = com::View(value); });
    }

    std::wstring path_;
    std::wstring tag_;
    /// Under which the owner device's document knows the object.
    std::wstring key_;
    std::wstring uniqueId_;
    std::wstring stream_;
    long language_ = 0;
};

} // namespace orv
