#pragma once

#include "host/MacroConnections.h"
#include "host/ProjectView.h"

namespace orv {

/// The project that an application object has as its parent: a document with
/// a view, and the macro connections of its points.
class Project final : public com::DualObject<Project, IProject, IMacroConnections, IHostDocument> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::Project); }

    // IProject
    HRESULT STDMETHODCALLTYPE AddGroup(IProjectGroup** group) override {
        return Get(group, [&] {
            auto added = MacroGroup::Make();
            groups_->Add(added);
            return added;
        });
    }
    HRESULT STDMETHODCALLTYPE ClearGroups() override {
        return Do([&] { groups_->Clear(); });
    }

    // IMacroConnections
    HRESULT STDMETHODCALLTYPE get_Groups(IMacroConnectionGroups** value) override {
        return Answer(value, groups_);
    }

    // IHostDocument
    HRESULT STDMETHODCALLTYPE get_View(IDispatch** value) override {
        return Get(value, [&] { return view_->This<IHostView>(); });
    }

  private:
    com::Ref<MacroGroups> groups_ = MacroGroups::Make();
    com::Ref<ProjectView> view_ = ProjectView::Make();
};

} // namespace orv
