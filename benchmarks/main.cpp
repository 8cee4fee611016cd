#include "benchmarks/Floor.h"
#include "tests/support/Component.h"
#include "tests/support/HostDoubles.h"
#include "tests/support/Read.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// Whole jobs of a host at 100, 1,000 and 10,000 points, each beside its floor in
// the same run. Prints a table, and writes JSON where the first argument says.

namespace {

using namespace support;

constexpr int kRuns = 3;
constexpr long kSizes[] = {100, 1000, 10000};
constexpr long kTypes = 221;

double Microseconds(const std::function<void()>& job) {
    LARGE_INTEGER frequency;
    LARGE_INTEGER start;
    LARGE_INTEGER end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    job();
    QueryPerformanceCounter(&end);
    return static_cast<double>(end.QuadPart - start.QuadPart) * 1e6 / static_cast<double>(frequency.QuadPart);
}

/// The least of a few runs: what else the machine does only ever adds.
double Least(const std::function<double()>& run) {
    double least = run();
    for (int i = 1; i < kRuns; ++i) {
        least = std::min(least, run());
    }
    return least;
}

struct Row {
    std::string job;
    long points;
    double job_us;
    double floor_us; // 0: the job has no DOM work; it is judged by its growth
};

class Benchmark {
  public:
    Benchmark()
        : converter_(Converter::Make())
        , compiler_(com::Ref<Compiler>::Own(new Compiler))
        , location_(DatabaseLocation::Make())
        , converterClass_(kConverterClass, kConverterProgId,
                          [this](REFIID iid, void** out) { return converter_->QueryInterface(iid, out); })
        , compilerClass_(kCompilerClass, kCompilerProgId,
                         [this](REFIID iid, void** out) { return compiler_->QueryInterface(iid, out); })
        , locationClass_(kDatabaseLocationClass, L"",
                         [this](REFIID iid, void** out) { return location_->QueryInterface(iid, out); })
        , definition_(Component::Folder() + L"Bench.xml",
                      L"<AppObject><NAME>Bench</NAME><ID>1</ID><DESCRIPTION>d</DESCRIPTION>"
                      L"<CATEGORY>c</CATEGORY></AppObject>")
        , catalogue_(MakeCatalogue()) {
        dll_.NewModule()->putref_XmlSNVTDoc(catalogue_.Get());
    }

    void Run() {
        Create();
        for (const long points : kSizes) {
            std::fprintf(stderr, "%ld points ...\n", points);
            Load(points);
            Save(points);
            Interop(points);
            Export(points);
            Keys(points);
            LookUps(points);
            Reorder(points);
        }
    }
    const std::vector<Row>& Rows() const { return rows_; }

  private:
    static Document MakeCatalogue() {
        std::wstring entries;
        for (long i = 1; i <= kTypes; ++i) {
            const std::wstring id = std::to_wstring(i);
            entries += L"<SNVT_" + id + L" Factor=\"1\" Z3Region=\"0\"><Name>SNVT_" + id +
                       L"</Name><Type>SignedNumeric</Type><Unit>u</Unit><Min>-10</Min><Max>10</Max>"
                       L"<Length>2</Length><A_Coef>1</A_Coef><B_Coef>0</B_Coef><C_Coef>0</C_Coef></SNVT_" +
                       id + L">";
        }
        return Parse(L"<Catalogue>" + entries + L"</Catalogue>");
    }

    /// A third of the points are inputs, a third outputs, the rest attributes.
    static std::wstring StreamOf(long points) {
        std::wstring sections[3];
        for (long i = 0; i < points; ++i) {
            const std::wstring name = L"P" + std::to_wstring(i) + L"_V";
            const std::wstring type = std::to_wstring(1 + i % kTypes);
            std::wstring& section = sections[i % 3];
            section += L"<" + name + L"><SNVTTYPE>" + type + L"</SNVTTYPE><LOGICALADDRESS>" +
                       std::to_wstring(i) + L"</LOGICALADDRESS><ISPERMANENT>1</ISPERMANENT><VISIBLE/>" +
                       (i % 3 == 0 ? L"<SNVTCOMPATIBILITYLIST>" + type + L"</SNVTCOMPATIBILITYLIST>"
                                   : std::wstring(L"<VALUE>1.5</VALUE>")) +
                       L"</" + name + L">";
        }
        return L"<Tam><Name>Bench</Name><DevKey>K</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>1</TamObjID>"
               L"<InReferences>" +
               sections[0] + L"</InReferences><OutReferences>" + sections[1] +
               L"</OutReferences><Attributes>" + sections[2] + L"</Attributes></Tam>";
    }

