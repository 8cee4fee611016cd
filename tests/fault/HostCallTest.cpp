#include "tests/appobject/ShellPatch.h"
#include "tests/fault/ModuleFault.h"
#include "tests/support/MacroDoubles.h"
#include "tests/support/Recorder.h"

#include <olectl.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// Members of a module and its points that call objects of the host, or read a
// file beside the component.

namespace {

using namespace fault;
using namespace modules;
using namespace support;

using Fields = std::vector<std::wstring>;

constexpr CLSID kScriptedClass = {
    0x7A0E3B62, 0x3A0C, 0x4C3B, {0x9B, 0x0E, 0x5D, 0x1F, 0x52, 0x8C, 0x11, 0xA2}};

/// A unit converter that is reached by name alone, as one written in a script.
class ScriptedUnits final : public ByNameDouble {
  public:
    ScriptedUnits() : ByNameDouble({L"Convert", L"Label"}) {}

  private:
    HRESULT Call(std::size_t member, WORD, DISPPARAMS&, VARIANT* result, EXCEPINFO*) override {
        if (member == 0) {
            result->vt = VT_I4; // which the caller has to make a text of
            result->lVal = 70;
        } else {
            result->vt = VT_BSTR;
            result->bstrVal = com::Bstr(L"degF").Detach();
        }
        return S_OK;
    }
};

class HostCallFaultTest : public ModuleFaultTest {
  protected:
    /// A member with a text as its answer, of a module of the small stream.
    Job Asking(const char* name, std::function<HRESULT(std::wstring& answer)> ask) {
        Job job;
        job.name = name;
        job.prepare = [this] { module_ = Loaded(SmallStream()); };
        job.run = [ask] {
            Left left;
            left.result = ask(left.answer);
            return left;
        };
        job.read = [] { return Fields{}; };
        job.release = [this] { module_.Reset(); };
        job.judge = [](const Case& run) { EXPECT_TRUE(run.HasFailed()); };
        return job;
    }
};

TEST_F(HostCallFaultTest, DisplayedNumber) {
    Loop().HostSlots().Replace<Kind::Host, &IUnitConverter::Convert, &IUnitConverter::Label>(
        static_cast<IUnitConverter*>(&Units()));
    Job job = Asking("DispValue of a number", [this](std::wstring& answer) {
        com::Bstr text;
        const HRESULT result = Attribute(module_, L"Attribute_second")->get_DispValue(text.Put());
        answer = text.View();
        return result;
    });
    job.kinds = {Kind::Memory, Kind::Text, Kind::Host};
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, NumberDisplayedByAScriptsConverter) {
    const auto units = com::Ref<ScriptedUnits>::Own(new ScriptedUnits);
    const HostClass scripted(kScriptedClass, kConverterProgId,
                             [units](REFIID iid, void** out) { return units->QueryInterface(iid, out); });
    Loop().HostSlots().Replace<Kind::Host, &IDispatch::GetIDsOfNames, &IDispatch::Invoke>(
        static_cast<IDispatch*>(units.Get()));
    Job job = Asking("DispValue by a converter's names", [this](std::wstring& answer) {
        com::Bstr text;
        const HRESULT result = Attribute(module_, L"Attribute_second")->get_DispValue(text.Put());
        answer = text.View();
        return result;
    });
    job.kinds = {Kind::Memory, Kind::Text, Kind::Host};
    job.judge = [](const Case& run) {
        EXPECT_EQ(run.untouched.answer, L"70 degF");
        EXPECT_TRUE(run.HasFailed());
        EXPECT_TRUE(run.told.empty());
    };
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, ConnectedTypeOfAnOutput) {
    const auto typeOf = [this] {
        return Object(Attribute(module_, L"Attribute_first"), &IAttribute::get_SNVTType);
    };
    module_ = Loaded(SmallStream());
    Loop().HostSlots().Replace<Kind::Host, &ISNVType::get_ID>(typeOf().Get());
    Job job = Asking("ConnectedType of an output", [this, typeOf](std::wstring&) {
        return Output(module_, L"Output_first").As<ISubItemConnable>()->putref_ConnectedType(typeOf().Get());
    });
    job.kinds = {Kind::Text, Kind::Host};
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, ContainsAChannel) {
    const auto item = ChannelItem(L"K7", L"object_of_the_device");
    Loop()
        .HostSlots()
        .Replace<Kind::Host, &ITamInternalAppObject::get_TamDeviceKey,
                 &ITamInternalAppObject::get_TamInternalObjectKey>(item.Get());
    Job job = Asking("Contains", [this, item](std::wstring& answer) {
        VARIANT_BOOL contains = VARIANT_FALSE;
        const HRESULT result = module_.As<ITamObject>()->Contains(item.Get(), &contains);
        answer = contains != VARIANT_FALSE ? L"True" : L"";
        return result;
    });
    job.prepare = [this] { module_ = Loaded(Stream({}, L"<_object_of_the_device_Out/>")); };
    job.kinds = {Kind::Memory, Kind::Host};
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, MergedList) {
    const auto listOf = [this](const wchar_t* input) {
        return Object(Input(module_, input), &IInput::get_SNVTCompatibles);
    };
    {
        module_ = Loaded(SmallStream());
        const auto list = listOf(L"Input_first");
        com::Ref<ICompatibleSNVT> entry;
        com::Check(list->get_Item(1, entry.Put()));
        Loop().HostSlots().Replace<Kind::Host, &ICompatibleSNVTs::get_Count, &ICompatibleSNVTs::get_Item>(
            list.Get());
        Loop().HostSlots().Replace<Kind::Host, &ICompatibleSNVT::get_ID>(entry.Get());
    }
    Job job = Asking("Merge of two lists", [listOf](std::wstring& answer) {
        com::Ref<ICompatibleSNVTs> merged;
        const auto own = listOf(L"Input_first");
        const HRESULT result = own->Merge(own.Get(), merged.Put());
        answer = merged ? std::to_wstring(Long(merged, &ICompatibleSNVTs::get_Count)) : L"";
        return result;
    });
    job.kinds = {Kind::Memory, Kind::Text, Kind::Host};
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, MacroConnection) {
    const ConnectionsDouble host;
    const auto group = host.Add({L"other"});
    host.Add({L"K\\RIN\\Input_first"});
    Slots& slots = Loop().HostSlots();
    slots.Replace<Kind::Host, &IMacroConnections::get_Groups>(host.object->As<IMacroConnections>().Get());
    slots.Replace<Kind::Host, &IMacroConnectionGroups::get_Count, &IMacroConnectionGroups::get_Item>(
        host.groups.object->As<IMacroConnectionGroups>().Get());
    slots.Replace<Kind::Host, &IMacroConnectionGroup::get_Items>(
        group.object->As<IMacroConnectionGroup>().Get());
    slots.Replace<Kind::Host, &IMacroConnectedItems::get_Count, &IMacroConnectedItems::get_Item>(
        group.items.object->As<IMacroConnectedItems>().Get());
    slots.Replace<Kind::Host, &IMacroConnectedItem::get_key>(group.Item(0)->As<IMacroConnectedItem>().Get());
    Job job = Asking("IsMacroConnected", [this](std::wstring& answer) {
        VARIANT_BOOL connected = VARIANT_FALSE;
        const HRESULT result = Input(module_, L"Input_first")->get_IsMacroConnected(&connected);
        answer = connected != VARIANT_FALSE ? L"True" : L"False";
        return result;
    });
    job.prepare = [this, host] {
        module_ = Loaded(SmallStream());
        Put(module_, &IAppObject::put_GlobalKey, L"K");
        EXPECT_EQ(module_->putref_Parent(host.object->As<IDispatch>().Get()), S_OK);
    };
    job.kinds = {Kind::Memory, Kind::Host};
    job.mayFail = false;
    job.judge = [](const Case& run) {
        EXPECT_EQ(run.untouched.answer, L"True");
        // The groups and their count; then of each group itself, its items,
        // their count, the item and its key. What fails of the first group is
        // passed over.
        const bool isOfTheFirstGroup = run.n >= 3 && run.n <= 7;
        const bool isPassedOver = run.kind == Kind::Host && run.mode == Mode::Once && isOfTheFirstGroup;
        EXPECT_EQ(run.left.answer, isPassedOver ? L"True" : L"False");
        EXPECT_TRUE(run.told.empty());
    };
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, ClearedReferences) {
    Job job = Asking("ClearReferences", [this](std::wstring&) { return module_->ClearReferences(); });
    job.prepare = [this] {
        module_ = Loaded(SmallStream());
        for (const wchar_t* input : {L"Input_first", L"Input_second"}) {
            Put(Input(module_, input), &IInput::put_Value, L"Boiler_5");
        }
    };
    job.read = [this] {
        return Fields{Text(Input(module_, L"Input_first"), &IInput::get_Value),
                      Text(Input(module_, L"Input_second"), &IInput::get_Value)};
    };
    job.kinds = {Kind::Text};
    job.mayFail = false;
    job.judge = [](const Case& run) {
        EXPECT_EQ(run.untouched.fields, (Fields{L"000000", L"000000"}));
        const bool isFirst = run.n == 1;
        const bool isSecond = run.n == 2 || run.mode == Mode::ForEver;
        EXPECT_EQ(run.left.fields,
                  (Fields{isFirst ? L"Boiler_5" : L"000000", isSecond ? L"Boiler_5" : L"000000"}));
        EXPECT_TRUE(run.told.empty());
    };
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, OpenedDatasheet) {
    const TextFile sheet(Component::Folder() + L"Sheet.pdf", L"sheet");
    ShellPatch shell(Dll().Module());
    Job job = Asking("ViewDatasheet",
                     [this](std::wstring&) { return module_->ViewDatasheet(com::Variant(L"4660").Get()); });
    job.prepare = [this, &shell] {
        shell.calls.clear();
        module_ = Defined(L"<NAME>Valve</NAME>");
    };
    job.read = [&shell] {
        return shell.calls.empty()
                   ? Fields{L"not opened"}
                   : Fields{L"opened", shell.calls[0].owner != nullptr ? L"owned" : L"not owned"};
    };
    job.kinds = {Kind::Memory, Kind::Text};
    job.mayFail = false;
    job.judge = [](const Case& run) {
        EXPECT_EQ(run.untouched.fields, (Fields{L"opened", L"owned"}));
        const bool isOpened = run.kind == Kind::Text; // without its owner, then
        EXPECT_EQ(run.left.fields, isOpened ? (Fields{L"opened", L"not owned"}) : Fields{L"not opened"});
        EXPECT_TRUE(run.told.empty());
    };
    Loop().Run(job);
}

TEST_F(HostCallFaultTest, ShownView) {
    const auto view = Recorder::Make(L"view", {&__uuidof(IHostView)});
    const auto sheet = Recorder::Make(L"sheet", {&__uuidof(IHostDocument)});
    sheet->Set(L"View", view);
    Loop().HostSlots().Replace<Kind::Host, &IHostDocument::get_View>(sheet->As<IHostDocument>().Get());
    Loop().HostSlots().Replace<Kind::Host, &IHostView::ShowObject>(view->As<IHostView>().Get());
    Job job = Asking("Show", [this](std::wstring&) { return module_->Show(); });
    job.prepare = [this, sheet, view] {
        Calls().clear();
        module_ = NewModule();
        EXPECT_EQ(module_->putref_Parent(sheet->As<IDispatch>().Get()), S_OK);
    };
    job.read = [this, view] {
        return Fields{view->Times(L"ShowObject") != 0 ? L"shown" : L"not shown",
                      Flag(module_, &IAppObject::get_IsPlugInActive) ? L"active" : L"not active"};
    };
    job.kinds = {Kind::Host};
    job.mayFail = false;
    job.reports = {L"Sub IAppObject_Show"};
    job.judge = [](const Case& run) {
        EXPECT_EQ(run.told.size(), 1u);
        EXPECT_EQ(run.left.fields, run.before.fields) << "not shown, and not active any more";
    };
    Loop().Run(job);
}

/// A bitmap of one black point, as a file.
std::wstring OnePoint() {
    std::wstring bytes(58, L'\0');
    bytes.replace(0, 3, L"BM:"); // and the size, 58
    bytes[10] = 54;              // where the point stands
    bytes[14] = 40;              // size of the second header
    bytes[18] = bytes[22] = bytes[26] = 1;
    bytes[28] = 24; // bits
    return bytes;
}

TEST_F(HostCallFaultTest, Icon) {
    const TextFile file(Component::Folder() + L"O_Tam_id.ico", OnePoint());
    const std::wstring ofTheFile = L"picture " + std::to_wstring(PICTYPE_BITMAP);
    const std::wstring ofTheComponent = L"picture " + std::to_wstring(PICTYPE_ICON);
    Job job = Asking("Icon", [this](std::wstring& answer) {
        com::Ref<IDispatch> picture;
        const HRESULT result = module_->get_Icon(picture.Put());
        SHORT type = PICTYPE_NONE;
        const auto face = picture.As<IPicture>();
        answer = face && SUCCEEDED(face->get_Type(&type)) ? L"picture " + std::to_wstring(type) : L"none";
        return result;
    });
    job.kinds = {Kind::Memory, Kind::File};
    job.mayFail = false;
    job.judge = [&](const Case& run) {
        EXPECT_EQ(run.untouched.answer, ofTheFile);
        const bool isNoneLeft = run.mode == Mode::ForEver && run.kind == Kind::File;
        EXPECT_EQ(run.left.answer, isNoneLeft ? L"none" : ofTheComponent);
    };
    Loop().Run(job);
}

} // namespace
