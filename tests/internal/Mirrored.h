#pragma once

#include "tests/internal/Channel.h"

#include <string>
#include <vector>

// The inputs and the attributes of a channel object: a value that is written goes to
// the inner point and then to the point of the container that has the channel's key
// before its name.

namespace internal_tests {

struct MirroredInput {
    using Point = IInput;
    static constexpr const char* kName = "Input";
    static constexpr const wchar_t* kPoint = L"In1";
    static constexpr const wchar_t* kMirror = L"AI3_In1";
    static constexpr const wchar_t* kOther = L"AI1_In1";
    static constexpr const wchar_t* kCollection = L"get Inputs";
    /// The inputs are walked, the attributes looked up.
    static constexpr bool kWalks = true;
    static constexpr const wchar_t* kSearch = L"get NewEnum";
    static com::Ref<IInput> Of(const com::Ref<IAppObject>& object) { return InputOf(object, kPoint); }
    static Double New(const std::wstring& name) { return NewInput(name, name); }
    static void Fill(HostObject& container, const Doubles& points) {
        container.Fill(L"container", points, {}, {});
    }
    static const Double& Searched(const HostObject& container) { return container.inputs; }
};

struct MirroredAttribute {
    using Point = IAttribute;
    static constexpr const char* kName = "Attribute";
    static constexpr const wchar_t* kPoint = L"Gain";
    static constexpr const wchar_t* kMirror = L"AI3_Gain";
    static constexpr const wchar_t* kOther = L"AI1_Gain";
    static constexpr const wchar_t* kCollection = L"get Attributes";
    static constexpr bool kWalks = false;
    static constexpr const wchar_t* kSearch = L"get Item";
    static com::Ref<IAttribute> Of(const com::Ref<IAppObject>& object) { return AttributeOf(object, kPoint); }
    static Double New(const std::wstring& name) { return NewAttribute(name, name); }
    static void Fill(HostObject& container, const Doubles& points) {
        container.Fill(L"container", {}, {}, points);
    }
    static const Double& Searched(const HostObject& container) { return container.attributes; }
};

/// A channel object with a point of the kind, and its container with another channel's
/// and its own.
template <class Kind>
class MirroredTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        inner = std::wstring(Kind::kPoint) == L"In1" ? in1 : gain;
        Contain({Kind::kOther, Kind::kMirror});
        object = Created();
        point = Kind::Of(object);
        ASSERT_TRUE(point);
        Calls().clear();
    }
    void TearDown() override {
        point.Reset();
        object.Reset();
        contained.clear();
        inner.Reset();
        InternalTest::TearDown();
    }
    /// Gives the container points of these names; their labels are their names.
    void Contain(const std::vector<std::wstring>& names) {
        contained.clear();
        for (const std::wstring& name : names) {
            contained.push_back(Kind::New(name));
        }
        Kind::Fill(container, contained);
    }
    HRESULT Give(const wchar_t* value) { return support::Put(point, &Kind::Point::put_Value, value); }
    /// A call of the inner point, in words.
    static std::wstring OfInner(const std::wstring& call) { return Kind::kPoint + (L"." + call); }

    Double inner;
    Doubles contained;
    com::Ref<IAppObject> object;
    com::Ref<typename Kind::Point> point;
};

} // namespace internal_tests
