#include "bench/Compiler.h"

#include "bench/Model.h"
#include "bench/Resources.h"
#include "bench/Text.h"
#include "com/Creation.h"
#include "com/LateBound.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace bench {

namespace {

constexpr const wchar_t* kCompilerProgId = L"ORV.QB.Interop.Compilers.CompilersInterop";
constexpr const wchar_t* kNoCompiler = L"Compiler.dll, necessary to exported Tam object hasn't been found";

/// A place in the export document, from 1 on.
struct Place {
    unsigned line = 0;
    unsigned column = 0;
};

/// The place that the compiler's reasons begin with; not every one has one.
std::optional<Place> PlaceIn(const std::string& reason) {
    std::istringstream text(reason);
    Place place;
    std::string line;
    std::string column;
    char comma = 0;
    char colon = 0;
    text >> line >> place.line >> comma >> column >> place.column >> colon;
    const bool isPlace = text && line == "line" && comma == ',' && column == "column" && colon == ':';
    return isPlace && place.line > 0 && place.column > 0 ? std::optional(place) : std::nullopt;
}

std::wstring DatabasePath() {
    com::Ref<IDatabaseLocation> location;
    com::Check(CoCreateInstance(__uuidof(DatabaseLocation), nullptr,
                                CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, __uuidof(IDatabaseLocation),
                                location.PutVoid()));
    com::CheckSet(location.Get());
    return WideOf(*location.Get(), &IDatabaseLocation::get_Path);
}

com::Ref<IDispatch> CreateCompiler() {
    const LentClasses lent(kCompilerManifest);
    return com::CreateByProgId(kCompilerProgId);
}

/// Called as the component calls it. Throws what the compiler refuses.
void Compile(const std::wstring& document) {
    const auto compiler = CreateCompiler();
    const com::Variant path{std::wstring_view(DatabasePath())};
    std::array<VARIANT, 1> folder{path.Get()};
    com::CallMember(*compiler.Get(), L"SetDBPath", folder);
    com::Bstr text(document);
    com::Bstr cdb(L"");
    com::Bstr ddb(L"");
    std::array<VARIANT, 3> arguments{com::ByReference(text), com::ByReference(cdb), com::ByReference(ddb)};
    com::CallMember(*compiler.Get(), L"CompileTamObject", arguments);
}

std::wstring LineOf(const std::wstring& text, unsigned number) {
    std::size_t begin = 0;
    for (; number > 1 && begin < text.size(); --number) {
        const std::size_t end = text.find_first_of(L"\r\n", begin);
        if (end == std::wstring::npos) {
            return {};
        }
        begin = end + (text.compare(end, 2, L"\r\n") == 0 ? 2 : 1);
    }
    return text.substr(begin, text.find_first_of(L"\r\n", begin) - begin);
}

/// What stands around a place, with a mark below it.
void TellPlace(const std::wstring& document, const Place& place, Answer& answer) {
    const std::size_t shown = answer.Width() - 10;
    const std::size_t before = shown * 4 / 9;
    std::wstring line = LineOf(document, place.line);
    std::replace_if(
        line.begin(), line.end(), [](wchar_t c) { return c < L' '; }, L' ');
    const std::size_t at = place.column - 1;
    if (at > line.size()) {
        return;
    }
    const std::size_t from = at > before ? at - before : 0;
    answer.Line("  " + Utf8(line.substr(from, shown)));
    answer.Line("  " + std::string(at - from, ' ') + "^");
}

} // namespace

std::string ReadStream(Host& host, bool withCompiler) {
    if (!withCompiler) {
        host.ExpectBox(kNoCompiler);
    }
    const LentClasses lent(withCompiler ? kCompilerManifest : kNoCompilerManifest);
    return TextOf(host.App(), &IAppObject::get_Stream);
}

void ThrowRefusal(Host& host, Answer& answer) {
    std::string text;
    host.Unseen([&] { text = ReadStream(host, false); });
    if (text.empty()) {
        throw BenchError(E_FAIL, "the component could not make its export document");
    }
    const std::wstring document = Wide(text);
    const auto failure = com::Attempt([&] { Compile(document); });
    if (!failure) {
        throw BenchError(E_FAIL,
                         "the component answered no stream, though the compiler takes its export document");
    }
    const std::string reason = Utf8(failure->Description());
    const auto place = PlaceIn(reason);
    answer.data["refusal"] = {{"hresult", Hex(failure->code)},
                              {"reason", reason},
                              {"line", place ? Json(place->line) : Json()},
                              {"column", place ? Json(place->column) : Json()},
                              {"document", text}};
    answer.Heading("The compiler refused the export document");
    answer.Line(reason);
    if (place) {
        answer.Line("");
        TellPlace(document, *place, answer);
    }
    throw BenchError(failure->code, "the compiler refused the export document: " + reason);
}

} // namespace bench
