// The jobs one by one: what is made ready, what the clock runs over, the floor, the script.

#include "performance/Floor.h"
#include "performance/Jobs.h"
#include "performance/Material.h"

#include "com/Dom.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace benchmark {

using namespace support;

namespace {

/// A reference that connects every input.
const std::wstring kReference = PointName(1);
constexpr long kLookUps = 10000;
/// As many inputs as the smallest size has: each size asks for as many
/// different ones, spread over the collection. So a figure that grows is the
/// look-up's own, not that of a processor whose cache holds fewer points.
constexpr long kAsked = 33;

Document EmptyParent() {
    return Parse(L"<p/>");
}

template <class I, class Collection>
std::vector<com::Ref<I>> ItemsOf(const com::Ref<Collection>& collection) {
    long count = 0;
    com::Check(collection->get_Count(&count));
    std::vector<com::Ref<I>> items;
    for (long i = 1; i <= count; ++i) {
        items.push_back(Item(collection, &Collection::get_Item, std::to_wstring(i)));
    }
    return items;
}

template <class I>
void ReadKeys(const std::vector<com::Ref<I>>& items) {
    com::Bstr key;
    for (const com::Ref<I>& item : items) {
        com::Check(item->get_GlobalKey(key.Put()));
        com::Check(item->get_ExtendedKey(key.Put()));
    }
}

} // namespace

Trial Jobs::Create(const Size& size) {
    return {"create and Init",
            size.points,
            {[this] { module_.Reset(); }, [this] { module_ = NewModule(true); }},
            {{}, [] { ReadDefinition(kConverterProgId, DefinitionPath()); }},
            {[this] { document_ = NewDocument(); },
             [this] {
                 const com::Bstr path(DefinitionPath());
                 CallScript(L"LoadDefinition", {Argument(document_.Get()), Argument(path)});
             }},
            0,
            0,
            true};
}

Trial Jobs::Load(const Size& size) {
    return {"LoadFromXmlStream",
            size.points,
            {[this] { module_ = NewModule(true); }, [&, this] { LoadStream(module_, size.stream); }},
            {{}, [&, this] { ReadStream(size.stream, catalogue_, size.definition, size.points); }},
            {[this] {
                 module_.Reset();
                 const com::Bstr path(DefinitionPath());
                 CallScript(L"LoadDefinition", {Argument(NewDocument().Get()), Argument(path)});
                 document_ = NewDocument();
             },
             [&, this] {
                 const com::Bstr text(size.stream);
                 CallScript(L"LoadStream", {Argument(document_.Get()), Argument(text)});
             }},
            size.points,
            size.points};
}

Trial Jobs::Save(const Size& size) {
    const auto outputs = Object(loaded_, &IAppObject::get_Outputs);
    for (const std::wstring& name : size.outputs) {
        com::Check(Item(outputs, &IOutputs::get_Item, name)->put_IsDisplayable(VARIANT_TRUE));
    }
    CallScript(L"ShowOutputs", {});
    const auto prepare = [this] {
        document_ = EmptyParent();
        root_ = Root(document_);
    };
    return {"XMLSave and XmlLoad",
            size.points,
            {prepare,
             [this] {
                 com::Check(loaded_->XMLSave(root_.Get(), document_.Get()));
                 com::Ref<IXMLDOMNode> saved;
                 com::Check(root_->get_firstChild(saved.Put()));
                 com::Check(loaded_->XmlLoad(saved.Get()));
             }},
            {prepare, [&, this] { BuildProject(document_, size.outputs); }},
            {prepare, [this] {
                 CallScript(L"SaveAndLoad", {Argument(document_.Get()), Argument(root_.Get())});
             }}};
}

Trial Jobs::Flags(const Size& size) {
    std::wstring flags;
    for (const std::wstring& name : size.outputs) {
        flags += L"<" + name + L">1</" + name + L">";
    }
    const Document saved = Parse(L"<O_Tam_id><OutReferences>" + flags + L"</OutReferences></O_Tam_id>");
    const auto root = Root(saved);
    return {"XmlLoad of display flags",
            size.points,
            {{}, [this, root] { com::Check(loaded_->XmlLoad(root.Get())); }},
            {{}, [root] { ReadFlags(root); }},
            {{}, [this, root] { CallScript(L"LoadFlags", {Argument(root.Get())}); }},
            size.points,
            static_cast<long>(size.outputs.size()),
            true};
}

Trial Jobs::Interop(const Size& size) {
    const auto prepare = [this] {
        document_ = EmptyParent();
        root_ = Root(document_);
    };
    return {
        "interoperability save",
        size.points,
        {prepare, [this] { com::Check(loaded_->XMLSaveForInteroperability(root_.Get(), document_.Get())); }},
        {prepare, [&, this] { BuildInterop(document_, size.names); }},
        {prepare, [this] {
             CallScript(L"SaveInterop", {Argument(document_.Get()), Argument(root_.Get())});
         }}};
}

