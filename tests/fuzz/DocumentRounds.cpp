#include "tests/fuzz/DocumentRounds.h"

#include "tests/fuzz/DocumentMutator.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace component_fuzz {

using namespace support;

namespace {

constexpr const wchar_t* kSecret = L"SECRET-OF-ANOTHER-FILE";
constexpr std::size_t kDeep = 10000;

std::size_t IndexOf(Input::Kind kind) {
    return static_cast<std::size_t>(kind);
}

bool LoadXml(const Document& document, const std::wstring& text) {
    VARIANT_BOOL done = VARIANT_FALSE;
    return SUCCEEDED(document->loadXML(com::Bstr(text).Get(), &done)) && done != VARIANT_FALSE;
}

/// The component's own documents may have no document type.
bool HasType(const Document& document) {
    com::Ref<IXMLDOMDocumentType> type;
    com::Check(document->get_doctype(type.Put()));
    return static_cast<bool>(type);
}

/// A chain of elements, made one by one.
void AppendChain(const Document& document, const com::Ref<IXMLDOMElement>& below) {
    com::Ref<IXMLDOMNode> node(below.Get());
    for (std::size_t i = 0; i < kDeep; ++i) {
        com::Ref<IXMLDOMElement> child;
        com::Ref<IXMLDOMNode> appended;
        com::Check(document->createElement(com::Bstr(L"a").Get(), child.Put()));
        com::Check(node->appendChild(child.Get(), appended.Put()));
        node = std::move(appended);
    }
}

std::wstring NamesOf(const com::Ref<IAppObject>& module) {
    std::wstring names;
    const auto inputs = Object(module, &IAppObject::get_Inputs);
    for (long i = 1; i <= Long(inputs, &IInputs::get_Count); ++i) {
        names +=
            L"in " + Text(Item(inputs, &IInputs::get_Item, std::to_wstring(i)), &IInput::get_Name) + L"\n";
    }
    const auto outputs = Object(module, &IAppObject::get_Outputs);
    for (long i = 1; i <= Long(outputs, &IOutputs::get_Count); ++i) {
        names += L"out " + Text(Item(outputs, &IOutputs::get_Item, std::to_wstring(i)), &IOutput::get_Name) +
                 L"\n";
    }
    const auto attributes = Object(module, &IAppObject::get_Attributes);
    for (long i = 1; i <= Long(attributes, &IAttributes::get_Count); ++i) {
        names += L"attribute " +
                 Text(Item(attributes, &IAttributes::get_Item, std::to_wstring(i)), &IAttribute::get_Name) +
                 L"\n";
    }
    return names;
}

std::wstring NamesOf(const ExpectedStream& stream) {
    std::wstring names;
    for (const std::wstring& name : stream.inputs) {
        names += L"in " + name + L"\n";
    }
    for (const std::wstring& name : stream.outputs) {
        names += L"out " + name + L"\n";
    }
    for (const std::wstring& name : stream.attributes) {
        names += L"attribute " + name + L"\n";
    }
    return names;
}

} // namespace

void DocumentsFuzzTest::SetUp() {
    ComponentTest::SetUp();
    UseCompiler();
    UseDatabaseLocation();
    for (std::size_t i = 0; i < seeds_.size(); ++i) {
        goodTexts_[i] = FromUtf8(ReadFile(CorpusFolder() + L"good-" + Input::kNames[i] + L".xml"));
        seeds_[i] = {TreeOf(com::Ref<IXMLDOMNode>(Root(Parse(goodTexts_[i])).Get()))};
    }
    for (const std::wstring& name : Corpus()) {
        const Input input = FromFile(name);
        const Document document = NewDocument();
        if (LoadXml(document, input.text) && !HasType(document)) {
            seeds_[IndexOf(input.kind)].push_back(TreeOf(com::Ref<IXMLDOMNode>(Root(document).Get())));
        }
    }
    goodCatalogue_ = Parse(goodTexts_[IndexOf(Input::Kind::Catalogue)]);
    library_.emplace(Component::DllPath(), 1);
    secretFile_.emplace(Component::Folder() + L"secret.txt", kSecret);
    secret_ = L"file:///" + secretFile_->Path();
    std::replace(secret_.begin(), secret_.end(), L'\\', L'/');
    watchdog_.emplace(KeepFile(L"document.txt"));
    answer_ = Answer();
    EXPECT_NE(answer_.find(L".Name = \"Reading room\""), std::wstring::npos);
    EXPECT_NE(answer_.find(L".UserName = \"My valve\""), std::wstring::npos);
    EXPECT_NE(answer_.find(L".Attributes(4).Name = \"AI1_Bits\""), std::wstring::npos);
    EXPECT_TRUE(KnownBoxes().empty());
}

