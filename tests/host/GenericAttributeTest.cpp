#include "com/Dom.h"
#include "tests/host/GenericObjects.h"
#include "tests/support/Errors.h"

#include "com/Boundary.h"

#include <string>
#include <utility>
#include <vector>

namespace hosttest {

namespace {

const char* const kDefinition =
    "<AppObject><Attributes>"
    "<Gain><VISIBLE>1</VISIBLE><DESCRIPTION>the factor</DESCRIPTION><SNVTTYPE>82</SNVTTYPE>"
    "<VALUE>1.5</VALUE><MIN>0.5</MIN><MAX>4.0</MAX><CDBPOSITION>3</CDBPOSITION><DIVIDEDBY>10</DIVIDEDBY>"
    "<TOOLONLY>1</TOOLONLY><DEVICEKEY>D1</DEVICEKEY></Gain>"
    "<Temperature><SNVTTYPE>105</SNVTTYPE><VALUE>20</VALUE><DEFAULTVALUE>21.5</DEFAULTVALUE>"
    "<UNITDEPENDENT>1</UNITDEPENDENT></Temperature>"
    "<Setup><SNVTTYPE>8</SNVTTYPE><VALUE>0</VALUE></Setup>"
    "<Text><VALUE>12a</VALUE></Text>"
    "</Attributes></AppObject>";

class GenericAttributeTest : public testing::Test {
  protected:
    GenericAttributeTest() {
        library_.Write(L"Attributes.xml", kDefinition);
        object_ = NewObject(L"Attributes");
    }
    ~GenericAttributeTest() override { SetUnits(L"metric"); }

    void Register(IAttributeInterceptor* interceptor) {
        EXPECT_EQ(S_OK, object_.As<IAttributeInterception>()->RegisterInterceptor(interceptor));
    }
    com::Ref<IAttribute> At(const wchar_t* index) { return AttributeOf(object_, index); }
    HRESULT Fetch() { return object_.As<IGenericObject>()->GetDataFromDevice(); }
    std::vector<std::wstring> TakeCalls() { return std::exchange(interceptor_->calls, {}); }
    std::wstring Shown(const wchar_t* index) { return TextOf(*At(index).Get(), &IAttribute::get_DispValue); }
    static void SetUnits(const wchar_t* system) {
        Create<IUnitSettings>(__uuidof(UnitConverter))->put_UnitSystem(com::Bstr(system).Get());
    }
    com::Ref<ISNVType> TypeOf(const wchar_t* index) {
        com::Ref<ISNVType> type;
        EXPECT_EQ(S_OK, At(index)->get_SNVTType(type.Put()));
        return type;
    }

    using Calls = std::vector<std::wstring>;
    TemporaryLibrary library_;
    com::Ref<IAppObject> object_;
    com::Ref<Interceptor> interceptor_ = Interceptor::Make();
};

TEST_F(GenericAttributeTest, IsWhatItsDefinitionSays) {
    const auto gain = At(L"Gain");
    EXPECT_EQ(L"1.5", ValueOf(gain));
    EXPECT_EQ(L"1.5", TextOf(*gain.Get(), &IAttribute::get_DefaultValue));
    EXPECT_EQ(L"the factor", TextOf(*gain.Get(), &IAttribute::get_Description));
    EXPECT_EQ(L"0.5", TextOf(*gain.Get(), &IAttribute::get_Min));
    EXPECT_EQ(L"4.0", TextOf(*gain.Get(), &IAttribute::get_Max));
    EXPECT_EQ(L"D1", TextOf(*gain.Get(), &IAttribute::get_DeviceKey));
    EXPECT_EQ(3, LongOf(*gain.Get(), &IAttribute::get_CDBPosition));
    EXPECT_EQ(10, LongOf(*gain.Get(), &IAttribute::get_DividedBy));
    EXPECT_EQ(9, LongOf(*gain.Get(), &IAttribute::get_NodeType));
    EXPECT_TRUE(Flag(*gain.Get(), &IAttribute::get_ToolOnly));
    EXPECT_TRUE(Flag(*gain.Get(), &IAttribute::get_Visible));
    EXPECT_FALSE(Flag(*At(L"Text").Get(), &IAttribute::get_Visible));
    EXPECT_FALSE(Flag(*gain.Get(), &IAttribute::get_IsType));
    EXPECT_FALSE(Flag(*gain.Get(), &IAttribute::get_IsUnit));
    EXPECT_FALSE(Flag(*gain.Get(), &IAttribute::get_IsDeviceDependent));
    EXPECT_FALSE(Flag(*gain.Get(), &IAttribute::get_IsKeepFloatStandard));
    EXPECT_EQ(L"21.5", TextOf(*At(L"Temperature").Get(), &IAttribute::get_DefaultValue));
    EXPECT_FALSE(TypeOf(L"Text"));
    ASSERT_EQ(S_OK, gain->put_Tag(com::Bstr(L"tag").Get()));
    EXPECT_EQ(L"tag", TextOf(*gain.Get(), &IAttribute::get_Tag));
}

TEST_F(GenericAttributeTest, GoesBackToItsDefault) {
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, SetValueOf(At(L"Temperature"), L"5"));
    ASSERT_EQ(S_OK, At(L"Temperature")->BackToDefault());
    EXPECT_EQ(L"21.5", ValueOf(At(L"Temperature")));
    EXPECT_EQ((Calls{L"value Temperature", L"value Temperature"}), TakeCalls());
}

TEST_F(GenericAttributeTest, TellsTheInterceptorAfterTheValueIsWritten) {
    std::wstring seen;
    interceptor_->onValue = [&](IAttribute& attribute) { seen = TextOf(attribute, &IAttribute::get_Value); };
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"2.25"));
    EXPECT_EQ(L"2.25", seen);
    EXPECT_EQ((Calls{L"value Gain"}), TakeCalls());
}

