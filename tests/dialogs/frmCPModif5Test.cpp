#include "common/resource.h"
#include "tests/dialogs/Driver.h"

#include <oleacc.h>

#include <string>
#include <utility>

namespace dialogs {
namespace {

class frmCPModif5Test : public DialogTest {
  protected:
    /// The labels that are seen, the highest bit first.
    static std::wstring Bits(const Shown& dialog) {
        std::wstring bits;
        for (int bit = 15; bit >= 0; --bit) {
            bits += dialog.IsVisible(IDC_BIT + bit) ? dialog.Text(IDC_BIT + bit) : L"";
        }
        return bits;
    }
    /// What is drawn of a bit: its ground, and where the frame of the focus goes.
    using Look = std::pair<COLORREF, COLORREF>;
    static Look LookOf(const Shown& dialog, int bit) {
        const HWND label = dialog.Control(IDC_BIT + bit);
        UpdateWindow(label);
        const HDC context = GetDC(label);
        const int scale = GetDeviceCaps(context, LOGPIXELSY) / USER_DEFAULT_SCREEN_DPI;
        const Look look{GetPixel(context, 4 * scale, 4 * scale), GetPixel(context, scale, scale)};
        ReleaseDC(label, context);
        return look;
    }
    /// A bit's label as a screen reader has it.
    static com::Ref<IAccessible> AccessibleOf(HWND label) {
        com::Ref<IAccessible> accessible;
        EXPECT_EQ(AccessibleObjectFromWindow(label, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                             accessible.PutVoid()),
                  S_OK);
        return accessible;
    }
};

TEST_F(frmCPModif5Test, ShowsEightBitsOfAOneByteType) {
    const auto value = Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"Edit Value");
        EXPECT_EQ(dialog.Text(IDC_NAME), L"Point");
        EXPECT_EQ(dialog.Text(IDC_TYPE), L"SNVT_state_8");
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        EXPECT_EQ(Bits(dialog), L"00000101");
        EXPECT_FALSE(dialog.IsVisible(IDC_BIT_NUMBER + 8));
        EXPECT_EQ(dialog.Text(IDC_BIT_SUM), L"5 (0x05)");
        dialog.DoubleClick(IDC_BIT + 1);
        EXPECT_EQ(dialog.Text(IDC_BIT + 1), L"1");
        EXPECT_EQ(dialog.Text(IDC_BIT_SUM), L"7 (0x07)");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"7");
}

TEST_F(frmCPModif5Test, ShowsSixteenBitsOfALongerType) {
    const auto value = Edit(Attribute(kBits16, L"32769"), [](Shown& dialog) {
        EXPECT_EQ(Bits(dialog), L"1000000000000001");
        for (int bit = 0; bit < 16; ++bit) {
            EXPECT_EQ(dialog.Text(IDC_BIT_NUMBER + bit), L"Bit " + std::to_wstring(bit));
        }
        dialog.DoubleClick(IDC_BIT + 15);
        dialog.DoubleClick(IDC_BIT + 8);
        EXPECT_EQ(Bits(dialog), L"0000000100000001");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"257");
}

TEST_F(frmCPModif5Test, OnlyTheBitsReadZeroOrOne) {
    // A program that drives the dialog knows the bits by what they show.
    for (const auto& [type, bits] : {std::pair(kBits8, 8), std::pair(kBits16, 16)}) {
        Edit(Attribute(type, L"5"), [bits = bits](Shown& dialog) {
            int zeros = 0;
            int ones = 0;
            for (HWND child = GetWindow(dialog.Window(), GW_CHILD); child != nullptr;
                 child = GetWindow(child, GW_HWNDNEXT)) {
                const std::wstring text = IsWindowVisible(child) != FALSE ? Shown(child).Caption() : L"";
                zeros += text == L"0" ? 1 : 0;
                ones += text == L"1" ? 1 : 0;
            }
            EXPECT_EQ(zeros, bits - 2);
            EXPECT_EQ(ones, 2);
            dialog.Click(IDCANCEL);
        });
    }
}

TEST_F(frmCPModif5Test, TheNumberOfABitFitsAboveIt) {
    Edit(Attribute(kBits16, L"0"), [](Shown& dialog) {
        for (int bit = 0; bit < 16; ++bit) {
            const HWND label = dialog.Control(IDC_BIT_NUMBER + bit);
            const std::wstring text = dialog.Text(IDC_BIT_NUMBER + bit);
            const HDC context = GetDC(label);
            const HGDIOBJ before =
                SelectObject(context, reinterpret_cast<HGDIOBJ>(SendMessageW(label, WM_GETFONT, 0, 0)));
            SIZE size{};
            GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
            SelectObject(context, before);
            ReleaseDC(label, context);
            RECT room{};
            GetClientRect(label, &room);
            EXPECT_LE(size.cx, room.right) << bit;
            EXPECT_LE(size.cy, room.bottom) << bit;
        }
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif5Test, ASingleClickFlipsNothing) {
    const auto value = Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        SendMessageW(dialog.Control(IDC_BIT + 1), WM_LBUTTONDOWN, MK_LBUTTON, 0);
        SendMessageW(dialog.Control(IDC_BIT + 1), WM_LBUTTONUP, 0, 0);
        EXPECT_EQ(Bits(dialog), L"00000101");
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 1));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"5");
}