void DocumentsFuzzTest::TearDown() {
    watchdog_.reset();
    secretFile_.reset();
    library_.reset();
    goodCatalogue_.Reset();
    ComponentTest::TearDown();
}

Input DocumentsFuzzTest::Changed(Random& random) const {
    Input input;
    input.kind = static_cast<Input::Kind>(random.Below(Input::kNames.size()));
    const std::vector<Tree>& seeds = seeds_.at(IndexOf(input.kind));
    Tree tree = random.OneIn(2) ? seeds.front() : random.Of(seeds);
    Mutate(tree, random);
    input.text = Damage(tree, random.OneIn(2) ? secret_ : secretFile_->Path(), random);
    input.bytes = Encode(input.text, random);
    input.tree = std::move(tree);
    input.isBuilt = random.OneIn(4);
    return input;
}

std::vector<std::wstring> DocumentsFuzzTest::Corpus() {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((CorpusFolder() + L"*-*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("the corpus is not there");
    }
    do {
        const std::wstring name = found.cFileName;
        if (!name.starts_with(L"good-")) {
            names.push_back(name);
        }
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);
    std::sort(names.begin(), names.end()); // FindFirstFile gives no particular order
    return names;
}

Input DocumentsFuzzTest::FromFile(const std::wstring& name) {
    Input input;
    const auto kind = std::find_if(Input::kNames.begin(), Input::kNames.end(),
                                   [&](const std::wstring& known) { return name.starts_with(known + L"-"); });
    if (kind == Input::kNames.end()) {
        throw std::runtime_error("a file of the corpus whose name tells no kind");
    }
    input.kind = static_cast<Input::Kind>(kind - Input::kNames.begin());
    input.bytes = ReadFile(CorpusFolder() + name);
    input.text = FromUtf8(input.bytes);
    return input;
}

void DocumentsFuzzTest::Check(const Input& input) {
    com::Check(NewModule()->putref_XmlSNVTDoc(goodCatalogue_.Get()));
    switch (input.kind) {
    case Input::Kind::Definition:
        CheckDefinition(input);
        break;
    case Input::Kind::Catalogue:
        CheckCatalogue(input);
        break;
    case Input::Kind::Stream:
        CheckStream(input);
        break;
    case Input::Kind::Project:
        CheckProject(input);
        break;
    case Input::Kind::Saved:
        CheckSaved(input);
        break;
    }
    KnownBoxes();
    EXPECT_EQ(Dll().CanUnload(), S_OK) << "objects of the component are still alive";
    EXPECT_TRUE(Answer() == answer_) << "good documents are read in another way than before";
    EXPECT_TRUE(KnownBoxes().empty());
}

void DocumentsFuzzTest::CheckDefinition(const Input& input) {
    const std::wstring path = Component::Folder() + L"Changed.xml";
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, input.bytes.data(), static_cast<DWORD>(input.bytes.size()), &written, nullptr);
    CloseHandle(file);

    const Document document = NewDocument();
    const com::Variant source{std::wstring_view(path)};
    VARIANT_BOOL isXml = VARIANT_FALSE;
    com::Check(document->load(source.Get(), &isXml));
    isXml = HasType(document) ? VARIANT_FALSE : isXml;
    const ExpectedDefinition expected =
        isXml != VARIANT_FALSE ? DefinitionOf(document) : ExpectedDefinition();

    const auto module = NewModule();
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(module->Init(com::Bstr(L"Changed").Get(), &done), S_OK);
    EXPECT_EQ(done, isXml);
    const std::size_t reports = Reports();
    Count(isXml == VARIANT_FALSE ? "definitions, refused"
          : reports != 0         ? "definitions, reported"
                                 : "definitions, read");
    EXPECT_TRUE(expected.hasObject || reports == 1);
    EXPECT_TRUE(Text(module, &IAppObject::get_UniqueIDString) == L"Changed");
    EXPECT_TRUE(Text(module, &IAppObject::get_Name) == expected.name);
    EXPECT_TRUE(Text(module, &IAppObject::get_UserName) == expected.userName);
    EXPECT_TRUE(Text(module, &IAppObject::get_ID) == expected.id);
    EXPECT_TRUE(Text(module, &IAppObject::get_Description) == expected.description);
    EXPECT_TRUE(Text(module, &IAppObject::get_Category) == expected.category);
    // Defaults of attributes come from the definition.
    EXPECT_EQ(
        module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(goodTexts_[IndexOf(Input::Kind::Stream)]).Get()),
        S_OK);
    Use(module);
    DeleteFileW(path.c_str());
}

