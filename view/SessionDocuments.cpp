#include "view/SessionDocuments.h"

#include "view/resource.h"
#include "view/Window.h"

#include "bench/Text.h"
#include "bench/TextFile.h"
#include "check/XmlTree.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace view {

namespace {

std::string Capitals(std::string_view name) {
    std::string capitals(name);
    std::transform(capitals.begin(), capitals.end(), capitals.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return capitals;
}

bool IsLetter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '.' || c == '-' || static_cast<unsigned char>(c) >= 0x80;
}

} // namespace

FileText ReadFileText(const std::string& bytes, const std::wstring& file) {
    check::Findings findings;
    const check::XmlTree tree(check::Decode(bytes, findings), findings);
    const auto root = tree.Root();
    const std::string name = root == check::XmlTree::kNone ? "" : std::string(tree.Name(root));
    if (name == "Device") {
        return {Session::Kind::Device, bytes};
    }
    if (name != "Project") {
        return {Session::Kind::Stream, bytes};
    }
    bench::TextOfDocument(bytes, file); // throws: a save would lose what is no character here
    FileText text{Session::Kind::Project, std::string(tree.Text())};
    text.modules = ModulesOf(text.source);
    if (text.modules.empty()) {
        throw bench::BenchError(E_INVALIDARG, bench::Utf8(Text(IDS_NO_STREAM, file)));
    }
    return text;
}

Session::Documents::Documents(const std::string& stream, const std::wstring& definition) : places_(stream) {
    check::Findings findings;
    for (std::size_t i = 0; i < places_.Places().size(); ++i) {
        names_.emplace(bench::Utf8(places_.Places()[i].point.name), i);
    }
    const check::XmlTree tree(stream, findings);
    std::size_t next = 0;
    // Elements of points come in the order of their places.
    const auto readPoint = [&](check::XmlTree::Index element) {
        const std::size_t offset = tree.OffsetOf(element);
        while (next < places_.Places().size() && places_.Places()[next].begin < offset) {
            ++next;
        }
        if (next >= places_.Places().size() || places_.Places()[next].begin != offset) {
            return;
        }
        Words words;
        tree.ForEachElement(element, [&](check::XmlTree::Index child) {
            const std::string keyword = Capitals(tree.Name(child));
            if (keyword == "SNVTTYPE") {
                words.type = bench::Wide(tree.OwnText(child));
            } else if (keyword == "LOGICALADDRESS") {
                words.address = bench::Wide(tree.OwnText(child));
            }
        });
        words_.emplace(places_.Places()[next].point, std::move(words));
    };
    if (tree.Root() != check::XmlTree::kNone) {
        tree.ForEachElement(tree.Root(),
                            [&](check::XmlTree::Index section) { tree.ForEachElement(section, readPoint); });
    }
    const xml::Document document = xml::LoadFile(bench::ProgramFolder() + definition + L".xml");
    if (const xml::Node defaults = xml::Select(xml::Node(document), L"//Tam/Attributes")) {
        xml::ForEachElement(defaults, [&](const xml::Node& attribute) {
            defaults_.emplace(xml::NameOf(attribute), xml::TextAt(attribute, L"DefaultValue"));
        });
    }
}

const Session::Documents::Words& Session::Documents::Of(const PointId& id) const {
    static const Words kNone;
    const auto found = words_.find(id);
    return found != words_.end() ? found->second : kNone;
}

std::wstring Session::Documents::DefaultOf(const std::wstring& attribute) const {
    const auto found = defaults_.find(attribute);
    return found != defaults_.end() ? found->second : std::wstring();
}

const SourcePoints::Place* Session::Documents::PlaceOfType(const std::wstring& type,
                                                           std::size_t number) const {
    // Types of inputs are not looked up, and an attribute looks for its type twice.
    for (const view::Kind kind : {view::Kind::Output, view::Kind::Attribute}) {
        const std::size_t times = kind == view::Kind::Attribute ? 2 : 1;
        for (const SourcePoints::Place& place : places_.Places()) {
            if (place.point.kind != kind || Of(place.point).type != type) {
                continue;
            }
            if (number < times) {
                return &place;
            }
            number -= times;
        }
    }
    return nullptr;
}

const SourcePoints::Place* Session::Documents::PlaceNamedIn(const std::string& text) const {
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && IsLetter(text[end])) {
            ++end;
        }
        // A name may end a sentence.
        for (std::size_t size = end - at; size > 0 && size + 2 > end - at; --size) {
            const auto found = names_.find(text.substr(at, size));
            if (found != names_.end()) {
                return &places_.Places()[found->second];
            }
        }
        at = end + 1;
    }
    return nullptr;
}

} // namespace view
