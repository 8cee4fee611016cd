#include "view/Session.h"

#include "view/RecoveryFile.h"
#include "view/resource.h"
#include "view/SessionDocuments.h"
#include "view/Window.h"

#include "bench/Commands.h"
#include "bench/Model.h"
#include "bench/Text.h"
#include "bench/TextFile.h"
#include "check/Check.h"
#include "check/Program.h"
#include "com/Creation.h"
#include "core/References.h"
#include "drawing/Svg.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace view {

namespace {

template <class Collection>
std::size_t CountOf(IAppObject& app, HRESULT (STDMETHODCALLTYPE IAppObject::*member)(Collection**)) {
    com::Ref<Collection> collection;
    long count = 0;
    if (FAILED((app.*member)(collection.Put())) || !collection || FAILED(collection->get_Count(&count))) {
        return 0;
    }
    return static_cast<std::size_t>(count);
}

/// Of a text that begins at a place of another one the rows as they stand in that one.
void ShiftBy(std::vector<FindingRow>& rows, SourcePlace begin) {
    const auto shift = [&](std::size_t& line, std::size_t& column) {
        column += line == 1 ? begin.column - 1 : 0;
        line += line > 0 ? begin.line - 1 : 0;
    };
    for (FindingRow& row : rows) {
        shift(row.line, row.column);
        shift(row.endLine, row.endColumn);
    }
}

ModuleKey KeyOf(const xml::Node& element) {
    ModuleKey key;
    xml::ForEachElement(element, [&](const xml::Node& child) {
        const std::wstring name = xml::NameOf(child);
        if (bench::SameKey(name, L"DevKey")) {
            key.device = xml::TextOf(child);
        } else if (bench::SameKey(name, L"TamObjID")) {
            key.number = ObjectNumberOf(xml::TextOf(child));
        }
    });
    return key;
}

/// Empty when there is no such output, or when it has no type.
com::Ref<ISNVType> TypeOfOutput(IAppObject& app, const std::wstring& name) {
    com::Ref<ISNVType> type;
    if (const auto output = bench::FindOutput(app, name)) {
        com::Call(output, &IOutput::get_SNVTType, type.Put());
    }
    return type;
}

} // namespace

std::optional<Problem> Try(com::Body body) {
    std::optional<std::string> own;
    const auto failure = com::Attempt([&] {
        try {
            body();
        } catch (const bench::BenchError& error) {
            own = error.what();
            throw com::CallError(error.Code());
        }
    });
    if (!failure) {
        return std::nullopt;
    }
    return Problem{failure->code, own ? bench::Wide(*own) : failure->Description()};
}

Session::Session() : answer_("view", bench::Screen{}) {
    options_.wire = true; // as a host does: the sheet shows what is wired to what
    host_ = std::make_unique<bench::Host>(options_, answer_);
    // Found by what the host registers.
    // cppcheck-suppress useInitializationList
    converter_ = com::CreateByProgId(L"UnitManager.Converter").As<IUnitConverter>();
}

Session::~Session() = default;

void Session::Read(const std::wstring& file, const std::optional<ModuleKey>& module) {
    file_ = file;
    sourceFile_ = file;
    files_ = {{file, StampOf(file)}}; // before it is read: a later change is seen
    std::string problem;
    catalogue_ = check::ReadCatalogue(check::ReadFile(host_->CatalogueFile(), problem));
    FileText text = ReadFileText(bench::ReadBytes(file), file);
    kind_ = text.kind;
    std::string stream;
    if (kind_ == Kind::Project) {
        stream = ReadModule(text, module);
        source_ = SourceText(std::move(text.source));
    } else {
        stream = ReadStream(kind_ == Kind::Device ? ReadDevice(text.source) : std::move(text.source));
        source_ = SourceText(stream);
    }
    documents_ = std::make_unique<Documents>(stream, options_.definition);
    pointsInFile_ = documents_->Points();
}

std::string Session::ReadStream(std::string bytes) {
    const check::Result result = check::CheckBytes(bytes, check::Surroundings(&catalogue_));
    check::Findings encoding;
    std::string stream = check::Decode(std::move(bytes), encoding);
    std::vector<FindingRow> rows = RowsOf(result.findings, stream);
    findings_.insert(findings_.end(), std::make_move_iterator(rows.begin()),
                     std::make_move_iterator(rows.end()));
    return stream;
}

