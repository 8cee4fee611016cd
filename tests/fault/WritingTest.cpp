#include "tests/fault/ModuleFault.h"

#include <string>
#include <vector>

// The jobs that write: the project element, the interoperability element, the
// export with and without the compiler.

namespace {

using namespace fault;
using namespace modules;
using namespace support;

using Fields = std::vector<std::wstring>;

constexpr const wchar_t* kNoCompiler = L"Compiler.dll, necessary to exported Tam object hasn't been found";

class WritingFaultTest : public ModuleFaultTest {
  protected:
    void TearDown() override {
        document_.Reset();
        ModuleFaultTest::TearDown();
    }
    /// A module with a displayable output and places that are not whole numbers.
    void MakeModule() {
        std::wstring stream = SmallStream();
        stream.insert(stream.rfind(L"</Tam>"), L"<CDB>5</CDB><DDB>6</DDB>");
        module_ = Loaded(stream);
        LoadProject(module_, kDisplayOut);
        module_->put_XPosition(0.5);
        document_ = Parse(L"<Project/>");
    }
    Job Saving(const char* name, HRESULT (STDMETHODCALLTYPE IAppObject::*save)(IDispatch*, IDispatch*)) {
        Job job;
        job.name = name;
        job.prepare = [this] { MakeModule(); };
        job.run = [this, save] {
            const auto root = Root(document_);
            return Left{(module_.Get()->*save)(root.Get(), document_.Get()), {}, {}};
        };
        job.read = [this] { return NodesBelow(tam::dom::Node(Root(document_))); };
        job.release = [this] {
            module_.Reset();
            document_.Reset();
        };
        job.judge = [](const Case& run) {
            ExpectFirstOf(run);
            ExpectNotSilent(run);
            EXPECT_LE(run.told.size(), 1u);
        };
        return job;
    }
    Job Exporting(const char* name) {
        Job job;
        job.name = name;
        job.prepare = [this] {
            MakeModule();
            UseDatabaseLocation();
        };
        job.run = [this] {
            com::Bstr stream;
            Left left;
            left.result = module_->get_Stream(stream.Put());
            left.answer = stream.View();
            return left;
        };
        job.read = [this] {
            return Fields{Field(L"CDB", Long(module_, &IAppObject::get_CDBDimension)),
                          Field(L"DDB", Long(module_, &IAppObject::get_DDBDimension))};
        };
        job.release = [this] {
            module_.Reset();
            document_.Reset();
        };
        Loop().HostSlots().Replace<Kind::Host, &IDatabaseLocation::get_Path>(
            static_cast<IDatabaseLocation*>(&UseDatabaseLocation()));
        job.kinds = {Kind::Memory, Kind::Text, Kind::Dom, Kind::Host, Kind::Creation};
        return job;
    }

  private:
    Document document_;
};

TEST_F(WritingFaultTest, ProjectElement) {
    Job job = Saving("XMLSave", &IAppObject::XMLSave);
    job.kinds = {Kind::Memory, Kind::Text, Kind::Dom};
    job.mayFail = false;
    job.reports = {L"Sub IAppObject_XMLSave"};
    Loop().Run(job);
}

TEST_F(WritingFaultTest, InteroperabilityElement) {
    Job job = Saving("XMLSaveForInteroperability", &IAppObject::XMLSaveForInteroperability);
    job.kinds = {Kind::Memory, Kind::Text, Kind::Dom};
    Loop().Run(job);
}

TEST_F(WritingFaultTest, Export) {
    Compiler& compiler = UseCompiler();
    compiler.cdbSize = L"1234";
    compiler.ddbSize = L"567";
    compiler.stream = L"the compiled stream";
    Job job = Exporting("Stream with a compiler");
    Loop().HostSlots().Replace<Kind::Host, &IDispatch::GetIDsOfNames, &IDispatch::Invoke>(
        static_cast<IDispatch*>(&compiler));
    job.judge = [](const Case& run) {
        const Fields noSizes = {Field(L"CDB", 0), Field(L"DDB", 0)};
        const bool isCompiled = run.left.answer == run.untouched.answer;
        if (!run.told.empty()) { // a compiler that cannot be made is none
            ASSERT_EQ(run.told.size(), 1u);
            EXPECT_EQ(run.told[0].text, kNoCompiler);
            EXPECT_FALSE(isCompiled);
            EXPECT_EQ(run.left.fields, noSizes);
            return;
        }
        // The first error ends the read: sizes come both or not at all.
        EXPECT_TRUE(isCompiled || run.left.answer.empty());
        const bool isMute = run.mode == Mode::ForEver && run.kind == Kind::Memory;
        EXPECT_TRUE(run.left.fields == run.before.fields || run.left.fields == run.untouched.fields ||
                    (isMute && run.left.fields == noSizes));
        if (isCompiled) {
            EXPECT_EQ(run.left.fields, run.untouched.fields);
        }
    };
    Loop().Run(job);
}

TEST_F(WritingFaultTest, ExportWithoutACompiler) {
    Job job = Exporting("Stream without a compiler");
    job.judge = [](const Case& run) {
        const bool isMute = run.mode == Mode::ForEver && run.kind == Kind::Memory;
        if (run.HasFailed()) {
            // Nothing is passed over before the database's path is known, and
            // the answer itself may find no room at the end.
            EXPECT_EQ(run.told.empty(), run.left.fields == run.before.fields);
            return;
        }
        EXPECT_TRUE(run.left.answer.empty() || run.left.answer == run.untouched.answer);
        EXPECT_EQ(run.left.fields, run.untouched.fields);
        if (!isMute && run.mode == Mode::Once && run.told.empty()) {
            // Only the message itself could not be shown.
            EXPECT_TRUE(run.IsAsUntouched());
        }
        for (const Told& told : run.told) {
            EXPECT_EQ(told.text, kNoCompiler);
        }
    };
    Loop().Run(job);
}

TEST_F(WritingFaultTest, KeptExport) {
    Compiler& compiler = UseCompiler();
    compiler.stream = L"the compiled stream";
    Job job = Exporting("Stream kept in a file");
    SetEnvironmentVariableW(L"DEBUG", L"1");
    job.kinds = {Kind::File};
    job.judge = [](const Case& run) { EXPECT_TRUE(run.IsAsUntouched()) << "the file is for an onlooker"; };
    Loop().Run(job);
    SetEnvironmentVariableW(L"DEBUG", nullptr);
    DeleteFileW(L"C:\\interop_K7_3.xml");
}

} // namespace
