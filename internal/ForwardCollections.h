#pragma once

#include "internal/Forward.h"

#include <OrvDBFaces.h>

namespace tam {

/// IInputs, each member handed to the inner collection, in slot order, but for the item and the
/// enumerator, which are the own collection's.
template <class Derived>
class ForwardInputs : public ForwardFace<Derived, IInputs> {
    using I = IInputs;
    using ForwardFace<Derived, IInputs>::To;

  public:
    STDMETHODIMP putref_CallBack(IDispatch* value) override { return To(&I::putref_CallBack, value); }
    STDMETHODIMP get_Count(long* value) override { return To(&I::get_Count, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return To(&I::get_ExtendedKey, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
};

/// IOutputs, each member handed to the inner collection, in slot order, but for the item and the
/// enumerator, which are the own collection's.
template <class Derived>
class ForwardOutputs : public ForwardFace<Derived, IOutputs> {
    using I = IOutputs;
    using ForwardFace<Derived, IOutputs>::To;

  public:
    STDMETHODIMP putref_CallBack(IDispatch* value) override { return To(&I::putref_CallBack, value); }
    STDMETHODIMP get_Count(long* value) override { return To(&I::get_Count, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return To(&I::get_ExtendedKey, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
};

/// IAttributes, each member handed to the inner collection, in slot order, but for the item and the
/// enumerator, which are the own collection's.
template <class Derived>
class ForwardAttributes : public ForwardFace<Derived, IAttributes> {
    using I = IAttributes;
    using ForwardFace<Derived, IAttributes>::To;

  public:
    STDMETHODIMP get_Count(long* value) override { return To(&I::get_Count, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return To(&I::get_ExtendedKey, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
};

} // namespace tam
