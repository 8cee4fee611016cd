#include "com/Dom.h"
#include "com/LateBound.h"
#include "tests/fault/FaultLoop.h"
#include "tests/fault/ModuleFault.h"
#include "tests/Places.h"

#include <OrvHost.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

// The host services under faults: the library, an object read, made, loaded and
// saved, the database compiler, a device's document and what lists take in.

namespace {

using namespace fault;
using com::Bstr;
using Fields = std::vector<std::wstring>;

constexpr const wchar_t* kBefore = L"O_Tam_AI_id";
constexpr const wchar_t* kDefinition = L"O_Tam_AO_id";
constexpr const wchar_t* kSaved =
    L"<O_Tam_AO_id><UserName>A valve with a long name</UserName><X_Position>12.5</X_Position>"
    L"<Y_Position>-40</Y_Position>"
    L"<Inputs><In1 Visible='0' Value='reference of the input'/><In2 Visible='0' Value='4203'/></Inputs>"
    L"<Outputs><Out Visible='0' IsDisplayable='1'/></Outputs>"
    L"<Attributes><Setup Visible='0' Value='21' SNVT_Type='162' EnumDesc='21,Automatic;0,Off'/>"
    L"<Gain Visible='0' Value='2.5000000000000000000' SNVT_Type='81' "
    L"EnumDesc=''/></Attributes></O_Tam_AO_id>";
constexpr const wchar_t* kExport =
    L"<O_Tam_id DevAddr='12' AppID='application' DevKey='K7' TamObjectID='3' IsLastOnDev='1'><Inputs>"
    L"<Input_one LinkReference='0000' LogicalAddress='1' SNVTType='105' isPermanent='0' IsConnected='0'/>"
    L"</Inputs><Outputs><Output_one LogicalAddress='2' SNVTType='SNVT_temp_p' isMapAsOO='0' ObjOffset='0' "
    L"AbsoluteObjectIndex='0' IsConnected='0' IsWritable='0'/></Outputs><Attributes><Attribute_one "
    L"LogicalAddress='3' SNVTType='36' Value='value of the attribute' isPermanent='1' IsConnected='0'/>"
    L"</Attributes></O_Tam_id>";

std::wstring HostPath() {
    return (tests::BinFolder() / L"OrvHost.dll").native();
}

/// Like those of the component: nothing changes when it fails.
void ExpectAllOrNothing(const Case& run) {
    EXPECT_TRUE(run.HasFailed() ? run.left.fields == run.before.fields : run.IsAsUntouched());
}

class ServicesFaultTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dll_ = LoadLibraryW(HostPath().c_str());
        ASSERT_NE(dll_, nullptr);
        NewObject(kBefore); // has the parser loaded, whose files the loop replaces
        loop_.emplace(dll_, watcher_);
    }
    void TearDown() override {
        object_.Reset();
        document_.Reset();
        loop_.reset();
        FreeLibrary(dll_);
        EXPECT_TRUE(watcher_.Seen().empty()) << "the host services show no box";
    }

    template <class I>
    com::Ref<I> Create(REFCLSID clsid) const {
        using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        const auto classObject =
            reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(dll_, "DllGetClassObject")));
        com::Ref<IClassFactory> factory;
        com::Ref<I> object;
        com::Check(classObject(clsid, IID_IClassFactory, factory.PutVoid()));
        com::Check(factory->CreateInstance(nullptr, __uuidof(I), object.PutVoid()));
        return object;
    }
    com::Ref<IAppObject> NewObject(const wchar_t* definition) const {
        auto object = Create<IAppObject>(__uuidof(::GenericObject));
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(object->Init(Bstr(definition).Get(), &done));
        return object;
    }
    com::Ref<IAppObject> CreatedObject() const {
        auto object = NewObject(kDefinition);
        com::Check(object->Create());
        return object;
    }

    /// A job that releases the object and the document.
    Job NewJob(const char* name, std::initializer_list<Kind> kinds) {
        Job job;
        job.name = name;
        job.kinds = kinds;
        job.read = [] { return Fields(); };
        job.release = [this] {
            object_.Reset();
            document_.Reset();
        };
        job.judge = &ExpectAllOrNothing;
        return job;
    }
    /// What the object says of itself.
    Fields OfObject() const {
        long color = 0;
        com::Check(object_->get_Color(&color));
        return {Field(L"UniqueIDString", object_, &IAppObject::get_UniqueIDString),
                Field(L"Name", object_, &IAppObject::get_Name), Field(L"ID", object_, &IAppObject::get_ID),
                std::to_wstring(color)};
    }
    /// What a saved element sets, in the order in which it is taken.
    Fields OfPoints() const {
        Fields fields;
        const auto visible = [&](const auto& point) {
            VARIANT_BOOL flag = VARIANT_FALSE;
            com::Check(point->get_Visible(&flag));
            fields.push_back(flag != VARIANT_FALSE ? L"visible" : L"hidden");
        };
        for (const wchar_t* name : {L"In1", L"In2"}) {
            const auto input =
                support::Item(support::Object(object_, &IAppObject::get_Inputs), &IInputs::get_Item, name);
            visible(input);
            fields.push_back(Field(name, input, &IInput::get_Value));
        }
        const auto output =
            support::Item(support::Object(object_, &IAppObject::get_Outputs), &IOutputs::get_Item, L"Out");
        visible(output);
        fields.push_back(support::Flag(output, &IOutput::get_IsDisplayable) ? L"displayed" : L"not");
        for (const wchar_t* name : {L"Setup", L"Gain"}) {
            const auto attribute = support::Item(support::Object(object_, &IAppObject::get_Attributes),
                                                 &IAttributes::get_Item, name);
            visible(attribute);
            fields.push_back(Field(name, attribute, &IAttribute::get_Value));
            const auto type = support::Object(attribute, &IAttribute::get_SNVTType);
            fields.push_back(Field(L"type", type, &ISNVType::get_ID) + L" " +
                             Field(L"of", type.As<IEnumType>(), &IEnumType::get_EnumDesc));
        }
        for (std::wstring& field : OfPlace()) {
            fields.push_back(std::move(field));
        }
        return fields;
    }
    /// Both keys of the object, of its collections and of a point of each.
    Fields OfKeys() const {
        Fields fields;
        const auto add = [&](const auto& keyed, auto global, auto extended) {
            fields.push_back(support::Text(keyed, global));
            fields.push_back(support::Text(keyed, extended));
        };
        add(object_, &IAppObject::get_GlobalKey, &IAppObject::get_ExtendedKey);
        const auto inputs = support::Object(object_, &IAppObject::get_Inputs);
        add(inputs, &IInputs::get_GlobalKey, &IInputs::get_ExtendedKey);
        add(support::Item(inputs, &IInputs::get_Item, L"In2"), &IInput::get_GlobalKey,
            &IInput::get_ExtendedKey);
        const auto outputs = support::Object(object_, &IAppObject::get_Outputs);
        add(outputs, &IOutputs::get_GlobalKey, &IOutputs::get_ExtendedKey);
        add(support::Item(outputs, &IOutputs::get_Item, L"Out"), &IOutput::get_GlobalKey,
            &IOutput::get_ExtendedKey);
        const auto attributes = support::Object(object_, &IAppObject::get_Attributes);
        add(attributes, &IAttributes::get_GlobalKey, &IAttributes::get_ExtendedKey);
        add(support::Item(attributes, &IAttributes::get_Item, L"Gain"), &IAttribute::get_GlobalKey,
            &IAttribute::get_ExtendedKey);
        return fields;
    }
    Fields OfPlace() const {
        return {Field(L"UserName", object_, &IAppObject::get_UserName),
                Field(L"X", support::Double(object_, &IAppObject::get_XPosition)),
                Field(L"Y", support::Double(object_, &IAppObject::get_YPosition))};
    }

    HMODULE dll_ = nullptr;
    bench::BoxWatcher watcher_;
    std::optional<FaultLoop> loop_;
    com::Ref<IAppObject> object_;
    support::Document document_;
};

