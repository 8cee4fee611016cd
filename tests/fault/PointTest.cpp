#include "tests/fault/ModuleFaultTest.h"

// Points and their collections, saved into a host's document and loaded from it.

namespace {

using namespace fault;
using namespace modules;
using namespace support;

using Fields = std::vector<std::wstring>;

class PointFaultTest : public ModuleFaultTest {
  protected:
    /// A module of the small stream with two outputs.
    void MakeModule() {
        std::wstring stream = SmallStream();
        const std::wstring end = L"</OutReferences>";
        stream.insert(stream.find(end), L"<Output_second><SNVTType>105</SNVTType></Output_second>");
        module_ = Loaded(stream);
    }
    /// What an output saves of itself.
    Fields Saved(const wchar_t* output) {
        const Document document = Parse(L"<Host/>");
        EXPECT_EQ(Output(module_, output).As<_CDBOutput>()->XMLSave(document.Get(), Root(document).Get()),
                  S_OK);
        return NodesBelow(tam::dom::Node(Root(document)));
    }
    /// XMLSave of a point, as its own interface orders the arguments.
    Job Saving(const char* name, std::function<HRESULT(IDispatch* document, IDispatch* parent)> save) {
        Job job;
        job.name = name;
        job.prepare = [this] {
            MakeModule();
            document_ = Parse(L"<Host/>");
        };
        job.run = [this, save] { return Left{save(document_.Get(), Root(document_).Get()), {}, {}}; };
        job.read = [this] { return NodesBelow(tam::dom::Node(Root(document_))); };
        job.release = [this] {
            module_.Reset();
            document_.Reset();
        };
        job.kinds = {Kind::Memory, Kind::Text, Kind::Dom};
        job.mayFail = false;
        job.reports = {L"Sub XMLSave"};
        job.judge = [](const Case& run) {
            ExpectFirstOf(run);
            ExpectNotSilent(run);
            EXPECT_LE(run.told.size(), 1u);
        };
        return job;
    }
    /// XmlLoad of an element; the fields are what two outputs save afterwards.
    Job Loading(const char* name, const wchar_t* xml, std::function<HRESULT(IDispatch* element)> load) {
        Job job;
        job.name = name;
        job.prepare = [this, xml] {
            MakeModule();
            document_ = Parse(xml);
        };
        job.run = [this, load] { return Left{load(Root(document_).Get()), {}, {}}; };
        job.read = [this] {
            Fields fields = Saved(L"Output_first");
            const Fields second = Saved(L"Output_second");
            fields.insert(fields.end(), second.begin(), second.end());
            return fields;
        };
        job.release = [this] {
            module_.Reset();
            document_.Reset();
        };
        job.kinds = {Kind::Memory, Kind::Dom};
        job.mayFail = false;
        job.reports = {L"Sub XmlLoad"};
        job.judge = [](const Case& run) {
            ExpectSetInOrder(run);
            ExpectNotSilent(run);
            EXPECT_LE(run.told.size(), 1u);
        };
        return job;
    }

  private:
    Document document_;
};

TEST_F(PointFaultTest, SavedInput) {
    Loop().Run(Saving("XMLSave of an input", [this](IDispatch* document, IDispatch* parent) {
        return Input(module_, L"Input_first").As<_CDBInput>()->XMLSave(document, parent);
    }));
}

TEST_F(PointFaultTest, SavedOutput) {
    Loop().Run(Saving("XMLSave of an output", [this](IDispatch* document, IDispatch* parent) {
        return Output(module_, L"Output_first").As<_CDBOutput>()->XMLSave(document, parent);
    }));
}

TEST_F(PointFaultTest, SavedAttribute) {
    Job job = Saving("XMLSave of an attribute", [this](IDispatch* document, IDispatch* parent) {
        return Attribute(module_, L"Attribute_first").As<_CDBAttribute>()->XMLSave(parent, document);
    });
    job.kinds = {Kind::Text, Kind::Dom};
    Loop().Run(job);
}

TEST_F(PointFaultTest, LoadedOutput) {
    Job job = Loading("XmlLoad of an output",
                      L"<Output_first><!-- c --><IsConnected>True</IsConnected>"
                      L"<IsDisplayable>True</IsDisplayable><ExportIndex>index of the export</ExportIndex>"
                      L"</Output_first>",
                      [this](IDispatch* element) {
                          return Output(module_, L"Output_first").As<_CDBOutput>()->XmlLoad(element);
                      });
    job.kinds.push_back(Kind::Text);
    Loop().Run(job);
}

TEST_F(PointFaultTest, LoadedOutputs) {
    Job job =
        Loading("XmlLoad of the outputs",
                L"<Outputs><Output_first><IsConnected>True</IsConnected></Output_first><!-- c -->"
                L"<Output_second><IsDisplayable>True</IsDisplayable></Output_second></Outputs>",
                [this](IDispatch* element) {
                    return Object(module_, &IAppObject::get_Outputs).As<_CDBOutputs>()->XmlLoad(element);
                });
    job.kinds.push_back(Kind::Text);
    job.judge = [](const Case& run) {
        // Each output traps its own failures, and the walk goes on.
        ExpectNotSilent(run);
        if (run.mode == Mode::Once) {
            EXPECT_EQ(run.told.size(), 1u);
        }
        for (std::size_t i = 0; i < run.left.fields.size(); ++i) {
            EXPECT_TRUE(run.left.fields[i] == run.before.fields[i] ||
                        run.left.fields[i] == run.untouched.fields[i]);
        }
    };
    Loop().Run(job);
}

TEST_F(PointFaultTest, LoadedInputs) {
    Job job = Loading("XmlLoad of the inputs", L"<Inputs><Input_second/><!-- c --><Input_first/></Inputs>",
                      [this](IDispatch* element) {
                          return Object(module_, &IAppObject::get_Inputs).As<_CDBInputs>()->XmlLoad(element);
                      });
    job.read = [this] {
        const auto inputs = Object(module_, &IAppObject::get_Inputs);
        Fields names;
        for (const wchar_t* position : {L"1", L"2"}) {
            names.push_back(Text(Item(inputs, &IInputs::get_Item, position), &IInput::get_Name));
        }
        return names;
    };
    job.reports = {L"Sub XmlLoad", L"Sub pCheckPosition", L"Sub pGetPosition"};
    job.judge = [](const Case& run) {
        ExpectNotSilent(run);
        EXPECT_TRUE(run.left.fields == run.before.fields || run.left.fields == run.untouched.fields)
            << "an input is gone";
    };
    Loop().Run(job);
}

} // namespace