void DocumentsFuzzTest::CheckCatalogue(const Input& input) {
    const Document document = NewDocument();
    const bool isBuilt = input.isBuilt || !LoadXml(document, input.text);
    Count(isBuilt ? "catalogues, built" : "catalogues, parsed");
    if (isBuilt) {
        const auto root = ElementOf(document, input);
        com::Ref<IXMLDOMNode> appended;
        if (root) {
            document->appendChild(root.Get(), appended.Put());
        }
    }
    const auto module = NewModule();
    EXPECT_EQ(module->putref_XmlSNVTDoc(document.Get()), S_OK);
    EXPECT_EQ(
        module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(goodTexts_[IndexOf(Input::Kind::Stream)]).Get()),
        S_OK);
    EXPECT_TRUE(NamesOf(module) == L"in AO1_In\nin DO1_In\nout AI1_Out\nout DI1_Out\nattribute AI1_Gain\n"
                                   L"attribute AI1_Label\nattribute AI1_Mode\nattribute AI1_Bits\n");
    Use(module);
    com::Check(module->putref_XmlSNVTDoc(goodCatalogue_.Get()));
}

void DocumentsFuzzTest::CheckStream(const Input& input) {
    const Document document = NewDocument();
    const bool isXml = LoadXml(document, input.text) && !HasType(document);
    const ExpectedStream expected = StreamOf(document, isXml);
    Count(!isXml                    ? "streams, refused"
          : expected.result == S_OK ? "streams, read"
                                    : "streams, error " + std::to_string(expected.result & 0xFFFF));
    const auto module = NewModule();
    EXPECT_EQ(module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(input.text).Get()), expected.result);
    SetErrorInfo(0, nullptr);
    EXPECT_TRUE(NamesOf(module) == NamesOf(expected));
    EXPECT_TRUE(Text(module, &IAppObject::get_Name) == expected.name);
    EXPECT_TRUE(Text(module, &IAppObject::get_UserName) == expected.name);
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), expected.objectId);
    EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), expected.cdb);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), expected.ddb);
    Use(module);
}

void DocumentsFuzzTest::CheckProject(const Input& input) {
    const Document document = NewDocument();
    const auto element = ProjectOf(document, input);
    if (!element) {
        return;
    }
    const auto module = Loaded(goodTexts_[IndexOf(Input::Kind::Stream)]);
    ExpectedProject expected;
    expected.userName = L"Reading room";
    expected.objectId = 3;
    Apply(element, {L"AI1_Out", L"DI1_Out"}, expected);
    Count(expected.isFaulty ? "projects, reported" : "projects, read");
    EXPECT_EQ(module->XmlLoad(element.Get()), S_OK);
    EXPECT_EQ(Reports(), expected.isFaulty ? 1u : 0u);
    EXPECT_TRUE(Text(module, &IAppObject::get_UserName) == expected.userName);
    EXPECT_TRUE(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey) == expected.deviceKey);
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), expected.objectId);
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), expected.x);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), expected.y);
    const auto outputs = Object(module, &IAppObject::get_Outputs);
    for (const wchar_t* name : {L"AI1_Out", L"DI1_Out"}) {
        const auto output = Item(outputs, &IOutputs::get_Item, name);
        EXPECT_EQ(Flag(output, &IOutput::get_IsDisplayable), expected.displayed.contains(name));
    }
    Use(module);
}

