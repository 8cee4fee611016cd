#pragma once

#include "tests/support/Recorder.h"

#include <array>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace support {

/// The tables of slots. On this platform every argument lies on the stack as
/// words and the callee takes them away, so a slot is known by its number and
/// the count of its words.
struct RecorderSlots {
    using Face = Recorder::Face;
    static constexpr std::size_t kCount = 96;
    static constexpr std::size_t kMaximumWords = 6;
    static constexpr std::size_t kFirst = 7;

    static HRESULT STDMETHODCALLTYPE QueryInterface(Face* self, REFIID iid, void** out) {
        return self->owner->QueryInterface(iid, out);
    }
    static ULONG STDMETHODCALLTYPE AddRef(Face* self) { return self->owner->AddRef(); }
    static ULONG STDMETHODCALLTYPE Release(Face* self) { return self->owner->Release(); }
    static HRESULT STDMETHODCALLTYPE GetTypeInfoCount(Face*, UINT* count) {
        *count = 0;
        return S_OK;
    }
    static HRESULT STDMETHODCALLTYPE GetTypeInfo(Face*, UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }
    static HRESULT STDMETHODCALLTYPE GetIDsOfNames(Face* self, REFIID, LPOLESTR* names, UINT, LCID,
                                                   DISPID* ids) {
        if (self->owner->names_) {
            return self->owner->names_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, ids);
        }
        return self->owner->IdOf(names[0], ids);
    }
    static HRESULT STDMETHODCALLTYPE Invoke(Face* self, DISPID id, REFIID, LCID, WORD flags,
                                            DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                                            UINT* argumentError) {
        if (self->owner->names_) {
            return self->owner->names_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, params, result,
                                               exception, argumentError);
        }
        return self->owner->InvokeById(id, flags, params, result, exception, argumentError);
    }

    template <std::size_t>
    using Word = DWORD;

    template <std::size_t Slot, class Indexes>
    struct Thunk;
    template <std::size_t Slot, std::size_t... Index>
    struct Thunk<Slot, std::index_sequence<Index...>> {
        static HRESULT STDMETHODCALLTYPE Enter(Face* self, Word<Index>... words) {
            const std::array<DWORD, sizeof...(Index) + 1> all{words..., 0};
            return self->owner->Called(*self->info, Slot, all.data());
        }
    };

    using Row = std::array<const void*, kMaximumWords + 1>;
    template <std::size_t Slot, std::size_t... Words>
    static Row MakeRow(std::index_sequence<Words...>) {
        return {reinterpret_cast<const void*>(&Thunk<Slot, std::make_index_sequence<Words>>::Enter)...};
    }
    template <std::size_t... Slot>
    static std::array<Row, kCount> MakeRows(std::index_sequence<Slot...>) {
        return {MakeRow<Slot>(std::make_index_sequence<kMaximumWords + 1>())...};
    }

    /// The table of one interface; made once.
    static const void* const* TableOf(const Interface& face) {
        static const auto rows = MakeRows(std::make_index_sequence<kCount>());
        static std::map<const Interface*, std::vector<const void*>> tables;
        std::vector<const void*>& table = tables[&face];
        if (table.empty()) {
            table = {reinterpret_cast<const void*>(&QueryInterface),
                     reinterpret_cast<const void*>(&AddRef),
                     reinterpret_cast<const void*>(&Release),
                     reinterpret_cast<const void*>(&GetTypeInfoCount),
                     reinterpret_cast<const void*>(&GetTypeInfo),
                     reinterpret_cast<const void*>(&GetIDsOfNames),
                     reinterpret_cast<const void*>(&Invoke)};
            for (const Member& member : face.members) {
                table.push_back(rows.at(member.slot).at(member.Words()));
            }
        }
        return table.data();
    }
};

} // namespace support
