#include "internal/TamInternalAppObject.h"

#include "com/Boundary.h"
#include "com/Creation.h"
#include "com/LateBound.h"
#include "common/MessageLoop.h"
#include "core/Case.h"

#include <utility>

namespace tam {

namespace {

constexpr const wchar_t* kGenericProgId = L"O_Generic.CDBAppObject";
constexpr const wchar_t* kLibraryProgId = L"OrvHost.LibraryService";

// The saved element.
constexpr const wchar_t* kObjectKeyElement = L"TamObjectKey";
constexpr const wchar_t* kDeviceKeyElement = L"DevKey";

// Visibility in the definition document.
constexpr const wchar_t* kConfiguration = L"AppObject/TAMConfig";
constexpr const wchar_t* kName = L"Name";
constexpr const wchar_t* kVisible = L"Visible";

/// An element with a text node, in no place yet.
dom::Element NewText(const dom::Document& document, const wchar_t* name, const std::wstring& text) {
    dom::Element element;
    com::Call(document, &IXMLDOMDocument::createElement, com::Bstr(name).Get(), element.Put());
    com::Ref<IXMLDOMText> content;
    com::Call(document, &IXMLDOMDocument::createTextNode, com::Bstr(text).Get(), content.Put());
    com::Call(element, &IXMLDOMNode::appendChild, content.Get(), nullptr);
    return element;
}

/// Puts an element before the first child of another.
void Prepend(const dom::Node& parent, const dom::Element& element) {
    dom::Node first;
    com::Call(parent, &IXMLDOMNode::get_firstChild, first.Put());
    VARIANT before{};                         // borrowed for the call
    before.vt = first ? VT_UNKNOWN : VT_NULL; // nothing there: at the end
    before.punkVal = first.Get();
    com::Call(parent, &IXMLDOMNode::insertBefore, element.Get(), before, nullptr);
}

/// Takes what is appended to a node out of it again, unless all of it is in place.
class Appending {
  public:
    explicit Appending(dom::Node parent) : parent_(std::move(parent)) {
        com::Call(parent_, &IXMLDOMNode::get_lastChild, last_.Put());
    }
    Appending(const Appending&) = delete;
    Appending& operator=(const Appending&) = delete;
    ~Appending() {
        if (!isWhole_) {
            com::Attempt([&] { TakeOut(); });
        }
    }
    void Commit() noexcept { isWhole_ = true; }

  private:
    void TakeOut() const {
        dom::Node appended;
        if (last_) {
            com::Call(last_, &IXMLDOMNode::get_nextSibling, appended.Put());
        } else {
            com::Call(parent_, &IXMLDOMNode::get_firstChild, appended.Put());
        }
        while (appended) {
            dom::Node next;
            com::Call(appended, &IXMLDOMNode::get_nextSibling, next.Put());
            com::Call(parent_, &IXMLDOMNode::removeChild, appended.Get(), nullptr);
            appended = std::move(next);
        }
    }