TEST_F(GenericAttributeTest, TellsNobodyOnceTheInterceptorIsUnregistered) {
    Register(interceptor_.Get());
    Register(nullptr);
    EXPECT_FALSE(Flag(*object_.As<IGenericObject>().Get(), &IGenericObject::get_IsIntercepted));
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"2"));
    EXPECT_EQ(S_OK, Fetch());
    EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(GenericAttributeTest, TellsOnlyTheLastInterceptor) {
    const auto other = Interceptor::Make();
    Register(interceptor_.Get());
    Register(other.Get());
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"2"));
    EXPECT_TRUE(TakeCalls().empty());
    EXPECT_EQ((Calls{L"value Gain"}), other->calls);
}

TEST_F(GenericAttributeTest, DoesNotTellTheInterceptorOfItsOwnWriting) {
    interceptor_->onValue = [&](IAttribute& attribute) {
        EXPECT_EQ(S_OK, attribute.put_Value(com::Bstr(L"clamped").Get()));
    };
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"9"));
    EXPECT_EQ(L"clamped", ValueOf(At(L"Gain")));
    EXPECT_EQ((Calls{L"value Gain"}), TakeCalls());
    // The next change is told again.
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"8"));
    EXPECT_EQ((Calls{L"value Gain"}), TakeCalls());
}

TEST_F(GenericAttributeTest, EndsAnExchangeBetweenTwoAttributes) {
    interceptor_->onValue = [&](IAttribute& attribute) {
        const bool isGain = TextOf(attribute, &IAttribute::get_Name) == L"Gain";
        EXPECT_EQ(S_OK, SetValueOf(At(isGain ? L"Setup" : L"Gain"), isGain ? L"from Gain" : L"from Setup"));
    };
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"1"));
    EXPECT_EQ((Calls{L"value Gain", L"value Setup"}), TakeCalls());
    EXPECT_EQ(L"from Gain", ValueOf(At(L"Setup")));
    EXPECT_EQ(L"from Setup", ValueOf(At(L"Gain")));
}

TEST_F(GenericAttributeTest, KeepsItsValueWhenTheInterceptorFails) {
    interceptor_->result = Code(0x80041234);
    Register(interceptor_.Get());
    EXPECT_EQ(Code(0x80041234), SetValueOf(At(L"Gain"), L"9"));
    EXPECT_EQ(L"The interceptor fails", LastError());
    EXPECT_EQ(L"1.5", ValueOf(At(L"Gain")));
    // The failure ends the interception: the next one is told.
    interceptor_->result = S_OK;
    EXPECT_EQ(S_OK, SetValueOf(At(L"Gain"), L"9"));
    EXPECT_EQ((Calls{L"value Gain", L"value Gain"}), TakeCalls());
}

TEST_F(GenericAttributeTest, ForgetsAnInterceptorThatIsGone) {
    interceptor_->result = CO_E_OBJNOTCONNECTED;
    Register(interceptor_.Get());
    EXPECT_EQ(S_OK, SetValueOf(At(L"Gain"), L"9"));
    EXPECT_EQ(L"9", ValueOf(At(L"Gain")));
    EXPECT_FALSE(Flag(*object_.As<IGenericObject>().Get(), &IGenericObject::get_IsIntercepted));
}

