#include "tests/fault/EditFault.h"

#include <string>
#include <vector>

// The value editors of a module's attributes and the other dialogs, opened,
// worked and confirmed as by a user.

namespace {

using namespace fault;
using namespace modules;
using namespace support;

using Fields = std::vector<std::wstring>;

class AttributeEditFaultTest : public EditFaultTest {
  protected:
    void TearDown() override {
        attribute_.Reset();
        EditFaultTest::TearDown();
    }

    /// SetValue of the attribute of this name in a module of this stream.
    Job Editing(const char* name, const std::wstring& stream, const wchar_t* attribute) {
        Job job;
        job.name = name;
        job.prepare = [this, stream, attribute] {
            module_ = Loaded(stream);
            attribute_ = Attribute(module_, attribute);
            if (const auto type = Object(attribute_, &IAttribute::get_SNVTType).As<IEnumType>()) {
                EXPECT_EQ(Put(type, &IEnumType::put_EnumDesc, L"0,Off;1,On and longer;"), S_OK);
            }
        };
        job.run = [this] { return Left{attribute_->SetValue(), {}, {}}; };
        job.read = [this] { return Fields{Text(attribute_, &IAttribute::get_Value)}; };
        job.release = [this] {
            attribute_.Reset();
            module_.Reset();
        };
        job.kinds = {Kind::Memory, Kind::Text};
        job.judge = [](const Case& run) {
            // The value is the new one or the old one, never another.
            const auto& value = run.left.fields;
            EXPECT_TRUE(value == run.untouched.fields || value == run.before.fields);
            if (run.HasFailed()) {
                EXPECT_EQ(value, run.before.fields);
            }
            ExpectNotSilent(run);
            ExpectOkTexts(run);
        };
        return job;
    }
    static std::wstring One(const wchar_t* type, const wchar_t* value) {
        return Stream({}, {},
                      std::wstring(L"<Attribute_one><SNVTType>") + type + L"</SNVTType><Value>" + value +
                          L"</Value></Attribute_one>");
    }

    com::Ref<IAttribute> attribute_;
};

TEST_F(AttributeEditFaultTest, Text) {
    Job job = Editing("SetValue of a text", SmallStream(), L"Attribute_first");
    job.reports = {L"Sub txtNewCPValue_Change", L"Sub txtNewCPValue_KeyPress"};
    Loop().Run(job);
}

TEST_F(AttributeEditFaultTest, Number) {
    // So many digits that reading them out of the box takes memory.
    Job job = Editing("SetValue of a number", One(L"105", L"20.500000001"), L"Attribute_one");
    job.reports = {L"Sub txtNewCPValue_Change", L"Sub txtNewCPValue_KeyPress"};
    // Only memory can fail in the key handler, so no other test sees its report.
    int ofKeys = 0;
    job.judge = [&ofKeys, judge = job.judge](const Case& run) {
        judge(run);
        for (const Told& told : run.told) {
            if (told.callingFunction == L"Sub txtNewCPValue_KeyPress") {
                EXPECT_EQ(told.callingObject, L"txtNewCPValue_KeyPress Form frmCPModif1");
                ++ofKeys;
            } else if (told.isReport) {
                EXPECT_EQ(told.callingObject, L"txtNewCPValue_Change Form frmCPModif1");
            }
        }
    };
    Loop().Run(job);
    EXPECT_GT(ofKeys, 0);
}

TEST_F(AttributeEditFaultTest, Enumeration) {
    Loop().Run(Editing("SetValue of an enumeration", One(L"95", L"0"), L"Attribute_one"));
}

TEST_F(AttributeEditFaultTest, BitField) {
    SetCatalogue(L"<SNVT_83><Name>State</Name><Type>Bitfield</Type><Length>2</Length></SNVT_83>");
    Loop().Run(Editing("SetValue of a bit field", One(L"83", L"5"), L"Attribute_one"));
}

TEST_F(AttributeEditFaultTest, DeviceName) {
    com::Variant name;
    Job job;
    job.name = "ShowRename";
    job.prepare = [&] {
        module_ = NewModule();
        name = com::Variant(L"Dev1");
    };
    job.run = [&] {
        short choice = 0;
        const com::Bstr key(L"key of the device");
        VARIANT argument = name.Detach();
        Left left;
        left.result = module_.As<ITamDialogs>()->ShowRename(&argument, key.Get(), &choice);
        *name.Put() = argument;
        left.answer = FAILED(left.result) ? L"" : std::to_wstring(choice);
        return left;
    };
    job.read = [&] { return Fields{com::Text(name.Get().bstrVal)}; };
    job.release = [&] { module_.Reset(); };
    job.kinds = {Kind::Memory, Kind::Text};
    job.judge = [](const Case& run) {
        // Confirmed with the new name, or cancelled with the old one.
        if (run.left.answer == L"1") {
            EXPECT_TRUE(run.IsAsUntouched());
        } else {
            EXPECT_TRUE(run.HasFailed() || run.left.answer == L"2");
            EXPECT_EQ(run.left.fields, run.before.fields);
        }
    };
    Loop().Run(job);
}

TEST_F(AttributeEditFaultTest, AboutBox) {
    Job job;
    job.name = "ShowAbout";
    job.prepare = [&] { module_ = NewModule(); };
    job.run = [&] { return Left{module_.As<ITamDialogs>()->ShowAbout(), {}, {}}; };
    job.read = [] { return Fields{}; };
    job.release = [&] { module_.Reset(); };
    job.kinds = {Kind::Memory};
    job.judge = [](const Case& run) { EXPECT_TRUE(run.HasFailed()) << "a box that could not be filled"; };
    Loop().Run(job);
}

} // namespace
