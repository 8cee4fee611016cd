#pragma once

#include "appobject/CDBAppObject.h"
#include "common/ComponentState.h"
#include "core/RunTimeError.h"
#include "tests/support/Fixture.h"

#include <string>

namespace members {

/// A test of what the component's classes offer each other. Objects are made in
/// this program itself; at the end none of them lives. Boxes are seen as in
/// every other test.
class MembersTest : public support::ComponentTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// A module object, loaded from a device stream when there is one.
    com::Ref<tam::CDBAppObject> Module(const std::wstring& stream = {});
    /// Makes the document with this content the catalogue of this program's objects.
    static void UseCatalogue(const std::wstring& entries);

  private:
    long objectsBefore_ = 0;
    // What a test may change of this program's component; its end puts it back.
    const std::wstring decimalBefore_ = tam::State().DecimalSeparator;
    const tam::DataSizeTable sizesBefore_ = tam::State().DataSizes;
};

/// The code of the run-time error that a call ends with; S_OK for none.
template <class F>
HRESULT ErrorOf(F&& call) {
    try {
        call();
    } catch (const tam::RunTimeError& error) {
        return error.Code();
    }
    return S_OK;
}

} // namespace members
