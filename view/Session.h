#pragma once

#include "view/model/FindingRow.h"
#include "view/model/ProjectModules.h"
#include "view/model/Recovery.h"
#include "view/model/Row.h"
#include "view/model/SourcePoints.h"
#include "view/model/SourceText.h"

#include "bench/Answer.h"
#include "bench/CommandLine.h"
#include "bench/Device.h"
#include "bench/Host.h"
#include "bench/StreamEdit.h"
#include "check/Catalogue.h"
#include "com/Boundary.h"
#include "drawing/Sheet.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace view {

/// A type of the catalogue, a row of its page.
struct TypeRow {
    std::wstring number;
    std::wstring name;
    std::wstring kind;
    std::wstring unit;
    std::wstring least;
    std::wstring greatest;
    std::wstring resolution;
    std::wstring invalid;
};

/// What a failed action says: the words for a person.
struct Problem {
    HRESULT code = E_FAIL;
    std::wstring words;
};

struct FileText;

/// Runs what calls the component or writes files; what it throws comes back in words.
std::optional<Problem> Try(com::Body body);

/// A file with its module, opened as a host opens it. One at a time: the boxes of the
/// component come to the one that lives.
class Session {
  public:
    /// What a file holds.
    enum class Kind { Stream, Device, Project };

    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Reads the file and checks it: source and findings are there also when the
    /// component takes it for damaged, and Load fails.
    /// `module` is the one to open of a project that has several; without it, or where the
    /// project has no such module, the first one.
    void Read(const std::wstring& file, const std::optional<ModuleKey>& module = std::nullopt);
    /// Has the component load what was read. The messages of the windows are handled meanwhile.
    void Load();
    /// From here on a person is there to answer boxes; before, each one is answered at once,
    /// the window's own among them.
    void LeaveBoxesToUser() noexcept;
    /// Ends Load, called by one of these messages.
    void Stop() noexcept;
    bool IsStopped() const noexcept { return isStopped_; }
    /// How many points the file has, and how many of them are loaded by now.
    std::size_t PointsInFile() const noexcept { return pointsInFile_; }
    std::size_t PointsLoaded() const;

    /// The file and those that it names, as they were when they were read: a device is in
    /// several files.
    const std::vector<StampedFile>& Files() const noexcept { return files_; }
    Kind FileKind() const noexcept { return kind_; }
    /// The modules of a project, and which of them is open; none for another file.
    const std::vector<ProjectModule>& Modules() const noexcept { return modules_; }
    std::size_t OpenModule() const noexcept { return module_; }
    std::optional<ModuleKey> ModuleKeyOf() const {
        return modules_.empty() ? std::nullopt : std::optional(modules_.at(module_).key);
    }
    const SourceText& Source() const noexcept { return source_; }
    /// The file of which this is the text: a device's stream is a file of its own.
    const std::wstring& SourceFile() const noexcept { return sourceFile_; }
    const std::vector<FindingRow>& Findings() const noexcept { return findings_; }

    std::vector<Row> ReadRows(view::Kind kind);
    /// The point as it is now; none when the module does not have it.
    std::optional<Row> ReadRow(const PointId& id);
    /// The module with these points, and its channels.
    drawing::Sheet ReadSheet(const std::vector<Row>& inputs, const std::vector<Row>& outputs);
    std::vector<TypeRow> ReadTypes() const;
    /// The bytes of the module's icon file; empty when it has none.
    std::string Icon() const;

