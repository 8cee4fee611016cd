#include "bench/SheetFindings.h"

#include "bench/Text.h"
#include "check/Check.h"
#include "check/Files.h"

#include <string>
#include <utility>

namespace bench {

namespace {

page::Severity SeverityOf(check::Severity severity) {
    switch (severity) {
    case check::Severity::Error:
        return page::Severity::Error;
    case check::Severity::Warning:
        return page::Severity::Warning;
    case check::Severity::Note:
        break;
    }
    return page::Severity::Note;
}

} // namespace

std::vector<page::Finding> FindingsOf(const Host& host) {
    std::string problem;
    const check::Catalogue types = check::ReadCatalogue(check::ReadFile(host.CatalogueFile(), problem));
    const check::Result result = check::CheckText(Utf8(host.StreamText()), check::Surroundings(&types));
    std::vector<page::Finding> findings;
    for (const check::Finding& finding : result.findings) {
        std::string message = finding.message;
        if (!finding.expected.empty()) {
            message += "; expected: " + finding.expected;
        }
        findings.push_back({SeverityOf(finding.Level()), std::string(check::RuleOf(finding.rule).name),
                            finding.line, finding.column, std::move(message),
                            finding.suggestion.empty() ? "" : "Did you mean " + finding.suggestion + "?"});
    }
    return findings;
}

} // namespace bench
