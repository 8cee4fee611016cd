#include "tests/support/Fixture.h"

#include "tests/support/Recorder.h"

#include <algorithm>
#include <ios>

namespace support {

std::wstring DecimalMark() {
    wchar_t mark[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, 8);
    return mark;
}

std::wstring Local(std::wstring number) {
    const auto point = number.find(L'.');
    return point == std::wstring::npos ? number : number.replace(point, 1, DecimalMark());
}

void ComponentTest::SetUp() {
    Calls().clear();
    converter_ = Converter::Make();
    converterClass_.emplace(kConverterClass, kConverterProgId,
                            [this](REFIID iid, void** out) { return converter_->QueryInterface(iid, out); });
    watcher_.emplace();
    component_.emplace();
}

void ComponentTest::TearDown() {
    EXPECT_EQ(component_->CanUnload(), S_OK) << "objects of the component are still alive";
    EXPECT_TRUE(watcher_->Seen().empty()) << "a box was shown that the test does not expect";
    for (const bench::Box& box : watcher_->Seen()) {
        ADD_FAILURE() << com::Bstr(box.caption).Get() << box.text;
    }
    compilerClass_.reset();
    locationClass_.reset();
    component_.reset();
    watcher_.reset();
    converterClass_.reset();
}

com::Ref<IAppObject> ComponentTest::NewModule() {
    auto module = component_->NewModule();
    EXPECT_TRUE(module) << "HRESULT " << std::hex << component_->LastCreateResult();
    return module;
}

com::Ref<IAppObject> ComponentTest::Loaded(const std::wstring& stream) {
    auto module = NewModule();
    const com::Bstr text(stream);
    const HRESULT result = module.As<ITamObject>()->LoadFromXmlStream(text.Get());
    EXPECT_EQ(result, S_OK) << "the stream does not load";
    return module;
}

void ComponentTest::SetCatalogue(const std::wstring& entries) {
    const auto module = NewModule();
    const Document catalogue = Parse(L"<Catalogue>" + entries + L"</Catalogue>");
    EXPECT_EQ(module->putref_XmlSNVTDoc(catalogue.Get()), S_OK);
}

Compiler& ComponentTest::UseCompiler() {
    if (!compiler_) {
        compiler_ = com::Ref<Compiler>::Own(new Compiler);
        compilerClass_.emplace(kCompilerClass, kCompilerProgId, [this](REFIID iid, void** out) {
            return compiler_->QueryInterface(iid, out);
        });
    }
    return *compiler_.Get();
}

DatabaseLocation& ComponentTest::UseDatabaseLocation() {
    if (!location_) {
        location_ = DatabaseLocation::Make();
        locationClass_.emplace(kDatabaseLocationClass, L"", [this](REFIID iid, void** out) {
            return location_->QueryInterface(iid, out);
        });
    }
    return *location_.Get();
}

std::wstring Stream(const std::wstring& inputs, const std::wstring& outputs, const std::wstring& attributes,
                    const std::wstring& name) {
    const auto section = [](const wchar_t* element, const std::wstring& content) {
        return content.empty() ? std::wstring()
                               : std::wstring(L"<") + element + L">" + content + L"</" + element + L">";
    };
    return L"<Tam><Name>" + name +
           L"</Name><DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>3</TamObjID>" +
           section(L"InReferences", inputs) + section(L"OutReferences", outputs) +
           section(L"Attributes", attributes) + L"</Tam>";
}

void ExpectBox(const bench::Box& box, const std::wstring& text, const std::wstring& caption, UINT icon) {
    EXPECT_TRUE(box.isMessageBox);
    EXPECT_EQ(box.text, text);
    EXPECT_EQ(box.caption, caption);
    EXPECT_EQ(box.icon, icon);
    EXPECT_EQ(box.buttons, std::vector<std::wstring>{L"OK"});
}

void ExpectReport(const bench::Box& box, const std::wstring& description, const std::wstring& callingObject,
                  const std::wstring& callingFunction, const std::wstring& source) {
    EXPECT_FALSE(box.isMessageBox);
    EXPECT_EQ(box.caption, L"Gateway Object - Error report");
    const auto shows = [&](const std::wstring& text) {
        return std::any_of(box.controls.begin(), box.controls.end(),
                           [&](const auto& control) { return control.second == text; });
    };
    if (!description.empty()) {
        EXPECT_TRUE(shows(description)) << "no control shows the description";
    }
    const std::wstring advanced = L"* Source application (Err.Source): \r\n  " + source +
                                  L"\r\n* Calling object (Me.Name or module name): \r\n  " + callingObject +
                                  L"\r\n* Calling function: \r\n  " + callingFunction;
    std::wstring all;
    for (const auto& control : box.controls) {
        all += L"[" + control.second + L"]";
    }
    EXPECT_TRUE(shows(advanced)) << "expected " << testing::PrintToString(advanced) << "\nin "
                                 << testing::PrintToString(all);
}

} // namespace support
