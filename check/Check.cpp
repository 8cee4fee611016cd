#include "check/Check.h"

#include "check/Checkers.h"
#include "check/Encoding.h"
#include "check/Utf8.h"

#include <utility>

namespace check {

namespace {

void CheckKind(Kind kind, Document& document, StreamSummary* summary) {
    switch (kind) {
    case Kind::DeviceStream:
        return CheckStream(document, summary);
    case Kind::ModuleDefinition:
        return CheckModuleDefinition(document);
    case Kind::ChannelDefinition:
        return CheckChannelDefinition(document, summary);
    case Kind::DeviceLibrary:
        return CheckLibrary(document);
    case Kind::Catalogue:
        return CheckCatalogue(document, nullptr);
    case Kind::Project:
        return CheckProject(document);
    case Kind::Interoperability:
        return CheckInteroperability(document);
    case Kind::ExportDocument:
        return CheckExport(document);
    case Kind::Unknown:
        break;
    }
    const XmlTree& tree = document.Tree();
    if (tree.Root() != XmlTree::kNone) {
        const Span span = tree.NameSpan(tree.Root());
        document.Report(RuleId::KindUnknown, span,
                        "the document element " + Tagged(tree.Piece(span)) + " is that of no known document",
                        "Tam, AppObject, Device, SNVTCatalogue, Project or O_Tam_id");
    }
}

Result CheckTree(std::string text, Findings findings, const Surroundings& surroundings,
                 StreamSummary* summary) {
    Result result;
    const XmlTree tree(std::move(text), findings);
    Document document(tree, findings, surroundings);
    result.kind = Recognise(tree);
    if (result.kind == Kind::ModuleDefinition || result.kind == Kind::ChannelDefinition) {
        CheckCommonEncoding(tree.Text(), findings);
    }
    CheckKind(result.kind, document, summary);
    result.counts = findings.CountsOfAll();
    result.findings = std::move(findings).Place(tree.Text());
    return result;
}

} // namespace

Result CheckBytes(std::string bytes, const Surroundings& surroundings, StreamSummary* summary) {
    Findings findings;
    std::string text = Decode(std::move(bytes), findings);
    return CheckTree(std::move(text), std::move(findings), surroundings, summary);
}

Result CheckText(std::string text, const Surroundings& surroundings, StreamSummary* summary) {
    Findings findings;
    CheckDeclaredEncoding(text, findings);
    return CheckTree(std::move(text), std::move(findings), surroundings, summary);
}

Catalogue ReadCatalogue(std::string bytes) {
    Catalogue types;
    Findings findings;
    const XmlTree tree(Decode(std::move(bytes), findings), findings);
    const Surroundings none;
    Document document(tree, findings, none);
    if (Recognise(tree) == Kind::Catalogue) {
        CheckCatalogue(document, &types);
    }
    return types;
}

} // namespace check
