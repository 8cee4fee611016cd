#include "view/model/ProjectModules.h"

#include "view/model/ProjectText.h"

#include "check/Findings.h"
#include "check/Utf8.h"
#include "check/XmlTree.h"
#include "core/Case.h"
#include "core/Numbers.h"

#include <string_view>
#include <utility>

namespace view {

namespace {

using check::XmlTree;

std::wstring Wide(std::string_view text) {
    std::wstring wide;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = check::NextCharacter(text, at);
        if (sizeof(wchar_t) == sizeof(char32_t) || c < 0x10000) {
            wide += static_cast<wchar_t>(c);
        } else {
            wide += static_cast<wchar_t>(0xD800U + ((c - 0x10000) >> 10U));
            wide += static_cast<wchar_t>(0xDC00U + ((c - 0x10000) & 0x3FFU));
        }
    }
    return wide;
}

std::wstring TextOf(const XmlTree& tree, XmlTree::Index element) {
    std::string text;
    tree.ForEachChild(element, [&](XmlTree::Index child) {
        const XmlTree::Kind kind = tree.KindOf(child);
        if (kind == XmlTree::Kind::Text || kind == XmlTree::Kind::CData) {
            text += tree.Content(child);
        }
    });
    return Wide(text);
}

ProjectModule ReadModule(const XmlTree& tree, XmlTree::Index stream) {
    ProjectModule module;
    tree.ForEachElement(stream, [&](XmlTree::Index child) {
        const std::wstring name = Wide(tree.Name(child));
        if (tam::EqualIgnoringCase(name, L"DevKey")) {
            module.key.device = TextOf(tree, child);
        } else if (tam::EqualIgnoringCase(name, L"TamObjID")) {
            module.key.number = ObjectNumberOf(TextOf(tree, child));
        } else if (tam::EqualIgnoringCase(name, L"Name")) {
            module.name = TextOf(tree, child);
        }
    });
    return module;
}

} // namespace

std::vector<ProjectModule> ModulesOf(const std::string& text) {
    std::vector<ProjectModule> modules;
    check::Findings findings;
    const XmlTree tree(text, findings);
    if (tree.Root() == XmlTree::kNone || tree.Name(tree.Root()) != "Project") {
        return modules;
    }
    tree.ForEachElement(tree.Root(), [&](XmlTree::Index element) {
        if (tree.Name(element) == "Tam") {
            ProjectModule module = ReadModule(tree, element);
            module.begin = tree.OffsetOf(element);
            module.end = EndOfElement(text, module.begin);
            modules.push_back(std::move(module));
        }
    });
    return modules;
}

int ObjectNumberOf(const std::wstring& text) {
    const double number = tam::RoundToEven(tam::Val(text));
    return number >= -32768 && number <= 32767 ? static_cast<int>(number) : 0;
}

} // namespace view
