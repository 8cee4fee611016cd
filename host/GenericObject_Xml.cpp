#include "core/RunTimeError.h"
#include "host/GenericObject.h"

#include <utility>
#include <vector>

namespace orv {

namespace {

namespace dom = tam::dom;

// Values in the document of the owner's device:
// <Data><Object Key="AI1"><Value Name="Gain">1.5</Value></Object></Data>
constexpr const wchar_t* kData = L"Data";
constexpr const wchar_t* kObject = L"Object";
constexpr const wchar_t* kObjectKey = L"Key";
constexpr const wchar_t* kValue = L"Value";
constexpr const wchar_t* kValueName = L"Name";

/// The first child element of a name, with a certain text in an attribute
/// where one is named; empty when there is none.
dom::Node ChildOf(const dom::Node& parent, std::wstring_view name, const wchar_t* attribute = nullptr,
                  std::wstring_view text = {}) {
    dom::Node found;
    if (parent) {
        dom::AnyChild(parent, [&](const dom::Node& child) {
            const bool fits =
                dom::IsElement(child) && dom::BaseName(child) == name &&
                (attribute == nullptr || dom::Attribute(child, attribute) == std::wstring(text));
            found = fits ? child : dom::Node();
            return fits;
        });
    }
    return found;
}

/// The document element of a document, a node as it is, nothing for the rest.
dom::Node RootOf(const com::Ref<IDispatch>& object) {
    dom::Element root;
    if (const auto document = object.As<IXMLDOMDocument>()) {
        com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
        return {root};
    }
    return object.As<IXMLDOMNode>();
}

template <class Points, class F>
void Take(const com::Ref<Points>& points, const std::vector<SavedPoint>& saved, F&& take) {
    for (const SavedPoint& point : saved) {
        // A definition that has changed may lack what was saved.
        if (const auto found = points->Find(point.name)) {
            found->Point().visible = point.visible.value_or(found->Point().visible);
            take(*found.Get(), point);
        }
    }
}

} // namespace

DeviceValues GenericObject::ReadDeviceValues() const {
    const auto document = ownerDeviceXml_;
    const std::wstring key = Key();
    DeviceValues values;
    if (const dom::Node object = ChildOf(ChildOf(RootOf(document), kData), kObject, kObjectKey, key)) {
        dom::ForEachChild(object, [&](const dom::Node& child) {
            if (dom::IsElement(child) && dom::BaseName(child) == kValue) {
                if (auto name = dom::Attribute(child, kValueName)) {
                    values.try_emplace(std::move(*name), dom::FirstChildTextOrEmpty(child));
                }
            }
        });
    }
    return values;
}

SavedObject GenericObject::PointsToSave() const {
    SavedObject object;
    com::CheckSet(attributes_.Get());
    // These, whatever an attribute's type does meanwhile: it may be a host's.
    const auto inputs = inputs_;
    const auto outputs = outputs_;
    const auto attributes = attributes_;
    for (const auto& input : inputs->All()) {
        SavedPoint point{input->Point().Name(), input->Point().visible, {}, {}, {}, {}};
        point.value = input->Link();
        object.inputs.push_back(std::move(point));
    }
    for (const auto& output : outputs->All()) {
        SavedPoint point{output->Point().Name(), output->Point().visible, {}, {}, {}, {}};
        point.displayable = output->IsDisplayable();
        object.outputs.push_back(std::move(point));
    }
    for (const auto& attribute : attributes->All()) {
        SavedPoint point{attribute->Point().Name(), attribute->Point().visible, {}, {}, {}, {}};
        point.value = attribute->ValueText();
        point.type = attribute->SNVTName();
        point.enumDesc = attribute->EnumDesc();
        object.attributes.push_back(std::move(point));
    }
    return object;
}

void GenericObject::SaveTo(const SavedObject& object, IDispatch* parentNode, IDispatch* document) const {
    if (definitionName_.empty()) {
        throw tam::RunTimeError(static_cast<HRESULT>(errNotInitialised), {},
                                L"The block has no definition to name its element after; call Init first");
    }
    const std::wstring name = definitionName_;
    WriteSaved(object, name, dom::NodeOf(parentNode), dom::DocumentOf(document));
}

STDMETHODIMP GenericObject::XMLSave(IDispatch* parentNode, IDispatch* document) {
    const auto self = This<IAppObject>(); // a type may hold the last reference
    return Do([&] {
        SavedObject object = PointsToSave();
        object.userName = userName_;
        object.x = x_;
        object.y = y_;
        SaveTo(object, parentNode, document);
    });
}

STDMETHODIMP GenericObject::XMLSaveSim(IDispatch* parentNode, IDispatch* document) {
    const auto self = This<IAppObject>();
    // A simulation has no sheet: no positions.
    return Do([&] {
        SavedObject object = PointsToSave();
        object.userName = userName_;
        SaveTo(object, parentNode, document);
    });
}

STDMETHODIMP GenericObject::XMLSaveForInteroperability(IDispatch* parentNode, IDispatch* document) {
    const auto self = This<IAppObject>(); // a type may hold the last reference
    return Do([&] {
        SavedObject object = PointsToSave();
        object.userName = userName_;
        object.key = extendedKey_;
        SaveTo(object, parentNode, document);
    });
}

STDMETHODIMP GenericObject::XmlLoad(IDispatch* element) {
    const auto self = This<IAppObject>();
    return Do([&] {
        SavedObject saved = ReadSaved(dom::NodeOf(element));
        if (created_) {
            TakePoints(saved);
            saved_.reset(); // of a Create that failed
        }
        userName_ = saved.userName.value_or(userName_);
        x_ = saved.x.value_or(x_);
        y_ = saved.y.value_or(y_);
        if (!created_) {
            saved_ = std::move(saved);
        }
    });
}

void GenericObject::TakePoints(const SavedObject& saved) {
    com::CheckSet(attributes_.Get());
    const auto inputs = inputs_;
    const auto outputs = outputs_;
    const auto attributes = attributes_;
    const auto catalogue = catalogue_;
    Take(inputs, saved.inputs, [](GenericInput& input, const SavedPoint& point) {
        input.SetLink(point.value.value_or(input.Link()));
    });
    Take(outputs, saved.outputs, [](GenericOutput& output, const SavedPoint& point) {
        output.SetDisplayable(point.displayable.value_or(output.IsDisplayable()));
    });
    Take(attributes, saved.attributes, [&](GenericAttribute& attribute, const SavedPoint& point) {
        attribute.Restore(point.value.value_or(attribute.ValueText()));
        const std::wstring entries = point.enumDesc.value_or(attribute.EnumDesc());
        const std::wstring id = point.type.value_or(attribute.SNVTName());
        if (id != attribute.SNVTName() || entries != attribute.EnumDesc()) {
            TypeDescription type = DescribeType(id, catalogue);
            type.enumDesc = entries;
            attribute.RestoreType(HostType::Make(std::move(type)));
        }
    });
}

} // namespace orv