Trial Jobs::Export(const Size& size) {
    const auto inputs = Object(loaded_, &IAppObject::get_Inputs);
    for (long i = 1; i <= size.inputs; ++i) {
        com::Check(Put(Item(inputs, &IInputs::get_Item, std::to_wstring(i)), &IInput::put_Value, kReference));
    }
    return {"Stream",
            size.points,
            {[this] { compiler_->calls.clear(); },
             [this] {
                 com::Bstr stream;
                 com::Check(loaded_->get_Stream(stream.Put()));
             }},
            {{}, [&] { BuildExport(kCompilerProgId, kDatabaseLocationClass, size.names, kReference); }},
            {[this] { document_ = NewDocument(); },
             [this] {
                 const com::Bstr reference(kReference);
                 CallScript(L"Export", {Argument(document_.Get()), Argument(reference)});
             }}};
}

Trial Jobs::Keys(const Size& size) {
    const auto inputs = ItemsOf<IInput>(Object(loaded_, &IAppObject::get_Inputs));
    const auto outputs = ItemsOf<IOutput>(Object(loaded_, &IAppObject::get_Outputs));
    const auto attributes = ItemsOf<IAttribute>(Object(loaded_, &IAppObject::get_Attributes));
    const auto objects = std::make_shared<KeyedObjects>(size.names);
    return {"keys set and read",
            size.points,
            {{},
             [=, this] {
                 const com::Bstr key(kKey);
                 com::Check(loaded_->put_GlobalKey(key.Get()));
                 com::Check(loaded_->put_ExtendedKey(key.Get()));
                 ReadKeys(inputs);
                 ReadKeys(outputs);
                 ReadKeys(attributes);
             }},
            {{},
             [objects] {
                 objects->Set(kKey);
                 objects->Read();
             }},
            {{}, [this] {
                 const com::Bstr key(kKey);
                 CallScript(L"SetKeys", {Argument(key)});
             }}};
}

Trial Jobs::LookUps(const Size& size, bool byKey) {
    const auto texts = std::make_shared<std::vector<com::Bstr>>();
    std::wstring asked;
    for (long i = 0; i < kAsked; ++i) {
        const long at = i * size.inputs / kAsked;
        const std::wstring text = byKey ? PointName(at * 3) : SixDigits(at + 1);
        texts->emplace_back(text);
        asked += L"<t>" + text + L"</t>";
    }
    const Document document = Parse(L"<asked>" + asked + L"</asked>");
    CallScript(L"Ask", {Argument(Root(document).Get())});
    const auto inputs = Object(loaded_, &IAppObject::get_Inputs);
    const std::wstring procedure = byKey ? L"LookUpByKey" : L"LookUpByPosition";
    return {byKey ? "10,000 look-ups by key" : "10,000 look-ups by position",
            size.points,
            {{},
             [inputs, texts] {
                 std::size_t at = 0;
                 for (long i = 0; i < kLookUps; ++i) {
                     com::Ref<IInput> input;
                     com::Check(inputs->get_Item((*texts)[at].Get(), input.Put()));
                     com::CheckSet(input.Get());
                     at = at + 1 == texts->size() ? 0 : at + 1;
                 }
             }},
            {},
            {{}, [this, procedure] { CallScript(procedure, {Argument(kLookUps)}); }},
            kLookUps};
}

Trial Jobs::Visits(const Size& size) {
    const auto inputs = Object(loaded_, &IAppObject::get_Inputs);
    // Whole walks: an enumerator holds all items from its start on.
    const long walks = std::max(1L, kLookUps / size.inputs);
    const long visits = walks * size.inputs;
    return {"items by For Each",
            size.points,
            {{},
             [inputs, walks] {
                 for (long walk = 0; walk < walks; ++walk) {
                     com::Ref<IUnknown> unknown;
                     com::Check(inputs->get_NewEnum(unknown.Put()));
                     const auto items = unknown.As<IEnumVARIANT>();
                     for (com::Variant item; items->Next(1, item.Put(), nullptr) == S_OK;) {
                     }
                 }
             }},
            {},
            {{}, [this, visits] { CallScript(L"VisitEach", {Argument(visits)}); }},
            visits};
}

Trial Jobs::Reorder(const Size& size) {
    std::wstring saved;
    for (long i = size.points - 1; i >= 0; --i) {
        saved += L"<" + PointName(i) + L"/>";
    }
    const auto document = Parse(L"<Inputs>" + saved + L"</Inputs>");
    const auto root = Root(document);
    const std::wstring stream = InputStreamText(size.points);
    // The first order is made again before each run.
    std::wstring order;
    for (const std::wstring& name : size.names) {
        order += L"<" + name + L"/>";
    }
    const Document forward = Parse(L"<Inputs>" + order + L"</Inputs>");
    module_ = NewModule(false);
    LoadStream(module_, stream);
    if (size.points < kMany) {
        LoadScript(stream);
    }
    const auto reorder = [](const com::Ref<IAppObject>& module, const com::Ref<IXMLDOMElement>& element) {
        com::Check(Object(module, &IAppObject::get_Inputs).As<_CDBInputs>()->XmlLoad(element.Get()));
    };
    return {"reorder, reversed",
            size.points,
            {[this, reorder, forward] { reorder(module_, Root(forward)); },
             [this, reorder, root] { reorder(module_, root); }},
            {{}, [root] { ReadNames(root); }},
            {{}, [this, root] { CallScript(L"Reorder", {Argument(root.Get())}); }},
            size.points,
            size.points,
            true};
}

} // namespace benchmark
