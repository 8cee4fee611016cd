#include "tests/fault/ModuleFault.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

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

    /// The keys of the module and of its two sides: a collection and its point each.
    Fields Keys() {
        const auto attribute = Attribute(module_, L"Attribute_first");
        const auto input = Input(module_, L"Input_first");
        const auto output = Output(module_, L"Output_first");
        Fields keys = {Field(L"module", module_, &IAppObject::get_GlobalKey)};
        keys.push_back(Field(L"attribute", attribute, &IAttribute::get_GlobalKey));
        keys.push_back(Field(L"input", input, &IInput::get_GlobalKey));
        keys.push_back(Field(L"output", output, &IOutput::get_GlobalKey));
        keys.push_back(Field(L"module", module_, &IAppObject::get_ExtendedKey));
        keys.push_back(Field(L"attribute", attribute, &IAttribute::get_ExtendedKey));
        keys.push_back(Field(L"input", input, &IInput::get_ExtendedKey));
        keys.push_back(Field(L"output", output, &IOutput::get_ExtendedKey));
        return keys;
    }
    /// A key written to a module, whose points have none before or have one.
    Job Keyed(const char* name, bool isFirst, HRESULT (STDMETHODCALLTYPE IAppObject::*put)(BSTR)) {
        Job job;
        job.name = name;
        job.prepare = [this, isFirst, put] {
            MakeModule();
            if (!isFirst) {
                Put(module_, put, L"key before");
            }
        };
        job.run = [this, put] {
            return Left{Put(module_, put, L"a key too long for a text object itself"), {}, {}};
        };
        job.read = [this] { return Keys(); };
        job.release = [this] { module_.Reset(); };
        job.kinds = {Kind::Memory};
        job.judge = [](const Case& run) {
            EXPECT_TRUE(run.HasFailed());
            EXPECT_EQ(run.left.fields, run.before.fields) << "a key is written everywhere or nowhere";
        };
        return job;
    }
    /// XmlLoad of an element; the fields are one of what the point says of itself.
    Job LoadingOne(const char* name, const wchar_t* xml, std::function<HRESULT(IDispatch* element)> load,
                   std::function<Fields()> read) {
        Job job = Loading(name, xml, std::move(load));
        job.read = std::move(read);
        return job;
    }
    /// A text of the interoperability element, the only place where it shows.
    std::wstring Interop(const std::wstring& path) {
        const Document document = Parse(L"<Host/>");
        EXPECT_EQ(module_->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
        const auto node = tam::dom::Select(tam::dom::Node(Root(document)), L"O_Tam_id/" + path);
        return node ? tam::dom::TextOf(node) : L"(none)";
    }

  private:
    Document document_;
};

/// What a member with a text answers of an object; empty when it fails.
template <class I>
HRESULT Ask(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*get)(BSTR*), std::wstring& answer) {
    com::Bstr text;
    LeaveError(L"Of long ago");
    const HRESULT result = (object.Get()->*get)(text.Put());
    EXPECT_TRUE(SUCCEEDED(result) || text.Get() == nullptr);
    EXPECT_TRUE(SUCCEEDED(result) || LastError().description != L"Of long ago")
        << "a failure has words of its own, or none";
    answer = FAILED(result) ? std::wstring() : answer + L" " + std::wstring(text.View());
    return result;
}

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

TEST_F(PointFaultTest, LoadedInput) {
    Loop().Run(LoadingOne(
        "XmlLoad of an input",
        L"<Input_first><!-- c --><SNVT_TYPE>type of a long name</SNVT_TYPE></Input_first>",
        [this](IDispatch* element) {
            return Input(module_, L"Input_first").As<_CDBInput>()->XmlLoad(element);
        },
        [this] { return Fields{Interop(L"Inputs/Input_first/SNVTType")}; }));
}

