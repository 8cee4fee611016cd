#include "com/Enumerator.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/fault/EditFault.h"

#include <string>
#include <vector>

// Values of a host's own objects, which are reached by name, in the editors.

namespace {

using namespace fault;
using namespace support;
using dialogs::HostPoint;

using Fields = std::vector<std::wstring>;

/// References to an object beside the one that asks.
ULONG ReferencesTo(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

class HostEditFaultTest : public EditFaultTest {
  protected:
    void SetUp() override {
        EditFaultTest::SetUp();
        number_.type->AddText(L"Min", L"-100");
        number_.type->AddText(L"Max", L"100");
        number_.type->AddText(L"InvalidValue", L"127");
        text_.type->AddText(L"Length", L"8");
        mode_.type->AddText(L"EnumDesc", L"0,Off;1,On and longer;");
        flags_.type->AddText(L"Length", L"1");
        structure_.SetFields({&number_, &text_});
        Loop().HostSlots().Replace<Kind::Host, &IDispatch::GetIDsOfNames, &IDispatch::Invoke>(
            static_cast<IDispatch*>(number_.object.Get()));
        const com::Ref<IUnknown> list = com::MakeEnumerator({});
        Loop().HostSlots().Replace<Kind::Host, &IEnumVARIANT::Next>(list.As<IEnumVARIANT>().Get());
    }

    /// EditValue of a point; the values of these are what it may change.
    Job Editing(const char* name, HostPoint& point, const std::vector<HostPoint*>& changed) {
        Job job;
        job.name = name;
        job.prepare = [this, &point] {
            module_ = NewModule();
            number_.value = L"40";
            text_.value = L"a hall of a house";
            mode_.value = L"0";
            flags_.value = L"5";
            references_ = ReferencesTo(point.object.Get());
        };
        job.run = [this, &point] {
            return Left{module_.As<ITamDialogs>()->EditValue(point.object.Get()), {}, {}};
        };
        job.read = [changed] {
            Fields fields;
            for (const HostPoint* one : changed) {
                fields.push_back(one->value);
            }
            return fields;
        };
        job.release = [this, &point] {
            module_.Reset();
            EXPECT_EQ(ReferencesTo(point.object.Get()), references_) << "the data point is still held";
        };
        job.kinds = {Kind::Memory, Kind::Text, Kind::Host};
        job.judge = [](const Case& run) {
            const auto& values = run.left.fields;
            EXPECT_TRUE(values == run.untouched.fields || values == run.before.fields);
            if (run.HasFailed()) {
                EXPECT_EQ(values, run.before.fields);
            }
            ExpectNotSilent(run);
            ExpectOkTexts(run);
        };
        return job;
    }

    HostPoint number_{L"Speed of the fan", L"", L"SignedNumeric"};
    HostPoint text_{L"Label of the fan", L"", L"Textual"};
    HostPoint mode_{L"Mode of the fan", L"", L"Enum"};
    HostPoint flags_{L"Flags of the fan", L"", L"Bitfield"};
    HostPoint structure_{L"All of the fan", L"whole", L"Struct"};

  private:
    ULONG references_ = 0;
};

TEST_F(HostEditFaultTest, Number) {
    Job job = Editing("EditValue of a number", number_, {&number_});
    job.reports = {L"Sub txtNewCPValue_Change", L"Sub txtNewCPValue_KeyPress"};
    Loop().Run(job);
}

TEST_F(HostEditFaultTest, NumberOfADecimalComma) {
    const ImportPatch comma(Dll().Module(), "VarBstrFromR4",
                            reinterpret_cast<const void*>(+[](FLOAT, LCID, ULONG, BSTR* out) WINAPI {
                                *out = SysAllocString(L"0,5");
                                return S_OK;
                            }));
    ASSERT_TRUE(comma.IsImported());
    Job job = Editing("EditValue with a decimal comma", number_, {&number_});
    job.reports = {L"Sub txtNewCPValue_Change", L"Sub txtNewCPValue_KeyPress"};
    Loop().Run(job);
}

TEST_F(HostEditFaultTest, Text) {
    Job job = Editing("EditValue of a text", text_, {&text_});
    job.reports = {L"Sub txtNewCPValue_Change", L"Sub txtNewCPValue_KeyPress"};
    Loop().Run(job);
}

TEST_F(HostEditFaultTest, Enumeration) {
    Loop().Run(Editing("EditValue of an enumeration", mode_, {&mode_}));
}

TEST_F(HostEditFaultTest, BitField) {
    Loop().Run(Editing("EditValue of a bit field", flags_, {&flags_}));
}

TEST_F(HostEditFaultTest, Structure) {
    Job job = Editing("EditValue of a structure", structure_, {&number_, &text_});
    job.reports = {L"Sub lvwMain_DblClick", L"Sub txtNewCPValue_Change", L"Sub txtNewCPValue_KeyPress",
                   L"Sub Form_Unload"};
    job.judge = [](const Case& run) {
        const auto& values = run.left.fields;
        EXPECT_EQ(values[0], run.before.fields[0]) << "a field that nobody edited";
        EXPECT_TRUE(values[1] == run.untouched.fields[1] || values[1] == run.before.fields[1]);
        // What cannot be written back for ever stays.
        if (run.HasFailed() && run.mode == Mode::Once) {
            EXPECT_EQ(values, run.before.fields);
        }
        ExpectNotSilent(run);
        ExpectOkTexts(run);
    };
    Loop().Run(job);
}

} // namespace
