#pragma once

#include "tests/support/Fixture.h"
#include "tests/support/Recorder.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <optional>
#include <string>
#include <vector>

namespace internal_tests {

using namespace support;

using Double = com::Ref<Recorder>;
using Doubles = std::vector<Double>;

inline constexpr const wchar_t* kGenericProgId = L"O_Generic.CDBAppObject";
inline constexpr const wchar_t* kLibraryProgId = L"OrvHost.LibraryService";

// Points of a host's object, all with `Visible` to write.
Double NewInput(const std::wstring& name, const std::wstring& label);
Double NewOutput(const std::wstring& name, const std::wstring& label);
Double NewAttribute(const std::wstring& name, const std::wstring& label);
/// A collection with these items: by name in any letter case, else by position.
Double NewCollection(REFIID iid, const std::wstring& label, const Doubles& items);

/// An application object of the host with points.
struct HostObject {
    Double object;
    Double inputs;
    Double outputs;
    Double attributes;
    void Fill(const std::wstring& label, const Doubles& inputPoints, const Doubles& outputPoints,
              const Doubles& attributePoints);
};

/// A test with a generic object that records every call behind its ProgID, the
/// library service, a device with one channel, and the module that contains it.
class InternalTest : public support::ComponentTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// A manager that was told this double as its device context.
    com::Ref<ITamObjectManager> NewManager(const Double& context);
    com::Ref<ITamObjectManager> NewManager() { return NewManager(context); }
    /// A channel object of the manager, set up and not yet created.
    com::Ref<IAppObject> NewChannel(const std::wstring& key, IDispatch* ofDevice);
    /// The usual channel, AI3 of the device, after its Create.
    com::Ref<IAppObject> Created();
    /// One without a device.
    com::Ref<IAppObject> CreatedWithoutDevice();
    /// What the generic object was given as its interceptor.
    com::Ref<IAttributeInterceptor> Interceptor() const;
    com::Ref<IDispatch> Device() { return device->As<IDispatch>(); }
    /// The definition that the library service answers with.
    void SetDefinition(const std::wstring& xml);
    /// Makes a class of the host not available.
    void Unregister(const std::wstring& progId);
    /// All doubles once more, and the classes that give them.
    void MakeDoubles();
    void ForgetDoubles();
    /// The doubles let go of what they were given, each other included.
    void ForgetWhatWasPut();
    long DoublesAlive() const { return com::ThisDll().Objects() - doublesBefore_; }

    HostObject generic;
    /// Points of the generic object: inputs In1, In2, outputs Out, Alarm,
    /// attributes Gain, Channel, Setup.
    Double in1, in2, out, alarm, gain, channelAttribute, setup;
    HostObject container;
    Double device, channel, context, libraryService, library;

  private:
    std::vector<Double*> AllDoubles();

    std::optional<support::HostClass> genericClass_, libraryClass_;
    long doublesBefore_ = 0;
};

template <class I>
com::Ref<ITamInternalAppObject> InternalOf(const com::Ref<I>& object) {
    return object.template As<ITamInternalAppObject>();
}
com::Ref<IInput> InputOf(const com::Ref<IAppObject>& object, const std::wstring& name);
com::Ref<IOutput> OutputOf(const com::Ref<IAppObject>& object, const std::wstring& name);
com::Ref<IAttribute> AttributeOf(const com::Ref<IAppObject>& object, const std::wstring& name);

/// A classic run-time error with its standard text, as the caller sees it.
void ExpectRaised(HRESULT result, HRESULT code);
/// One with words of its own.
void ExpectRaised(HRESULT result, HRESULT code, const std::wstring& description, const std::wstring& source);
/// A failed double's own error, as its caller gave it on: the same code and the
/// whole of its error object.
void ExpectPassedBack(HRESULT result, HRESULT code, const std::wstring& description);
/// This where the call fails; else success without an error object.
void ExpectPassedBackIf(bool fails, HRESULT result, HRESULT code, const std::wstring& description);

} // namespace internal_tests
