#include "view/model/ProjectModules.h"

#include "view/model/ProjectText.h"

#include "check/Findings.h"
#include "check/Utf8.h"
#include "check/XmlTree.h"
#include "core/Case.h"
#include "core/Numbers.h"

#include <utility>

namespace view {

namespace {

using check::XmlTree;

ProjectModule ReadModule(const XmlTree& tree, XmlTree::Index stream) {
    ProjectModule module;
    tree.ForEachElement(stream, [&](XmlTree::Index child) {
        const std::wstring name = check::Wide(tree.Name(child));
        if (tam::EqualIgnoringCase(name, L"DevKey")) {
            module.key.device = check::Wide(tree.OwnText(child));
        } else if (tam::EqualIgnoringCase(name, L"TamObjID")) {
            module.key.number = ObjectNumberOf(check::Wide(tree.OwnText(child)));
        } else if (tam::EqualIgnoringCase(name, L"Name")) {
            module.name = check::Wide(tree.OwnText(child));
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