TEST_F(ServicesFaultTest, DefinitionOfTheLibrary) {
    com::Ref<ILibrary> library;
    Job job = NewJob("DefinitionDocument", {Kind::Memory, Kind::Text, Kind::Dom, Kind::Creation, Kind::File});
    job.prepare = [&] { library = Create<ILibrary>(__uuidof(::LibraryService)); };
    job.run = [&] {
        Left left;
        com::Ref<IDispatch> document;
        left.result = library->DefinitionDocument(Bstr(kDefinition).Get(), document.Put());
        document_ = document ? document.As<IXMLDOMDocument2>() : support::Document();
        left.answer = document_ ? L"a document" : L"";
        return left;
    };
    job.read = [&] {
        return document_ ? NodesBelow(tam::dom::Node(support::Root(document_).Get())) : Fields();
    };
    const auto release = job.release;
    job.release = [&] {
        library.Reset();
        release();
    };
    job.followUps = {static_cast<HRESULT>(errNotADefinition)}; // a file that cannot be read
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, InitOfAnObject) {
    Job job =
        NewJob("Init of a generic object", {Kind::Memory, Kind::Text, Kind::Dom, Kind::Creation, Kind::File});
    job.prepare = [this] { object_ = NewObject(kBefore); };
    job.run = [this] {
        Left left;
        VARIANT_BOOL done = VARIANT_FALSE;
        left.result = object_->Init(Bstr(kDefinition).Get(), &done);
        left.answer = done != VARIANT_FALSE ? L"done" : L"";
        return left;
    };
    job.read = [this] { return OfObject(); };
    job.followUps = {static_cast<HRESULT>(errNotADefinition)};
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, CreateOfAnObject) {
    Job job = NewJob("Create of a generic object", {Kind::Memory});
    job.prepare = [this] { object_ = NewObject(kDefinition); };
    job.run = [this] { return Left{object_->Create(), {}, {}}; };
    job.read = [this] {
        return Fields{support::Object(object_, &IAppObject::get_Inputs) ? L"inputs" : L"none",
                      support::Object(object_, &IAppObject::get_Outputs) ? L"outputs" : L"none",
                      support::Object(object_, &IAppObject::get_Attributes) ? L"attributes" : L"none"};
    };
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, XmlLoadOfAnObject) {
    Job job = NewJob("XmlLoad of a generic object", {Kind::Memory, Kind::Text, Kind::Dom});
    job.prepare = [this] {
        object_ = CreatedObject();
        document_ = support::Parse(kSaved);
    };
    job.run = [this] { return Left{object_->XmlLoad(support::Root(document_).Get()), {}, {}}; };
    job.read = [this] { return OfPoints(); };
    job.judge = [](const Case& run) {
        EXPECT_TRUE(run.HasFailed());
        ExpectSetInOrder(run);
    };
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, XmlLoadBeforeCreate) {
    Job job = NewJob("XmlLoad before Create", {Kind::Memory, Kind::Text, Kind::Dom});
    job.prepare = [this] {
        object_ = NewObject(kDefinition);
        document_ = support::Parse(kSaved);
    };
    job.run = [this] { return Left{object_->XmlLoad(support::Root(document_).Get()), {}, {}}; };
    job.read = [this] { return OfPlace(); };
    loop_->Run(job);
}

