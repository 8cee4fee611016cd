#include "bench/Commands.h"
#include "bench/DeviceSheet.h"
#include "bench/SheetFindings.h"
#include "bench/Text.h"
#include "bench/WholeFile.h"

#include "page/Page.h"

#include <algorithm>
#include <string>

namespace bench {

namespace {

Json CountsOf(const page::Page& page) {
    const auto count = [&page](page::Severity severity) {
        return std::count_if(
            page.findings.begin(), page.findings.end(),
            [severity](const page::Finding& finding) { return finding.severity == severity; });
    };
    return {{"errors", count(page::Severity::Error)},
            {"warnings", count(page::Severity::Warning)},
            {"notes", count(page::Severity::Note)}};
}

} // namespace

void Sheet(Host& host, const Options& options, Report& report) {
    LoadAndTell(host, report);
    SetValues(host, options, report);
    page::Page page;
    host.Step("reading the device sheet", [&] {
        page = ReadDeviceSheet(host, options);
        page.findings = FindingsOf(host);
        page.isChecked = true;
    });
    const std::string stream = report.data["streamFile"];
    page.origin = "Made by tambench of " + stream.substr(stream.find_last_of("\\/") + 1) + ".";
    const std::string document = options.svg ? page::Svg(page) : page::Html(page);
    WriteWholeFile(options.output, document);
    report.data["file"] = Utf8(options.output);
    report.data["bytes"] = document.size();
    report.data["findings"] = CountsOf(page);
    report.Line("Written to " + Utf8(options.output) + ", " + Count(document.size(), "byte") + ".");
}

} // namespace bench
