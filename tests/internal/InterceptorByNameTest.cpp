#include "tests/internal/Channel.h"

#include <string_view>

namespace internal_tests {

namespace {

constexpr const wchar_t* kQuestion = L"InterceptIsUnitsDependent";

/// The interceptor as a host's script asks it.
class InterceptorByNameTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        SetDefinition(L"<AppObject><TAMConfig><Attributes><Attrib Name='Gain' UnitDependent='1'/>"
                      L"<Attrib Name='Setup'/></Attributes></TAMConfig></AppObject>");
        object_ = Created();
    }
    void TearDown() override {
        object_.Reset();
        InternalTest::TearDown();
    }

    /// Asks for the flag of an attribute; `flag` is what the script passes.
    void Ask(const Double& attribute, const VARIANT& flag) {
        const auto script = Interceptor();
        com::Bstr name(kQuestion);
        BSTR text = name.Get();
        DISPID id = DISPID_UNKNOWN;
        ASSERT_EQ(script->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), S_OK);
        const auto point = attribute->As<IAttribute>();
        VARIANT values[] = {flag, {}};
        values[1].vt = VT_DISPATCH;
        values[1].pdispVal = point.Get();
        DISPPARAMS params{values, nullptr, 2, 0};
        com::Variant handled;
        EXPECT_EQ(script->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, handled.Put(),
                                 nullptr, nullptr),
                  S_OK);
        EXPECT_EQ(handled.Get().vt, VT_BOOL);
        EXPECT_EQ(handled.Get().boolVal, VARIANT_TRUE);
    }

    void AskInto(const Double& attribute, VARIANT& variable) {
        VARIANT reference{};
        reference.vt = VT_BYREF | VT_VARIANT;
        reference.pvarVal = &variable;
        Ask(attribute, reference);
    }

  private:
    com::Ref<IAppObject> object_;
};

TEST_F(InterceptorByNameTest, WritesTheFlagToAPlaceOfItsType) {
    VARIANT_BOOL place = VARIANT_FALSE;
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_BOOL;
    reference.pboolVal = &place;
    Ask(gain, reference);
    EXPECT_EQ(place, VARIANT_TRUE);
    Ask(setup, reference);
    EXPECT_EQ(place, VARIANT_FALSE);
}

TEST_F(InterceptorByNameTest, WritesTheFlagToAVariable) {
    VARIANT variable{};
    variable.vt = VT_BOOL;
    AskInto(gain, variable);
    EXPECT_EQ(variable.vt, VT_BOOL);
    EXPECT_EQ(variable.boolVal, VARIANT_TRUE);
}

TEST_F(InterceptorByNameTest, WritesTheFlagToAVariableOfAnotherType) {
    VARIANT empty{};
    AskInto(gain, empty);
    EXPECT_EQ(empty.vt, VT_BOOL);
    EXPECT_EQ(empty.boolVal, VARIANT_TRUE);
    com::Variant text(std::wstring_view(L"True"));
    AskInto(setup, *text.Address());
    EXPECT_EQ(text.Get().vt, VT_BOOL);
    EXPECT_EQ(text.Get().boolVal, VARIANT_FALSE);
}

TEST_F(InterceptorByNameTest, LeavesAVariableThatHasTheFlagAlready) {
    com::Variant number(1L);
    AskInto(gain, *number.Address());
    EXPECT_EQ(number.Get().vt, VT_I4);
    EXPECT_EQ(number.Get().lVal, 1);
}

TEST_F(InterceptorByNameTest, AnswersAValueThatHasNoPlace) {
    VARIANT value{};
    value.vt = VT_BOOL;
    Ask(gain, value);
    EXPECT_EQ(value.boolVal, VARIANT_FALSE);
}

} // namespace

} // namespace internal_tests