    dom::Node parent_;
    dom::Node last_;
    bool isWhole_ = false;
};

void SetVisible(IDispatch& item, bool visible) {
    const VARIANT_BOOL value = visible ? VARIANT_TRUE : VARIANT_FALSE;
    if (const auto face = com::Query<IVisibleItem>(&item)) {
        com::Call(face, &IVisibleItem::put_Visible, value);
        return;
    }
    VARIANT argument{};
    argument.vt = VT_BOOL;
    argument.boolVal = value;
    com::PutMember(item, kVisible, argument);
}

/// Applies the "Visible" of each element of a list to the item of its name.
template <class Item, class Collection>
void ApplyList(const dom::Node& configuration, const wchar_t* path, const com::Ref<Collection>& collection) {
    com::Ref<IXMLDOMNodeList> list;
    com::Call(configuration, &IXMLDOMNode::selectNodes, com::Bstr(path).Get(), list.Put());
    for (;;) {
        dom::Node node;
        com::Call(list, &IXMLDOMNodeList::nextNode, node.Put());
        if (!node) {
            return;
        }
        YieldToHost();
        const auto visible = dom::Attribute(node, kVisible);
        if (!visible) {
            continue;
        }
        const com::Bstr name(dom::Attribute(node, kName).value_or(std::wstring()));
        com::CheckSet(collection.Get());
        com::Ref<Item> item;
        com::Call(collection, &Collection::get_Item, name.Get(), item.Put());
        // An item found by the position that the name begins with is not meant.
        if (item && EqualIgnoringCase(NameOf(item), name.View())) {
            SetVisible(*item.Get(), *visible == L"1");
        }
    }
}

} // namespace

TamInternalAppObject::TamInternalAppObject()
    : inner_(Required<IAppObject>(com::CreateByProgId(kGenericProgId)))
    , library_(Required<ILibraryService>(com::CreateByProgId(kLibraryProgId))) {}

TamInternalAppObject::~TamInternalAppObject() {
    if (interceptor_) {
        interceptor_->Cut();
    }
}

void TamInternalAppObject::SetUp(std::wstring internalObjectKey, com::Ref<IDispatch> device) {
    internalObjectKey_ = std::move(internalObjectKey);
    device_ = std::move(device);
}

STDMETHODIMP TamInternalAppObject::Create() {
    const auto kept = AsChannel(); // a message of the host may drop the last reference
    return Do([&] {
        if (!interceptor_) {
            interceptor_ = InterceptorLink::Make(*this);
        }
        com::Call(Required<IAttributeInterception>(inner_), &IAttributeInterception::RegisterInterceptor,
                  interceptor_.Get());
        com::Call(inner_, &IAppObject::Create);
        WrapPoints();
        ApplyVisibility();
    });
}

void TamInternalAppObject::WrapPoints() {
    com::Ref<IInputs> inputs;
    com::Call(inner_, &IAppObject::get_Inputs, inputs.Put());
    const auto newInputs = TamInternalInputs::Make(inputs, *this);
    com::Ref<IOutputs> outputs;
    com::Call(inner_, &IAppObject::get_Outputs, outputs.Put());
    const auto newOutputs = TamInternalOutputs::Make(outputs, *this);
    com::Ref<IAttributes> attributes;
    com::Call(inner_, &IAppObject::get_Attributes, attributes.Put());
    attributes_ = TamInternalAttributes::Make(attributes, *this);
    // All three are there: new inputs never stand beside old outputs.
    inputs_ = newInputs;
    outputs_ = newOutputs;
}

dom::Document TamInternalAppObject::DefinitionDocument() const {
    com::Bstr identifier;
    com::Call(inner_, &IAppObject::get_UniqueIDString, identifier.Put());
    com::Ref<ILibrary> library;
    com::Call(library_, &ILibraryService::get_Library, library.Put());
    com::CheckSet(library.Get());
    com::Ref<IDispatch> document;
    com::Call(library, &ILibrary::DefinitionDocument, identifier.Get(), document.Put());
    return dom::DocumentOf(document.Get());
}

void TamInternalAppObject::ApplyVisibility() {
    const dom::Node configuration = dom::Select(dom::Node(DefinitionDocument()), kConfiguration);
    if (!configuration) {
        return;
    }
    com::Ref<IInputs> inputs;
    com::Ref<IOutputs> outputs;
    com::Ref<IAttributes> attributes;
    com::Call(inner_, &IAppObject::get_Inputs, inputs.Put());
    com::Call(inner_, &IAppObject::get_Outputs, outputs.Put());
    com::Call(inner_, &IAppObject::get_Attributes, attributes.Put());
    ApplyList<IInput>(configuration, L"InReferences/InReference", inputs);
    ApplyList<IOutput>(configuration, L"OutReferences/OutReference", outputs);
    ApplyList<IAttribute>(configuration, L"Attributes/Attrib", attributes);
}

STDMETHODIMP TamInternalAppObject::XMLSave(IDispatch* parentNode, IDispatch* document) {
    const auto kept = AsChannel(); // the generic object may drop the last reference
    return Do([&] {
        // An element is saved with both keys or not at all: what can be refused before it is
        // there comes first.
        const std::wstring deviceKey = DeviceKey();
        const dom::Node parent = dom::NodeOf(parentNode);
        const dom::Document target = dom::DocumentOf(document);
        const dom::Element objectKey = NewText(target, kObjectKeyElement, internalObjectKey_);
        const dom::Element ownDeviceKey = NewText(target, kDeviceKeyElement, deviceKey);
        Appending element(parent);
        com::Call(inner_, &IAppObject::XMLSave, parentNode, document);
        dom::Node saved; // the parent's last child: the generic object has just appended it
        com::Call(parent, &IXMLDOMNode::get_lastChild, saved.Put());
        com::CheckSet(saved.Get());
        Prepend(saved, objectKey);
        Prepend(saved, ownDeviceKey);
        element.Commit();
    });
}

std::wstring TamInternalAppObject::DeviceKey() const {
    com::Bstr key;
    com::Call(Required<IDevice>(device_), &IDevice::get_DeviceKey, key.Put());
    return std::wstring(key.View());
}

com::Ref<IDispatch> TamInternalAppObject::Container() {
    com::Ref<IDispatch> container;
    com::Call(Required<IDevice>(device_), &IDevice::Container, AsChannel().Get(), container.Put());
    return container;
}

STDMETHODIMP TamInternalAppObject::get_ExportIndex(short* value) {
    return Get(value, [&] {
        short index = 0;
        com::Call(Required<IAppObject>(Container()), &IAppObject::get_ExportIndex, &index);
        return index;
    });
}

STDMETHODIMP TamInternalAppObject::get_TamDeviceKey(BSTR* value) {
    return Get(value, [&] { return device_ ? DeviceKey() : std::wstring(); });
}

STDMETHODIMP TamInternalAppObject::get_TamObjectContainer(IDispatch** value) {
    return Get(value, [&] { return device_ ? Container() : com::Ref<IDispatch>(); });
}

STDMETHODIMP TamInternalAppObject::put_Status(long value) {
    status_ = value;
    return S_OK;
}

} // namespace tam
