#include "bench/Commands.h"
#include "bench/Model.h"
#include "bench/Text.h"
#include "bench/WholeFile.h"

#include <ocidl.h>
#include <olectl.h>

#include <cmath>
#include <cstddef>

namespace bench {

namespace {

/// Picture sizes are in hundredths of a millimetre.
long Pixels(long himetric, int axis) {
    constexpr double kHimetricPerInch = 2540;
    const HDC screen = GetDC(nullptr);
    const int perInch = GetDeviceCaps(screen, axis);
    ReleaseDC(nullptr, screen);
    return std::lround(static_cast<double>(himetric) * perInch / kHimetricPerInch);
}

std::string KindOf(short type) {
    switch (type) {
    case PICTYPE_ICON:
        return "icon";
    case PICTYPE_BITMAP:
        return "bitmap";
    case PICTYPE_METAFILE:
    case PICTYPE_ENHMETAFILE:
        return "metafile";
    default:
        return "empty";
    }
}

std::string BytesOf(IPicture& picture) {
    com::Ref<IStream> stream;
    com::Check(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()));
    LONG size = 0;
    com::Check(picture.SaveAsFile(stream.Get(), FALSE, &size));
    LARGE_INTEGER start{};
    com::Check(stream->Seek(start, STREAM_SEEK_SET, nullptr));
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ULONG read = 0;
    com::Check(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
    bytes.resize(read);
    return bytes;
}

/// Throws BenchError when there is none.
com::Ref<IPicture> PictureOf(Host& host) {
    com::Ref<IDispatch> object;
    host.Step("Icon", [&] { com::Call(host.App(), &IAppObject::get_Icon, object.Put()); });
    auto picture = object.As<IPicture>();
    if (!picture) {
        throw BenchError(E_FAIL, "the component answered no picture");
    }
    return picture;
}

} // namespace

std::string IconBytes(Host& host) {
    const com::Ref<IPicture> picture = PictureOf(host);
    return NumberOf(*picture.Get(), &IPicture::get_Type) == PICTYPE_ICON ? BytesOf(*picture.Get()) : "";
}

void Icon(Host& host, const Options& options, Answer& answer) {
    const com::Ref<IPicture> picture = PictureOf(host);
    host.Step("reading the picture", [&] {
        const long width = Pixels(NumberOf(*picture.Get(), &IPicture::get_Width), LOGPIXELSX);
        const long height = Pixels(NumberOf(*picture.Get(), &IPicture::get_Height), LOGPIXELSY);
        const std::string kind = KindOf(NumberOf(*picture.Get(), &IPicture::get_Type));
        answer.data["picture"] = {{"kind", kind}, {"width", width}, {"height", height}};
        answer.Line("The module's picture is an " + kind + " of " + std::to_string(width) + " by " +
                    std::to_string(height) + " pixels.");
        if (!options.output.empty()) {
            const std::string bytes = BytesOf(*picture.Get());
            WriteWholeFile(options.output, bytes);
            answer.data["file"] = Utf8(options.output);
            answer.data["bytes"] = bytes.size();
            answer.Line("Written to " + Utf8(options.output) + ", " + Count(bytes.size(), "byte") + ".");
        }
    });
}

void Datasheet(Host& host, const Options& options, Answer& answer) {
    bool available = false;
    host.Step("DatasheetAvailable",
              [&] { available = FlagOf(host.App(), &IAppObject::get_DatasheetAvailable); });
    answer.data["available"] = available;
    answer.data["opened"] = options.open;
    answer.Line(available ? "The module has a data sheet." : "The module has no data sheet.");
    if (options.open) {
        host.Step("ViewDatasheet",
                  [&] { com::Call(host.App(), &IAppObject::ViewDatasheet, com::Variant(0L).Get()); });
        answer.Line("The component was asked to open it.");
    }
}

} // namespace bench