// A Create that fails keeps what was read for the next one.
TEST_F(ServicesFaultTest, CreateAfterXmlLoad) {
    Job job = NewJob("Create of a generic object after XmlLoad", {Kind::Memory, Kind::Text});
    std::optional<HRESULT> created;
    job.prepare = [&] {
        created.reset();
        object_ = NewObject(kDefinition);
        com::Check(object_->XmlLoad(support::Root(support::Parse(kSaved)).Get()));
    };
    job.run = [&] {
        created = object_->Create();
        return Left{*created, {}, {}};
    };
    job.read = [&] {
        if (!created) {
            return Fields();
        }
        if (FAILED(*created)) {
            com::Check(object_->Create());
        }
        return OfPoints();
    };
    job.judge = [](const Case& run) { EXPECT_EQ(run.left.fields, run.untouched.fields); };
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, KeysOfAnObject) {
    using Put = HRESULT (STDMETHODCALLTYPE IAppObject::*)(BSTR);
    for (const Put put : {&IAppObject::put_GlobalKey, &IAppObject::put_ExtendedKey}) {
        Job job = NewJob("key of a generic object", {Kind::Memory});
        job.prepare = [this, put] {
            object_ = CreatedObject();
            com::Check(support::Put(object_, put, L"A key that is longer than a small text"));
        };
        job.run = [this, put] {
            return Left{support::Put(object_, put, L"A new key, as long as the old one was"), {}, {}};
        };
        job.read = [this] { return OfKeys(); };
        loop_->Run(job);
    }
}

