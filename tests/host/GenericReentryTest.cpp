// What the host's own objects may do when a generic object asks them: let go of what asks,
// or call it again.

#include "com/Dom.h"
#include "tests/host/GenericObjects.h"
#include "tests/support/ImportPatch.h"

#include <cstring>
#include <functional>
#include <string>
#include <utility>

namespace hosttest {

namespace {

namespace dom = tam::dom;

/// A type of the host's own that acts when it is asked for its identifier or for its
/// entries, once each.
class ActingType final : public com::DualObject<ActingType, ISNVType> {
  public:
    static REFCLSID ClassId() noexcept { return CLSID_NULL; }

    std::function<void()> onId;
    std::function<void()> onEnumDesc;

    STDMETHODIMP get_ID(BSTR* value) override { return Told(value, onId, L"81"); }
    STDMETHODIMP get_EnumDesc(BSTR* value) override { return Told(value, onEnumDesc, L"0,Off"); }
    STDMETHODIMP get_Z3Region(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_Factor(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_ACoef(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_BCoef(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_CCoef(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_GenType(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_LUIType(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_InvalidValue(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_Name(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_Min(BSTR* value) override { return Told(value, onId, L"1"); }
    STDMETHODIMP get_Max(BSTR* value) override { return Told(value, onId, L"2"); }
    STDMETHODIMP get_Units(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_BACnetUnits(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_Length(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_HasField(VARIANT_BOOL* value) override { return Answer(value, false); }

  private:
    HRESULT Told(BSTR* value, std::function<void()>& action, const wchar_t* text) {
        if (const auto act = std::exchange(action, {})) {
            act();
        }
        return Answer(value, std::wstring(text));
    }
};

/// While it lives, a document acts when it is asked for its root, once for each time
/// that the test gives it something to do.
class ActingDocument {
  public:
    ActingDocument() {
        VARIANT_BOOL loaded = VARIANT_FALSE;
        EXPECT_EQ(S_OK, document_->loadXML(com::Bstr(L"<SNVTCatalogue/>").Get(), &loaded));
        // What this compiler's pointer to a virtual member holds is its place in the table, plus one.
        auto method = &IXMLDOMDocument::get_documentElement;
        ULONG_PTR place = 0;
        std::memcpy(&place, &method, sizeof place);
        slot_ = *reinterpret_cast<ULONG_PTR**>(document_.Get()) + (place - 1) / sizeof(void*);
        original_ = *slot_;
        watched_ = document_.Get();
        support::WriteProtected(slot_, reinterpret_cast<ULONG_PTR>(&ActingDocument::Asked));
    }
    ~ActingDocument() {
        support::WriteProtected(slot_, original_);
        action_ = {};
    }
    ActingDocument(const ActingDocument&) = delete;
    ActingDocument& operator=(const ActingDocument&) = delete;

    IDispatch* Get() const noexcept { return document_.Get(); }
    void Next(std::function<void()> action) { action_ = std::move(action); }

  private:
    using Function = HRESULT(STDMETHODCALLTYPE*)(IXMLDOMDocument*, IXMLDOMElement**);
    static HRESULT STDMETHODCALLTYPE Asked(IXMLDOMDocument* document, IXMLDOMElement** root) {
        if (document == watched_) {
            if (const auto act = std::exchange(action_, {})) {
                act();
            }
        }
        return reinterpret_cast<Function>(original_)(document, root);
    }

    static inline std::function<void()> action_;
    static inline ULONG_PTR original_ = 0;
    static inline IXMLDOMDocument* watched_ = nullptr;
    dom::Document document_ = dom::NewDocument(dom::kDocumentClass);
    ULONG_PTR* slot_ = nullptr;
};

const char* const kDefinition =
    "<AppObject><InReferences><In1/></InReferences><OutReferences><Out1/></OutReferences>"
    "<Attributes><Gain><VALUE>1.5</VALUE></Gain><Offset><VALUE>7</VALUE></Offset>"
    "<Span><VALUE>20</VALUE><SNVTTYPE>105</SNVTTYPE><UNITDEPENDENT>1</UNITDEPENDENT></Span>"
    "</Attributes></AppObject>";

class GenericReentryTest : public testing::Test {
  protected:
    GenericReentryTest() {
        library_.Write(L"Reentry.xml", kDefinition);
        dom::Append(document_, dom::Node(document_), L"Project");
        object_ = NewObject(L"Reentry");
    }
    ~GenericReentryTest() override {
        Create<IUnitSettings>(__uuidof(UnitConverter))->put_UnitSystem(com::Bstr(L"metric").Get());
        type_.Reset();
        object_.Reset();
        EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
    }

    dom::Node Root() { return dom::Select(dom::Node(document_), L"Project"); }
    static std::wstring Xml(const dom::Node& node) {
        com::Bstr text;
        EXPECT_EQ(S_OK, node->get_xml(text.Put()));
        std::wstring flat(text.View());
        std::erase_if(flat, [](wchar_t c) { return c == L'\r' || c == L'\n' || c == L'\t'; });
        return flat;
    }
    dom::Node Parsed(const wchar_t* xml) {
        parsed_ = dom::NewDocument(dom::kDocumentClass);
        VARIANT_BOOL loaded = VARIANT_FALSE;
        EXPECT_EQ(S_OK, parsed_->loadXML(com::Bstr(xml).Get(), &loaded));
        dom::Element root;
        EXPECT_EQ(S_OK, parsed_->get_documentElement(root.Put()));
        return dom::Node(root);
    }
    /// Gain has a type of the host's.
    void GiveType() {
        EXPECT_EQ(S_OK, AttributeOf(object_, L"Gain").As<IMutableTypeAttribute>()->SetType(type_.Get()));
    }
    void Destroy() { EXPECT_EQ(S_OK, object_->Destroy()); }

    static constexpr const wchar_t* kSaved =
        L"<Project><Reentry><UserName>Room</UserName><Inputs><In1 Visible=\"0\" Value=\"\"/></Inputs>"
        L"<Outputs><Out1 Visible=\"0\" IsDisplayable=\"0\"/></Outputs>"
        L"<Attributes><Gain Visible=\"0\" Value=\"1.5\" SNVT_Type=\"81\" EnumDesc=\"0,Off\"/>"
        L"<Offset Visible=\"0\" Value=\"7\" SNVT_Type=\"\" EnumDesc=\"\"/>"
        L"<Span Visible=\"0\" Value=\"20\" SNVT_Type=\"105\" "
        L"EnumDesc=\"\"/></Attributes></Reentry></Project>";

    TemporaryLibrary library_;
    dom::Document document_ = dom::NewDocument(dom::kDocumentClass);
    dom::Document parsed_;
    com::Ref<ActingType> type_ = ActingType::Make();
    com::Ref<IAppObject> object_;
};

TEST_F(GenericReentryTest, SavesThePointsThatATypeDestroysMeanwhile) {
    GiveType();
    EXPECT_EQ(S_OK, object_->put_UserName(com::Bstr(L"Room").Get()));
    type_->onId = [this] { Destroy(); };
    EXPECT_EQ(S_OK, object_->XMLSaveSim(Root().Get(), document_.Get()));
    EXPECT_EQ(kSaved, Xml(Root()));
}

TEST_F(GenericReentryTest, SavesTheObjectThatATypeLetsGoOf) {
    for (const auto save :
         {&IAppObject::XMLSave, &IAppObject::XMLSaveSim, &IAppObject::XMLSaveForInteroperability}) {
        object_ = NewObject(L"Reentry");
        GiveType();
        HRESULT alive = E_FAIL;
        type_->onId = [this] { object_.Reset(); };
        type_->onEnumDesc = [&] { alive = HostDll::Get().CanUnloadNow(); };
        EXPECT_EQ(S_OK, (object_.Get()->*save)(Root().Get(), document_.Get()));
        EXPECT_EQ(S_FALSE, alive);
        EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
    }
}

TEST_F(GenericReentryTest, LoadsThePointsThatATypeDestroysMeanwhile) {
    GiveType();
    const auto offset = AttributeOf(object_, L"Offset");
    type_->onEnumDesc = [this] { Destroy(); };
    EXPECT_EQ(S_OK,
              object_->XmlLoad(Parsed(L"<Reentry><UserName>Room</UserName><Attributes><Gain Value=\"3\"/>"
                                      L"<Offset Value=\"8\"/></Attributes></Reentry>")
                                   .Get()));
    EXPECT_EQ(L"8", ValueOf(offset));
    EXPECT_EQ(L"Room", TextOf(*object_.Get(), &IAppObject::get_UserName));
}

TEST_F(GenericReentryTest, LoadsTheObjectThatATypeLetsGoOf) {
    GiveType();
    const auto offset = AttributeOf(object_, L"Offset");
    type_->onEnumDesc = [this] { object_.Reset(); };
    const auto element = Parsed(L"<Reentry><UserName>Room</UserName><X_Position>3</X_Position><Attributes>"
                                L"<Gain Value=\"3\"/><Offset Value=\"8\"/></Attributes></Reentry>");
    EXPECT_EQ(S_OK, object_->XmlLoad(element.Get()));
    EXPECT_EQ(L"8", ValueOf(offset));
}

TEST_F(GenericReentryTest, ShowsTheAttributeThatATypeLetsGoOf) {
    for (const auto show : {&IAttribute::get_DispValue, &IAttribute::get_DispMin, &IAttribute::get_DispMax,
                            &IAttribute::get_DispDefault}) {
        object_ = NewObject(L"Reentry");
        GiveType();
        auto gain = AttributeOf(object_, L"Gain");
        HRESULT alive = E_FAIL;
        // The first that is asked: for a limit, or for the identifier.
        type_->onId = [&] {
            object_.Reset();
            gain.Reset();
        };
        type_->onEnumDesc = [&] { alive = HostDll::Get().CanUnloadNow(); };
        com::Bstr text;
        EXPECT_EQ(S_OK, (gain.Get()->*show)(text.Put()));
        EXPECT_EQ(S_FALSE, alive);
        EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
    }
}

TEST_F(GenericReentryTest, ShowsTheValueThatItHadWhenItWasAsked) {
    const auto interceptor = Interceptor::Make();
    const auto span = AttributeOf(object_, L"Span");
    interceptor->answer = {true};
    interceptor->onQuestion = [](IAttribute& attribute) {
        EXPECT_EQ(S_OK, attribute.put_Value(com::Bstr(L"a longer text than the one that was there").Get()));
    };
    EXPECT_EQ(S_OK, object_.As<IAttributeInterception>()->RegisterInterceptor(interceptor.Get()));
    Create<IUnitSettings>(__uuidof(UnitConverter))->put_UnitSystem(com::Bstr(L"US").Get());
    EXPECT_EQ(L"36 \u00B0F", TextOf(*span.Get(), &IAttribute::get_DispValue));
    Destroy();
}

TEST_F(GenericReentryTest, GivesThePointsAllThatWasReadThoughTheCatalogueLoadsAgain) {
    ActingDocument catalogue;
    VARIANT_BOOL done = VARIANT_FALSE;
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    const auto empty = Parsed(L"<Reentry/>");
    const auto kept = parsed_;
    const auto full = Parsed(L"<Reentry><Attributes>"
                             L"<Gain Value=\"a longer text than most of them\" SNVT_Type=\"81\"/>"
                             L"<Offset Value=\"another text of some length\"/></Attributes></Reentry>");
    EXPECT_EQ(S_OK, object->XmlLoad(full.Get()));
    EXPECT_EQ(S_OK, object->Init(com::Bstr(L"Reentry").Get(), &done));
    EXPECT_EQ(S_OK, object->putref_XmlSNVTDoc(catalogue.Get()));
    // It is asked for the type of Span when that is made, then for the one that Gain gets.
    catalogue.Next([&] { catalogue.Next([&] { EXPECT_EQ(S_OK, object->XmlLoad(empty.Get())); }); });
    EXPECT_EQ(S_OK, object->Create());
    EXPECT_EQ(L"a longer text than most of them", ValueOf(AttributeOf(object, L"Gain")));
    EXPECT_EQ(L"another text of some length", ValueOf(AttributeOf(object, L"Offset")));
}

TEST_F(GenericReentryTest, MakesThePointsOfItsDefinitionThoughTheCatalogueReadsAnother) {
    ActingDocument catalogue;
    library_.Write(L"Other.xml", "<AppObject/>");
    library_.Write(L"Typed.xml", "<AppObject><Attributes><First><SNVTTYPE>81</SNVTTYPE></First>"
                                 "<Second><VALUE>a text of some length of its own</VALUE></Second>"
                                 "</Attributes></AppObject>");
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(S_OK, object->putref_XmlSNVTDoc(catalogue.Get()));
    EXPECT_EQ(S_OK, object->Init(com::Bstr(L"Typed").Get(), &done));
    catalogue.Next([&] { EXPECT_EQ(S_OK, object->Init(com::Bstr(L"Other").Get(), &done)); });
    EXPECT_EQ(S_OK, object->Create());
    EXPECT_EQ(L"a text of some length of its own", ValueOf(AttributeOf(object, L"Second")));
}

TEST_F(GenericReentryTest, IsMadeThoughTheCatalogueLetsGoOfIt) {
    ActingDocument catalogue;
    VARIANT_BOOL done = VARIANT_FALSE;
    object_ = Create<IAppObject>(__uuidof(GenericObject));
    EXPECT_EQ(S_OK, object_->putref_XmlSNVTDoc(catalogue.Get()));
    EXPECT_EQ(S_OK, object_->Init(com::Bstr(L"Reentry").Get(), &done));
    EXPECT_EQ(S_OK, object_->putref_Parent(type_.Get()));
    ULONG holders = 0;
    catalogue.Next([&] {
        object_.Reset();
        type_->AddRef();
        holders = type_->Release();
    });
    EXPECT_EQ(S_OK, object_->Create());
    EXPECT_EQ(2U, holders) << "the test, and the object that is being made";
}

TEST_F(GenericReentryTest, IsHeldWhileTheDevicesDocumentIsAsked) {
    ActingDocument device;
    EXPECT_EQ(S_OK, object_->putref_OwnerDeviceXML(device.Get()));
    EXPECT_EQ(S_OK, object_->putref_Parent(type_.Get()));
    const auto offset = AttributeOf(object_, L"Offset");
    ULONG holders = 0;
    device.Next([&] {
        object_.Reset();
        type_->AddRef();
        holders = type_->Release();
    });
    EXPECT_EQ(S_OK, offset->SetValue());
    EXPECT_EQ(2U, holders) << "the test, and the object whose document is read";
}

TEST_F(GenericReentryTest, ForgetsWhatWasReadWhenItIsDestroyed) {
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(S_OK, object->XmlLoad(
                        Parsed(L"<Reentry><Attributes><Gain Value=\"3\"/></Attributes></Reentry>").Get()));
    EXPECT_EQ(S_OK, object->Destroy());
    EXPECT_EQ(S_OK, object->Init(com::Bstr(L"Reentry").Get(), &done));
    EXPECT_EQ(S_OK, object->Create());
    EXPECT_EQ(L"1.5", ValueOf(AttributeOf(object, L"Gain")));
}

} // namespace

} // namespace hosttest
