#include "bench/Commands.h"
#include "bench/Model.h"
#include "bench/Text.h"

namespace bench {

namespace {

com::Ref<ITamDialogs> DialogsOf(Host& host) {
    auto dialogs = com::Query<ITamDialogs>(&host.App());
    com::CheckSet(dialogs.Get());
    return dialogs;
}

} // namespace

void Edit(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    const auto attribute = FindAttribute(host.App(), options.attribute);
    if (!attribute) {
        throw BenchError(E_INVALIDARG, "there is no attribute \"" + Utf8(options.attribute) + "\"");
    }
    answer.data["attribute"] = Utf8(options.attribute);
    answer.Heading("The value of " + Utf8(options.attribute));
    const Json before = answer.data["before"] = ReadValue(*attribute.Get());
    const auto tell = [&] {
        const Json after = answer.data["after"] = ReadValue(*attribute.Get());
        Table table({"", "Value", "Displayed as"});
        table.Add({"before", before["value"], DisplayOf(before)});
        table.Add({"after", after["value"], DisplayOf(after)});
        answer.Add(table);
    };
    host.DialogStep("SetValue", [&] {
        com::Call(attribute, &IAttribute::SetValue);
        tell();
    });
}

void Rename(Host& host, const Options& options, Answer& answer) {
    constexpr short kConfirmed = 1;
    host.DialogStep("ShowRename", [&] {
        com::Variant name(options.deviceName);
        VARIANT argument = name.Detach();
        short choice = 0;
        const auto dialogs = DialogsOf(host);
        com::ForgetErrors();
        const HRESULT hr = dialogs->ShowRename(&argument, com::Bstr(options.deviceKey).Get(), &choice);
        *name.Put() = argument;
        com::CheckCall(hr, dialogs.Get(), __uuidof(ITamDialogs));
        const bool confirmed = choice == kConfirmed;
        const std::string after = Utf8(com::Text(name.Get().bstrVal));
        answer.data["deviceKey"] = Utf8(options.deviceKey);
        answer.data["choice"] = confirmed ? "confirmed" : "cancelled";
        answer.data["before"] = Utf8(options.deviceName);
        answer.data["after"] = after;
        answer.Heading(confirmed ? "Confirmed" : "Cancelled");
        Fields fields;
        fields.Add("name before", Utf8(options.deviceName));
        fields.Add("name after", after);
        fields.Add("device key", Utf8(options.deviceKey));
        answer.Add(fields);
    });
}

void About(Host& host, const Options&, Answer& answer) {
    host.Step("ShowAbout", [&] { com::Call(DialogsOf(host), &ITamDialogs::ShowAbout); });
    answer.Line("The component was asked for its about box.");
}

} // namespace bench
