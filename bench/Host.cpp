#include "bench/Host.h"

#include "bench/Explanations.h"
#include "bench/Model.h"
#include "bench/Samples.h"
#include "bench/Text.h"
#include "bench/TextFile.h"
#include "bench/Typist.h"
#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Creation.h"
#include "core/References.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

namespace {

constexpr const wchar_t* kModuleProgId = L"O_Tam_id.CDBAppObject";

// What a drawing would give the object.
constexpr const wchar_t* kGlobalKey = L"SHEET1\\MODULE1";
constexpr const wchar_t* kExtendedKey = L"PROJECT\\SHEET1\\MODULE1";
constexpr short kAddress = 1;
constexpr const wchar_t* kApplication = L"BENCH";

template <class I>
com::Ref<I> Create(REFCLSID clsid) {
    com::Ref<I> object;
    com::Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(I), object.PutVoid()));
    return object;
}

/// The program's manifest takes the classes from the files beside it, whatever
/// the machine has registered.
void CheckBeside(const wchar_t* file, const char* what) {
    const std::wstring folder = ProgramFolder();
    if (!IsFile(folder + file)) {
        throw BenchError(CodeOf(ERROR_FILE_NOT_FOUND), Utf8(file) + " is not beside " + ProgramName() +
                                                           ", in " + Utf8(folder) + ": it has " + what);
    }
}

/// A module. The component says itself which class of the host it lacks.
com::Ref<IDispatch> CreateModule() {
    CLSID clsid{};
    com::Ref<IDispatch> object;
    com::Check(CLSIDFromProgID(kModuleProgId, &clsid));
    com::ForgetErrors();
    const HRESULT result =
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid());
    if (FAILED(result)) {
        com::Ref<IErrorInfo> info;
        GetErrorInfo(0, info.Put());
        throw com::CallError(result, std::move(info));
    }
    return object;
}

std::wstring FindCatalogue(const std::wstring& given) {
    if (!given.empty()) {
        return given;
    }
    const std::wstring beside = ProgramFolder();
    for (const std::wstring& path : {beside + L"catalogue.xml", beside + L"samples\\catalogue.xml",
                                     std::wstring(L"samples\\catalogue.xml")}) {
        if (IsFile(path)) {
            return path;
        }
    }
    throw BenchError(CodeOf(ERROR_FILE_NOT_FOUND),
                     "there is no catalogue.xml beside the program or in a folder samples; use --catalogue");
}

} // namespace

Apartment::Apartment() {
    com::Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
}

Apartment::~Apartment() {
    CoUninitialize();
}

LentClasses::LentClasses(int manifestResource) {
    ACTCTXW request{};
    const std::wstring folder = ProgramFolder();
    request.cbSize = sizeof request;
    request.dwFlags =
        ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
    request.hModule = GetModuleHandleW(nullptr);
    request.lpResourceName = MAKEINTRESOURCEW(manifestResource);
    request.lpAssemblyDirectory = folder.c_str();
    context_ = CreateActCtxW(&request);
    if (context_ == INVALID_HANDLE_VALUE || ActivateActCtx(context_, &cookie_) == FALSE) {
        throw BenchError(CodeOf(GetLastError()), "the program's list of lent classes cannot be used");
    }
}

LentClasses::~LentClasses() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
}

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): see its declaration
std::string Host::step_;

Host::Host(const Options& options, Answer& answer)
    : options_(options)
    , answer_(answer)
    , watcher_(options.interactive ? BoxWatcher::Mode::LeaveToUser : BoxWatcher::Mode::Answer) {
    watcher_.OnBox([this](HWND window, const Box& box) { return AnswerBox(window, box); });
    catalogueFile_ = FindCatalogue(options.catalogue);
    answer_.SetCatalogue(catalogueFile_);
    AddGround(catalogueFile_, answer_);
    catalogueDocument_ = xml::LoadFile(catalogueFile_);
    com::Ref<IXMLDOMElement> root;
    com::Call(catalogueDocument_, &IXMLDOMDocument::get_documentElement, root.Put());
    catalogue_ = xml::Node(root);
    types_ = xml::IndexOf(catalogue_);
    MakeObject();
}

Host::~Host() {
    if (app_) {
        app_->Destroy();
    }
}

