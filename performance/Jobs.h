#pragma once

#include "performance/Measure.h"
#include "performance/Script.h"
#include "performance/Size.h"
#include "tests/support/Component.h"
#include "tests/support/HostDoubles.h"
#include "tests/support/Read.h"

#include <string>
#include <vector>

namespace benchmark {

/// What a host waits for before its first call, in microseconds.
struct StartCost {
    double load = 0;
    /// The first module object, after its class object.
    double create = 0;
};

/// The jobs of a host: each with its floor and its script, at one size.
class Jobs {
  public:
    explicit Jobs(const std::wstring& script);

    /// Measures every job at this size.
    std::vector<Row> Run(long points);
    /// Bytes in use for each point of a module that holds as many, its keys set.
    double BytesPerPoint(long points);
    static unsigned long DllSize();
    /// The least of a few loads, the DLL's file being in the system's cache.
    static StartCost CostOfStart();

  private:
    Trial Create(const Size& size);
    Trial Load(const Size& size);
    Trial Save(const Size& size);
    Trial Flags(const Size& size);
    Trial Interop(const Size& size);
    Trial Export(const Size& size);
    Trial Keys(const Size& size);
    Trial LookUps(const Size& size, bool byKey);
    Trial Visits(const Size& size);
    Trial Reorder(const Size& size);

    com::Ref<IAppObject> NewModule(bool isDefined) const;
    void LoadStream(const com::Ref<IAppObject>& module, const std::wstring& stream) const;
    /// The script's own objects, loaded from this stream.
    void LoadScript(const std::wstring& stream);
    void CallScript(const std::wstring& procedure, std::vector<VARIANT> arguments) const;

    com::Ref<support::Converter> converter_;
    com::Ref<support::Compiler> compiler_;
    com::Ref<support::DatabaseLocation> location_;
    support::HostClass converterClass_;
    support::HostClass compilerClass_;
    support::HostClass locationClass_;
    support::Component dll_;
    Script script_;
    support::Document catalogue_;
    // What a prepared run works on; a run's results live until the next one.
    com::Ref<IAppObject> module_;
    com::Ref<IAppObject> loaded_;
    support::Document document_;
    com::Ref<IXMLDOMElement> root_;
};

} // namespace benchmark
