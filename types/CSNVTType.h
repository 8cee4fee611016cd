#pragma once

#include "com/Object.h"
#include "core/GeneralType.h"
#include "core/TypeData.h"
#include "types/CatalogueFields.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <memory>
#include <string>
#include <utility>

namespace tam {

/// One standard network variable type, filled from the catalogue document by
/// the assignment of its identifier. It describes; it scales nothing.
class CSNVTType final : public com::DualObject<CSNVTType, ISNVType, IEnumType> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CSNVTType); }
    static const IID& MembersId() noexcept { return __uuidof(::CSNVTTypeMembers); }

    // The component's own side.

    /// Looks the identifier up and takes over what the catalogue says of it.
    /// What goes wrong is shown in boxes or a report; nothing is thrown.
    /// Blanks alone make the type an enumeration. Fields that the entry lacks
    /// keep their values. True when nothing was shown: the type then holds all
    /// that its entry says.
    bool SetId(const std::wstring& id) noexcept;
    const TypeData& Data() const noexcept;
    const std::wstring& Id() const noexcept { return Data().id; }
    GeneralType General() const noexcept { return GeneralTypeOf(Data().generalType); }
    void SetGenType(std::wstring genType) { Own().generalType = std::move(genType); }
    void SetEnumDesc(std::wstring enumDesc) { Own().enumDescription = std::move(enumDesc); }
    bool IsEnum() const;

    // ISNVType
    STDMETHODIMP get_ID(BSTR* value) override { return Answer(value, Data().id); }
    STDMETHODIMP get_Z3Region(long* value) override { return Answer(value, Data().z3Region); }
    STDMETHODIMP get_Factor(long* value) override { return Answer(value, Data().factor); }
    STDMETHODIMP get_ACoef(long* value) override { return Answer(value, Data().aCoef); }
    STDMETHODIMP get_BCoef(long* value) override { return Answer(value, Data().bCoef); }
    STDMETHODIMP get_CCoef(long* value) override { return Answer(value, Data().cCoef); }
    STDMETHODIMP get_GenType(BSTR* value) override { return Answer(value, Data().generalType); }
    STDMETHODIMP get_LUIType(BSTR* value) override { return Answer(value, Data().luiType); }
    STDMETHODIMP get_InvalidValue(BSTR* value) override { return Answer(value, Data().invalidValue); }
    STDMETHODIMP get_Name(BSTR* value) override { return Answer(value, Data().name); }
    STDMETHODIMP get_Min(BSTR* value) override;
    STDMETHODIMP get_Max(BSTR* value) override;
    STDMETHODIMP get_Units(BSTR* value) override { return Answer(value, Data().units); }
    STDMETHODIMP get_BACnetUnits(BSTR* value) override { return Answer(value, Data().bacnetUnits); }
    STDMETHODIMP get_EnumDesc(BSTR* value) override { return Answer(value, Data().enumDescription); }
    STDMETHODIMP get_Length(long* value) override { return Answer(value, Data().length); }
    STDMETHODIMP get_HasField(VARIANT_BOOL* value) override { return Answer(value, false); }

    // IEnumType
    STDMETHODIMP put_EnumDesc(BSTR value) override;
    STDMETHODIMP get_IsEnumType(VARIANT_BOOL* value) override;

  private:
    /// What this type alone holds, to be changed.
    TypeData& Own();
    // True when nothing was shown.
    static bool ReadEntry(const std::wstring& id, TypeData& data);
    static bool ReadGeneralType(CatalogueFields& fields, const std::wstring& id, TypeData& data);

    /// Null for a type that says nothing yet. Shared with other types that say the
    /// same, but not while it is read.
    std::shared_ptr<TypeData> data_;
    /// Assignments of an identifier that are under way: a box lets another begin.
    int readings_ = 0;
};

} // namespace tam
