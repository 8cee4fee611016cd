#include "tests/internal/Channel.h"
#include "com/Enumerator.h"
#include "tests/fault/FaultLoop.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

// The channel objects: made, filled, and mirrored to the module that has the
// channel.

namespace {

using namespace fault;
using namespace internal_tests;
using internal_tests::Double; // not the reader of a number

using Fields = std::vector<std::wstring>;

/// Long enough that the names made of it need memory.
constexpr const wchar_t* kKey = L"analog input 3";

class ChannelFaultTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        input_ = NewInput(std::wstring(kKey) + L"_In1", L"mirrored input");
        output_ = NewOutput(std::wstring(kKey) + L"_Out", L"mirrored output");
        attribute_ = NewAttribute(std::wstring(kKey) + L"_Gain", L"mirrored attribute");
        container.Fill(L"container", {NewInput(L"AI2_In1", L"other input"), input_}, {output_}, {attribute_});
        type_ = Recorder::Make(L"type", {&__uuidof(ISNVType), &__uuidof(IEnumType)});
        setup->Set(L"SNVTType", type_);
        channel->Set(L"SetupText", L"3,Auto;0,Off");
        SetDefinition(
            L"<AppObject><TAMConfig><InReferences><InReference Name='In2' Visible='0'/></InReferences>"
            L"<Attributes><Attrib Name='Gain' Visible='1' UnitDependent='1' "
            L"Differential='1'/></Attributes></TAMConfig></AppObject>");
        Reset();
        Recorder::SetGate([] { return Fails(Kind::Host) ? CodeOf(Kind::Host) : S_OK; });
        loop_.emplace(Dll(), Watcher());
        const com::Ref<IUnknown> list = com::MakeEnumerator({});
        loop_->HostSlots().Replace<Kind::Host, &IEnumVARIANT::Next>(list.As<IEnumVARIANT>().Get());
    }
    void TearDown() override {
        Release();
        manager_.Reset();
        loop_.reset();
        Recorder::SetGate(nullptr);
        for (Double* held : {&input_, &output_, &attribute_, &type_}) {
            held->Reset();
        }
        InternalTest::TearDown();
    }

    /// Values from before, in the channel's own points and the module's.
    void Reset() {
        for (const Double& point : {in1, input_, gain, attribute_, setup}) {
            point->Set(L"Value", L"value from before");
        }
        out->Set(L"IsDisplayable", false);
        output_->Set(L"IsDisplayable", false);
        for (const Double& point : {in2, gain}) {
            point->Set(L"Visible", point == in2);
        }
        type_->Set(L"EnumDesc", L"description from before");
    }
    void TakePoints() {
        inputPoint_ = InputOf(object_, L"In1");
        outputPoint_ = OutputOf(object_, L"Out");
        attributePoint_ = AttributeOf(object_, L"Gain");
        interceptor_ = Interceptor();
    }
    void Release() {
        inputPoint_.Reset();
        outputPoint_.Reset();
        attributePoint_.Reset();
        interceptor_.Reset();
        object_.Reset();
        // The generic object keeps its interceptor as hosts do.
        if (generic.object) {
            generic.object->Set(L"RegisterInterceptor", 0L);
        }
        Calls().clear();
    }
    /// A job on a channel that is complete.
    Job OnChannel(const char* name, std::function<HRESULT()> act) {
        Job job;
        job.name = name;
        job.prepare = [this] {
            Reset();
            object_ = NewChannel(kKey, Device().Get());
            EXPECT_EQ(object_->Create(), S_OK);
            TakePoints();
        };
        job.run = [act] { return Left{act(), {}, {}}; };
        job.release = [this] { Release(); };
        job.kinds = {Kind::Memory, Kind::Host};
        job.judge = [](const Case& run) {
            ExpectSetInOrder(run);
            ExpectNotSilent(run);
        };
        return job;
    }

    /// A job that asks a complete channel for something; any fault fails it.
    Job Asking(const char* name, std::function<HRESULT(std::wstring& answer)> ask) {
        Job job = OnChannel(name, {});
        job.run = [ask] {
            Left left;
            left.result = ask(left.answer);
            return left;
        };
        job.read = [] { return Fields{}; };
        job.judge = [](const Case& run) { EXPECT_TRUE(run.HasFailed()); };
        return job;
    }
    using Question = HRESULT (STDMETHODCALLTYPE IAttributeInterceptor::*)(IAttribute*, VARIANT_BOOL*,
                                                                          VARIANT_BOOL*);
    Job AskingForAFlag(const char* name, Question question) {
        Job job = Asking(name, [this, question](std::wstring& answer) {
            VARIANT_BOOL flag = VARIANT_FALSE;
            VARIANT_BOOL handled = VARIANT_FALSE;
            const HRESULT result =
                (interceptor_.Get()->*question)(gain->As<IAttribute>().Get(), &flag, &handled);
            answer = handled != VARIANT_FALSE ? L"handled" : L"";
            answer += flag != VARIANT_FALSE ? L", set" : L"";
            return result;
        });
        job.kinds = {Kind::Memory, Kind::Text, Kind::Dom, Kind::Host};
        return job;
    }

    com::Ref<ITamObjectManager> manager_;
    com::Ref<IAppObject> object_;
    com::Ref<IInput> inputPoint_;
    com::Ref<IOutput> outputPoint_;
    com::Ref<IAttribute> attributePoint_;
    com::Ref<IAttributeInterceptor> interceptor_;
    Double input_, output_, attribute_, type_;
    std::optional<FaultLoop> loop_;
};

