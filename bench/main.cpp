// tambench: a host without a drawing, on the command line.

#include "bench/CommandLine.h"
#include "bench/Commands.h"
#include "bench/Host.h"
#include "bench/Output.h"
#include "bench/Report.h"
#include "bench/Text.h"
#include "com/Boundary.h"
#include "com/Dll.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bench {

namespace {

const std::map<std::string, Command>& Commands() {
    static const std::map<std::string, Command> commands = {{"inspect", Inspect},
                                                            {"types", Types},
                                                            {"sheet", Sheet},
                                                            {"save", Save},
                                                            {"load", Load},
                                                            {"interop", Interop},
                                                            {"export", Export},
                                                            {"set", Set},
                                                            {"clear-refs", ClearRefs},
                                                            {"contains", Contains},
                                                            {"edit", Edit},
                                                            {"icon", Icon},
                                                            {"datasheet", Datasheet},
                                                            {"about", About},
                                                            {"rename", Rename},
                                                            {"device tree", DeviceTree},
                                                            {"device place", DevicePlace},
                                                            {"device fetch", DeviceFetch},
                                                            {"device set", DeviceSet},
                                                            {"device save", DeviceSave},
                                                            {"device load", DeviceLoad},
                                                            {"device export", DeviceExport}};
    return commands;
}

struct Fault {
    HRESULT code;
    std::string step;
    std::string text;
};

/// Runs the command; the host and all that it holds are gone afterwards.
std::optional<Fault> RunCommand(const Options& options, Report& report) {
    std::optional<std::string> own;
    const auto failure = com::Attempt([&] {
        try {
            Host host(options, report);
            Commands().at(options.command)(host, options, report);
        } catch (const BenchError& error) {
            own = error.what();
            throw com::CallError(error.Code());
        }
    });
    if (!failure) {
        return std::nullopt;
    }
    return Fault{failure->code, Host::CurrentStep(), own ? *own : Utf8(failure->Description())};
}

/// What stands on the error output: the reasons why the status is not 0.
std::string Reasons(const std::optional<Fault>& fault, std::size_t faultyBoxes,
                    const std::vector<std::string>& busy) {
    std::string text;
    if (fault) {
        text += "tambench: " + (fault->step.empty() ? "" : fault->step + ": ") + Hex(fault->code) + " " +
                fault->text + "\n";
    }
    if (faultyBoxes == 1) {
        text += "tambench: the component reported a fault in one box (--tolerate-boxes passes over it)\n";
    } else if (faultyBoxes > 1) {
        text += "tambench: the component reported faults in " + std::to_string(faultyBoxes) +
                " boxes (--tolerate-boxes passes over them)\n";
    }
    for (const std::string& dll : busy) {
        text += "tambench: " + dll + " still has live objects after everything was released\n";
    }
    return text;
}

int Run(const Options& options) {
    const Apartment apartment;
    Report report(options.command);
    const std::optional<Fault> fault = RunCommand(options, report);
    const std::vector<std::string> busy = DllsWithObjects();
    const std::size_t faultyBoxes = options.tolerateBoxes ? 0 : report.Faults();
    const int status = fault || faultyBoxes > 0 || !busy.empty() ? kFailed : kDone;

    report.data["boxes"] = report.Boxes();
    report.data["error"] =
        fault ? Json{{"step", fault->step}, {"hresult", Hex(fault->code)}, {"description", fault->text}}
              : Json();
    report.data["liveObjectsIn"] = busy;
    report.data["status"] = status;
    const bool isPrinted = Print(options.json ? report.data.dump(2) + "\n" : report.Text());
    Complain(Reasons(fault, faultyBoxes, busy));
    return isPrinted ? status : kFailed;
}

} // namespace

} // namespace bench

int main() {
    // All texts are UTF-8, with the line ends that they have.
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    int status = bench::kFailed;
    const auto failure = com::Attempt([&] {
        com::ThisDll().Attach(GetModuleHandleW(nullptr));
        if (const auto options = bench::ReadCommandLine(status)) {
            status = bench::Run(*options);
        }
    });
    if (failure) {
        bench::Complain("tambench: " + bench::Hex(failure->code) + " " + bench::Utf8(failure->Description()) +
                        "\n");
        status = bench::kFailed;
    }
    return status;
}
