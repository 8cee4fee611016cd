#include "view/Session.h"

#include "view/RecoveryFile.h"
#include "view/SessionDocuments.h"

#include "bench/Commands.h"
#include "bench/Model.h"
#include "bench/Text.h"
#include "bench/TextFile.h"
#include "check/Check.h"
#include "check/Program.h"
#include "com/Creation.h"
#include "drawing/Svg.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace view {

namespace {

/// A box's text in one line.
std::string OneLine(std::string text) {
    for (std::size_t at = 0; (at = text.find_first_of("\r\n", at)) != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_not_of("\r\n", at), text.size());
        text.replace(at, end - at, " ");
    }
    return text;
}

template <class Collection>
std::size_t CountOf(IAppObject& app, HRESULT (STDMETHODCALLTYPE IAppObject::*member)(Collection**)) {
    com::Ref<Collection> collection;
    long count = 0;
    if (FAILED((app.*member)(collection.Put())) || !collection || FAILED(collection->get_Count(&count))) {
        return 0;
    }
    return static_cast<std::size_t>(count);
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

Session::Session() : report_("view", bench::Screen{}) {
    options_.wire = true; // as a host does: the sheet shows what is wired to what
    host_ = std::make_unique<bench::Host>(options_, report_);
    converter_ = com::CreateByProgId(L"UnitManager.Converter").As<IUnitConverter>();
}

Session::~Session() = default;

void Session::Read(const std::wstring& file) {
    file_ = file;
    files_ = {{file, StampOf(file)}}; // before it is read: a later change is seen
    const std::string bytes = bench::ReadBytes(file);
    FileText text = ReadFileText(bytes, file);
    kind_ = text.kind;
    if (kind_ == Kind::Device) {
        options_.deviceFile = file;
        const bench::DeviceFile device = bench::ReadDeviceFile(file);
        for (const std::wstring& named : {device.streamFile, device.firmwareFile}) {
            const bool isNew = std::none_of(files_.begin(), files_.end(),
                                            [&](const StampedFile& known) { return known.path == named; });
            if (isNew) {
                files_.push_back({named, StampOf(named)});
            }
        }
        text.source = bench::ReadBytes(device.streamFile);
    }
    std::string problem;
    catalogue_ = check::ReadCatalogue(check::ReadFile(host_->CatalogueFile(), problem));
    const check::Surroundings surroundings(&catalogue_);
    check::Findings encoding;
    const check::Result result = kind_ == Kind::Project ? check::CheckText(text.source, surroundings)
                                                        : check::CheckBytes(text.source, surroundings);
    if (kind_ != Kind::Project) {
        text.source = check::Decode(std::move(text.source), encoding);
    }
    findings_ = RowsOf(result.findings, text.source);
    documents_ = std::make_unique<Documents>(text.source, options_.definition);
    pointsInFile_ = documents_->Points();
    stream_ = kind_ == Kind::Project ? bench::Wide(text.source) : std::wstring();
    source_ = SourceText(std::move(text.source));
}

void Session::Load() {
    switch (kind_) {
    case Kind::Stream:
        host_->LoadStreamFile(file_, file_);
        break;
    case Kind::Device:
        device_ = std::make_unique<bench::OpenedDevice>(*host_, options_, report_);
        device_->PlaceAll();
        break;
    case Kind::Project: {
        host_->LoadStreamText(stream_);
        const xml::Document document = xml::LoadFile(file_);
        const std::wstring name = bench::WideOf(host_->App(), &IAppObject::get_UniqueIDString);
        if (const xml::Node element = xml::Select(xml::Node(document), L"//" + name)) {
            host_->Step("XmlLoad", [&] { com::Call(host_->App(), &IAppObject::XmlLoad, element.Get()); });
        }
        break;
    }
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

std::wstring Session::ModuleName() const {
    return bench::WideOf(host_->App(), &IAppObject::get_Name);
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
        com::Call(input, &IInput::put_Value, text.Get());
        areReadersRead_ = false;
    } else {
        const auto attribute = bench::FindAttribute(host_->App(), id.name);
        com::CheckSet(attribute.Get());
        com::Call(attribute, &IAttribute::put_Value, text.Get());
    }
}

std::optional<std::wstring> Session::ProblemOf(const PointId& id, const std::wstring& value) const {
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

void Session::PassOverBoxes(std::size_t from) {
    for (; from < Boxes(); ++from) {
        ownBoxes_.insert(from);
    }
}

std::vector<FindingRow> Session::TakeBoxes() {
    std::vector<FindingRow> rows;
    const bench::Json& boxes = report_.Boxes();
    for (; boxesTaken_ < boxes.size(); ++boxesTaken_) {
        const bench::Json& box = boxes[boxesTaken_];
        if (!box["fault"].get<bool>() || ownBoxes_.contains(boxesTaken_)) {
            continue;
        }
        FindingRow row;
        row.weight = Weight::Box;
        row.rule = box["caption"].get<std::string>();
        row.message = OneLine(box["text"].get<std::string>());
        if (const auto place = documents_->PlaceNamedIn(row.message)) {
            row.point = place->point;
            const SourcePlace first = source_.PlaceOf(place->begin);
            row.line = first.line;
            row.column = first.column;
            row.endLine = first.line;
            row.endColumn = first.column + place->point.name.size() + 1;
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace view