TEST_F(ChannelFaultTest, MadeByTheManager) {
    bool hasRun = false;
    const auto create = [&](com::Ref<IAppObject>& object) {
        com::Bstr key(kKey);
        return manager_->CreateTamInternalAppObject(key.Address(), Device().Get(), object.Put());
    };
    Job job;
    job.name = "CreateTamInternalAppObject";
    job.prepare = [&] {
        manager_ = NewManager();
        hasRun = false;
    };
    job.run = [&] {
        hasRun = true;
        Left left;
        left.result = create(object_);
        return left;
    };
    job.read = [&] {
        Fields fields = {object_ ? L"an object" : L"none"};
        if (hasRun) { // what the manager answers from then on
            com::Ref<IAppObject> again;
            EXPECT_EQ(create(again), S_OK);
            fields.push_back(again ? L"again an object" : L"no library");
        }
        return fields;
    };
    job.release = [&] {
        Release();
        manager_.Reset();
    };
    job.kinds = {Kind::Memory, Kind::Text, Kind::Dom, Kind::Host, Kind::Creation};
    job.judge = [&](const Case& run) {
        EXPECT_TRUE(run.HasFailed());
        EXPECT_EQ(run.left.fields[0], L"none");
        // A search that failed is not made again; what failed after it is.
        if (run.kind == Kind::Dom || run.kind == Kind::Host) {
            EXPECT_EQ(run.left.fields[1], L"no library");
        } else if (run.kind == Kind::Creation) {
            EXPECT_EQ(run.left.fields[1], L"again an object");
        }
    };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, Created) {
    Job job;
    job.name = "Create of a channel";
    job.prepare = [this] {
        Reset();
        object_ = NewChannel(kKey, Device().Get());
    };
    job.run = [this] { return Left{object_->Create(), {}, {}}; };
    job.read = [this] {
        Fields fields;
        fields.push_back(support::Object(object_, &IAppObject::get_Inputs) ? L"inputs" : L"none");
        fields.push_back(support::Object(object_, &IAppObject::get_Outputs) ? L"outputs" : L"none");
        fields.push_back(support::Object(object_, &IAppObject::get_Attributes) ? L"attributes" : L"none");
        fields.push_back(L"In2 " + in2->Value(L"Visible"));
        fields.push_back(L"Gain " + gain->Value(L"Visible"));
        return fields;
    };
    job.release = [this] { Release(); };
    job.kinds = {Kind::Memory, Kind::Text, Kind::Dom, Kind::Host};
    job.judge = [](const Case& run) {
        ExpectSetInOrder(run);
        ExpectNotSilent(run);
    };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, ValueOfAnAttribute) {
    Job job = OnChannel("Value of a channel's attribute", [this] {
        return support::Put(attributePoint_, &IAttribute::put_Value, L"a new value");
    });
    job.kinds.push_back(Kind::Text);
    job.read = [this] { return Fields{gain->Value(L"Value"), attribute_->Value(L"Value")}; };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, ValueOfAnInput) {
    Job job = OnChannel("Value of a channel's input",
                        [this] { return support::Put(inputPoint_, &IInput::put_Value, L"a new value"); });
    job.read = [this] { return Fields{in1->Value(L"Value"), input_->Value(L"Value")}; };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, DisplayFlagOfAnOutput) {
    Job job = OnChannel("IsDisplayable of a channel's output",
                        [this] { return outputPoint_->put_IsDisplayable(VARIANT_TRUE); });
    job.kinds.push_back(Kind::Text);
    job.read = [this] { return Fields{out->Value(L"IsDisplayable"), output_->Value(L"IsDisplayable")}; };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, DataFromTheDevice) {
    Job job = OnChannel("InterceptGetDataFromDevice", [this] {
        VARIANT_BOOL handled = VARIANT_FALSE;
        return interceptor_->InterceptGetDataFromDevice(setup->As<IAttribute>().Get(), &handled);
    });
    job.kinds.push_back(Kind::Text);
    job.read = [this] { return Fields{setup->Value(L"Value"), type_->Value(L"EnumDesc")}; };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, ValueChangedInTheChannel) {
    Job job = OnChannel("InterceptAttributeValueChanged", [this] {
        VARIANT_BOOL handled = VARIANT_FALSE;
        return interceptor_->InterceptAttributeValueChanged(gain->As<IAttribute>().Get(), &handled);
    });
    job.prepare = [this] {
        Reset();
        gain->Set(L"Value", L"a new value");
        object_ = NewChannel(kKey, Device().Get());
        EXPECT_EQ(object_->Create(), S_OK);
        TakePoints();
    };
    job.kinds.push_back(Kind::Text);
    job.read = [this] { return Fields{attribute_->Value(L"Value")}; };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, TypeChangedInTheChannel) {
    gain->Set(L"SNVTType", type_);
    Job job = OnChannel("InterceptTypeChanged", [this] {
        VARIANT_BOOL handled = VARIANT_FALSE;
        return interceptor_->InterceptTypeChanged(gain->As<IAttribute>().Get(), &handled);
    });
    job.kinds.push_back(Kind::Text);
    job.read = [this] { return Fields{attribute_->Value(L"SetType")}; };
    const auto prepare = job.prepare;
    job.prepare = [this, prepare] {
        attribute_->Set(L"SetType", L"type from before");
        prepare();
    };
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, FlagsFromTheDefinition) {
    loop_->Run(
        AskingForAFlag("InterceptIsUnitsDependent", &IAttributeInterceptor::InterceptIsUnitsDependent));
    loop_->Run(AskingForAFlag("InterceptIsDifferential", &IAttributeInterceptor::InterceptIsDifferential));
}