std::string Session::ReadDevice(const std::string& bytes) {
    options_.deviceFile = file_;
    const bench::DeviceFile device = bench::ReadDeviceFile(file_);
    for (const std::wstring& named : {device.streamFile, device.firmwareFile}) {
        const bool isNew = std::none_of(files_.begin(), files_.end(),
                                        [&](const StampedFile& known) { return known.path == named; });
        if (isNew) {
            files_.push_back({named, StampOf(named)});
        }
    }
    sourceFile_ = device.streamFile;
    // The source that is shown is the stream's: a place in the device file is told in words.
    const check::Result result = check::CheckBytes(bytes, check::Surroundings(&catalogue_));
    for (FindingRow& row : RowsOf(result.findings, {})) {
        row.message = bench::Utf8(NameOf(file_)) + ":" + std::to_string(row.line) + ":" +
                      std::to_string(row.column) + ": " + row.message;
        row.line = 0;
        row.column = 0;
        findings_.push_back(std::move(row));
    }
    return bench::ReadBytes(device.streamFile);
}

std::string Session::ReadModule(const FileText& project, const std::optional<ModuleKey>& module) {
    modules_ = project.modules;
    const auto found = std::find_if(modules_.begin(), modules_.end(), [&](const ProjectModule& known) {
        return module && known.key == *module;
    });
    module_ = found != modules_.end() ? static_cast<std::size_t>(found - modules_.begin()) : 0;
    const ProjectModule& open = modules_.at(module_);
    streamBegin_ = open.begin;
    std::string stream = project.source.substr(open.begin, open.end - open.begin) + "\n";
    stream_ = bench::Wide(stream);
    const check::Surroundings surroundings(&catalogue_);
    findings_ = RowsOf(check::CheckText(project.source, surroundings).findings, project.source);
    std::vector<FindingRow> rows = RowsOf(check::CheckText(stream, surroundings).findings, stream);
    ShiftBy(rows, SourceText(project.source).PlaceOf(open.begin));
    findings_.insert(findings_.end(), std::make_move_iterator(rows.begin()),
                     std::make_move_iterator(rows.end()));
    return stream;
}

void Session::Load() {
    switch (kind_) {
    case Kind::Stream:
        host_->LoadStreamFile(file_, file_);
        break;
    case Kind::Device:
        device_ = std::make_unique<bench::OpenedDevice>(*host_, options_, answer_);
        device_->PlaceAll();
        break;
    case Kind::Project:
        host_->LoadStreamText(stream_);
        LoadElement();
        break;
    }
}

void Session::LoadElement() {
    const std::wstring name = bench::WideOf(host_->App(), &IAppObject::get_UniqueIDString);
    const ModuleKey& key = modules_.at(module_).key;
    const xml::Document document = xml::LoadFile(file_);
    xml::Node element;
    xml::ForEachElement(xml::Select(xml::Node(document), L"/*"), [&](const xml::Node& child) {
        if (!element && xml::NameOf(child) == name && KeyOf(child) == key) {
            element = child;
        }
    });
    // Without one the module is as its stream makes it: another module's element is none of it.
    if (element) {
        host_->Step("XmlLoad", [&] { com::Call(host_->App(), &IAppObject::XmlLoad, element.Get()); });
    }
}

void Session::LeaveBoxesToUser() noexcept {
    host_->LeaveBoxesToUser();
}

void Session::Stop() noexcept {
    isStopped_ = true;
    host_->App().Destroy();
}

std::size_t Session::PointsLoaded() const {
    IAppObject& app = host_->App();
    return CountOf(app, &IAppObject::get_Inputs) + CountOf(app, &IAppObject::get_Outputs) +
           CountOf(app, &IAppObject::get_Attributes);
}

std::string Session::Icon() const {
    return bench::IconBytes(*host_);
}

void Session::SetUnits(bool isUs) {
    const auto settings = com::CreateByProgId(L"UnitManager.Converter").As<IUnitSettings>();
    com::CheckSet(settings.Get());
    com::Call(settings, &IUnitSettings::put_UnitSystem, com::Bstr(isUs ? L"US" : L"metric").Get());
    options_.usUnits = isUs;
    types_.clear();
}