TEST_F(frmCPModif5Test, CancelLeavesTheValue) {
    const auto value = Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        dialog.DoubleClick(IDC_BIT);
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(value, L"5");
}

TEST_F(frmCPModif5Test, AScreenReaderIsToldTheBitsNumber) {
    const auto value = Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        for (int bit = 0; bit < 8; ++bit) {
            const auto accessible = AccessibleOf(dialog.Control(IDC_BIT + bit));
            ASSERT_TRUE(accessible);
            const com::Variant self(long{CHILDID_SELF});
            com::Bstr name;
            com::Bstr text;
            com::Variant role;
            com::Variant state;
            EXPECT_EQ(accessible->get_accName(self.Get(), name.Put()), S_OK);
            EXPECT_EQ(name.View(), L"Bit " + std::to_wstring(bit));
            EXPECT_EQ(accessible->get_accValue(self.Get(), text.Put()), S_OK);
            EXPECT_EQ(text.View(), dialog.Text(IDC_BIT + bit));
            EXPECT_EQ(accessible->get_accRole(self.Get(), role.Put()), S_OK);
            EXPECT_EQ(role.Get().lVal, ROLE_SYSTEM_CHECKBUTTON);
            EXPECT_EQ(accessible->get_accState(self.Get(), state.Put()), S_OK);
            EXPECT_EQ((state.Get().lVal & STATE_SYSTEM_CHECKED) != 0, bit == 0 || bit == 2);
            EXPECT_EQ((state.Get().lVal & STATE_SYSTEM_FOCUSED) != 0, bit == 7);
            EXPECT_NE(state.Get().lVal & STATE_SYSTEM_FOCUSABLE, 0);
        }
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"5");
}

TEST_F(frmCPModif5Test, AScreenReaderFlipsABit) {
    const auto value = Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        const auto accessible = AccessibleOf(dialog.Control(IDC_BIT + 1));
        ASSERT_TRUE(accessible);
        const com::Variant self(long{CHILDID_SELF});
        com::Bstr action;
        EXPECT_EQ(accessible->get_accDefaultAction(self.Get(), action.Put()), S_OK);
        EXPECT_EQ(action.View(), L"Flip");
        EXPECT_EQ(accessible->accDoDefaultAction(self.Get()), S_OK);
        dialog.PressKey(VK_SHIFT); // what was posted comes first
        EXPECT_EQ(Bits(dialog), L"00000111");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"7");
}