    com::Ref<IAppObject> Loaded(const std::wstring& stream) const {
        auto module = dll_.NewModule();
        const com::Bstr text(stream);
        com::Check(module.As<ITamObject>()->LoadFromXmlStream(text.Get()));
        return module;
    }

    void Add(const char* job, long points, double us, double floor) {
        rows_.push_back({job, points, us, floor});
    }

    void Create() {
        const com::Bstr name(L"Bench");
        const double job = Least([&] {
            return Microseconds([&] {
                const auto module = dll_.NewModule();
                VARIANT_BOOL done = VARIANT_FALSE;
                module->Init(name.Get(), &done);
            });
        });
        const com::Variant file{std::wstring_view(definition_.Path())};
        const double floor = Least([&] {
            return Microseconds([&] {
                const Document document = NewDocument();
                VARIANT_BOOL done = VARIANT_FALSE;
                document->load(file.Get(), &done);
                benchmark::ReadChildren(Root(document).Get());
            });
        });
        Add("create and Init", 1, job, floor);
    }

    void Load(long points) {
        const std::wstring stream = StreamOf(points);
        const double job = Least([&] { return Microseconds([&] { Loaded(stream); }); });
        const double floor =
            Least([&] { return Microseconds([&] { benchmark::ReadStream(stream, catalogue_, points); }); });
        Add("LoadFromXmlStream", points, job, floor);
    }

    void Save(long points) {
        const auto module = Loaded(StreamOf(points));
        const auto outputs = Object(module, &IAppObject::get_Outputs);
        const long count = Long(outputs, &IOutputs::get_Count);
        for (long i = 1; i <= count; ++i) {
            Item(outputs, &IOutputs::get_Item, std::to_wstring(i))->put_IsDisplayable(VARIANT_TRUE);
        }
        const double job = Least([&] {
            const Document document = Parse(L"<p/>");
            const auto root = Root(document);
            return Microseconds([&] {
                module->XMLSave(root.Get(), document.Get());
                com::Ref<IXMLDOMNode> saved;
                root->get_firstChild(saved.Put());
                module->XmlLoad(saved.Get());
            });
        });
        const double floor = Least([&] {
            const Document document = Parse(L"<p/>");
            const auto root = Root(document);
            return Microseconds([&] {
                benchmark::BuildElement(document, root.Get(), L"O_Tam_id", 5);
                for (long i = 0; i < count; ++i) {
                    benchmark::BuildAttributes(document, root.Get(), L"Out", 1);
                }
            });
        });
        Add("XMLSave and XmlLoad", points, job, floor);
    }

    void Interop(long points) {
        const auto module = Loaded(StreamOf(points));
        const double job = Least([&] {
            const Document document = Parse(L"<p/>");
            const auto root = Root(document);
            return Microseconds([&] { module->XMLSaveForInteroperability(root.Get(), document.Get()); });
        });
        const double floor = Least([&] {
            const Document document = Parse(L"<p/>");
            const auto root = Root(document);
            return Microseconds([&] {
                for (long i = 0; i < points; ++i) {
                    benchmark::BuildElement(document, root.Get(), L"Point",
                                            i % 3 == 0   ? 4
                                            : i % 3 == 1 ? 2
                                                         : 1);
                }
            });
        });
        Add("interoperability", points, job, floor);
    }

    void Export(long points) {
        const auto module = Loaded(StreamOf(points));
        const double job = Least([&] {
            return Microseconds([&] {
                com::Bstr stream;
                module->get_Stream(stream.Put());
            });
        });
        const double floor = Least([&] {
            const Document document = Parse(L"<p/>");
            const auto root = Root(document);
            return Microseconds([&] {
                for (long i = 0; i < points; ++i) {
                    benchmark::BuildAttributes(document, root.Get(), L"Point", i % 3 == 1 ? 7 : 5);
                }
                com::Bstr xml;
                document->get_xml(xml.Put());
            });
        });
        Add("Stream", points, job, floor);
    }

