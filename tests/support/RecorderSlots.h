#pragma once

#include "tests/support/Recorder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace support {

constexpr bool kIs64Bit = sizeof(void*) == 8;

/// The tables of slots. In 32-bit code every argument lies on the stack as words
/// and the callee takes them away, so a slot is known by its number and the count
/// of its words. In 64-bit code every argument is one word; the first three stand
/// in registers, and a number with a fraction in a register of its own kind. No
/// host interface has one but as the first argument.
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
    using Word = ULONG_PTR;

    template <std::size_t Slot, class Indexes>
    struct Thunk;
    template <std::size_t Slot, std::size_t... Index>
    struct Thunk<Slot, std::index_sequence<Index...>> {
        static HRESULT STDMETHODCALLTYPE Enter(Face* self, Word<Index>... words) {
            const std::array<ULONG_PTR, sizeof...(Index) + 1> all{words..., 0};
            return self->owner->Called(*self->info, Slot, all.data());
        }
    };
    template <std::size_t Slot>
    static HRESULT STDMETHODCALLTYPE EnterWithNumber(Face* self, double number, ULONG_PTR second) {
        std::array<ULONG_PTR, 2> all{0, second};
        std::memcpy(all.data(), &number, sizeof(ULONG_PTR));
        return self->owner->Called(*self->info, Slot, all.data());
    }

    /// By the count of words; then the one whose first word is a number.
    using Row = std::array<const void*, kMaximumWords + 2>;
    template <std::size_t Slot, std::size_t... Words>
    static Row MakeRow(std::index_sequence<Words...>) {
        return {reinterpret_cast<const void*>(&Thunk<Slot, std::make_index_sequence<Words>>::Enter)...,
                reinterpret_cast<const void*>(&EnterWithNumber<Slot>)};
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
                table.push_back(rows.at(member.slot).at(Entry(member)));
            }
        }
        return table.data();
    }

    /// Which thunk of a row a member needs.
    static std::size_t Entry(const Member& member) {
        const auto isNumber = [](const Parameter& parameter) {
            return parameter.type == VT_R8 && !parameter.byReference;
        };
        const auto count = std::count_if(member.parameters.begin(), member.parameters.end(), isNumber);
        if (!kIs64Bit || count == 0) {
            return member.Words();
        }
        if (count > 1 || !isNumber(member.parameters.front()) || member.Words() > 2) {
            throw std::logic_error("no thunk takes this member's arguments");
        }
        return kMaximumWords + 1;
    }
};

} // namespace support
