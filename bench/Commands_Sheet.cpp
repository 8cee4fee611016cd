#include "bench/Commands.h"
#include "bench/DeviceProject.h"
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

std::string FileName(const std::string& path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

void WriteSheet(page::Page& page, const std::string& source, const Options& options, Answer& answer) {
    page.origin = "Made by tambench of " + FileName(source) + ".";
    const std::string document = options.svg ? page::Svg(page) : page::Html(page);
    WriteWholeFile(options.output, document);
    answer.data["file"] = Utf8(options.output);
    answer.data["bytes"] = document.size();
    answer.data["findings"] = CountsOf(page);
    answer.Line("Written to " + Utf8(options.output) + ", " + Count(document.size(), "byte") + ".");
}

page::Page ReadChecked(Host& host, const Options& options) {
    page::Page page = ReadDeviceSheet(host, options);
    page.findings = FindingsOf(host);
    page.isChecked = true;
    return page;
}

} // namespace

void Sheet(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    SetValues(host, options, answer);
    page::Page page;
    host.Step("reading the device sheet", [&] { page = ReadChecked(host, options); });
    WriteSheet(page, answer.data["streamFile"], options, answer);
}

void DeviceSheet(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    OpenDevice(device, options, answer);
    page::Page page;
    host.Step("reading the device sheet", [&] {
        page = ReadChecked(host, options);
        AddChannels(device, page);
    });
    Json& keys = answer.data["channels"] = Json::array();
    for (const Channel& channel : device.Channels()) {
        keys.push_back(Utf8(channel.key));
    }
    WriteSheet(page, answer.data["device"], options, answer);
}

} // namespace bench
