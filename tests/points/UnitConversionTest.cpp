#include "tests/points/Points.h"

#include "com/LateBound.h"
#include "core/RunTimeError.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace support;
using namespace points;

namespace {

constexpr CLSID kOtherConverterClass = {
    0x7A0E3B61, 0x3A0C, 0x4C3B, {0x9B, 0x0E, 0x5D, 0x1F, 0x52, 0x8C, 0x11, 0xA1}};

/// A converter that offers nothing but its names, as one written in a script.
class ScriptConverter final : public ByNameDouble {
  public:
    /// Each call: member, then its arguments.
    std::vector<std::vector<std::wstring>> calls;
    bool isNumeric = false;
    bool fails = false;
    /// What a failing call puts into its exception.
    std::function<void(EXCEPINFO&)> raise = [](EXCEPINFO& exception) {
        exception.scode = static_cast<SCODE>(0x800A1234);
        exception.bstrSource = com::Bstr(L"Units of the host").Detach();
        exception.bstrDescription = com::Bstr(L"No such unit").Detach();
    };

    ScriptConverter() : ByNameDouble({L"Convert", L"Label"}) {}
    void ForgetNames() { names_.clear(); }

  private:
    HRESULT Call(std::size_t member, WORD, DISPPARAMS& params, VARIANT* result,
                 EXCEPINFO* exception) override {
        std::vector<std::wstring> call{names_[member]};
        for (UINT i = params.cArgs; i > 0; --i) { // arguments come last first
            call.push_back(com::Text(params.rgvarg[i - 1].bstrVal));
        }
        calls.push_back(std::move(call));
        if (fails) {
            raise(*exception);
            return DISP_E_EXCEPTION;
        }
        if (member == 0 && isNumeric) {
            result->vt = VT_R8;
            result->dblVal = 70.5;
        } else {
            result->vt = VT_BSTR;
            result->bstrVal = com::Bstr(member == 0 ? L"70.7" : L"degF").Detach();
        }
        return S_OK;
    }
};

/// A converter by slot that says why it failed.
class FailingConverter final : public com::DualObject<FailingConverter, IUnitConverter> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    /// Not empty: the conversion succeeds and leaves an error object of these words.
    std::wstring leaves;
    STDMETHODIMP Convert(BSTR, BSTR, BSTR* value) override {
        if (!leaves.empty()) {
            LeaveError(leaves);
            *value = com::Bstr(L"1").Detach();
            return S_OK;
        }
        return Get(value, []() -> std::wstring {
            throw tam::RunTimeError(static_cast<std::int32_t>(0x80041234), L"Converter", L"Out of its range");
        });
    }
    STDMETHODIMP Label(BSTR, BSTR*) override { return E_UNEXPECTED; } // without a word
};

/// A converter that lets the attribute load another type while it converts.
class ReloadingConverter final : public com::DualObject<ReloadingConverter, IUnitConverter> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    com::Ref<IAttribute> attribute;
    std::wstring labelled;
    STDMETHODIMP Convert(BSTR, BSTR, BSTR* value) override {
        return Get(value, [&]() -> std::wstring {
            const auto saved = Saved(L"<Gain><SNVT_TYPE>8</SNVT_TYPE></Gain>");
            com::Check(attribute.As<_CDBAttribute>()->XmlLoad(saved.Get()));
            return L"70.7";
        });
    }
    STDMETHODIMP Label(BSTR unit, BSTR* value) override {
        return Get(value, [&] {
            labelled = com::Text(unit);
            return L"label of " + labelled;
        });
    }
};

/// Fills an exception in when its receiver asks.
HRESULT STDMETHODCALLTYPE FillInLate(EXCEPINFO* exception) {
    exception->scode = static_cast<SCODE>(0x800A1235);
    exception->bstrSource = com::Bstr(L"Later").Detach();
    exception->bstrDescription = com::Bstr(L"Told when asked").Detach();
    return S_OK;
}

class UnitConversionTest : public PointsTest {
  protected:
    com::Ref<ScriptConverter> script = com::Ref<ScriptConverter>::Own(new ScriptConverter);
    com::Ref<FailingConverter> failing = FailingConverter::Make();

    /// A numeric attribute of a module that is made over this converter.
    com::Ref<IAttribute> Over(IUnknown* converter) {
        const HostClass other(kOtherConverterClass, kConverterProgId, [converter](REFIID iid, void** out) {
            return converter->QueryInterface(iid, out);
        });
        module = WithAttributes(L"<Gain><SNVTTYPE>105</SNVTTYPE><VALUE>21.5</VALUE></Gain>");
        return Attribute(module, L"Gain");
    }
};

TEST_F(UnitConversionTest, AsksAConverterWithoutTheInterfaceByName) {
    const auto gain = Over(script.Get());
    EXPECT_EQ(Text(gain, &IAttribute::get_DispValue), L"70.7 degF");
    EXPECT_EQ(script->calls, (std::vector<std::vector<std::wstring>>{{L"Convert", Local(L"21.5"), L"105"},
                                                                     {L"Label", L"105"}}));
}

TEST_F(UnitConversionTest, ShowsANumberThatIsAnsweredByNameInTheUsersForm) {
    script->isNumeric = true;
    EXPECT_EQ(Text(Over(script.Get()), &IAttribute::get_DispValue), Local(L"70.5") + L" degF");
}

