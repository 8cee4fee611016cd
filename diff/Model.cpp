#include "diff/Model.h"

#include "check/Encoding.h"
#include "check/Findings.h"
#include "check/XmlTree.h"
#include "diff/Readers.h"

#include <utility>

namespace diff {

namespace {

Model ModelOf(const Document& document, check::Kind kind) {
    switch (kind) {
    case check::Kind::DeviceStream:
    case check::Kind::ChannelDefinition:
        return ModelOfPoints(document, kind);
    case check::Kind::ModuleDefinition:
        return ModelOfDefinition(document);
    case check::Kind::Catalogue:
        return ModelOfCatalogue(document);
    case check::Kind::Interoperability:
    case check::Kind::ExportDocument:
        return ModelOfTables(document, kind);
    case check::Kind::DeviceLibrary:
    case check::Kind::Project:
    case check::Kind::Unknown:
        break;
    }
    return ModelOfTree(document, kind);
}

} // namespace

Reading Read(std::string bytes, const check::Catalogue& types) {
    Reading reading;
    check::Findings findings;
    const XmlTree tree(check::Decode(std::move(bytes), findings), findings);
    for (const check::Finding& finding : std::move(findings).Place(tree.Text())) {
        if (finding.Level() == check::Severity::Error) {
            reading.faults.push_back({finding.message, finding.line, finding.column});
        }
    }
    if (reading.faults.empty()) {
        reading.model = ModelOf(Document(tree, types), check::Recognise(tree));
    }
    return reading;
}

} // namespace diff
