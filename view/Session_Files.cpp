#include "view/Session.h"

#include "view/model/ProjectText.h"
#include "view/resource.h"
#include "view/SessionDocuments.h"
#include "view/Window.h"

#include "bench/Commands.h"
#include "bench/DeviceProject.h"
#include "bench/DeviceSheet.h"
#include "bench/Model.h"
#include "bench/SheetFindings.h"
#include "bench/Text.h"
#include "bench/TextFile.h"
#include "bench/WholeFile.h"

#include "check/Encoding.h"
#include "check/Findings.h"
#include "page/Page.h"

#include <string_view>
#include <utility>

namespace view {

namespace {

constexpr const char* kNewProject = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Project>\n</Project>\n";

constexpr std::string_view kMark = "\xEF\xBB\xBF";

/// The text of a project that was there, in UTF-8.
std::string ReadOldProject(const std::wstring& path) {
    const xml::Document document = xml::LoadFile(path); // throws for what is no XML
    com::Ref<IXMLDOMElement> root;
    com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
    if (!root || xml::NameOf(xml::Node(root)) != L"Project") {
        throw bench::BenchError(E_INVALIDARG, bench::Utf8(Text(IDS_NO_PROJECT, path)));
    }
    const std::string bytes = bench::ReadBytes(path);
    bench::TextOfDocument(bytes, path); // throws where a character would be lost
    check::Findings ignored;
    std::string text = check::Decode(bytes, ignored);
    return bytes.starts_with(kMark) && !text.starts_with(kMark) ? std::string(kMark) + text : text;
}

} // namespace

bool Session::IsIn(const std::wstring& path) const {
    bool isThere = false;
    if (bench::IsFile(path)) {
        Try([&] { // what is no project is told by the save
            const std::string own = StreamText({});
            isThere = HasModuleOf(ReadOldProject(path), RootOf(own));
        });
    }
    return isThere;
}

std::string Session::StreamText(const std::vector<bench::PointValue>& changes) const {
    return bench::WithValues(host_->StreamText(), changes);
}

void Session::SaveProject(const std::wstring& path, const std::vector<bench::PointValue>& changes) {
    const std::string stream = StreamText(changes);
    std::string project = bench::IsFile(path) ? ReadOldProject(path) : kNewProject;
    com::Call(host_->Tam(), &ITamObject::put_DeviceKey, com::Bstr(host_->DeviceKey()).Get());
    xml::Node root;
    if (device_) {
        root = bench::SaveProject(*device_);
    } else {
        const xml::Document document = xml::New();
        root = xml::Append(document, xml::Node(document), L"Project");
        host_->Step("XMLSave",
                    [&] { com::Call(host_->App(), &IAppObject::XMLSave, root.Get(), document.Get()); });
    }
    std::vector<std::string> elements = ElementsOf(xml::Print(root));
    if (elements.empty()) {
        throw bench::BenchError(E_UNEXPECTED, bench::Utf8(Text(IDS_NOTHING_WRITTEN)));
    }
    // The component saves no values of attributes: they are in the stream.
    elements.push_back(RootOf(stream));
    bench::WriteWholeFile(path, WithElements(std::move(project), elements));
}

void Session::ExportImage(const std::wstring& path) {
    bench::Options options = options_;
    options.output = path;
    bench::Answer answer("export", bench::Screen{});
    bench::ExportLoaded(*host_, options, answer);
}

void Session::ExportInteroperability(const std::wstring& path) {
    xml::Save(bench::Interoperability(*host_), path);
}

void Session::ExportSheet(const std::wstring& path, bool asSvg) {
    page::Page page = bench::ReadDeviceSheet(*host_, options_);
    page.sheet = ReadSheet(ReadRows(view::Kind::Input), ReadRows(view::Kind::Output));
    page.sheet.module.hasIcon = !page.icon.empty();
    page.findings = bench::FindingsOf(*host_);
    page.isChecked = true;
    page.origin = bench::Utf8(Text(IDS_MADE_OF, NameOf(file_)));
    bench::WriteWholeFile(path, asSvg ? page::Svg(page) : page::Html(page));
}

} // namespace view
