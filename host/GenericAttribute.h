#pragma once

#include "com/Object.h"
#include "host/GenericPoint.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace orv {

/// An attribute of a generic object. The owner's interceptor, when it has one,
/// is told of every change and asked before the attribute answers or acts
/// itself. While it is at one of these for an attribute it is not called again
/// for the same: what it does to the attribute meanwhile, the attribute does
/// alone.
class GenericAttribute final : public com::DualObject<GenericAttribute, IAttribute, IMutableTypeAttribute,
                                                      IVisibleItem, IGenericAttribute> {
  public:
    GenericAttribute(const Definition& definition, const OwnerRef& owner);
    static REFCLSID ClassId() noexcept { return __uuidof(::GenericAttribute); }

    // The host's own side
    GenericPoint& Point() noexcept { return point_; }
    const std::wstring& ValueText() const noexcept { return value_; }
    std::wstring SNVTName() const { return TypeId(type_); }
    std::wstring EnumDesc() const;
    /// What a saved project says. Nobody is told: it is no change.
    void Restore(std::wstring value) noexcept { value_ = std::move(value); }
    void RestoreType(com::Ref<ISNVType> type) noexcept { type_ = std::move(type); }
    /// Fetches the value from the device: the interceptor does it, else it is
    /// what the owner device's document holds; without either it stays. `values`
    /// is what that document holds for the whole object, once somebody has read it.
    void Fetch(std::optional<DeviceValues>& values);

    // IAttribute
    HRESULT STDMETHODCALLTYPE get_Parent(IAppObject** value) override;
    HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL* value) override {
        return Answer(value, point_.visible);
    }
    HRESULT STDMETHODCALLTYPE SetValue() override;
    HRESULT STDMETHODCALLTYPE get_IsUnit(VARIANT_BOOL* value) override { return Flag(L"ISUNIT", value); }
    HRESULT STDMETHODCALLTYPE get_Description(BSTR* value) override { return Text(L"DESCRIPTION", value); }
    HRESULT STDMETHODCALLTYPE get_Value(BSTR* value) override { return Answer(value, value_); }
    HRESULT STDMETHODCALLTYPE get_DispValue(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_DispMin(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_DispMax(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_DispDefault(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_Value(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override { return Answer(value, point_.Name()); }
    HRESULT STDMETHODCALLTYPE get_NodeType(long* value) override { return Answer(value, 9L); }
    HRESULT STDMETHODCALLTYPE get_GlobalKey(BSTR* value) override {
        return Get(value, [&] { return point_.GlobalKey(); });
    }
    HRESULT STDMETHODCALLTYPE get_SNVTType(ISNVType** value) override { return Answer(value, type_); }
    HRESULT STDMETHODCALLTYPE BackToDefault() override;
    HRESULT STDMETHODCALLTYPE get_DefaultValue(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_Tag(BSTR* value) override { return Answer(value, tag_); }
    HRESULT STDMETHODCALLTYPE put_Tag(BSTR value) override { return Store(tag_, value); }
    HRESULT STDMETHODCALLTYPE get_Fields(IDispatch** value) override {
        return Answer(value, com::Ref<IDispatch>());
    }
    // A generic object has no sheet to repaint: it calls nobody back.
    HRESULT STDMETHODCALLTYPE putref_CallBack(IDispatch*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_CDBPosition(long* value) override { return Number(L"CDBPOSITION", value); }
    HRESULT STDMETHODCALLTYPE get_ToolOnly(VARIANT_BOOL* value) override { return Flag(L"TOOLONLY", value); }
    HRESULT STDMETHODCALLTYPE get_IsDeviceDependent(VARIANT_BOOL* value) override {
        return Flag(L"DEVICEDEPENDENT", value);
    }
    HRESULT STDMETHODCALLTYPE get_IsUnitDependent(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_DeviceKey(BSTR* value) override { return Text(L"DEVICEKEY", value); }
    HRESULT STDMETHODCALLTYPE get_IsKeepFloatStandard(VARIANT_BOOL* value) override {
        return Flag(L"KEEPFLOATSTANDARD", value);
    }
    HRESULT STDMETHODCALLTYPE get_DividedBy(long* value) override { return Number(L"DIVIDEDBY", value); }
    HRESULT STDMETHODCALLTYPE get_IsType(VARIANT_BOOL* value) override { return Flag(L"ISTYPE", value); }
    HRESULT STDMETHODCALLTYPE get_Min(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_Max(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_ExtendedKey(BSTR* value) override {
        return Get(value, [&] { return point_.ExtendedKey(); });
    }
    HRESULT STDMETHODCALLTYPE get_IsMacroConnected(VARIANT_BOOL* value) override;

    // IMutableTypeAttribute
    HRESULT STDMETHODCALLTYPE SetType(ISNVType* newType) override;

    // IVisibleItem
    HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL value) override {
        return Do([&] { point_.visible = value != VARIANT_FALSE; });
    }

    // IGenericAttribute
    HRESULT STDMETHODCALLTYPE get_IsDifferential(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE GetDataFromDevice() override;

  private:
    enum Question { DataFromDevice, ValueChanged, TypeChanged, UnitsDependent, Differential };
    static constexpr std::size_t kQuestions = Differential + 1;

    // Members that the definition answers
    HRESULT Flag(const wchar_t* keyword, VARIANT_BOOL* value);
    HRESULT Text(const wchar_t* keyword, BSTR* value);
    HRESULT Number(const wchar_t* keyword, long* value);

    /// Asks the interceptor. False when there is none, when it is asked the
    /// same already, and when it answers that it did not handle the call.
    template <class Method, class... Arguments>
    bool Ask(Question question, Method method, Arguments... arguments);
    void WriteValue(std::wstring value);
    bool IsUnitDependent();
    bool IsDifferential();
    std::wstring DefaultText() const;
    std::wstring Limit(const wchar_t* keyword, HRESULT (STDMETHODCALLTYPE ISNVType::*member)(BSTR*)) const;
    /// The caller holds the attribute: types and interceptor are the host's.
    std::wstring Display(std::wstring value);

    GenericPoint point_;
    com::Ref<ISNVType> type_;
    std::wstring value_;
    std::wstring tag_;
    std::array<bool, kQuestions> asked_{};
};

} // namespace orv