std::wstring Session::ValueOf(const PointId& id) const {
    if (id.kind == view::Kind::Input) {
        const auto input = bench::FindInput(host_->App(), id.name);
        com::CheckSet(input.Get());
        return bench::WideOf(*input.Get(), &IInput::get_Value);
    }
    const auto attribute = bench::FindAttribute(host_->App(), id.name);
    com::CheckSet(attribute.Get());
    return bench::WideOf(*attribute.Get(), &IAttribute::get_Value);
}

void Session::SetValue(const PointId& id, const std::wstring& value) {
    const com::Bstr text(value);
    if (id.kind == view::Kind::Input) {
        const auto input = bench::FindInput(host_->App(), id.name);
        com::CheckSet(input.Get());
        // As a host wires it.
        const bool isWired = tam::LeadsToAnOutput(std::wstring_view(value));
        const auto connection = input.As<ISubItemConnable>();
        com::CheckSet(connection.Get());
        if (const auto type = isWired ? TypeOfOutput(host_->App(), value) : com::Ref<ISNVType>()) {
            com::Call(connection, &ISubItemConnable::putref_ConnectedType, type.Get());
        }
        com::Call(input, &IInput::put_Value, text.Get());
        com::Call(connection, &ISubItemConnable::put_IsConnected, isWired ? VARIANT_TRUE : VARIANT_FALSE);
        areReadersRead_ = false;
    } else {
        const auto attribute = bench::FindAttribute(host_->App(), id.name);
        com::CheckSet(attribute.Get());
        com::Call(attribute, &IAttribute::put_Value, text.Get());
    }
}

std::optional<std::wstring> Session::ProblemOf(const PointId& id, const std::wstring& value) const {
    if (id.kind == view::Kind::Input) {
        return ProblemOfWiring(id.name, value);
    }
    const std::wstring type = documents_->Of(id).type;
    if (id.kind != view::Kind::Attribute || type.empty()) {
        return std::nullopt;
    }
    const std::string point = drawing::Escaped(bench::Utf8(value));
    const std::string stream = "<Tam><Name>n</Name><DevKey>k</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>1"
                               "</TamObjID><Attributes><A><SNVTTYPE>" +
                               drawing::Escaped(bench::Utf8(type)) + "</SNVTTYPE><VALUE>" + point +
                               "</VALUE></A></Attributes></Tam>";
    for (const check::Finding& finding :
         check::CheckText(stream, check::Surroundings(&catalogue_)).findings) {
        const std::string_view rule = check::RuleOf(finding.rule).name;
        if (rule.starts_with("value-") && rule != "value-invalid" &&
            finding.Level() == check::Severity::Error) {
            return bench::Wide(finding.message +
                               (finding.expected.empty() ? "" : "; expected: " + finding.expected));
        }
    }
    return std::nullopt;
}

std::optional<std::wstring> Session::ProblemOfWiring(const std::wstring& name,
                                                     const std::wstring& reference) const {
    const auto type = tam::LeadsToAnOutput(std::wstring_view(reference))
                          ? TypeOfOutput(host_->App(), reference)
                          : com::Ref<ISNVType>();
    const auto input = bench::FindInput(host_->App(), name);
    if (!type || !input) {
        return std::nullopt;
    }
    const auto connection = input.As<ISubItemConnable>();
    com::CheckSet(connection.Get());
    const std::wstring id = bench::WideOf(*type.Get(), &ISNVType::get_ID);
    VARIANT_BOOL fits = VARIANT_FALSE;
    com::Call(connection, &ISubItemConnable::get_IsSNVTCompatible, com::Bstr(id).Get(), &fits);
    return fits != VARIANT_FALSE ? std::nullopt : std::optional(Text(IDS_TYPE_NOT_TAKEN, reference, id));
}

bool Session::LeadsOutside(const std::wstring& reference) const {
    return tam::LeadsToAnOutput(std::wstring_view(reference)) && !bench::FindOutput(host_->App(), reference);
}

void Session::Edit(const std::wstring& attribute) {
    const auto point = bench::FindAttribute(host_->App(), attribute);
    com::CheckSet(point.Get());
    host_->Step("SetValue", [&] { com::Call(point, &IAttribute::SetValue); });
}

void Session::ShowAbout() {
    const auto dialogs = com::Query<ITamDialogs>(&host_->App());
    com::CheckSet(dialogs.Get());
    com::Call(dialogs, &ITamDialogs::ShowAbout);
}

} // namespace view