TEST_F(PointFaultTest, LoadedAttribute) {
    const auto attribute = [this] { return Attribute(module_, L"Attribute_first"); };
    Job job = LoadingOne(
        "XmlLoad of an attribute", L"<Attribute_first><!-- c --><SNVT_TYPE>105</SNVT_TYPE></Attribute_first>",
        [attribute](IDispatch* element) { return attribute().As<_CDBAttribute>()->XmlLoad(element); },
        [attribute] {
            const auto type = Object(attribute(), &IAttribute::get_SNVTType);
            return Fields{Field(L"Name", type, &ISNVType::get_Name),
                          Field(L"GenType", type, &ISNVType::get_GenType),
                          Field(L"ID", type, &ISNVType::get_ID)};
        });
    job.reports.insert(job.reports.end(), {L"ID [Property Let]  -  ID = '105'", L"Function UnlocalizeValue"});
    job.judge = [](const Case& run) {
        // The type traps its own failures, and the walk goes on.
        ExpectSetInOrder(run);
        ExpectNotSilent(run);
        EXPECT_TRUE(run.told.size() <= 1 || run.mode == Mode::ForEver);
    };
    Loop().Run(job);
}

TEST_F(PointFaultTest, LoadedAttributes) {
    Job job = LoadingOne(
        "XmlLoad of the attributes",
        L"<Attributes><Attribute_second/><!-- c --><Attribute_first/></Attributes>",
        [this](IDispatch* element) {
            return Object(module_, &IAppObject::get_Attributes).As<_CDBAttributes>()->XmlLoad(element);
        },
        [this] { return Fields{Text(Attribute(module_, L"1"), &IAttribute::get_Name)}; });
    job.judge = [](const Case& run) {
        // It only compares names, so what is passed over is to be told.
        EXPECT_EQ(run.left.fields, run.before.fields);
        EXPECT_TRUE(run.told.size() == 1 || run.mode == Mode::ForEver);
    };
    Loop().Run(job);
}

TEST_F(PointFaultTest, FirstKey) {
    Loop().Run(Keyed("GlobalKey, the first", true, &IAppObject::put_GlobalKey));
    Loop().Run(Keyed("ExtendedKey, the first", true, &IAppObject::put_ExtendedKey));
}

TEST_F(PointFaultTest, LaterKey) {
    Loop().Run(Keyed("GlobalKey, a later one", false, &IAppObject::put_GlobalKey));
    Loop().Run(Keyed("ExtendedKey, a later one", false, &IAppObject::put_ExtendedKey));
}

TEST_F(PointFaultTest, KeysThatAreRead) {
    Job job = Keyed("GlobalKey and ExtendedKey, read", false, &IAppObject::put_GlobalKey);
    job.run = [this] {
        Left left;
        const auto keys = [&left](const auto& object, auto global, auto extended) {
            if (SUCCEEDED(left.result)) {
                left.result = Ask(object, global, left.answer);
            }
            if (SUCCEEDED(left.result)) {
                left.result = Ask(object, extended, left.answer);
            }
        };
        keys(module_, &IAppObject::get_GlobalKey, &IAppObject::get_ExtendedKey);
        keys(Object(module_, &IAppObject::get_Inputs), &IInputs::get_GlobalKey, &IInputs::get_ExtendedKey);
        keys(Object(module_, &IAppObject::get_Outputs), &IOutputs::get_GlobalKey, &IOutputs::get_ExtendedKey);
        keys(Object(module_, &IAppObject::get_Attributes), &IAttributes::get_GlobalKey,
             &IAttributes::get_ExtendedKey);
        keys(Input(module_, L"Input_first"), &IInput::get_GlobalKey, &IInput::get_ExtendedKey);
        keys(Output(module_, L"Output_first"), &IOutput::get_GlobalKey, &IOutput::get_ExtendedKey);
        keys(Attribute(module_, L"Attribute_first"), &IAttribute::get_GlobalKey,
             &IAttribute::get_ExtendedKey);
        return left;
    };
    job.kinds = {Kind::Text};
    job.judge = [](const Case& run) {
        EXPECT_TRUE(run.HasFailed());
        EXPECT_EQ(run.left.fields, run.before.fields);
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
