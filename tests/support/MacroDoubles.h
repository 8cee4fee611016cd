#pragma once

#include "tests/support/Recorder.h"

#include <OrvDBFaces.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Doubles of a host's macro connections: groups of connected items, each with
// the key of a point.

namespace support {

/// A list of the host's, which gives its members by position from 1. An empty
/// reference is a position that has none.
struct ListDouble {
    using Members = std::vector<com::Ref<Recorder>>;

    ListDouble(std::wstring label, const IID& face) : object(Recorder::Make(std::move(label), {&face})) {
        object->On(L"get Count", [held = members](const Invocation& call) {
            return call.Answer(com::Variant(static_cast<long>(held->size())).Get());
        });
        object->On(L"get Item", [held = members, code = itemCode](const Invocation& call) {
            const long position = call.Input(0).lVal;
            if (position < 1 || position > static_cast<long>(held->size())) {
                return DISP_E_BADINDEX;
            }
            const HRESULT answered = call.Answer(held->at(static_cast<std::size_t>(position) - 1));
            return FAILED(*code) ? *code : answered;
        });
        object->RefuseOthers();
    }

    std::shared_ptr<Members> members = std::make_shared<Members>();
    /// What giving a member answers, which is given all the same.
    std::shared_ptr<HRESULT> itemCode = std::make_shared<HRESULT>(S_OK);
    com::Ref<Recorder> object;
};

/// A group of items with these keys.
struct GroupDouble {
    explicit GroupDouble(std::initializer_list<const wchar_t*> keys) {
        for (const wchar_t* key : keys) {
            items.members->push_back(Recorder::Make(L"item", {&__uuidof(IMacroConnectedItem)}));
            items.members->back()->Set(L"Key", key);
        }
        object->Set(L"Items", items.object);
    }
    com::Ref<Recorder>& Item(std::size_t index) const { return items.members->at(index); }

    ListDouble items{L"items", __uuidof(IMacroConnectedItems)};
    com::Ref<Recorder> object = Recorder::Make(L"group", {&__uuidof(IMacroConnectionGroup)});
};

/// The project that has the groups.
struct ConnectionsDouble {
    ConnectionsDouble() { object->Set(L"Groups", groups.object); }
    GroupDouble Add(std::initializer_list<const wchar_t*> keys) const {
        GroupDouble group(keys);
        groups.members->push_back(group.object);
        return group;
    }

    ListDouble groups{L"groups", __uuidof(IMacroConnectionGroups)};
    com::Ref<Recorder> object = Recorder::Make(L"connections", {&__uuidof(IMacroConnections)});
};

} // namespace support