TEST_F(GenericAttributeTest, IsFilledByTheInterceptorWithTheChangesTold) {
    interceptor_->onFetch = [&](IAttribute& attribute) {
        if (TextOf(attribute, &IAttribute::get_Name) != L"Setup") {
            return;
        }
        EXPECT_EQ(S_OK, attribute.put_Value(com::Bstr(L"3").Get()));
        com::Ref<ISNVType> type;
        EXPECT_EQ(S_OK, attribute.get_SNVTType(type.Put()));
        EXPECT_EQ(S_OK, type.As<IEnumType>()->put_EnumDesc(com::Bstr(L"3,Auto;0,Off").Get()));
    };
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, Fetch());
    EXPECT_EQ((Calls{L"fetch Gain", L"fetch Temperature", L"fetch Setup", L"value Setup", L"fetch Text"}),
              TakeCalls());
    EXPECT_EQ(L"3", ValueOf(At(L"Setup")));
    EXPECT_EQ(L"1.5", ValueOf(At(L"Gain")));
    EXPECT_EQ(L"3,Auto;0,Off", TextOf(*TypeOf(L"Setup").Get(), &ISNVType::get_EnumDesc));
    EXPECT_TRUE(Flag(*TypeOf(L"Setup").As<IEnumType>().Get(), &IEnumType::get_IsEnumType));
    EXPECT_EQ(L"Auto", Shown(L"Setup"));
}

TEST_F(GenericAttributeTest, IsFetchedAloneAndBeforeItIsEdited) {
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, At(L"Gain").As<IGenericAttribute>()->GetDataFromDevice());
    ASSERT_EQ(S_OK, At(L"Setup")->SetValue());
    EXPECT_EQ((Calls{L"fetch Gain", L"fetch Setup"}), TakeCalls());
    ASSERT_EQ(S_OK, object_->ObjectDebug());
    EXPECT_EQ(4u, TakeCalls().size());
}

TEST_F(GenericAttributeTest, EndsTheFetchingAtTheFirstFailure) {
    interceptor_->result = support::kSubscript;
    Register(interceptor_.Get());
    EXPECT_EQ(support::kSubscript, Fetch());
    EXPECT_EQ(L"The interceptor fails", LastError());
    EXPECT_EQ((Calls{L"fetch Gain"}), TakeCalls());
}

TEST_F(GenericAttributeTest, FetchesFromItsOwnersDocumentWhatNobodyHandles) {
    const auto document = tam::dom::NewDocument(tam::dom::kDocumentClass);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ASSERT_EQ(S_OK, document->loadXML(
                        com::Bstr(L"<Device><Other><Object Key=\"B1\"><Value Name=\"Gain\">8</Value></Object>"
                                  L"</Other><Data><Object Key=\"B2\"><Value Name=\"Gain\">9</Value></Object>"
                                  L"<Other Key=\"B1\"><Value Name=\"Gain\">7</Value></Other>"
                                  L"<Object Key=\"B1\"><Other Name=\"Gain\">6</Other>"
                                  L"<Value Name=\"Gain\">3.5</Value><Value Name=\"Gain\">4</Value>"
                                  L"<Value Name=\"Text\"/></Object></Data></Device>")
                            .Get(),
                        &loaded));
    EXPECT_EQ(S_OK, Fetch()) << "without a document everything stays";
    EXPECT_EQ(L"1.5", ValueOf(At(L"Gain")));
    ASSERT_EQ(S_OK, object_->putref_OwnerDeviceXML(document.Get()));
    ASSERT_EQ(S_OK, object_->put_key(com::Bstr(L"B1").Get()));
    ASSERT_EQ(S_OK, Fetch());
    EXPECT_EQ(L"3.5", ValueOf(At(L"Gain")));
    EXPECT_EQ(L"", ValueOf(At(L"Text")));
    EXPECT_EQ(L"0", ValueOf(At(L"Setup")));

    // An interceptor that does not handle the call is told of the change.
    interceptor_->handled = false;
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"1"));
    ASSERT_EQ(S_OK, At(L"Gain")->SetValue());
    EXPECT_EQ(L"3.5", ValueOf(At(L"Gain")));
    EXPECT_EQ((Calls{L"value Gain", L"fetch Gain", L"value Gain"}), TakeCalls());
    interceptor_->handled = true;
    ASSERT_EQ(S_OK, SetValueOf(At(L"Gain"), L"1"));
    ASSERT_EQ(S_OK, At(L"Gain")->SetValue());
    EXPECT_EQ(L"1", ValueOf(At(L"Gain")));
}