TEST_F(ChannelFaultTest, PlaceOfAnOutput) {
    Job job = Asking("Index of a channel's output", [this](std::wstring& answer) {
        long index = -1;
        const HRESULT result = outputPoint_->get_Index(&index);
        answer = SUCCEEDED(result) ? std::to_wstring(index) : L"";
        return result;
    });
    job.kinds.push_back(Kind::Text);
    loop_->Run(job);
    job = Asking("Reference of a channel's output", [this](std::wstring& answer) {
        com::Bstr reference;
        const HRESULT result = outputPoint_.As<IDisplayItem>()->get_Reference(reference.Put());
        answer = reference.View();
        return result;
    });
    job.kinds.push_back(Kind::Text);
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, ExportIndex) {
    Job job = Asking("ExportIndex of a channel", [this](std::wstring& answer) {
        short index = 0;
        const HRESULT result = object_->get_ExportIndex(&index);
        answer = SUCCEEDED(result) ? std::to_wstring(index) : L"";
        return result;
    });
    job.kinds = {Kind::Host};
    loop_->Run(job);
}

TEST_F(ChannelFaultTest, Saved) {
    device->Set(L"DeviceKey", L"key of the device");
    support::Document document;
    generic.object->On(L"XMLSave", [](const Invocation& call) {
        const auto target = com::Query<IXMLDOMDocument2>(call.Input(1).pdispVal);
        const tam::dom::Node parent = com::Query<IXMLDOMNode>(call.Input(0).pdispVal);
        tam::dom::AppendText(target, tam::dom::Node(tam::dom::Append(target, parent, L"AI")), L"Name",
                             L"Level");
        return S_OK;
    });
    Job job = OnChannel("XMLSave of a channel",
                        [&] { return object_->XMLSave(support::Root(document).Get(), document.Get()); });
    const auto prepare = job.prepare;
    job.prepare = [&, prepare] {
        document = support::Parse(L"<Project><Other/></Project>");
        prepare();
    };
    job.read = [&] { return Fields{support::Xml(support::Root(document).Get())}; };
    job.kinds = {Kind::Memory, Kind::Text, Kind::Dom, Kind::Host};
    job.judge = [](const Case& run) {
        EXPECT_TRUE(run.HasFailed());
        // What works again takes out what was saved without both keys.
        if (run.mode == Mode::Once) {
            EXPECT_EQ(run.left.fields, run.before.fields);
        }
    };
    loop_->Run(job);
}

} // namespace