TEST_F(ServicesFaultTest, XMLSaveOfAnObject) {
    Job job = NewJob("XMLSave of a generic object", {Kind::Memory, Kind::Text, Kind::Dom});
    job.prepare = [this] {
        object_ = CreatedObject();
        com::Check(object_->XmlLoad(support::Root(support::Parse(kSaved)).Get()));
        document_ = support::Parse(L"<Project><Other/></Project>");
    };
    job.run = [this] {
        return Left{object_->XMLSave(support::Root(document_).Get(), document_.Get()), {}, {}};
    };
    job.read = [this] { return NodesBelow(tam::dom::Node(support::Root(document_).Get())); };
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, CompileOfAnObject) {
    com::Ref<ICompilersInterop> compiler;
    Bstr stream, cdb, ddb;
    Job job = NewJob("CompileTamObject", {Kind::Memory, Kind::Text});
    job.prepare = [&] {
        wchar_t path[MAX_PATH + 1] = {};
        GetTempPathW(MAX_PATH + 1, path);
        compiler = Create<ICompilersInterop>(__uuidof(::CompilersInterop));
        com::Check(compiler->SetDBPath(Bstr(path).Get()));
        stream = Bstr(kExport);
        cdb = Bstr(L"before");
        ddb = Bstr(L"before, too");
    };
    job.run = [&] {
        VARIANT given[] = {com::ByReference(stream), com::ByReference(cdb), com::ByReference(ddb)};
        return Left{compiler->CompileTamObject(&given[0], &given[1], &given[2]), {}, {}};
    };
    job.read = [&] {
        return Fields{std::wstring(stream.View()), std::wstring(cdb.View()), std::wstring(ddb.View())};
    };
    job.release = [&] { compiler.Reset(); };
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, DocumentOfADevice) {
    com::Ref<IDeviceContextSetup> device;
    Job job = NewJob("LoadXml of a device", {Kind::Memory, Kind::Text, Kind::Dom, Kind::Creation});
    job.prepare = [&] {
        device = Create<IDeviceContextSetup>(__uuidof(::DeviceContext));
        com::Check(device->LoadXml(Bstr(L"<Device><Before/></Device>").Get()));
    };
    job.run = [&] { return Left{device->LoadXml(Bstr(L"<Device><After/></Device>").Get()), {}, {}}; };
    job.read = [&] {
        com::Ref<IDispatch> document;
        com::Check(device.As<IDeviceContext>()->get_Document(document.Put()));
        return NodesBelow(tam::dom::Node(support::Root(document.As<IXMLDOMDocument2>()).Get()));
    };
    job.release = [&] { device.Reset(); };
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, ChannelOfADevice) {
    com::Ref<IDeviceSetup> device;
    Job job = NewJob("AddChannel", {Kind::Memory});
    job.prepare = [&] { device = Create<IDeviceSetup>(__uuidof(::Device)); };
    job.run = [&] {
        Left left;
        com::Ref<IChannel> channel;
        left.result = device->AddChannel(Bstr(L"analog input 3").Get(), Bstr(L"a value of the channel").Get(),
                                         Bstr(L"21,Automatic;0,Off").Get(), channel.Put());
        left.answer = channel ? support::Text(channel, &IChannel::get_SetupText) : L"";
        return left;
    };
    job.read = [&] {
        return Fields{std::to_wstring(support::Long(device, &IDeviceSetup::get_ChannelCount))};
    };
    job.release = [&] { device.Reset(); };
    loop_->Run(job);
}

TEST_F(ServicesFaultTest, ValueInTheOtherUnit) {
    com::Ref<IUnitConverter> converter;
    Job job = NewJob("Convert", {Kind::Memory, Kind::Text});
    job.prepare = [&] {
        converter = Create<IUnitConverter>(__uuidof(::UnitConverter));
        com::Check(converter.As<IUnitSettings>()->put_UnitSystem(Bstr(L"US").Get()));
    };
    job.run = [&] {
        Left left;
        Bstr converted;
        left.result =
            converter->Convert(Bstr(L"1234567890123456").Get(), Bstr(L"105").Get(), converted.Put());
        left.answer = converted.View();
        return left;
    };
    job.release = [&] {
        com::Check(converter.As<IUnitSettings>()->put_UnitSystem(Bstr(L"metric").Get()));
        converter.Reset();
    };
    loop_->Run(job);
}

} // namespace