TEST_F(frmCPModif5Test, TheLabelsOwnPlaceAndTreeAreTheSystems) {
    Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        const HWND label = dialog.Control(IDC_BIT + 1);
        const auto accessible = AccessibleOf(label);
        com::Ref<IAccessible> plain;
        ASSERT_EQ(CreateStdAccessibleObject(label, OBJID_CLIENT, __uuidof(IAccessible), plain.PutVoid()),
                  S_OK);
        const com::Variant self(long{CHILDID_SELF});
        RECT place{};
        GetClientRect(label, &place);
        MapWindowPoints(label, nullptr, reinterpret_cast<POINT*>(&place), 2);
        LONG left = 0;
        LONG top = 0;
        LONG width = 0;
        LONG height = 0;
        EXPECT_EQ(accessible->accLocation(&left, &top, &width, &height, self.Get()), S_OK);
        EXPECT_EQ(std::make_pair(left, top), std::make_pair(place.left, place.top));
        EXPECT_EQ(std::make_pair(width, height),
                  std::make_pair(place.right - place.left, place.bottom - place.top));
        LONG children = -1;
        EXPECT_EQ(accessible->get_accChildCount(&children), S_OK);
        EXPECT_EQ(children, 0);
        com::Ref<IDispatch> parent;
        com::Ref<IDispatch> plainParent;
        EXPECT_EQ(accessible->get_accParent(parent.Put()), plain->get_accParent(plainParent.Put()));
        EXPECT_EQ(static_cast<bool>(parent), static_cast<bool>(plainParent));
        EXPECT_EQ(accessible->put_accName(self.Get(), nullptr), DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(accessible->put_accValue(self.Get(), nullptr), DISP_E_MEMBERNOTFOUND);
        UINT count = 7;
        EXPECT_EQ(accessible->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 0U);
        EXPECT_EQ(accessible->GetTypeInfoCount(nullptr), E_POINTER);
        EXPECT_TRUE(com::SameObject(accessible.As<IDispatch>().Get(), accessible.Get()));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif5Test, WhatAScreenReaderIsGivenIsOneObject) {
    Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        com::Ref<IAccessible> accessible;
        ASSERT_EQ(AccessibleObjectFromWindow(dialog.Control(IDC_BIT), static_cast<DWORD>(OBJID_CLIENT),
                                             __uuidof(IAccessible), accessible.PutVoid()),
                  S_OK);
        const auto identity = com::Query<IUnknown>(accessible.Get());
        for (const IID& iid : {IID_IUnknown, IID_IDispatch, __uuidof(IAccessible)}) {
            com::Ref<IUnknown> face;
            ASSERT_EQ(accessible->QueryInterface(iid, face.PutVoid()), S_OK);
            EXPECT_EQ(com::Query<IUnknown>(face.Get()), identity);
            EXPECT_EQ(com::Query<IAccessible>(face.Get()), accessible);
            EXPECT_EQ(face->QueryInterface(iid, nullptr), E_POINTER);
        }
        for (const IID& iid : {IID_IClassFactory, IID_IEnumVARIANT, IID_NULL}) {
            void* out = &out;
            EXPECT_EQ(accessible->QueryInterface(iid, &out), E_NOINTERFACE);
            EXPECT_EQ(out, nullptr);
        }
        UINT count = 7;
        EXPECT_EQ(accessible->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 0U);
        EXPECT_EQ(accessible->GetTypeInfoCount(nullptr), E_POINTER);
        auto* info = reinterpret_cast<ITypeInfo*>(&count);
        EXPECT_EQ(accessible->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), E_NOTIMPL);
        EXPECT_EQ(info, nullptr);
        EXPECT_EQ(accessible->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
        const com::Variant self(long{CHILDID_SELF});
        EXPECT_EQ(accessible->get_accName(self.Get(), nullptr), E_POINTER);
        EXPECT_EQ(accessible->get_accValue(self.Get(), nullptr), E_POINTER);
        EXPECT_EQ(accessible->get_accRole(self.Get(), nullptr), E_POINTER);
        EXPECT_EQ(accessible->get_accState(self.Get(), nullptr), E_POINTER);
        EXPECT_EQ(accessible->get_accDefaultAction(self.Get(), nullptr), E_POINTER);
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif5Test, OtherKeysFlipNothing) {
    const auto value = Edit(Attribute(kBits8, L"5"), [](Shown& dialog) {
        dialog.PressKey('1');
        dialog.PressKey(VK_DOWN);
        dialog.PressKey(VK_UP);
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 7));
        EXPECT_EQ(Bits(dialog), L"00000101");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"5");
}

