#include "bench/Commands.h"
#include "bench/DeviceSheet.h"
#include "bench/Text.h"
#include "bench/WholeFile.h"

#include "page/Page.h"

#include <string>

namespace bench {

void Sheet(Host& host, const Options& options, Report& report) {
    LoadAndTell(host, report);
    page::Page page;
    host.Step("reading the device sheet", [&] { page = ReadDeviceSheet(host, options); });
    const std::string stream = report.data["streamFile"];
    page.origin = "Made by tambench of " + stream.substr(stream.find_last_of("\\/") + 1) + ".";
    const std::string document = options.svg ? page::Svg(page) : page::Html(page);
    WriteWholeFile(options.output, document);
    report.data["file"] = Utf8(options.output);
    report.data["bytes"] = document.size();
    report.Line("Written to " + Utf8(options.output) + ", " + Count(document.size(), "byte") + ".");
}

} // namespace bench
