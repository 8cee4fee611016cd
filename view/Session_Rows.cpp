#include "view/Session.h"

#include "view/resource.h"
#include "view/SessionDocuments.h"
#include "view/Window.h"

#include "bench/DevicePoints.h"
#include "bench/Model.h"
#include "bench/SheetTypes.h"
#include "bench/Text.h"
#include "core/References.h"

#include <string_view>
#include <unordered_map>
#include <utility>

namespace view {

namespace {

bool IsWired(const std::wstring& reference) noexcept {
    return tam::LeadsToAnOutput(std::wstring_view(reference));
}

std::wstring Capitals(std::wstring text) {
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

const std::wstring& YesNo(bool yes) {
    static const std::wstring kYes = Text(IDS_YES);
    static const std::wstring kNo = Text(IDS_NO);
    return yes ? kYes : kNo;
}

std::wstring TypeTitle(const std::wstring& id, std::wstring_view name) {
    constexpr std::wstring_view kPrefix = L"SNVT_";
    if (id.empty()) {
        return {};
    }
    if (name.starts_with(kPrefix)) {
        name.remove_prefix(kPrefix.size());
    }
    return name.empty() ? id : id + L" " + std::wstring(name);
}

drawing::Pin PinOf(const Row& row) {
    drawing::Pin pin;
    pin.name = bench::Utf8(row.id.name);
    pin.type = bench::Utf8(row.type);
    pin.address = bench::Utf8(row.address);
    pin.wiredTo = bench::Utf8(row.displayed);
    pin.isWired = !pin.wiredTo.empty();
    pin.isHidden = row.visible == YesNo(false);
    return pin;
}

std::unordered_map<std::string, std::size_t> PlacesOf(const std::vector<drawing::Pin>& pins) {
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < pins.size(); ++i) {
        places.try_emplace(pins[i].name, i);
    }
    return places;
}

} // namespace

const Session::TypeWords& Session::WordsOf(const std::wstring& typeId) {
    const auto known = types_.find(typeId);
    if (known != types_.end()) {
        return known->second;
    }
    TypeWords words{TypeTitle(typeId, host_->CatalogueText(typeId, L"Name")), {}};
    com::Bstr label;
    if (converter_ && SUCCEEDED(converter_->Label(com::Bstr(typeId).Get(), label.Put()))) {
        words.unit = label.View();
    }
    if (words.unit.empty()) {
        words.unit = host_->CatalogueText(typeId, L"Unit");
    }
    return types_.emplace(typeId, std::move(words)).first->second;
}

bool Session::SetType(Row& row, const com::Ref<ISNVType>& type) {
    if (!type) {
        return false;
    }
    const TypeWords& words = WordsOf(bench::WideOf(*type.Get(), &ISNVType::get_ID));
    row.type = words.title;
    row.unit = words.unit;
    return true;
}

void Session::ReadReaders() {
    areReadersRead_ = true;
    readers_.clear();
    const std::wstring separator = Text(IDS_SEPARATOR);
    bench::ForEachInput(host_->App(), [&](IInput& input) {
        const std::wstring reference = bench::WideOf(input, &IInput::get_Value);
        if (IsWired(reference)) {
            std::wstring& readers = readers_[Capitals(reference)];
            readers +=
                (readers.empty() ? std::wstring() : separator) + bench::WideOf(input, &IInput::get_Name);
        }
    });
}

std::wstring Session::OutputsReaders(const std::wstring& output) {
    if (!areReadersRead_) {
        ReadReaders();
    }
    const auto found = readers_.find(Capitals(output));
    return found != readers_.end() ? found->second : std::wstring();
}

Row Session::ReadInput(IInput& input, std::size_t index) {
    Row row;
    row.id = {view::Kind::Input, bench::WideOf(input, &IInput::get_Name)};
    row.index = index;
    const Documents::Words& words = documents_->Of(row.id);
    const TypeWords& type = WordsOf(words.type);
    row.type = type.title;
    row.unit = type.unit;
    row.address = words.address;
    row.value = bench::WideOf(input, &IInput::get_Value);
    row.displayed = IsWired(row.value) ? row.value : std::wstring();
    row.visible = YesNo(bench::FlagOf(input, &IInput::get_Visible));
    return row;
}

Row Session::ReadOutput(IOutput& output, std::size_t index) {
    Row row;
    row.id = {view::Kind::Output, bench::WideOf(output, &IOutput::get_Name)};
    row.index = index;
    com::Ref<ISNVType> type;
    com::Call(output, &IOutput::get_SNVTType, type.Put());
    SetType(row, type);
    row.address = documents_->Of(row.id).address;
    row.displayed = OutputsReaders(row.id.name);
    row.visible = YesNo(bench::FlagOf(output, &IOutput::get_Visible));
    return row;
}

Row Session::ReadAttribute(IAttribute& attribute, std::size_t index) {
    Row row;
    row.id = {view::Kind::Attribute, bench::WideOf(attribute, &IAttribute::get_Name)};
    row.index = index;
    row.value = bench::WideOf(attribute, &IAttribute::get_Value);
    com::Ref<ISNVType> type;
    com::Call(attribute, &IAttribute::get_SNVTType, type.Put());
    if (SetType(row, type)) {
        row.displayed = bench::WideOf(attribute, &IAttribute::get_DispValue);
    }
    row.defaultValue = documents_->DefaultOf(row.id.name);
    row.address = documents_->Of(row.id).address;
    row.visible = YesNo(bench::FlagOf(attribute, &IAttribute::get_Visible));
    return row;
}

std::vector<Row> Session::ReadRows(view::Kind kind) {
    std::vector<Row> rows;
    switch (kind) {
    case view::Kind::Input:
        bench::ForEachInput(host_->App(),
                            [&](IInput& input) { rows.push_back(ReadInput(input, rows.size())); });
        break;
    case view::Kind::Output:
        bench::ForEachOutput(host_->App(),
                             [&](IOutput& output) { rows.push_back(ReadOutput(output, rows.size())); });
        break;
    case view::Kind::Attribute:
        bench::ForEachAttribute(host_->App(), [&](IAttribute& attribute) {
            rows.push_back(ReadAttribute(attribute, rows.size()));
        });
        break;
    }
    return rows;
}

std::optional<Row> Session::ReadRow(const PointId& id) {
    switch (id.kind) {
    case view::Kind::Input:
        if (const auto input = bench::FindInput(host_->App(), id.name)) {
            return ReadInput(*input.Get(), 0);
        }
        break;
    case view::Kind::Output:
        if (const auto output = bench::FindOutput(host_->App(), id.name)) {
            return ReadOutput(*output.Get(), 0);
        }
        break;
    case view::Kind::Attribute:
        if (const auto attribute = bench::FindAttribute(host_->App(), id.name)) {
            return ReadAttribute(*attribute.Get(), 0);
        }
        break;
    }
    return std::nullopt;
}

drawing::Sheet Session::ReadSheet(const std::vector<Row>& inputs, const std::vector<Row>& outputs) {
    drawing::Sheet sheet;
    IAppObject& app = host_->App();
    sheet.module.name = bench::TextOf(app, &IAppObject::get_Name);
    sheet.module.subtitle =
        bench::TextOf(app, &IAppObject::get_Category) + " \u00B7 " + bench::TextOf(app, &IAppObject::get_ID);
    sheet.module.hasIcon = true;
    for (const Row& row : inputs) {
        sheet.module.inputs.push_back(PinOf(row));
    }
    for (const Row& row : outputs) {
        sheet.module.outputs.push_back(PinOf(row));
    }
    if (device_) {
        const PinPlaces inputPlaces = PlacesOf(sheet.module.inputs);
        const PinPlaces outputPlaces = PlacesOf(sheet.module.outputs);
        for (const bench::Channel& channel : device_->Channels()) {
            const std::size_t number = sheet.channels.size() + 1;
            drawing::Block block =
                ReadChannelBlock(channel, number, inputPlaces, outputPlaces, sheet.mirrors);
            sheet.channels.push_back(std::move(block));
        }
    }
    return sheet;
}

drawing::Block Session::ReadChannelBlock(const bench::Channel& channel, std::size_t number,
                                         const PinPlaces& inputs, const PinPlaces& outputs,
                                         std::vector<drawing::Mirror>& mirrors) {
    const bench::Json read = bench::ReadChannel(*device_, channel);
    drawing::Block block;
    block.name = read["objectKey"];
    block.subtitle = read["name"];
    for (const bench::Json& point : read["points"]) {
        const bool isInput = point["kind"] == "input";
        if (!isInput && point["kind"] != "output") {
            continue;
        }
        std::vector<drawing::Pin>& pins = isInput ? block.inputs : block.outputs;
        const drawing::Side side = isInput ? drawing::Side::Input : drawing::Side::Output;
        drawing::Pin pin;
        pin.name = point["name"];
        pin.isHidden = !point["visible"].get<bool>();
        if (const bench::Json type = point.value("type", bench::Json()); !type.is_null()) {
            pin.type = bench::TypeTitle(type);
        }
        if (const bench::Json& item = point["moduleItem"]; !item.is_null()) {
            const PinPlaces& own = isInput ? inputs : outputs;
            const auto found = own.find(item["name"].get<std::string>());
            if (found != own.end()) {
                mirrors.push_back({{0, side, found->second}, {number, side, pins.size()}});
            }
        }
        pins.push_back(std::move(pin));
    }
    return block;
}

std::vector<TypeRow> Session::ReadTypes() const {
    constexpr std::wstring_view kPrefix = L"SNVT_";
    std::vector<TypeRow> rows;
    const std::string mark = bench::DecimalMark();
    xml::ForEachElement(host_->Catalogue(), [&](const xml::Node& entry) {
        const std::wstring name = xml::NameOf(entry);
        if (!name.starts_with(kPrefix)) {
            return;
        }
        const std::wstring id = name.substr(kPrefix.size());
        const bench::Json type = bench::TypeOfCatalogue(*host_, id);
        if (type.is_null()) {
            return;
        }
        const auto text = [&](const char* member) { return bench::Wide(type[member].get<std::string>()); };
        rows.push_back({id, text("name"), text("generalType"), text("unit"), text("min"), text("max"),
                        bench::Wide(bench::Resolution(type["generalType"], type["a"], type["b"], mark)),
                        text("invalidValue")});
    });
    return rows;
}

} // namespace view
