#include "appobject/CDBAppObject.h"

#include "common/Case.h"
#include "common/ComponentState.h"
#include "common/DocumentType.h"
#include "common/MessageLoop.h"
#include "common/Report.h"

namespace tam {

namespace {

constexpr const wchar_t* kModule = L"O_Tam_id Class Module CDBAppObject";
constexpr std::int32_t kDefinitionError = static_cast<std::int32_t>(0x80040201u);
constexpr long kReadyStateComplete = 4;

// The definition file. Element names are compared in upper case, the names of
// a row's attributes as they stand.
constexpr const wchar_t* kAppObject = L"AppObject";
constexpr const wchar_t* kName = L"NAME";
constexpr const wchar_t* kId = L"ID";
constexpr const wchar_t* kDescription = L"DESCRIPTION";
constexpr const wchar_t* kCategory = L"CATEGORY";
constexpr const wchar_t* kDataSizes = L"DATASIZES";
constexpr const wchar_t* kRowName = L"Name";
constexpr const wchar_t* kRowCdb = L"CDB_Size";
constexpr const wchar_t* kRowArea1 = L"Size_area_1";
constexpr const wchar_t* kRowArea2 = L"Size_area_2";

constexpr const wchar_t* kDatasheetFolder = L"..\\DataSheets\\";
constexpr std::uint8_t kMostRows = 255;

[[noreturn]] void ThrowDefinitionError(std::wstring_view line, std::wstring_view reason) {
    throw RunTimeError(kDefinitionError, com::ThisModule().Name(),
                       std::wstring(line) + L"\r" + std::wstring(reason));
}

/// Throws the definition error with what the parser says of the file.
[[noreturn]] void ThrowParseError(const dom::Document& document) {
    com::Ref<IXMLDOMParseError> error;
    com::Check(document->get_parseError(error.Put()));
    com::Bstr line;
    com::Bstr reason;
    com::Check(error->get_srcText(line.Put()));
    com::Check(error->get_reason(reason.Put()));
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

/// A child of DataSizes is named by one character and the number of its row.
DataSizeEntry& RowOf(const std::wstring& childName) {
    const std::uint8_t index = com::ByteOf(childName.empty() ? childName : childName.substr(1));
    if (index >= State().DataSizes.size()) {
        throw RunTimeError(RunTime::Subscript);
    }
    return State().DataSizes[index];
}

} // namespace

STDMETHODIMP CDBAppObject::Init(BSTR name, VARIANT_BOOL* value) {
    return Get(value, [&] {
        bool loaded = false;
        Trap(L"IAppObject_Init Class Module CDBAppObject", L"Function IAppObject_Init",
             [&] { loaded = LoadDefinition(com::Text(name)); });
        return loaded;
    });
}

bool CDBAppObject::LoadDefinition(const std::wstring& name) {
    definitionName_ = name;
    defaultValues_ = DefaultValues();
    definition_ = dom::NewDocument(dom::kDefinitionDocumentClass);
    const com::Variant file{std::wstring_view(State().AppPath + name + L".xml")};
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(definition_->load(file.Get(), &done));
    if (done == VARIANT_FALSE) {
        ThrowParseError(definition_);
    }
    if (dom::HasDocumentType(definition_)) { // the words of the parsers that refuse it themselves
        ThrowDefinitionError({}, L"DTD is prohibited.");
    }
    for (long state = 0; state != kReadyStateComplete;) {
        com::Check(definition_->get_readyState(&state));
        if (state != kReadyStateComplete) {
            YieldToHost();
        }
    }
    defaultValues_ = DefaultValues(definition_);
    plugInAvailable_ = false;
    GetBasicInfos();
    return true;
}

void CDBAppObject::GetBasicInfos() noexcept {
    Trap(kModule, L"Sub pGetBasicInfos", [&] {
        const dom::Node root = dom::FirstByTagName(definition_, kAppObject);
        com::CheckSet(root.Get());
        dom::ForEachChildButComments(root, [&](const dom::Node& child) {
            const std::wstring keyword = UpperCase(dom::BaseName(child));
            if (keyword == kName) {
                name_ = dom::TextOf(child);
                if (userName_.empty()) {
                    userName_ = name_;
                }
            } else if (keyword == kId) {
                id_ = dom::TextOf(child);
            } else if (keyword == kDescription) {
                description_ = dom::TextOf(child);
            } else if (keyword == kCategory) {
                category_ = dom::TextOf(child);
            } else if (keyword == kDataSizes) {
                GetDataSizes(child);
            }
        });
        FindDatasheet();
    });
}

void CDBAppObject::GetDataSizes(const dom::Node& element) noexcept {
    Trap(kModule, L"Sub pGetDataSizes", [&] {
        std::uint8_t& count = State().DataSizeCount;
        count = 0;
        // A comment is no row: its name has no number, which ends the reading.
        dom::ForEachChild(element, [&](const dom::Node& child) {
            DataSizeEntry& row = RowOf(dom::BaseName(child));
            dom::ForEachAttribute(child, [&](const std::wstring& name, const std::wstring& text) {
                if (name == kRowName) {
                    row.Name = text;
                } else if (name == kRowCdb) {
                    row.CDB_Size = com::ByteOf(text);
                } else if (name == kRowArea1) {
                    row.Size_area_1 = com::ByteOf(text);
                } else if (name == kRowArea2) {
                    row.Size_area_2 = com::ByteOf(text);
                }
            });
            if (count == kMostRows) {
                throw RunTimeError(RunTime::Overflow);
            }
            ++count;
        });
    });
}

void CDBAppObject::FindDatasheet() {
    const std::wstring& folder = State().AppPath;
    if (const std::wstring file = FirstDatasheet(folder); !file.empty()) {
        datasheetAvailable_ = true;
        datasheetPath_ = folder + file;
        return;
    }
    if (id_.empty()) {
        datasheetAvailable_ = false;
        return;
    }
    // With an ID and no file the flag keeps what an earlier search found.
    const std::wstring shared = folder + kDatasheetFolder;
    if (const std::wstring file = FirstDatasheet(shared + L"pb_" + id_ + L"_"); !file.empty()) {
        datasheetAvailable_ = true;
        datasheetPath_ = shared + file;
    }
}

} // namespace tam