com::Ref<IXMLDOMElement> DocumentsFuzzTest::ProjectOf(const Document& document, const Input& input) const {
    const bool isBuilt = input.isBuilt || !LoadXml(document, input.text);
    return isBuilt ? ElementOf(document, input) : Root(document);
}

com::Ref<IXMLDOMElement> DocumentsFuzzTest::ElementOf(const Document& document, const Input& input) const {
    if (!input.tree) {
        return {};
    }
    auto element = Build(document, *input.tree);
    if (element && input.bytes.size() % 16 == 0) {
        AppendChain(document, element);
    }
    return element;
}

void DocumentsFuzzTest::Use(const com::Ref<IAppObject>& module) {
    const Document document = Parse(L"<Project/>");
    const auto root = Root(document);
    EXPECT_EQ(module->XMLSave(root.Get(), document.Get()), S_OK);
    module->XMLSaveForInteroperability(root.Get(), document.Get()); // fails where the DOM refuses a name
    com::Bstr stream;
    EXPECT_EQ(module->get_Stream(stream.Put()), S_OK);
    EXPECT_EQ(module->ClearReferences(), S_OK);
    const std::wstring said =
        support::Describe({&*library_}, module.Get()) + Xml(document.Get()) + std::wstring(stream.View());
    EXPECT_EQ(said.find(kSecret), std::wstring::npos) << "a document made the component read another file";
    EXPECT_EQ(module->Destroy(), S_OK);
    SetErrorInfo(0, nullptr);
}

com::Ref<IAppObject> DocumentsFuzzTest::GoodModule() {
    const TextFile definition(Component::Folder() + L"Good.xml",
                              goodTexts_[IndexOf(Input::Kind::Definition)]);
    auto module = NewModule();
    com::Check(module->putref_XmlSNVTDoc(goodCatalogue_.Get()));
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(module->Init(com::Bstr(L"Good").Get(), &done));
    EXPECT_EQ(done, VARIANT_TRUE);
    com::Check(Put(module, &IAppObject::put_GlobalKey, L"G"));
    com::Check(Put(module, &IAppObject::put_ExtendedKey, L"E"));
    com::Check(module.As<ITamObject>()->LoadFromXmlStream(
        com::Bstr(goodTexts_[IndexOf(Input::Kind::Stream)]).Get()));
    com::Check(module->XmlLoad(Root(Parse(goodTexts_[IndexOf(Input::Kind::Project)])).Get()));
    return module;
}

std::wstring DocumentsFuzzTest::Answer() {
    const auto module = GoodModule();
    const Document document = Parse(L"<Project/>");
    const auto root = Root(document);
    com::Check(module->XMLSave(root.Get(), document.Get()));
    com::Check(module->XMLSaveForInteroperability(root.Get(), document.Get()));
    com::Bstr stream;
    com::Check(module->get_Stream(stream.Put()));
    return support::Describe({&*library_}, module.Get()) + Xml(document.Get()) + UseCompiler().givenXml +
           std::wstring(stream.View());
}

std::vector<bench::Box> DocumentsFuzzTest::KnownBoxes() {
    static const std::vector<std::wstring> captions = {L"Gateway Object",
                                                       L"Gateway Object - Error report",
                                                       L"Warning",
                                                       L"O_Tam_id-CSNVTType::ID [Property Let]",
                                                       L"O_Tam_ID.CSNVTType::ID",
                                                       L"O_Tam_id.CSNVTType::pGetNumeric"};
    auto boxes = Boxes();
    for (const bench::Box& box : boxes) {
        EXPECT_TRUE(std::find(captions.begin(), captions.end(), box.caption) != captions.end())
            << support::Narrow(box.caption);
    }
    return boxes;
}

std::size_t DocumentsFuzzTest::Reports() {
    const auto boxes = KnownBoxes();
    return static_cast<std::size_t>(std::count_if(boxes.begin(), boxes.end(), [](const bench::Box& box) {
        return box.caption == L"Gateway Object - Error report";
    }));
}

} // namespace component_fuzz