TEST_F(GenericAttributeTest, TellsTheInterceptorAfterTheTypeChanged) {
    const auto type = TypeOf(L"Setup");
    com::Ref<ISNVType> seen;
    interceptor_->handled = false;
    interceptor_->onType = [&](IAttribute& attribute) {
        EXPECT_EQ(S_OK, attribute.get_SNVTType(seen.Put()));
        EXPECT_EQ(S_OK, com::Query<IMutableTypeAttribute>(&attribute)->SetType(type.Get()));
    };
    Register(interceptor_.Get());
    ASSERT_EQ(S_OK, At(L"Gain").As<IMutableTypeAttribute>()->SetType(type.Get()));
    EXPECT_EQ(type, seen);
    EXPECT_EQ(type, TypeOf(L"Gain"));
    EXPECT_EQ((Calls{L"type Gain"}), TakeCalls());
    EXPECT_EQ(support::kObjectNotSet, At(L"Gain").As<IMutableTypeAttribute>()->SetType(nullptr));
}

TEST_F(GenericAttributeTest, KeepsItsTypeWhenTheInterceptorFails) {
    const auto old = TypeOf(L"Gain");
    interceptor_->result = E_ACCESSDENIED;
    Register(interceptor_.Get());
    EXPECT_EQ(E_ACCESSDENIED, At(L"Gain").As<IMutableTypeAttribute>()->SetType(TypeOf(L"Setup").Get()));
    EXPECT_EQ(old, TypeOf(L"Gain"));
}

TEST_F(GenericAttributeTest, AsksWhetherItFollowsTheUnit) {
    const auto gain = At(L"Gain");
    const auto temperature = At(L"Temperature");
    EXPECT_FALSE(Flag(*gain.Get(), &IAttribute::get_IsUnitDependent));
    EXPECT_TRUE(Flag(*temperature.Get(), &IAttribute::get_IsUnitDependent));
    Register(interceptor_.Get());
    EXPECT_TRUE(Flag(*temperature.Get(), &IAttribute::get_IsUnitDependent)) << "left as it came";
    EXPECT_EQ(VARIANT_TRUE, interceptor_->asked);
    interceptor_->answer = {false};
    EXPECT_FALSE(Flag(*temperature.Get(), &IAttribute::get_IsUnitDependent));
    interceptor_->answer = {true};
    EXPECT_TRUE(Flag(*gain.Get(), &IAttribute::get_IsUnitDependent));
    EXPECT_EQ(VARIANT_FALSE, interceptor_->asked);
    interceptor_->handled = false;
    EXPECT_FALSE(Flag(*gain.Get(), &IAttribute::get_IsUnitDependent)) << "not handled";
    EXPECT_EQ((Calls{L"units Temperature", L"units Temperature", L"units Gain", L"units Gain"}), TakeCalls());
}

TEST_F(GenericAttributeTest, AsksWhetherItIsADifference) {
    const auto gain = At(L"Gain").As<IGenericAttribute>();
    EXPECT_FALSE(Flag(*gain.Get(), &IGenericAttribute::get_IsDifferential));
    interceptor_->answer = {true};
    Register(interceptor_.Get());
    EXPECT_TRUE(Flag(*gain.Get(), &IGenericAttribute::get_IsDifferential));
    interceptor_->result = E_ACCESSDENIED;
    VARIANT_BOOL answer = VARIANT_FALSE;
    EXPECT_EQ(E_ACCESSDENIED, gain->get_IsDifferential(&answer));
    EXPECT_EQ(L"The interceptor fails", LastError());
    EXPECT_EQ((Calls{L"differential Gain", L"differential Gain"}), TakeCalls());
}

TEST_F(GenericAttributeTest, IsADifferenceAsItsDefinitionSays) {
    library_.Write(
        L"Difference.xml",
        "<AppObject><Attributes><Span><DIFFERENTIAL>1</DIFFERENTIAL></Span></Attributes></AppObject>");
    const auto object = NewObject(L"Difference");
    const auto span = AttributeOf(object, L"Span").As<IGenericAttribute>();
    EXPECT_TRUE(Flag(*span.Get(), &IGenericAttribute::get_IsDifferential));
    ASSERT_EQ(S_OK, object.As<IAttributeInterception>()->RegisterInterceptor(interceptor_.Get()));
    EXPECT_TRUE(Flag(*span.Get(), &IGenericAttribute::get_IsDifferential)) << "left as it came";
    EXPECT_EQ(VARIANT_TRUE, interceptor_->asked);
    interceptor_->answer = {false};
    EXPECT_FALSE(Flag(*span.Get(), &IGenericAttribute::get_IsDifferential));
    interceptor_->handled = false;
    EXPECT_TRUE(Flag(*span.Get(), &IGenericAttribute::get_IsDifferential)) << "not handled";
}

