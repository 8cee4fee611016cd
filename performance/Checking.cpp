#include "performance/Checking.h"

#include "bench/Text.h"
#include "check/Check.h"
#include "performance/Material.h"
#include "performance/Measure.h"
#include "tests/support/Read.h"

#include <string>

namespace benchmark {

CheckingCost MeasureChecking(long points) {
    const std::wstring stream = StreamText(points);
    const std::string text = bench::Utf8(stream);
    const check::Catalogue types = check::ReadCatalogue(bench::Utf8(CatalogueText()));
    const check::Surroundings surroundings(&types);
    Trial trial;
    trial.job = "check";
    trial.points = points;
    trial.component.run = [&] { check::CheckText(text, surroundings); };
    trial.floor.run = [&] { support::Parse(stream); };
    const Row row = Measure(trial);
    return {row.PerUnit(), row.FloorPerUnit()};
}

} // namespace benchmark
