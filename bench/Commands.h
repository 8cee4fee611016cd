#pragma once

#include "bench/Answer.h"
#include "bench/CommandLine.h"
#include "bench/Host.h"

#include <string>

namespace bench {

/// A command: drives the host and says what came of it.
using Command = void (*)(Host& host, const Options& options, Answer& answer);

/// Says what is wrong with documents; needs no component, so no host. Answers the
/// exit status. Commands_Check.cpp
int CheckDocuments(const Options& options);
/// Says what changed between two documents; as above. Commands_Diff.cpp
int CompareDocuments(const Options& options);

// Commands_Reading.cpp
void Inspect(Host& host, const Options& options, Answer& answer);
void Types(Host& host, const Options& options, Answer& answer);

// Commands_Sheet.cpp
void Sheet(Host& host, const Options& options, Answer& answer);
void DeviceSheet(Host& host, const Options& options, Answer& answer);

// Commands_Project.cpp
void Save(Host& host, const Options& options, Answer& answer);
void Load(Host& host, const Options& options, Answer& answer);
void Interop(Host& host, const Options& options, Answer& answer);

// Commands_Export.cpp
void Export(Host& host, const Options& options, Answer& answer);

// Commands_Points.cpp
void Set(Host& host, const Options& options, Answer& answer);
void ClearRefs(Host& host, const Options& options, Answer& answer);
void Contains(Host& host, const Options& options, Answer& answer);

// Commands_Dialogs.cpp
void Edit(Host& host, const Options& options, Answer& answer);
void Rename(Host& host, const Options& options, Answer& answer);
void About(Host& host, const Options& options, Answer& answer);

// Commands_Device.cpp
void DeviceTree(Host& host, const Options& options, Answer& answer);
void DevicePlace(Host& host, const Options& options, Answer& answer);
void DeviceFetch(Host& host, const Options& options, Answer& answer);
void DeviceSet(Host& host, const Options& options, Answer& answer);

// Commands_DeviceProject.cpp
void DeviceSave(Host& host, const Options& options, Answer& answer);
void DeviceLoad(Host& host, const Options& options, Answer& answer);
void DeviceExport(Host& host, const Options& options, Answer& answer);

// Commands_Services.cpp
void Icon(Host& host, const Options& options, Answer& answer);
void Datasheet(Host& host, const Options& options, Answer& answer);

// Commands_Doctor.cpp
/// Needs no host: what it looks for is what a host would need.
void Doctor(Answer& answer);

/// The bytes of the module's icon file; empty when it has no picture.
std::string IconBytes(Host& host);
/// The module's name and how many points it has.
std::string Summary(Host& host);
/// Loads the stream and says in a line what came of it.
void LoadAndTell(Host& host, Answer& answer);
/// Sets the values that the options name and tells what became of them: in the answer when
/// there are any, and as the result.
Json SetValues(Host& host, const Options& options, Answer& answer);
/// Gives the module what a drawing knows of it: its name and place there, and
/// which outputs its displays show.
void Place(Host& host, const Options& options);
/// Has the module, as it is, make its stream and shows that.
void ExportLoaded(Host& host, const Options& options, Answer& answer);

} // namespace bench
