#pragma once

#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <string>

namespace tam {

/// A picture object from a picture file. Throws CallError.
com::Ref<IDispatch> PictureFromFile(const std::wstring& path);
/// A picture object from an icon resource of the component. Throws CallError.
com::Ref<IDispatch> PictureFromIcon(const wchar_t* resource);

} // namespace tam
