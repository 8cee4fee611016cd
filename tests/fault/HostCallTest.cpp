#include "tests/fault/ModuleFaultTest.h"
#include "tests/module/HostView.h"

#include <olectl.h>

// Members of a module and its points that call objects of the host, or read a
// file beside the component.

namespace {

using namespace fault;
using namespace modules;
using namespace support;

using Fields = std::vector<std::wstring>;

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

TEST_F(HostCallFaultTest, ContainsAChannel) {
    const auto item = ChannelItem::Make(L"K7", L"object_of_the_device");
    Loop()
        .HostSlots()
        .Replace<Kind::Host, &ITamInternalAppObject::get_TamDeviceKey,
                 &ITamInternalAppObject::get_TamInternalObjectKey>(
            static_cast<ITamInternalAppObject*>(item.Get()));
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

TEST_F(HostCallFaultTest, ShownView) {
    const auto view = View::Make();
    const auto sheet = Sheet::Make();
    sheet->view = com::Ref<IDispatch>(view.Get());
    Loop().HostSlots().Replace<Kind::Host, &IHostDocument::get_View>(
        static_cast<IHostDocument*>(sheet.Get()));
    Loop().HostSlots().Replace<Kind::Host, &IHostView::ShowObject>(static_cast<IHostView*>(view.Get()));
    Job job = Asking("Show", [this](std::wstring&) { return module_->Show(); });
    job.prepare = [this, sheet, view] {
        view->shown = 0;
        module_ = NewModule();
        EXPECT_EQ(module_->putref_Parent(sheet.Get()), S_OK);
    };
    job.read = [this, view] {
        return Fields{view->shown != 0 ? L"shown" : L"not shown",
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
