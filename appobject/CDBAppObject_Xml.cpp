#include "appobject/CDBAppObject.h"

#include "com/DocumentType.h"
#include "common/DocumentFields.h"
#include "common/ErrorReport.h"
#include "common/MessageLoop.h"
#include "core/Case.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBAppObject";
/// The component's name, which an object loaded from a stream takes as its definition's.
constexpr const wchar_t* kStreamDefinition = L"O_Tam_id";

// The displayable outputs of the project element.
constexpr const wchar_t* kOutputs = L"Outputs";
constexpr const wchar_t* kIsDisplayable = L"IsDisplayable";
/// Where the flags are read from. They are written elsewhere: saved flags are
/// not restored, which is the hosts' agreed behaviour.
constexpr const wchar_t* kOutReferences = L"OUTREFERENCES";

// The interoperability element.
constexpr const wchar_t* kInputs = L"Inputs";
constexpr const wchar_t* kAttributes = L"Attributes";
constexpr const wchar_t* kValue = L"Value";

// The device stream.
constexpr const wchar_t* kStreamInputs = L"Tam/InReferences";
constexpr const wchar_t* kStreamOutputs = L"Tam/OutReferences";
constexpr const wchar_t* kStreamAttributes = L"Tam/Attributes";

template <class Collection>
bool HasItems(const com::Owned<Collection>& collection) {
    return collection && collection->All().Count() > 0;
}

/// Passes each reference element of a section to the collection. `goOn` throws
/// when the load is over.
template <class Collection>
void LoadSection(const dom::Document& stream, const wchar_t* path, Collection& collection, PointOwner* owner,
                 const std::function<void()>& goOn) {
    const dom::Node section = dom::FirstByTagName(stream, path);
    if (!section) {
        return;
    }
    dom::ForEachChild(section, [&](const dom::Node& child) {
        YieldToHost();
        goOn();
        if (dom::IsElement(child)) {
            collection.AddItem(dom::BaseName(child), child, owner, goOn);
        }
    });
}

} // namespace

STDMETHODIMP CDBAppObject::XMLSave(IDispatch* parentNode, IDispatch* document) {
    Trap(kReportClass, L"Sub IAppObject_XMLSave", [&] {
        const dom::Document target = dom::DocumentOf(document);
        const dom::Node element(dom::Append(target, dom::NodeOf(parentNode), data_.identity.definitionName));
        AppendFields(target, element, kProjectToSave, data_.placement);
        SaveOutputs(target, element);
    });
    return S_OK;
}

void CDBAppObject::SaveOutputs(const dom::Document& document, const dom::Node& element) const {
    if (!outputs_) {
        return;
    }
    const auto& outputs = outputs_->All();
    const auto isDisplayable = [](const auto& output) { return output->Data().isDisplayable; };
    if (std::none_of(outputs.begin(), outputs.end(), isDisplayable)) {
        return;
    }
    const dom::Node container(dom::Append(document, element, kOutputs));
    for (const auto& output : outputs) {
        if (isDisplayable(output)) {
            dom::SetAttribute(dom::Append(document, container, output->PointName()), kIsDisplayable, L"1");
        }
    }
}

STDMETHODIMP CDBAppObject::XmlLoad(IDispatch* element) {
    const auto kept = This<IAppObject>(); // a message of the host may drop the last reference
    Trap(kReportClass, L"Sub IAppObject_XmlLoad", [&] {
        const dom::Node project = dom::NodeOf(element);
        const LoadTickets::Ticket ticket = projectLoads_.Begin();
        dom::ForEachChild(project, [&](const dom::Node& child) {
            if (dom::IsElement(child)) { // an instruction has a name too
                LoadChild(child, ticket);
            }
        });
    });
    return S_OK;
}

void CDBAppObject::LoadChild(const dom::Node& child, LoadTickets::Ticket ticket) {
    // Anything else, the host's "Environment" and the saved "Outputs" included, is not for this object.
    const std::wstring keyword = UpperCase(dom::BaseName(child));
    if (keyword == kOutReferences) {
        LoadDisplayFlags(child, ticket);
    } else {
        TakeNode(kSavedProject, keyword, data_.placement, child, &dom::FirstChildValue);
    }
}

void CDBAppObject::LoadDisplayFlags(const dom::Node& element, LoadTickets::Ticket ticket) {
    dom::ForEachChildButComments(element, [&](const dom::Node& child) {
        YieldToHost();
        projectLoads_.Check(ticket);
        if (dom::OwnText(child) != L"1") { // a blank beside it makes it another text
            return;
        }
        com::CheckSet(outputs_.Get());
        const auto* output = outputs_->All().FindKey(dom::BaseName(child));
        if (output == nullptr) {
            throw RunTimeError(RunTime::ObjectNotSet);
        }
        (*output)->SetDisplayable(true);
    });
}

