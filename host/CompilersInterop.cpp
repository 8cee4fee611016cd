#include "host/CompilersInterop.h"

#include "com/Conversion.h"
#include "core/RunTimeError.h"
#include "host/Folders.h"
#include "host/Image.h"
#include "host/VariantText.h"

#include <cstdint>
#include <utility>

namespace orv {

static_assert(kNotAnExportDocument == static_cast<std::int32_t>(errNotAnExportDocument));

HRESULT CompilersInterop::SetDBPath(BSTR path) {
    return Do([&] {
        std::wstring text = com::Text(path);
        if (!IsFolder(text)) {
            throw tam::RunTimeError(static_cast<HRESULT>(errDatabaseFolder), {},
                                    L"There is no database folder \"" + text + L"\"");
        }
        databasePath_ = std::move(text);
    });
}

HRESULT CompilersInterop::CompileTamObject(VARIANT* document, VARIANT* cdbSize, VARIANT* ddbSize) {
    if (document == nullptr || cdbSize == nullptr || ddbSize == nullptr) {
        return com::Refuse(E_POINTER);
    }
    return Do([&] {
        if (databasePath_.empty()) {
            throw tam::RunTimeError(static_cast<HRESULT>(errNoDatabasePath), {},
                                    L"SetDBPath must name the database folder before an object is compiled");
        }
        VariantText stream(document);
        VariantText cdb(cdbSize);
        VariantText ddb(ddbSize);
        const ExportDocument object = ReadExportDocument(stream.Read());
        const DatabaseSizes sizes = SizesOf(object);
        com::Bstr image(HexLines(BuildImage(object)));
        com::Bstr cdbText(std::to_wstring(sizes.cdb));
        com::Bstr ddbText(std::to_wstring(sizes.ddb));
        stream.Write(std::move(image));
        cdb.Write(std::move(cdbText));
        ddb.Write(std::move(ddbText));
    });
}

} // namespace orv
