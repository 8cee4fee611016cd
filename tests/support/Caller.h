#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"
#include "tests/support/TypeLibrary.h"

#include <windows.h>

#include <cstddef>
#include <deque>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

namespace support {

/// What a call came to, in words that do not depend on the objects' addresses.
struct Outcome {
    HRESULT code = S_OK;
    /// The error's texts; empty when the call did well.
    std::wstring description;
    std::wstring source;
    /// Help file and context: "double.hlp#4711"; empty where there is neither.
    std::wstring help;
    /// What stands in the arguments by reference, the result last.
    std::vector<std::wstring> values;

    bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& outcome, std::ostream* stream);

/// How the arguments of a call are filled.
enum class Fill {
    /// Empty texts, no objects, zero.
    Nothing,
    /// A text, a number, and an object of the interface asked, else a DOM
    /// element or, for an argument that is called so, a document.
    Something,
    /// The same objects, with another text and other numbers.
    SomethingElse,
};

/// Where arguments that are objects come from.
struct Supply {
    /// The first one that has the interface asked is taken.
    std::vector<com::Ref<IUnknown>> objects;
    com::Ref<IDispatch> element;
    com::Ref<IDispatch> document;
};

/// The arguments of one call of a member, with the places that it writes to.
class Arguments {
  public:
    Arguments(const Member& member, Fill fill, const Supply& supply);
    /// These values, borrowed, one for each argument but the result.
    Arguments(const Member& member, std::span<const VARIANT> inputs);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;
    ~Arguments();

    /// Calls the member by its slot. `nullAt` is the index of an argument by
    /// reference that gets a null pointer; -1 for none.
    Outcome BySlot(IUnknown* face, int nullAt = -1);
    /// Calls the member by its number through an IDispatch.
    Outcome ByName(IDispatch* face, DISPID id, WORD flags);
    Outcome ByName(IDispatch* face) { return ByName(face, member_.id, static_cast<WORD>(member_.kind)); }
    /// The same with a name for each argument, last one first.
    Outcome ByName(IDispatch* face, std::vector<DISPID> names);
    /// Holds the objects among the arguments by their identities from now on.
    void UseIdentities();

    /// The arguments that a script gives, last one first, to be changed before
    /// a call of one's own. They borrow from this object.
    std::vector<VARIANT> Script();

  private:
    Outcome Taken(HRESULT code) const;
    Outcome Called(IDispatch* face, DISPID id, WORD flags, std::vector<DISPID> names, bool wantsResult);

    const Member& member_;
    /// A value each; of an argument by reference, the place it points to.
    std::deque<VARIANT> places_;
    /// So many of the first ones are another's.
    std::size_t borrowed_ = 0;
};

/// Calls the member through an object's names, as a script does.
Outcome CallByName(IDispatch* object, const Member& member, std::span<const VARIANT> inputs);
/// Invoke as a script engine does it, without a result when a property is written.
HRESULT Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT>& arguments, VARIANT* result,
               EXCEPINFO* exception, UINT* argument = nullptr);
HRESULT IdOf(IDispatch* object, const std::wstring& name, DISPID& id);

} // namespace support
