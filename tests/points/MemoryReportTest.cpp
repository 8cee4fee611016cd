#include "tests/points/Points.h"

#include "tests/support/ImportPatch.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// Blocks of the size of the long texts below, as many as are given before one
/// fails; that many bytes nothing else asks for.
constexpr std::size_t kLength = 5003;
constexpr std::size_t kBytes = (kLength + 1) * sizeof(wchar_t);
int blocksLeft = -1;
void* (*realMalloc)(std::size_t) = nullptr;

void* FailingMalloc(std::size_t bytes) {
    if (bytes == kBytes && blocksLeft >= 0 && blocksLeft-- == 0) {
        return nullptr;
    }
    return realMalloc(bytes);
}

/// The component's own memory runs out at the n-th of such blocks; everything
/// after it is given.
class MemoryReportTest : public PointsTest {
  protected:
    const std::wstring longText = std::wstring(kLength, L'7');
    std::optional<ImportPatch> patch;

    void SetUp() override {
        PointsTest::SetUp();
        patch.emplace(Dll().Module(), "malloc", reinterpret_cast<const void*>(&FailingMalloc));
        ASSERT_TRUE(patch->IsImported());
        realMalloc = patch->Original<void* (*)(std::size_t)>();
    }
    void TearDown() override {
        blocksLeft = -1;
        patch.reset();
        PointsTest::TearDown();
    }
    template <class F>
    void FailAt(int block, F&& body) {
        blocksLeft = block;
        body();
        blocksLeft = -1;
    }
};

TEST_F(MemoryReportTest, AListReportsWhatItCannotAdd) {
    module = WithInputs(L"<In1><SNVTCOMPATIBILITYLIST>5</SNVTCOMPATIBILITYLIST></In1>");
    const auto list = Object(Input(module, L"1"), &IInput::get_SNVTCompatibles);
    const com::Bstr ids(L"8," + longText + L",9");
    FailAt(0, [&] { EXPECT_EQ(list->Add(ids.Get()), S_OK); });
    ExpectOnlyReport(Boxes(), {}, L"O_Tam_id Class Module CCompatibleSNVTs", L"Sub Add");
    EXPECT_EQ(Text(list, &ICompatibleSNVTs::ToString), L"5,8"); // what was added before stays
}

TEST_F(MemoryReportTest, AListReportsWhatItCannotShow) {
    module = WithInputs(L"<In1/>");
    const auto list = Object(Input(module, L"1"), &IInput::get_SNVTCompatibles);
    const com::Bstr ids(longText);
    EXPECT_EQ(list->Add(ids.Get()), S_OK);
    FailAt(0, [&] { EXPECT_EQ(Text(list, &ICompatibleSNVTs::ToString), L""); });
    ExpectOnlyReport(Boxes(), {}, L"O_Tam_id Class Module CCompatibleSNVTs", L"Function GetList");
    EXPECT_EQ(Text(list, &ICompatibleSNVTs::ToString), longText);
}

TEST_F(MemoryReportTest, ADefaultValueThatCannotBeBroughtToItsFormIsReported) {
    const TextFile file(Component::Folder() + L"LongDefault.xml",
                        L"<Tam><AppObject><NAME>LongDefault</NAME></AppObject><Attributes><Gain>"
                        L"<DefaultValue>" +
                            longText + L"</DefaultValue></Gain></Attributes></Tam>");
    const com::Bstr name(L"LongDefault");
    std::vector<bench::Box> reports;
    // Where it is read, a failure is passed over; only the conversion reports.
    for (int block = 0; block < 8; ++block) {
        module = NewModule();
        VARIANT_BOOL done = VARIANT_FALSE;
        ASSERT_EQ(module->Init(name.Get(), &done), S_OK);
        ASSERT_EQ(done, VARIANT_TRUE);
        FailAt(block, [&] {
            EXPECT_EQ(Load(module, Stream({}, {}, L"<Gain><SNVTTYPE>105</SNVTTYPE></Gain>")), S_OK);
        });
        for (const bench::Box& box : Boxes()) {
            reports.push_back(box);
        }
    }
    ASSERT_EQ(reports.size(), 1u);
    ExpectReport(reports[0], {}, L"O_Tam_id Module mSNVTDataConversion", L"Function UnlocalizeValue");
}

TEST_F(MemoryReportTest, ALimitThatCannotBeBroughtToItsFormIsReported) {
    SetCatalogue(L"<SNVT_7><Name>Long</Name><Type>SignedNumeric</Type><Length>2</Length><Min>" + longText +
                 L"</Min></SNVT_7>");
    std::vector<bench::Box> reports;
    for (int block = 0; block < 4; ++block) {
        module = NewModule();
        FailAt(block, [&] {
            EXPECT_EQ(Load(module, Stream({}, {}, L"<Gain><SNVTTYPE>7</SNVTTYPE></Gain>")), S_OK);
        });
        // A type that was not read whole is read once more.
        const auto type = Object(Attribute(module, L"Gain"), &IAttribute::get_SNVTType);
        EXPECT_EQ(Text(type, &ISNVType::get_Min), longText);
        for (const bench::Box& box : Boxes()) {
            if (!box.isMessageBox) {
                reports.push_back(box);
            }
        }
    }
    ASSERT_EQ(reports.size(), 1u);
    ExpectReport(reports[0], {}, L"O_Tam_id Module mSNVTDataConversion", L"Function UnlocalizeValue");
}

} // namespace
