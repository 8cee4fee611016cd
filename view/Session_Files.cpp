#include "view/Session.h"

#include "view/SessionDocuments.h"

#include "bench/Commands.h"
#include "bench/DeviceProject.h"
#include "bench/DeviceSheet.h"
#include "bench/Model.h"
#include "bench/SheetFindings.h"
#include "bench/Text.h"
#include "bench/WholeFile.h"

#include "page/Page.h"

#include <algorithm>

namespace view {

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// A project that was there, without what is to be written into it again.
xml::Document ReadOldProject(const std::wstring& path) {
    xml::Document document = xml::LoadFile(path);
    com::Ref<IXMLDOMElement> root;
    com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
    if (!root || xml::NameOf(xml::Node(root)) != L"Project") {
        throw bench::BenchError(E_INVALIDARG, bench::Utf8(path) + " is no project; it was left as it is");
    }
    return document;
}

/// The object that an element of a project belongs to.
struct Identity {
    std::wstring device;
    std::wstring object;
    bool operator==(const Identity&) const = default;
};

Identity IdentityOf(const xml::Node& element) {
    Identity identity;
    xml::ForEachElement(element, [&](const xml::Node& child) {
        const std::wstring name = xml::NameOf(child);
        if (bench::SameKey(name, L"DevKey")) {
            identity.device = xml::TextOf(child);
        } else if (bench::SameKey(name, L"TamObjID")) {
            identity.object = xml::TextOf(child);
        }
    });
    return identity;
}

void RemoveSame(const xml::Node& root, const Identity& identity, const std::wstring& definition) {
    std::vector<xml::Node> old;
    xml::ForEachElement(root, [&](const xml::Node& child) {
        const std::wstring name = xml::NameOf(child);
        if ((name == definition || name == L"Tam") && IdentityOf(child) == identity) {
            old.push_back(child);
        }
    });
    for (const xml::Node& node : old) {
        com::Call(root, &IXMLDOMNode::removeChild, node.Get(), nullptr);
    }
}

std::string WithoutDeclaration(std::string text) {
    if (text.starts_with("<?xml")) {
        text.erase(0, text.find("?>") + 2);
    }
    text.erase(0, std::min(text.find_first_not_of("\r\n"), text.size()));
    return text;
}

} // namespace

std::string Session::StreamText(const std::vector<bench::PointValue>& changes) const {
    return bench::WithValues(host_->StreamText(), changes);
}

void Session::SaveProject(const std::wstring& path, const std::vector<bench::PointValue>& changes) {
    const std::string stream = StreamText(changes);
    xml::Document document;
    xml::Node root;
    if (device_) {
        root = bench::SaveProject(*device_);
    } else {
        com::Call(host_->Tam(), &ITamObject::put_DeviceKey, com::Bstr(host_->DeviceKey()).Get());
        if (bench::IsFile(path)) {
            document = ReadOldProject(path);
            com::Ref<IXMLDOMElement> element;
            com::Call(document, &IXMLDOMDocument::get_documentElement, element.Put());
            root = xml::Node(element);
            const Identity identity{host_->DeviceKey(), std::to_wstring(bench::NumberOf(
                                                            host_->Tam(), &ITamObject::get_TamObjectID))};
            RemoveSame(root, identity, options_.definition);
        } else {
            document = xml::New();
            root = xml::Append(document, xml::Node(document), L"Project");
        }
        host_->Step("XMLSave",
                    [&] { com::Call(host_->App(), &IAppObject::XMLSave, root.Get(), document.Get()); });
    }
    // The component saves no values of attributes: they are in the stream.
    std::string project = xml::Print(root);
    const std::size_t end = project.rfind("</");
    if (end == std::string::npos) {
        throw bench::BenchError(E_UNEXPECTED, "the component wrote nothing into the project");
    }
    project.insert(end, WithoutDeclaration(stream));
    bench::WriteWholeFile(path, kDeclaration + project);
}

void Session::ExportImage(const std::wstring& path) {
    bench::Options options = options_;
    options.output = path;
    bench::Report report("export", bench::Screen{});
    bench::ExportLoaded(*host_, options, report);
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
    page.origin = "Made by tamview of " + bench::Utf8(file_.substr(file_.find_last_of(L"\\/") + 1)) + ".";
    bench::WriteWholeFile(path, asSvg ? page::Svg(page) : page::Html(page));
}

} // namespace view
