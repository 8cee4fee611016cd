#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <windows.h>

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>

namespace support {

/// The component, loaded from a folder of its own as a host would load it but
/// without the registry. The folder is made for the process and is the place
/// for definition files, icons and data sheets.
class Component {
  public:
    Component();
    ~Component();
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    /// Folder of the DLL with a closing backslash.
    static const std::wstring& Folder();
    static std::wstring DllPath() { return Folder() + L"O_Tam_id.dll"; }

    HMODULE Module() const noexcept { return module_; }
    HRESULT ClassObject(REFCLSID clsid, REFIID iid, void** out) const;
    HRESULT CanUnload() const;

    /// A new object of a class, through its factory.
    template <class I>
    com::Ref<I> Create(REFCLSID clsid) const {
        com::Ref<I> object;
        createResult_ = CreateInstance(clsid, __uuidof(I), object.PutVoid());
        return object;
    }
    /// A new module object.
    com::Ref<IAppObject> NewModule() const { return Create<IAppObject>(__uuidof(::CDBAppObject)); }
    HRESULT LastCreateResult() const noexcept { return createResult_; }

  private:
    HRESULT CreateInstance(REFCLSID clsid, REFIID iid, void** out) const;

    HMODULE module_ = nullptr;
    mutable HRESULT createResult_ = S_OK;
};

/// A file that lives as long as this object. UTF-8 text; replaces what is there. Throws when
/// it cannot be written: a test of what is not read from it would ask nothing.
class TextFile {
  public:
    TextFile(std::wstring path, const std::wstring& text);
    ~TextFile() { DeleteFileW(path_.c_str()); }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    const std::wstring& Path() const noexcept { return path_; }

  private:
    std::wstring path_;
};

} // namespace support