    void SetUnits(bool isUs);
    std::wstring ValueOf(const PointId& id) const;
    void SetValue(const PointId& id, const std::wstring& value);
    /// What is wrong with a value for the point, in words; none when it may be set. The
    /// component takes any text, so the checks judge; of an output to which an input is to be
    /// wired, the input.
    std::optional<std::wstring> ProblemOf(const PointId& id, const std::wstring& value) const;
    /// Whether an input with this value is wired to what the module does not have.
    bool LeadsOutside(const std::wstring& reference) const;
    /// Shows the component's own editor for the attribute; it may change the value.
    void Edit(const std::wstring& attribute);
    void ShowAbout();
    /// The boxes that the component showed since the last call.
    std::vector<FindingRow> TakeBoxes();
    /// How many boxes were seen on this thread and not taken, the window's own among them.
    std::size_t Boxes() const { return answer_.Boxes().size(); }
    /// Those from this number on are the window's own: TakeBoxes leaves them out.
    void PassOverBoxes(std::size_t from) { answer_.ForgetBoxes(from); }

    // Files. Each throws, and leaves an old file as it was.

    /// The stream with the values as they are.
    std::string StreamText(const std::vector<bench::PointValue>& changes) const;
    /// Writes the module, and its stream with the values as they are, into a project:
    /// a new one, or one that holds other objects.
    void SaveProject(const std::wstring& path, const std::vector<bench::PointValue>& changes);
    /// Whether a file is a project that has this module; false for one that cannot be read.
    bool IsIn(const std::wstring& path) const;
    void ExportImage(const std::wstring& path);
    void ExportInteroperability(const std::wstring& path);
    void ExportSheet(const std::wstring& path, bool asSvg);

  private:
    class Documents;
    // Each puts what the checks say among the findings.

    /// From its bytes; the answer is the text in UTF-8.
    std::string ReadStream(std::string bytes);
    /// The bytes of the device's stream.
    std::string ReadDevice(const std::string& bytes);
    /// The stream of a module of the project.
    std::string ReadModule(const FileText& project, const std::optional<ModuleKey>& module);

    /// Of a project: what it keeps of the open module beside the stream.
    void LoadElement();
    std::optional<std::wstring> ProblemOfWiring(const std::wstring& name,
                                                const std::wstring& reference) const;
    /// The point that a box is about; null for none.
    const SourcePoints::Place* PlaceOfBox(const std::string& message);
    struct TypeWords {
        std::wstring title;
        std::wstring unit;
    };

    Row ReadInput(IInput& input, std::size_t index);
    Row ReadOutput(IOutput& output, std::size_t index);
    Row ReadAttribute(IAttribute& attribute, std::size_t index);
    const TypeWords& WordsOf(const std::wstring& typeId);
    /// False, and nothing is set, for a point without a type.
    bool SetType(Row& row, const com::Ref<ISNVType>& type);
    std::wstring OutputsReaders(const std::wstring& output);
    void ReadReaders();
    /// The places of a block's pins by their names.
    using PinPlaces = std::unordered_map<std::string, std::size_t>;
    drawing::Block ReadChannelBlock(const bench::Channel& channel, std::size_t number,
                                    const PinPlaces& inputs, const PinPlaces& outputs,
                                    std::vector<drawing::Mirror>& mirrors);

    bench::Options options_;
    bench::Answer answer_;
    std::unique_ptr<bench::Host> host_;
    std::unique_ptr<bench::OpenedDevice> device_;
    std::unique_ptr<Documents> documents_;
    check::Catalogue catalogue_;
    com::Ref<IUnitConverter> converter_;
    std::map<std::wstring, TypeWords> types_;
    /// The inputs that are wired to an output, by its name in capitals.
    std::map<std::wstring, std::wstring> readers_;
    bool areReadersRead_ = false;
    std::wstring file_;
    std::vector<StampedFile> files_;
    Kind kind_ = Kind::Stream;
    std::wstring sourceFile_;
    std::vector<ProjectModule> modules_;
    std::size_t module_ = 0;
    /// Where in the source the stream begins.
    std::size_t streamBegin_ = 0;
    /// How many boxes told of a type that is not in the catalogue.
    std::map<std::wstring, std::size_t> unknownTypes_;
    /// The stream as the component gets it.
    std::wstring stream_;
    SourceText source_;
    std::vector<FindingRow> findings_;
    std::size_t pointsInFile_ = 0;
    bool isStopped_ = false;
};

} // namespace view
