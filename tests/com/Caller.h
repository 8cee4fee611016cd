#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"
#include "tests/com/TypeLibrary.h"

#include <windows.h>

#include <deque>
#include <iosfwd>
#include <string>
#include <vector>

namespace contract {

/// What a call came to, in words that do not depend on the objects' addresses.
struct Outcome {
    HRESULT result = S_OK;
    /// The error's texts; empty when the call did well.
    std::wstring description;
    std::wstring source;
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
    Outcome Taken(HRESULT result) const;
    /// The outcome of a call by name with its result, which is taken over.
    Outcome Taken(HRESULT answer, const VARIANT& result, EXCEPINFO& exception);

    const Member& member_;
    /// A value each; of an argument by reference, the place it points to.
    std::deque<VARIANT> places_;
};

/// Invoke as a script engine does it, without a result when a property is written.
HRESULT Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT>& arguments, VARIANT* result,
               EXCEPINFO* exception, UINT* argument = nullptr);
HRESULT IdOf(IDispatch* object, const std::wstring& name, DISPID& id);

} // namespace contract
