#include "tests/fault/ModuleFault.h"

#include <algorithm>
#include <string>
#include <vector>

// The jobs that read: the definition file, a device stream, the project element.

namespace {

using namespace fault;
using namespace modules;
using namespace support;

using Fields = std::vector<std::wstring>;

const std::wstring kInitReport = L"Function IAppObject_Init";
const std::wstring kBasicInfosReport = L"Sub pGetBasicInfos";
const std::wstring kDataSizesReport = L"Sub pGetDataSizes";
const std::wstring kListReport = L"Sub Add";
const std::wstring kListTextReport = L"Function GetList";
const std::wstring kUnlocalizeReport = L"Function UnlocalizeValue";

std::wstring TypeReport(const wchar_t* id) {
    return L"ID [Property Let]  -  ID = '" + std::wstring(id) + L"'";
}

class ReadingFaultTest : public ModuleFaultTest {
  protected:
    /// A module with the definition "Defaults" and this stream.
    com::Ref<IAppObject> Defaulted(const std::wstring& stream) {
        auto module = NewModule();
        EXPECT_TRUE(Init(module, L"Defaults"));
        EXPECT_EQ(Load(module, stream), S_OK);
        return module;
    }
};

TEST_F(ReadingFaultTest, Definition) {
    Define(L"Valve", L"<Name>A valve with a name</Name><ID>identifier 1</ID><!-- between -->"
                     L"<Description>opens and closes</Description><Category>actuators</Category>"
                     L"<DataSizes><T0 Name='first size' CDB_Size='12' Size_area_1='1' Size_area_2='2'/>"
                     L"<T1 Name='second size' CDB_Size='13'/></DataSizes>");
    const TextFile sheet(Component::Folder() + L"sheet of the valve.pdf", L"%PDF");
    Job job;
    job.name = "Init";
    job.prepare = [&] { module_ = NewModule(); };
    job.run = [&] {
        const com::Bstr name(L"Valve");
        VARIANT_BOOL done = VARIANT_TRUE;
        Left left;
        left.result = module_->Init(name.Get(), &done);
        left.answer = done != VARIANT_FALSE ? L"True" : L"False";
        return left;
    };
    job.read = [&] {
        return Fields{Field(L"UniqueIDString", module_, &IAppObject::get_UniqueIDString),
                      Field(L"Name", module_, &IAppObject::get_Name),
                      Field(L"UserName", module_, &IAppObject::get_UserName),
                      Field(L"ID", module_, &IAppObject::get_ID),
                      Field(L"Description", module_, &IAppObject::get_Description),
                      Field(L"Category", module_, &IAppObject::get_Category),
                      Flag(module_, &IAppObject::get_DatasheetAvailable) ? L"has a data sheet" : L"has none"};
    };
    job.release = [&] { module_.Reset(); };
    job.kinds = {Kind::Memory, Kind::Text, Kind::Dom, Kind::Creation, Kind::File};
    job.mayFail = false;
    job.reports = {kInitReport, kBasicInfosReport, kDataSizesReport};
    job.judge = [&](const Case& run) {
        const bool isRead = run.left.answer == L"True";
        // The rows of sizes are trapped on their own: the reading goes on after them.
        ExpectSetInOrder(run);
        if (!run.told.empty()) {
            EXPECT_EQ(run.told.back().callingFunction == kInitReport, !isRead);
        } else if (run.kind != Kind::File || !isRead) { // a sheet that is not found is no fault
            ExpectNotSilent(run);
        }
        if (run.mode == Mode::Once) {
            EXPECT_LE(run.told.size(), 1u);
        }
    };
    Loop().Run(job);
}

TEST_F(ReadingFaultTest, DeviceStream) {
    DefineWhole(L"Defaults", L"<Tam><AppObject/><Attributes><Attribute_second><DefaultValue>12.5"
                             L"</DefaultValue></Attribute_second></Attributes></Tam>");
    Job job;
    job.name = "LoadFromXmlStream";
    job.prepare = [&] {
        module_ = Defaulted(Stream(L"<Input_old/>", L"<Output_old/>", {}, L"Module from before"));
    };
    job.run = [&] {
        const com::Bstr text(SmallStream());
        Left left;
        left.result = module_.As<ITamObject>()->LoadFromXmlStream(text.Get());
        return left;
    };
    job.read = [&] {
        Fields fields = {Field(L"Name", module_, &IAppObject::get_Name),
                         Field(L"UserName", module_, &IAppObject::get_UserName)};
        const Document document = Parse(L"<Project/>");
        EXPECT_EQ(module_->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
        const Fields points = NodesBelow(tam::dom::Node(Root(document)));
        fields.insert(fields.end(), points.begin(), points.end());
        const auto number = Attribute(module_, L"Attribute_second");
        fields.push_back(number ? Field(L"DefaultValue", number, &IAttribute::get_DefaultValue) : L"none");
        return fields;
    };
    job.release = [&] { module_.Reset(); };
    job.kinds = {Kind::Memory, Kind::Text, Kind::Dom, Kind::Creation};
    // An attribute whose type could not be read, which is passed over, finds no
    // editor for it.
    job.followUps = {kObjectNotSet};
    job.reports = {TypeReport(L"105"), TypeReport(L"36"), kListReport, kListTextReport, kUnlocalizeReport};
    job.judge = [&](const Case& run) {
        const auto pointsOf = [](const Fields& fields) {
            Fields points; // their elements alone
            for (const std::wstring& field : fields) {
                const bool isPoint = field.starts_with(L"    <") && field.find(L'_') != std::wstring::npos;
                if (isPoint) {
                    points.push_back(field);
                }
            }
            return points;
        };
        const Fields seen = pointsOf(run.left.fields);
        const Fields all = pointsOf(run.untouched.fields);
        if (run.HasFailed()) {
            const bool isOld = seen == pointsOf(run.before.fields);
            const bool isFirst =
                seen.size() <= all.size() && std::equal(seen.begin(), seen.end(), all.begin());
            EXPECT_TRUE(isOld || isFirst) << "points are gone that were read, or from two streams";
            return;
        }
        EXPECT_EQ(seen, all); // a point is whole or not there
        const std::wstring& defaultValue = run.left.fields.back();
        EXPECT_TRUE(defaultValue == L"DefaultValue=12.5" || defaultValue == L"DefaultValue=");
        // Whatever goes wrong in the definition of an attribute is passed over.
        const auto attributes = [](const Fields& fields) {
            return std::find(fields.begin(), fields.end(), L"  <Attributes>");
        };
        if (run.told.empty() && run.mode == Mode::Once) {
            EXPECT_EQ(Fields(run.left.fields.begin(), attributes(run.left.fields)),
                      Fields(run.untouched.fields.begin(), attributes(run.untouched.fields)));
        }
    };
    Loop().Run(job);
}

TEST_F(ReadingFaultTest, ProjectElement) {
    const Document document = Parse(
        L"<Module><UserName>name of the project</UserName><X_Position>12.5</X_Position>"
        L"<!-- between --><Y_Position>7.25</Y_Position><DevKey>key of the device</DevKey>"
        L"<TamObjID>12</TamObjID><OutReferences><Output_first>1</Output_first></OutReferences></Module>");
    Job job;
    job.name = "XmlLoad";
    job.prepare = [&] { module_ = Loaded(SmallStream()); };
    job.run = [&] {
        Left left;
        left.result = module_->XmlLoad(Root(document).Get());
        return left;
    };
    job.read = [&] {
        const auto output = Output(module_, L"Output_first");
        return Fields{Field(L"UserName", module_, &IAppObject::get_UserName),
                      Field(L"XPosition", Double(module_, &IAppObject::get_XPosition)),
                      Field(L"YPosition", Double(module_, &IAppObject::get_YPosition)),
                      Field(L"DeviceKey", module_.As<ITamObject>(), &ITamObject::get_DeviceKey),
                      Field(L"TamObjectID", Short(module_.As<ITamObject>(), &ITamObject::get_TamObjectID)),
                      Flag(output, &IOutput::get_IsDisplayable) ? L"displayable" : L"hidden"};
    };
    job.release = [&] { module_.Reset(); };
    job.kinds = {Kind::Memory, Kind::Dom};
    job.mayFail = false;
    job.reports = {L"Sub IAppObject_XmlLoad"};
    job.judge = [&](const Case& run) {
        ExpectSetInOrder(run);
        ExpectNotSilent(run);
        EXPECT_LE(run.told.size(), 1u);
    };
    Loop().Run(job);
}

} // namespace