bool Host::AnswerBox(HWND window, const Box& box) {
    watcher_.Take(); // the answer has what is kept
    if (isUnseen_) {
        BoxWatcher::Press(window);
        return true;
    }
    const bool isTyped = isTyping_ && !box.isMessageBox && !IsErrorReport(box);
    const char* const answeredBy = isTyped ? "keys" : options_.interactive ? "user" : "bench";
    const bool isExpected = box.isMessageBox && box.text == expectedBox_;
    com::Attempt([&] { answer_.AddBox(step_, box, answeredBy, isExpected); });
    return isTyped;
}

void Host::TellQuickBox(const Box& box) {
    if (!isUnseen_) {
        const bool isExpected = box.text == expectedBox_;
        com::Attempt([&] { answer_.AddBox(step_, box, "bench", isExpected); });
    }
}

void Host::DialogStep(const std::string& name, const std::function<void()>& f) {
    if (options_.interactive) {
        Step(name, f);
        return;
    }
    isTyping_ = !options_.keys.empty();
    Typist typist(options_.keys);
    Step(name, f);
    isTyping_ = false;
    const std::string left = Utf8(typist.Left());
    Json leftOpen = Json::array();
    for (const std::wstring& caption : typist.LeftOpen()) {
        leftOpen.push_back(Utf8(caption));
    }
    answer_.data["keys"] = Utf8(options_.keyText);
    answer_.data["keysLeft"] = left;
    answer_.data["leftOpen"] = leftOpen;
    if (!left.empty()) {
        throw BenchError(E_ABORT, "all dialogs had closed before these keys were typed: " + left);
    }
    if (!leftOpen.empty()) {
        throw BenchError(E_ABORT, (options_.keys.empty() ? "its OK" : "the keys") +
                                      (" did not close \"" + leftOpen.front().get<std::string>()) +
                                      "\"; it was closed with Cancel");
    }
}

void Host::MakeObject() {
    Step("activation", [] {
        CheckBeside(L"O_Tam_id.dll", "the component");
        CheckBeside(L"OrvHost.dll", "the unit converter and the other services of a host");
    });
    if (options_.usUnits) {
        Step("UnitSystem", [&] {
            const auto settings = com::CreateByProgId(L"UnitManager.Converter").As<IUnitSettings>();
            com::CheckSet(settings.Get());
            com::Call(settings, &IUnitSettings::put_UnitSystem, com::Bstr(L"US").Get());
        });
    }
    Step("activation", [&] {
        const com::Ref<IDispatch> object = CreateModule();
        app_ = object.As<IAppObject>();
        tam_ = object.As<ITamObject>();
        com::CheckSet(app_.Get());
        com::CheckSet(tam_.Get());
        if (!options_.interactive) {
            quickBoxes_.emplace(GetModuleHandleW(L"O_Tam_id.dll"),
                                [this](const Box& box) { TellQuickBox(box); });
        }
    });
    AddGround(ProgramFolder() + options_.definition + L".xml", answer_);
    Step("Init", [&] {
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Call(app_, &IAppObject::Init, com::Bstr(options_.definition).Get(), &done);
        if (done == VARIANT_FALSE) {
            CheckBeside((options_.definition + L".xml").c_str(), "the definition");
            throw BenchError(E_FAIL, "Init(\"" + Utf8(options_.definition) +
                                         "\") answered False: the definition could not be loaded");
        }
    });
    Step("XmlSNVTDoc", [&] { com::Call(app_, &IAppObject::putref_XmlSNVTDoc, catalogueDocument_.Get()); });
    Step("Parent", [&] {
        project_ = Create<IDispatch>(__uuidof(Project));
        com::Call(app_, &IAppObject::putref_Parent, project_.Get());
    });
    Step("Address", [&] {
        com::Call(tam_, &ITamObject::put_Address, kAddress);
        com::Call(tam_, &ITamObject::put_ApplicationID, com::Bstr(kApplication).Get());
    });
}

void Host::LoadStream() {
    LoadStreamFile(options_.stream, FindStream(options_.stream));
}

void Host::LoadStreamFile(const std::wstring& name, const std::wstring& file) {
    answer_.data["stream"] = Utf8(name);
    answer_.data["streamFile"] = Utf8(file);
    std::string bytes = ReadBytes(file);
    answer_.AddSource(Utf8(name), bytes);
    LoadStreamText(TextOfDocument(std::move(bytes), file));
}

