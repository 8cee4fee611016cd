#pragma once

#include "com/Object.h"
#include "types/CatalogueFields.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>
#include <utility>

namespace tam {

/// One standard network variable type, filled from the catalogue document by
/// the assignment of its identifier. It describes; it scales nothing.
class CSNVTType final : public com::DualObject<CSNVTType, ISNVType, IEnumType> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CSNVTType); }

    // The component's own side.

    /// Looks the identifier up and takes over what the catalogue says of it.
    /// What goes wrong is shown in boxes or a report; nothing is thrown.
    /// Blanks alone make the type an enumeration. Fields that the entry lacks
    /// keep their values. True when nothing was shown: the type then holds all
    /// that its entry says.
    bool SetId(const std::wstring& id) noexcept;
    const std::wstring& Id() const noexcept { return id_; }
    const std::wstring& GenType() const noexcept { return genType_; }
    void SetGenType(std::wstring genType) noexcept { genType_ = std::move(genType); }
    const std::wstring& EnumDesc() const noexcept { return enumDesc_; }
    void SetEnumDesc(std::wstring enumDesc) noexcept { enumDesc_ = std::move(enumDesc); }
    bool IsEnum() const;
    bool IsNumeric() const noexcept;

    // ISNVType
    STDMETHODIMP get_ID(BSTR* value) override { return Answer(value, id_); }
    STDMETHODIMP get_Z3Region(long* value) override { return Answer(value, z3Region_); }
    STDMETHODIMP get_Factor(long* value) override { return Answer(value, factor_); }
    STDMETHODIMP get_ACoef(long* value) override { return Answer(value, aCoef_); }
    STDMETHODIMP get_BCoef(long* value) override { return Answer(value, bCoef_); }
    STDMETHODIMP get_CCoef(long* value) override { return Answer(value, cCoef_); }
    STDMETHODIMP get_GenType(BSTR* value) override { return Answer(value, genType_); }
    STDMETHODIMP get_LUIType(BSTR* value) override { return Answer(value, luiType_); }
    STDMETHODIMP get_InvalidValue(BSTR* value) override { return Answer(value, invalidValue_); }
    STDMETHODIMP get_Name(BSTR* value) override { return Answer(value, name_); }
    STDMETHODIMP get_Min(BSTR* value) override;
    STDMETHODIMP get_Max(BSTR* value) override;
    STDMETHODIMP get_Units(BSTR* value) override { return Answer(value, units_); }
    STDMETHODIMP get_BACnetUnits(BSTR* value) override { return Answer(value, bacnetUnits_); }
    STDMETHODIMP get_EnumDesc(BSTR* value) override { return Answer(value, enumDesc_); }
    STDMETHODIMP get_Length(long* value) override { return Answer(value, length_); }
    STDMETHODIMP get_HasField(VARIANT_BOOL* value) override { return Answer(value, false); }

    // IEnumType
    STDMETHODIMP put_EnumDesc(BSTR value) override;
    STDMETHODIMP get_IsEnumType(VARIANT_BOOL* value) override;

  private:
    // True when nothing was shown.
    bool ReadEntry(const std::wstring& id);
    bool ReadGeneralType(CatalogueFields& fields, const std::wstring& id);
    bool ReadNumeric(CatalogueFields& fields);
    bool ReadTextual(CatalogueFields& fields);

    std::wstring enumDesc_;
    std::wstring genType_;
    std::wstring invalidValue_;
    long aCoef_ = 0;
    long bCoef_ = 0;
    long cCoef_ = 0;
    std::wstring id_;
    long length_ = 0;
    std::wstring luiType_;
    std::wstring min_;
    std::wstring max_;
    std::wstring units_;
    std::wstring bacnetUnits_;
    std::wstring name_;
    long factor_ = 0;
    long z3Region_ = 0;
};

} // namespace tam