STDMETHODIMP CDBAppObject::XMLSaveForInteroperability(IDispatch* parentNode, IDispatch* document) {
    return Do([&] {
        const dom::Document target = dom::DocumentOf(document);
        const dom::Node element(dom::Append(target, dom::NodeOf(parentNode), data_.identity.definitionName));
        AppendFields(target, element, kInteroperableModule, data_);
        if (HasItems(inputs_)) {
            const dom::Node container(dom::Append(target, element, kInputs));
            for (const auto& input : inputs_->All()) {
                const dom::Node node(dom::Append(target, container, input->PointName()));
                AppendFields(target, node, kInteroperableInput, input->Data());
            }
        }
        if (HasItems(outputs_)) {
            const dom::Node container(dom::Append(target, element, kOutputs));
            for (const auto& output : outputs_->All()) {
                const dom::Element node = dom::Append(target, container, output->PointName());
                if (output->Data().isDisplayable) {
                    dom::SetAttribute(node, kIsDisplayable, L"1");
                }
                AppendFields(target, dom::Node(node), kInteroperableOutput, output->Data());
            }
        }
        if (HasItems(attributes_)) {
            const dom::Node container(dom::Append(target, element, kAttributes));
            for (const auto& attribute : attributes_->All()) {
                const dom::Node node(dom::Append(target, container, attribute->PointName()));
                dom::AppendText(target, node, kValue, attribute->Data().value);
            }
        }
    });
}

/// A device stream on its way into the object, from the moment that the object
/// has new collections for it. Another stream, and Destroy, end it.
class CDBAppObject::StreamLoad {
  public:
    /// Throws before it changes anything.
    explicit StreamLoad(CDBAppObject& object)
        : object_(object)
        , inputs_(CDBInputs::Make(object.AsOwner()))
        , outputs_(CDBOutputs::Make(object.AsOwner()))
        , attributes_(object.attributes_ ? com::Ref<CDBAttributes>(object.attributes_)
                                         : CDBAttributes::Make(object.AsOwner()))
        , ticket_(object.streamLoads_.Begin()) {
        // Attributes stay when another stream is loaded, but not those of a
        // stream that is given up for it half-way.
        if (object.attributesBefore_) {
            attributes_->KeepFirst(*object.attributesBefore_);
        }
        object.attributesBefore_ = attributes_->All().Count();
        object.projectLoads_.Begin(); // its flags are those of the outputs that go
        // The old ones end when all three are replaced: ending a point lets go of
        // objects of the host, which may load another stream then.
        const com::Owned<CDBInputs> oldInputs = std::exchange(object.inputs_, inputs_);
        const com::Owned<CDBOutputs> oldOutputs = std::exchange(object.outputs_, outputs_);
        const com::Owned<CDBAttributes> oldAttributes = std::exchange(object.attributes_, attributes_);
    }
    ~StreamLoad() {
        if (object_.streamLoads_.IsLast(ticket_)) {
            object_.attributesBefore_.reset();
        }
    }
    StreamLoad(const StreamLoad&) = delete;
    StreamLoad& operator=(const StreamLoad&) = delete;

    /// Throws when the load is over.
    void GoOn() const { object_.streamLoads_.Check(ticket_); }

    void LoadSections(const dom::Document& stream) const {
        const auto goOn = [this] { GoOn(); };
        LoadSection(stream, kStreamInputs, *inputs_.Get(), &object_.AsOwner(), goOn);
        LoadSection(stream, kStreamOutputs, *outputs_.Get(), &object_.AsOwner(), goOn);
        LoadSection(stream, kStreamAttributes, *attributes_.Get(), &object_.AsOwner(), goOn);
    }

  private:
    CDBAppObject& object_;
    com::Ref<CDBInputs> inputs_;
    com::Ref<CDBOutputs> outputs_;
    com::Ref<CDBAttributes> attributes_;
    LoadTickets::Ticket ticket_;
};

STDMETHODIMP CDBAppObject::LoadFromXmlStream(BSTR xml) {
    const auto kept = This<IAppObject>(); // a message of the host may drop the last reference
    return Do([&] {
        const StreamLoad load(*this);
        const dom::Document stream = dom::NewDocument(dom::kDocumentClass);
        const com::Bstr text(com::View(xml));
        VARIANT_BOOL done = VARIANT_FALSE;
        // A text that is no XML leaves the document empty: the first look-up
        // fails. So it does for a text with a document type.
        com::Call(stream, &IXMLDOMDocument::loadXML, text.Get(), &done);
        if (dom::HasDocumentType(stream)) {
            throw RunTimeError(RunTime::ObjectNotSet);
        }
        load.GoOn();
        LoadStreamHeader(dom::Node(stream));
        data_.identity.definitionName = kStreamDefinition;
        load.LoadSections(stream);
    });
}

void CDBAppObject::LoadStreamHeader(const dom::Node& document) {
    for (const StreamField& field : kStreamHeader) {
        const dom::Node node = dom::Select(document, field.path);
        if (node || field.isRequired) {
            com::CheckSet(node.Get());
            field.take(data_, dom::TextOf(node));
        }
    }
}

} // namespace tam