TEST_F(UnitConversionTest, HandsAFailureByNameToTheCallerAsItWasRaised) {
    script->fails = true;
    com::Bstr shown;
    EXPECT_EQ(Over(script.Get())->get_DispValue(shown.Put()), static_cast<HRESULT>(0x800A1234));
    const ErrorTexts error = LastError();
    EXPECT_EQ(error.description, L"No such unit");
    EXPECT_EQ(error.source, L"Units of the host");
    EXPECT_EQ(shown.Get(), nullptr);
    EXPECT_EQ(script->calls.size(), 1u); // the label is not asked for any more
}

TEST_F(UnitConversionTest, AsksForAnExceptionThatIsFilledInLater) {
    script->fails = true;
    script->raise = [](EXCEPINFO& exception) { exception.pfnDeferredFillIn = &FillInLate; };
    com::Bstr shown;
    EXPECT_EQ(Over(script.Get())->get_DispValue(shown.Put()), static_cast<HRESULT>(0x800A1235));
    const ErrorTexts error = LastError();
    EXPECT_EQ(error.description, L"Told when asked");
    EXPECT_EQ(error.source, L"Later");
}

TEST_F(UnitConversionTest, TakesTheNumberOfAnExceptionForItsCode) {
    script->fails = true;
    constexpr WORD kDivisionByZero = 11;
    script->raise = [](EXCEPINFO& exception) { exception.wCode = kDivisionByZero; };
    com::Bstr shown;
    const auto gain = Over(script.Get());
    EXPECT_EQ(gain->get_DispValue(shown.Put()),
              MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, kDivisionByZero));
    EXPECT_FALSE(HasLastError()) << "the exception has no words";
    script->raise = [](EXCEPINFO&) {};
    EXPECT_EQ(gain->get_DispValue(shown.Put()), DISP_E_EXCEPTION);
}

TEST_F(UnitConversionTest, HandsTheHelpOfAnExceptionOnToo) {
    script->fails = true;
    script->raise = [](EXCEPINFO& exception) {
        exception.scode = E_ABORT;
        exception.bstrHelpFile = com::Bstr(L"units.hlp").Detach();
        exception.dwHelpContext = 12;
    };
    com::Bstr text;
    EXPECT_EQ(Over(script.Get())->get_DispValue(text.Put()), E_ABORT);
    com::Ref<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.Put()), S_OK);
    DWORD context = 0;
    info->GetHelpContext(&context);
    EXPECT_EQ(context, 12u);
    info->GetHelpFile(text.Put());
    EXPECT_EQ(text.View(), L"units.hlp");
    info->GetDescription(text.Put());
    EXPECT_EQ(text.View(), L"") << "it told none";
    info->GetSource(text.Put());
    EXPECT_EQ(text.View(), L"");
}

TEST_F(UnitConversionTest, TellsNoFailureInTheWordsOfACallThatSucceeded) {
    failing->leaves = L"Of another call";
    com::Bstr shown;
    EXPECT_EQ(Over(static_cast<IUnitConverter*>(failing.Get()))->get_DispValue(shown.Put()), E_UNEXPECTED);
    EXPECT_FALSE(HasLastError());
}

TEST_F(UnitConversionTest, HandsAFailureBySlotToTheCallerAsItWasRaised) {
    com::Bstr shown;
    EXPECT_EQ(Over(static_cast<IUnitConverter*>(failing.Get()))->get_DispValue(shown.Put()),
              static_cast<HRESULT>(0x80041234));
    const ErrorTexts error = LastError();
    EXPECT_EQ(error.description, L"Out of its range");
    EXPECT_EQ(error.source, L"Converter");
}

TEST_F(UnitConversionTest, HandsAFailureToAScriptAsItWasRaised) {
    const auto gain = Over(static_cast<IUnitConverter*>(failing.Get()));
    const auto failure = com::Attempt([&] { com::GetMember(*gain.Get(), L"DispValue"); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code, static_cast<HRESULT>(0x80041234));
    EXPECT_EQ(failure->description, L"Out of its range");
    EXPECT_EQ(failure->source, L"Converter");
}

TEST_F(UnitConversionTest, AsksForTheLabelOfTheUnitThatItConvertedFor) {
    const auto reloading = ReloadingConverter::Make();
    reloading->attribute = Over(static_cast<IUnitConverter*>(reloading.Get()));
    EXPECT_EQ(Text(reloading->attribute, &IAttribute::get_DispValue), L"70.7 label of 105");
    EXPECT_EQ(Text(Object(reloading->attribute, &IAttribute::get_SNVTType), &ISNVType::get_ID), L"8");
    reloading->attribute.Reset();
}

TEST_F(UnitConversionTest, FailsWithAnObjectThatConvertsNothing) {
    script->ForgetNames();
    com::Bstr shown;
    EXPECT_EQ(Over(script.Get())->get_DispValue(shown.Put()), DISP_E_UNKNOWNNAME);
}

TEST_F(UnitConversionTest, GivesTheConverterThatItWasMadeOver) {
    const auto manager = Object(Over(script.Get()).As<_CDBAttribute>(), &_CDBAttribute::get_UnitsManager);
    EXPECT_TRUE(com::SameObject(manager.Get(), static_cast<IDispatch*>(script.Get())));
}

TEST_F(UnitConversionTest, ConvertsStillWhenTheModuleHasBeenDestroyed) {
    const auto gain = Over(script.Get());
    EXPECT_EQ(module->Destroy(), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_DispValue), L"70.7 degF");
    EXPECT_EQ(module->Destroy(), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_DispValue), L"70.7 degF");
}

} // namespace