void Host::LoadStreamText(const std::wstring& text) {
    streamText_ = text;
    Step("LoadFromXmlStream",
         [&] { com::Call(tam_, &ITamObject::LoadFromXmlStream, com::Bstr(text).Get()); });
    // The component gives the key to no one. It has refused a text with a document type by now.
    deviceKey_ = xml::TextAt(xml::Node(xml::LoadText(text)), L"Tam/DevKey");
    SetKeys();
    GiveEnumTexts();
    if (options_.wire) {
        WireInputs();
    }
}

// Loading replaces the collections, so the keys come after it.
void Host::SetKeys() {
    Step("GlobalKey", [&] { com::Call(app_, &IAppObject::put_GlobalKey, com::Bstr(kGlobalKey).Get()); });
    Step("ExtendedKey",
         [&] { com::Call(app_, &IAppObject::put_ExtendedKey, com::Bstr(kExtendedKey).Get()); });
}

// The component reads no enumeration texts from the catalogue: the owner of a
// type, here the host, gives them.
void Host::GiveEnumTexts() {
    Step("EnumDesc", [&] {
        ForEachAttribute(*app_.Get(), [&](IAttribute& attribute) {
            com::Ref<ISNVType> type;
            com::Call(attribute, &IAttribute::get_SNVTType, type.Put());
            const auto enumeration = type.As<IEnumType>();
            if (!enumeration || !FlagOf(*enumeration.Get(), &IEnumType::get_IsEnumType)) {
                return;
            }
            const std::wstring id = WideOf(*type.Get(), &ISNVType::get_ID);
            const std::wstring texts = CatalogueText(id, L"EnumDesc");
            if (!texts.empty()) {
                com::Call(enumeration, &IEnumType::put_EnumDesc, com::Bstr(texts).Get());
            }
        });
    });
}

std::wstring Host::CatalogueText(const std::wstring& typeId, const wchar_t* child) const {
    const auto type = types_.find(L"SNVT_" + typeId);
    return type != types_.end() ? xml::TextAt(type->second, child) : std::wstring();
}

void Host::WireInputs() {
    const xml::ElementIndex inputs = PointsIn(Interoperability(*this), L"Inputs");
    Step("wiring", [&] {
        ForEachInput(*app_.Get(), [&](IInput& input) {
            const std::wstring name = WideOf(input, &IInput::get_Name);
            wires_.push_back(WireInput(input, xml::TextAt(inputs.at(name), L"Reference")));
        });
    });
}

Wire Host::WireInput(IInput& input, const std::wstring& reference) {
    Wire wire{TextOf(input, &IInput::get_Name), Utf8(reference), "left open", ""};
    if (!tam::LeadsToAnOutput(std::wstring_view(reference))) {
        return wire;
    }
    const auto connection = com::Query<ISubItemConnable>(&input);
    com::CheckSet(connection.Get());
    const com::Ref<IOutput> output = FindOutput(*app_.Get(), reference);
    com::Ref<ISNVType> type;
    if (output) {
        com::Call(output, &IOutput::get_SNVTType, type.Put());
    }
    if (type) {
        const com::Bstr id(WideOf(*type.Get(), &ISNVType::get_ID));
        VARIANT_BOOL fits = VARIANT_FALSE;
        com::Call(connection, &ISubItemConnable::get_IsSNVTCompatible, id.Get(), &fits);
        if (fits == VARIANT_FALSE) {
            wire.result = "refused";
            wire.reason = "type " + Utf8(id.View()) + " is not among those that the input accepts";
            return wire;
        }
        com::Call(connection, &ISubItemConnable::putref_ConnectedType, type.Get());
    }
    com::Call(input, &IInput::put_Value, com::Bstr(reference).Get());
    com::Call(connection, &ISubItemConnable::put_IsConnected, VARIANT_TRUE);
    wire.result = "wired";
    wire.reason = output ? "an output of this module" : "another object";
    return wire;
}

std::vector<std::string> DllsWithObjects() {
    std::vector<std::string> busy;
    for (const wchar_t* const name : {L"O_Tam_id.dll", L"OrvHost.dll"}) {
        const HMODULE module = GetModuleHandleW(name);
        if (module == nullptr) {
            continue;
        }
        using Function = HRESULT(STDAPICALLTYPE*)();
        const auto canUnload =
            reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
        if (canUnload == nullptr || canUnload() != S_OK) {
            busy.push_back(Utf8(name));
        }
    }
    return busy;
}

} // namespace bench