TEST_F(frmCPModif5Test, TheBitsAreOneStopOfTheTabKey) {
    Edit(Attribute(kBits16, L"0"), [](Shown& dialog) {
        for (const int id : {IDOK, IDCANCEL, IDC_BIT + 15}) {
            dialog.PressKey(VK_TAB);
            EXPECT_TRUE(dialog.HasFocus(id));
        }
        dialog.PressKey(VK_DOWN);
        dialog.PressKey(VK_RIGHT);
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 6));
        for (const int id : {IDOK, IDCANCEL, IDC_BIT + 6}) {
            dialog.PressKey(VK_TAB);
            EXPECT_TRUE(dialog.HasFocus(id)) << "back to the bit that was left";
        }
        SendMessageW(dialog.Control(IDC_BIT + 1), WM_LBUTTONDOWN, MK_LBUTTON, 0);
        SendMessageW(dialog.Control(IDC_BIT + 1), WM_LBUTTONUP, 0, 0);
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 1));
        int stops = 0;
        for (int bit = 0; bit < 16; ++bit) {
            stops += (GetWindowLongW(dialog.Control(IDC_BIT + bit), GWL_STYLE) & WS_TABSTOP) != 0 ? 1 : 0;
        }
        EXPECT_EQ(stops, 1);
        EXPECT_EQ(GetNextDlgTabItem(dialog.Window(), dialog.Control(IDOK), TRUE),
                  dialog.Control(IDC_BIT + 1));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif5Test, HomeAndEndGoToTheOuterBits) {
    for (const wchar_t* type : {kBits8, kBits16}) {
        const int highest = type == kBits8 ? 7 : 15;
        Edit(Attribute(type, L"0"), [highest](Shown& dialog) {
            EXPECT_TRUE(dialog.HasFocus(IDC_BIT + highest));
            dialog.PressKey(VK_END);
            EXPECT_TRUE(dialog.HasFocus(IDC_BIT));
            dialog.PressKey(VK_END);
            EXPECT_TRUE(dialog.HasFocus(IDC_BIT));
            dialog.PressKey(VK_HOME);
            EXPECT_TRUE(dialog.HasFocus(IDC_BIT + highest));
            dialog.Click(IDCANCEL);
        });
    }
}

TEST_F(frmCPModif5Test, ABitThatIsSetIsFilledAndTheFocusIsAFrame) {
    Edit(Attribute(kBits8, L"128"), [](Shown& dialog) {
        const Look set{GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHT)};
        const Look setWithFocus{GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT)};
        const Look unset{GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOW)};
        const Look unsetWithFocus{GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT)};
        EXPECT_EQ(LookOf(dialog, 7), setWithFocus);
        EXPECT_EQ(LookOf(dialog, 6), unset);
        dialog.PressKey(VK_RIGHT);
        EXPECT_EQ(LookOf(dialog, 7), set);
        EXPECT_EQ(LookOf(dialog, 6), unsetWithFocus);
        dialog.PressKey(VK_SPACE);
        EXPECT_EQ(LookOf(dialog, 6), setWithFocus);
        dialog.PressKey(VK_SPACE);
        EXPECT_EQ(LookOf(dialog, 6), unsetWithFocus);
        dialog.PressKey(VK_TAB);
        EXPECT_EQ(LookOf(dialog, 6), unset);
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif5Test, TheKeyboardFlipsBits) {
    const auto value = Edit(Attribute(kBits16, L"0"), [](Shown& dialog) {
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 15));
        dialog.PressKey(VK_SPACE);
        dialog.PressKey(VK_RIGHT);
        dialog.PressKey(VK_DOWN);
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 6));
        dialog.PressKey(VK_SPACE);
        dialog.PressKey(VK_LEFT);
        dialog.PressKey(VK_UP);
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 15));
        dialog.PressKey(VK_LEFT);
        EXPECT_TRUE(dialog.HasFocus(IDC_BIT + 15));
        EXPECT_EQ(Bits(dialog), L"1000000001000000");
        dialog.PressKey(VK_RETURN);
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(value, L"32832");
}

} // namespace
} // namespace dialogs
