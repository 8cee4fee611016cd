#pragma once

#include "bench/CommandLine.h"
#include "bench/Host.h"
#include "bench/Report.h"

#include <string>

namespace bench {

/// A command: drives the host and says what came of it.
using Command = void (*)(Host& host, const Options& options, Report& report);

/// Says what is wrong with documents; needs no component, so no host. Answers the
/// exit status. Commands_Check.cpp
int CheckDocuments(const Options& options);
/// Says what changed between two documents; as above. Commands_Diff.cpp
int CompareDocuments(const Options& options);

// Commands_Reading.cpp
void Inspect(Host& host, const Options& options, Report& report);
void Types(Host& host, const Options& options, Report& report);

// Commands_Sheet.cpp
void Sheet(Host& host, const Options& options, Report& report);
void DeviceSheet(Host& host, const Options& options, Report& report);

// Commands_Project.cpp
void Save(Host& host, const Options& options, Report& report);
void Load(Host& host, const Options& options, Report& report);
void Interop(Host& host, const Options& options, Report& report);

// Commands_Export.cpp
void Export(Host& host, const Options& options, Report& report);

// Commands_Points.cpp
void Set(Host& host, const Options& options, Report& report);
void ClearRefs(Host& host, const Options& options, Report& report);
void Contains(Host& host, const Options& options, Report& report);

// Commands_Dialogs.cpp
void Edit(Host& host, const Options& options, Report& report);
void Rename(Host& host, const Options& options, Report& report);
void About(Host& host, const Options& options, Report& report);

// Commands_Device.cpp
void DeviceTree(Host& host, const Options& options, Report& report);
void DevicePlace(Host& host, const Options& options, Report& report);
void DeviceFetch(Host& host, const Options& options, Report& report);
void DeviceSet(Host& host, const Options& options, Report& report);

// Commands_DeviceProject.cpp
void DeviceSave(Host& host, const Options& options, Report& report);
void DeviceLoad(Host& host, const Options& options, Report& report);
void DeviceExport(Host& host, const Options& options, Report& report);

// Commands_Services.cpp
void Icon(Host& host, const Options& options, Report& report);
void Datasheet(Host& host, const Options& options, Report& report);

// Commands_Doctor.cpp
/// Needs no host: what it looks for is what a host would need.
void Doctor(Report& report);

/// The bytes of the module's icon file; empty when it has no picture.
std::string IconBytes(Host& host);
/// The module's name and how many points it has.
std::string Summary(Host& host);
/// Loads the stream and says in a line what came of it.
void LoadAndTell(Host& host, Report& report);
/// Sets the values that the options name and tells what became of them: in the report when
/// there are any, and as the answer.
Json SetValues(Host& host, const Options& options, Report& report);
/// Gives the module what a drawing knows of it: its name and place there, and
/// which outputs its displays show.
void Place(Host& host, const Options& options);
/// Has the module, as it is, make its stream and shows that.
void ExportLoaded(Host& host, const Options& options, Report& report);

} // namespace bench
