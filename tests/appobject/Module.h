#pragma once

#include "tests/support/Fixture.h"
#include "tests/support/HostWindows.h"
#include "tests/support/OnlyBox.h"

#include "com/Object.h"

#include <cstddef>
#include <list>
#include <string>

namespace modules {

/// Where most reports of the module object say that they come from.
inline constexpr const wchar_t* kLocation = L"O_Tam_id Class Module CDBAppObject";

/// The most memory that this process has ever had, in bytes.
std::size_t PeakMemory();

/// The text form of a node without the line breaks and the indentation that a
/// DOM may put between elements.
std::wstring Bare(std::wstring xml);
std::wstring BareXml(IUnknown* node);

/// What Init answers; its call succeeds whatever it answers.
bool Init(const com::Ref<IAppObject>& module, const std::wstring& name);
/// What LoadFromXmlStream answers.
HRESULT Load(const com::Ref<IAppObject>& module, const std::wstring& stream);
/// XmlLoad of an element given as text.
void LoadProject(const com::Ref<IAppObject>& module, const std::wstring& xml);

com::Ref<IInput> Input(const com::Ref<IAppObject>& module, const std::wstring& index);
com::Ref<IOutput> Output(const com::Ref<IAppObject>& module, const std::wstring& index);
com::Ref<IAttribute> Attribute(const com::Ref<IAppObject>& module, const std::wstring& index);
long InputCount(const com::Ref<IAppObject>& module);
long OutputCount(const com::Ref<IAppObject>& module);
long AttributeCount(const com::Ref<IAppObject>& module);

/// A test of the module object. Its catalogue has the types 105 (a signed
/// number), 36 (a text) and 95 (an enumeration).
class ModuleTest : public support::ComponentTest {
  protected:
    void SetUp() override;

    /// Puts a definition file beside the component for the rest of the test:
    /// <Definition><AppObject>content</AppObject></Definition>.
    void Define(const std::wstring& name, const std::wstring& content);
    /// The same with the whole text given.
    void DefineWhole(const std::wstring& name, const std::wstring& xml);
    /// A module whose definition has this content.
    com::Ref<IAppObject> Defined(const std::wstring& content, const std::wstring& name = L"Valve");
    /// The one box since the last call is a report with these texts.
    void ExpectOneReport(const std::wstring& description, const std::wstring& callingObject,
                         const std::wstring& callingFunction, const std::wstring& source = L"O_Tam_id");

  private:
    std::list<support::TextFile> definitions_;
};

} // namespace modules
