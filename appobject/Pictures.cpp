#include "appobject/Pictures.h"

#include "com/Boundary.h"
#include "com/Dll.h"

#include <olectl.h>
#include <shlwapi.h>

namespace tam {

namespace {

/// An empty or a very short file loads as a picture that shows nothing.
bool IsEmpty(const com::Ref<IDispatch>& object) {
    const auto picture = object.As<IPicture>();
    SHORT type = PICTYPE_NONE;
    return !picture || FAILED(picture->get_Type(&type)) || type <= PICTYPE_NONE;
}

} // namespace

com::Ref<IDispatch> PictureFromFile(const std::wstring& path) {
    com::Ref<IStream> stream;
    com::Check(SHCreateStreamOnFileW(path.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, stream.Put()));
    com::Ref<IDispatch> picture;
    com::Check(OleLoadPicture(stream.Get(), 0, FALSE, IID_IPictureDisp, picture.PutVoid()));
    if (IsEmpty(picture)) {
        com::Check(CTL_E_INVALIDPICTURE);
    }
    return picture;
}

com::Ref<IDispatch> PictureFromIcon(const wchar_t* resource) {
    const HICON icon = LoadIconW(com::ThisDll().Instance(), resource);
    if (icon == nullptr) {
        com::Check(HRESULT_FROM_WIN32(GetLastError()));
    }
    PICTDESC description{};
    description.cbSizeofstruct = sizeof(description);
    description.picType = PICTYPE_ICON;
    description.icon.hicon = icon;
    com::Ref<IDispatch> picture;
    // An icon from a resource is shared: the picture must not destroy it.
    com::Check(OleCreatePictureIndirect(&description, IID_IPictureDisp, FALSE, picture.PutVoid()));
    return picture;
}

} // namespace tam