    void Keys(long points) {
        const auto module = Loaded(StreamOf(points));
        const com::Bstr key(L"PROJECT\\SHEET\\MODULE");
        const double job = Least([&] {
            return Microseconds([&] {
                module->put_GlobalKey(key.Get());
                module->put_ExtendedKey(key.Get());
            });
        });
        Add("key propagation", points, job, 0);
    }

    void LookUps(long points) {
        const auto module = Loaded(StreamOf(points));
        const auto inputs = Object(module, &IAppObject::get_Inputs);
        const long count = Long(inputs, &IInputs::get_Count);
        std::vector<com::Bstr> names;
        std::vector<com::Bstr> positions;
        for (long i = 0; i < count; ++i) {
            names.emplace_back(L"P" + std::to_wstring(i * 3) + L"_V");
            positions.emplace_back(std::to_wstring(i + 1));
        }
        const auto lookUp = [&](const std::vector<com::Bstr>& texts) {
            for (long i = 0; i < 10000; ++i) {
                com::Ref<IInput> input;
                inputs->get_Item(texts[static_cast<std::size_t>(i % count)].Get(), input.Put());
            }
        };
        Add("10,000 look-ups by key", points, Least([&] { return Microseconds([&] { lookUp(names); }); }), 0);
        Add("10,000 look-ups by position", points,
            Least([&] { return Microseconds([&] { lookUp(positions); }); }), 0);
        const double each = Least([&] {
            return Microseconds([&] {
                com::Ref<IUnknown> unknown;
                inputs->get_NewEnum(unknown.Put());
                const auto items = unknown.As<IEnumVARIANT>();
                for (com::Variant item; items->Next(1, item.Put(), nullptr) == S_OK;) {
                }
            });
        });
        Add("For Each", points, each, 0);
    }

    void Reorder(long points) {
        const auto module = Loaded(StreamOf(points));
        const auto inputs = Object(module, &IAppObject::get_Inputs);
        const long count = Long(inputs, &IInputs::get_Count);
        std::wstring saved;
        for (long i = count - 1; i >= 0; --i) {
            saved += L"<P" + std::to_wstring(i * 3) + L"_V/>";
        }
        const Document document = Parse(L"<r>" + saved + L"</r>");
        const double job = Least([&] {
            const auto fresh = Object(Loaded(StreamOf(points)), &IAppObject::get_Inputs);
            return Microseconds([&] { fresh.As<_CDBInputs>()->XmlLoad(Root(document).Get()); });
        });
        const double floor = Least([&] {
            return Microseconds([&] {
                benchmark::ReadChildren(Root(document).Get());
                benchmark::YieldTimes(count);
            });
        });
        Add("reorder, reversed", points, job, floor);
    }

    com::Ref<Converter> converter_;
    com::Ref<Compiler> compiler_;
    com::Ref<DatabaseLocation> location_;
    HostClass converterClass_;
    HostClass compilerClass_;
    HostClass locationClass_;
    Component dll_;
    TextFile definition_;
    Document catalogue_;
    std::vector<Row> rows_;
};

void Print(const std::vector<Row>& rows) {
    std::printf("%-28s %7s %12s %12s %8s %10s\n", "job", "points", "job us", "floor us", "ratio", "us/point");
    for (const Row& row : rows) {
        const std::string ratio =
            row.floor_us > 0 ? std::to_string(row.job_us / row.floor_us).substr(0, 5) : "";
        std::printf("%-28s %7ld %12.1f %12.1f %8s %10.3f\n", row.job.c_str(), row.points, row.job_us,
                    row.floor_us, ratio.c_str(), row.job_us / static_cast<double>(row.points));
    }
}

void WriteJson(const char* path, const std::vector<Row>& rows) {
    if (std::FILE* file = std::fopen(path, "w")) {
        std::fputs("[\n", file);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            std::fprintf(file,
                         "  {\"job\": \"%s\", \"points\": %ld, \"job_us\": %.1f, \"floor_us\": %.1f}%s\n",
                         rows[i].job.c_str(), rows[i].points, rows[i].job_us, rows[i].floor_us,
                         i + 1 < rows.size() ? "," : "");
        }
        std::fputs("]\n", file);
        std::fclose(file);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        return 1;
    }
    {
        Benchmark benchmark;
        benchmark.Run();
        Print(benchmark.Rows());
        if (argc > 1) {
            WriteJson(argv[1], benchmark.Rows());
        }
    }
    CoUninitialize();
    return 0;
}
