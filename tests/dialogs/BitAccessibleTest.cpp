// What a bit does not answer itself it answers as the label that it is: each
// member beside the same one of the system's object for that label.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"

#include <oleacc.h>

#include <functional>
#include <string>
#include <tuple>

namespace dialogs {
namespace {

/// A result beside what was put into the out places.
using Answer = std::tuple<HRESULT, VARTYPE, LONG, std::wstring>;
using Ask = std::function<Answer(IAccessible& object)>;

Answer Value(HRESULT result, const com::Variant& value) {
    const VARIANT& given = value.Get();
    return {result, given.vt, given.vt == VT_I4 ? given.lVal : 0, L""};
}

Answer Words(HRESULT result, const com::Bstr& text, LONG number = 0) {
    return {result, static_cast<VARTYPE>(text.Get() != nullptr ? VT_BSTR : VT_EMPTY), number,
            std::wstring(text.View())};
}

class BitAccessibleTest : public DialogTest {
  protected:
    /// Asks the object of one bit and the system's own.
    void ExpectTheSystemsAnswer(const Ask& ask) {
        Edit(Attribute(kBits8, L"5"), [&ask](Shown& dialog) {
            const HWND label = dialog.Control(IDC_BIT + 2);
            com::Ref<IAccessible> object;
            com::Ref<IAccessible> plain;
            ASSERT_EQ(AccessibleObjectFromWindow(label, static_cast<DWORD>(OBJID_CLIENT),
                                                 __uuidof(IAccessible), object.PutVoid()),
                      S_OK);
            ASSERT_EQ(CreateStdAccessibleObject(label, OBJID_CLIENT, __uuidof(IAccessible), plain.PutVoid()),
                      S_OK);
            EXPECT_EQ(ask(*object.Get()), ask(*plain.Get()));
            dialog.Click(IDCANCEL);
        });
    }
    static VARIANT Self() { return com::Variant(long{CHILDID_SELF}).Detach(); }
};

TEST_F(BitAccessibleTest, IsFoundAtItsPlace) {
    ExpectTheSystemsAnswer([](IAccessible& object) {
        LONG left = 0;
        LONG top = 0;
        LONG width = 0;
        LONG height = 0;
        EXPECT_EQ(object.accLocation(&left, &top, &width, &height, Self()), S_OK);
        com::Variant child;
        const HRESULT result = object.accHitTest(left + width / 2, top + height / 2, child.Put());
        return Value(result, child);
    });
}

TEST_F(BitAccessibleTest, HasTheLabelsFocusAndSelection) {
    ExpectTheSystemsAnswer([](IAccessible& object) {
        com::Variant child;
        const HRESULT result = object.get_accFocus(child.Put());
        return Value(result, child);
    });
    ExpectTheSystemsAnswer([](IAccessible& object) {
        com::Variant children;
        const HRESULT result = object.get_accSelection(children.Put());
        return Value(result, children);
    });
    ExpectTheSystemsAnswer(
        [](IAccessible& object) { return Value(object.accSelect(SELFLAG_TAKEFOCUS, Self()), {}); });
}

TEST_F(BitAccessibleTest, HasTheLabelsNeighboursAndChildren) {
    for (const LONG direction : {NAVDIR_NEXT, NAVDIR_PREVIOUS, NAVDIR_FIRSTCHILD}) {
        ExpectTheSystemsAnswer([direction](IAccessible& object) {
            com::Variant end;
            const HRESULT result = object.accNavigate(direction, Self(), end.Put());
            return Value(result, end);
        });
    }
    ExpectTheSystemsAnswer([](IAccessible& object) {
        com::Ref<IDispatch> child;
        const HRESULT result = object.get_accChild(com::Variant(1L).Detach(), child.Put());
        return Answer{result, child ? VT_DISPATCH : VT_EMPTY, 0, L""};
    });
}

TEST_F(BitAccessibleTest, HasTheLabelsHelp) {
    ExpectTheSystemsAnswer([](IAccessible& object) {
        com::Bstr text;
        const HRESULT result = object.get_accDescription(Self(), text.Put());
        return Words(result, text);
    });
    ExpectTheSystemsAnswer([](IAccessible& object) {
        com::Bstr text;
        const HRESULT result = object.get_accHelp(Self(), text.Put());
        return Words(result, text);
    });
    ExpectTheSystemsAnswer([](IAccessible& object) {
        com::Bstr file;
        LONG topic = 7;
        const HRESULT result = object.get_accHelpTopic(file.Put(), Self(), &topic);
        return Words(result, file, topic);
    });
    ExpectTheSystemsAnswer([](IAccessible& object) {
        com::Bstr text;
        const HRESULT result = object.get_accKeyboardShortcut(Self(), text.Put());
        return Words(result, text);
    });
}

TEST_F(BitAccessibleTest, CannotBeFlippedOnceItsEditorIsGone) {
    com::Ref<IAccessible> object;
    Edit(Attribute(kBits8, L"5"), [&object](Shown& dialog) {
        ASSERT_EQ(AccessibleObjectFromWindow(dialog.Control(IDC_BIT + 2), static_cast<DWORD>(OBJID_CLIENT),
                                             __uuidof(IAccessible), object.PutVoid()),
                  S_OK);
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(object->accDoDefaultAction(Self()), E_FAIL);
}

} // namespace
} // namespace dialogs
