#include "appobject/CDBAppObject.h"

#include "com/DocumentType.h"
#include "common/ComponentState.h"
#include "common/DocumentFields.h"
#include "common/ErrorReport.h"
#include "common/MessageLoop.h"
#include "core/Case.h"

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBAppObject";
constexpr std::int32_t kDefinitionError = static_cast<std::int32_t>(0x80040201u);
constexpr long kReadyStateComplete = 4;

// The definition file. Element names are compared in upper case.
constexpr const wchar_t* kAppObject = L"AppObject";
constexpr const wchar_t* kName = L"NAME";
constexpr const wchar_t* kDataSizes = L"DATASIZES";

constexpr const wchar_t* kDatasheetFolder = L"..\\DataSheets\\";

[[noreturn]] void ThrowDefinitionError(std::wstring_view line, std::wstring_view reason) {
    throw RunTimeError(kDefinitionError, com::ThisDll().Name(),
                       std::wstring(line) + L"\r" + std::wstring(reason));
}

/// Throws the definition error with what the parser says of the file.
[[noreturn]] void ThrowParseError(const dom::Document& document) {
    com::Ref<IXMLDOMParseError> error;
    com::Call(document, &IXMLDOMDocument::get_parseError, error.Put());
    com::Bstr line;
    com::Bstr reason;
    com::Call(error, &IXMLDOMParseError::get_srcText, line.Put());
    com::Call(error, &IXMLDOMParseError::get_reason, reason.Put());
    ThrowDefinitionError(line.View(), reason.View());
}

/// Name of the first file that fits the pattern; empty when none does. Folders
/// and what the directory hides are no documents.
std::wstring FirstFile(const std::wstring& pattern) {
    constexpr DWORD kNoDocument = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return {};
    }
    bool usable = (found.dwFileAttributes & kNoDocument) == 0;
    while (!usable && FindNextFileW(search, &found) != FALSE) {
        usable = (found.dwFileAttributes & kNoDocument) == 0;
    }
    FindClose(search);
    return usable ? std::wstring(found.cFileName) : std::wstring();
}

/// The first file of a stem with a document's extension, PDF before DOC.
std::wstring FirstDatasheet(const std::wstring& stem) {
    const std::wstring pdf = FirstFile(stem + L"*.pdf");
    return pdf.empty() ? FirstFile(stem + L"*.doc") : pdf;
}

} // namespace

STDMETHODIMP CDBAppObject::Init(BSTR name, VARIANT_BOOL* value) {
    const auto kept = This<IAppObject>(); // a message of the host may drop the last reference
    return Get(value, [&] {
        bool loaded = false;
        Trap(L"IAppObject_Init Class Module CDBAppObject", L"Function IAppObject_Init",
             [&] { loaded = LoadDefinition(com::Text(name)); });
        return loaded;
    });
}

bool CDBAppObject::LoadDefinition(const std::wstring& name) {
    data_.identity.definitionName = name;
    defaultValues_ = DefaultValues();
    definition_ = dom::NewDocument(dom::kDefinitionDocumentClass);
    const com::Variant file{std::wstring_view(State().AppPath + name + L".xml")};
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Call(definition_, &IXMLDOMDocument::load, file.Get(), &done);
    if (done == VARIANT_FALSE) {
        ThrowParseError(definition_);
    }
    if (dom::HasDocumentType(definition_)) { // the words of the parsers that refuse it themselves
        ThrowDefinitionError({}, L"DTD is prohibited.");
    }
    for (long state = 0; state != kReadyStateComplete;) {
        com::Call(definition_, &IXMLDOMDocument::get_readyState, &state);
        if (state != kReadyStateComplete) {
            YieldToHost();
        }
    }
    defaultValues_ = DefaultValues(definition_);
    GetBasicInfos();
    return true;
}

void CDBAppObject::GetBasicInfos() noexcept {
    Trap(kReportClass, L"Sub pGetBasicInfos", [&] {
        const dom::Node root = dom::FirstByTagName(definition_, kAppObject);
        com::CheckSet(root.Get());
        dom::ForEachChildButComments(root, [&](const dom::Node& child) {
            const std::wstring keyword = UpperCase(dom::BaseName(child));
            if (keyword == kDataSizes) {
                GetDataSizes(child);
            } else {
                TakeNode(kModuleDefinition, keyword, data_.identity, child, &dom::TextOf);
            }
            if (keyword == kName && data_.placement.userName.empty()) {
                data_.placement.userName = data_.identity.name;
            }
        });
        FindDatasheet();
    });
}

void CDBAppObject::GetDataSizes(const dom::Node& element) noexcept {
    Trap(kReportClass, L"Sub pGetDataSizes", [&] {
        DataSizeTable& table = State().DataSizes;
        table.Begin();
        // A comment is no row: its name has no number, which ends the reading.
        dom::ForEachChild(element, [&](const dom::Node& child) {
            DataSizeEntry& row = table.RowOf(dom::BaseName(child), &com::ByteOf);
            dom::ForEachAttribute(child, [&](const std::wstring& name, const std::wstring& text) {
                SetDataSize(row, name, text, &com::ByteOf);
            });
            table.CountRow();
        });
    });
}

void CDBAppObject::FindDatasheet() {
    const std::wstring& folder = State().AppPath;
    if (const std::wstring file = FirstDatasheet(folder); !file.empty()) {
        data_.datasheet.isAvailable = true;
        data_.datasheet.path = folder + file;
        return;
    }
    if (data_.identity.id.empty()) {
        data_.datasheet.isAvailable = false;
        return;
    }
    // With an ID and no file the flag keeps what an earlier search found.
    const std::wstring shared = folder + kDatasheetFolder;
    if (const std::wstring file = FirstDatasheet(shared + L"pb_" + data_.identity.id + L"_"); !file.empty()) {
        data_.datasheet.isAvailable = true;
        data_.datasheet.path = shared + file;
    }
}

} // namespace tam