TEST_F(GenericAttributeTest, ForgetsAnInterceptorThatIsDisconnected) {
    Register(interceptor_.Get());
    interceptor_->result = RPC_E_DISCONNECTED;
    EXPECT_EQ(S_OK, SetValueOf(At(L"Gain"), L"2"));
    EXPECT_EQ(L"2", ValueOf(At(L"Gain")));
    EXPECT_FALSE(Flag(*object_.As<IGenericObject>().Get(), &IGenericObject::get_IsIntercepted));
    EXPECT_EQ(S_OK, SetValueOf(At(L"Gain"), L"3"));
    EXPECT_EQ((Calls{L"value Gain"}), TakeCalls());
}

TEST_F(GenericAttributeTest, ShowsItsValueInTheHostsUnits) {
    EXPECT_EQ(L"20 \u00B0C", Shown(L"Temperature"));
    EXPECT_EQ(Local(L"1.5"), Shown(L"Gain")) << "a type without a unit";
    EXPECT_EQ(L"12a", Shown(L"Text")) << "no number";
    EXPECT_EQ(Local(L"21.5") + L" \u00B0C", TextOf(*At(L"Temperature").Get(), &IAttribute::get_DispDefault));
    EXPECT_EQ(Local(L"0.5"), TextOf(*At(L"Gain").Get(), &IAttribute::get_DispMin));
    EXPECT_EQ(Local(L"4.0"), TextOf(*At(L"Gain").Get(), &IAttribute::get_DispMax));
    SetUnits(L"US");
    EXPECT_EQ(L"68 \u00B0F", Shown(L"Temperature"));
    EXPECT_EQ(Local(L"70.7") + L" \u00B0F", TextOf(*At(L"Temperature").Get(), &IAttribute::get_DispDefault));
    // A difference of 20 degrees has no zero to move.
    interceptor_->answer = {true};
    Register(interceptor_.Get());
    EXPECT_EQ(L"36 \u00B0F", Shown(L"Temperature"));
    interceptor_->answer = {false};
    EXPECT_EQ(L"20 \u00B0C", Shown(L"Temperature")) << "does not follow the unit";
}

TEST_F(GenericAttributeTest, ShowsTheLabelOfAnEnumeration) {
    const auto type = TypeOf(L"Setup").As<IEnumType>();
    ASSERT_EQ(S_OK, type->put_EnumDesc(com::Bstr(L"0,Off;1,On, slowly;12,Auto").Get()));
    EXPECT_EQ(L"Off", Shown(L"Setup"));
    ASSERT_EQ(S_OK, SetValueOf(At(L"Setup"), L"1"));
    EXPECT_EQ(L"On, slowly", Shown(L"Setup"));
    ASSERT_EQ(S_OK, SetValueOf(At(L"Setup"), L"12"));
    EXPECT_EQ(L"Auto", Shown(L"Setup"));
    ASSERT_EQ(S_OK, SetValueOf(At(L"Setup"), L"2"));
    EXPECT_EQ(L"2", Shown(L"Setup")) << "no entry has it";
    ASSERT_EQ(S_OK, type->put_EnumDesc(com::Bstr(L"12,Auto;1,On").Get()));
    ASSERT_EQ(S_OK, SetValueOf(At(L"Setup"), L"1"));
    EXPECT_EQ(L"On", Shown(L"Setup")) << "not the entry that begins with it";
}

TEST_F(GenericAttributeTest, HasATypeOfItsOwn) {
    const auto other = NewObject(L"Attributes");
    ASSERT_EQ(S_OK, TypeOf(L"Setup").As<IEnumType>()->put_EnumDesc(com::Bstr(L"0,Off").Get()));
    com::Ref<ISNVType> type;
    ASSERT_EQ(S_OK, AttributeOf(other, L"Setup")->get_SNVTType(type.Put()));
    EXPECT_EQ(L"", TextOf(*type.Get(), &ISNVType::get_EnumDesc));
}

TEST_F(GenericAttributeTest, SurvivesAnObjectThatEndsWhileItsInterceptorIsAtWork) {
    interceptor_->onValue = [&](IAttribute&) {
        EXPECT_EQ(S_OK, object_->Destroy());
        object_.Reset();
    };
    Register(interceptor_.Get());
    const auto gain = At(L"Gain");
    EXPECT_EQ(S_OK, SetValueOf(gain, L"7"));
    EXPECT_EQ(L"7", ValueOf(gain));
}

} // namespace

} // namespace hosttest
