#include "com/Enumerator.h"

#include "com/Boundary.h"
#include "com/Counted.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace com {

namespace {

using Items = std::shared_ptr<const std::vector<Ref<IDispatch>>>;

class Enumerator final : public Counted<IEnumVARIANT> {
  public:
    Enumerator(Items items, std::size_t position) : items_(std::move(items)), position_(position) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* out, ULONG* fetched) override {
        if (out == nullptr || (fetched == nullptr && wanted != 1)) {
            return E_POINTER;
        }
        ULONG given = 0;
        for (; given < wanted && position_ < items_->size(); ++given, ++position_) {
            VariantInit(&out[given]);
            out[given].vt = VT_DISPATCH;
            out[given].pdispVal = Ref<IDispatch>((*items_)[position_]).Detach();
        }
        for (ULONG rest = given; rest < wanted; ++rest) {
            VariantInit(&out[rest]);
        }
        if (fetched != nullptr) {
            *fetched = given;
        }
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = items_->size() - position_;
        position_ += std::min<std::size_t>(left, count);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        position_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** out) override {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = nullptr;
        return Guard(IID_IEnumVARIANT, [&] { *out = new Enumerator(items_, position_); });
    }

  private:
    Items items_;
    std::size_t position_;
};

} // namespace

Ref<IUnknown> MakeEnumerator(std::vector<Ref<IDispatch>> items) {
    auto shared = std::make_shared<const std::vector<Ref<IDispatch>>>(std::move(items));
    return Ref<IUnknown>::Own(new Enumerator(std::move(shared), 0));
}

void ForEachItem(IEnumVARIANT& items, const std::function<bool(Variant& item)>& visit) {
    for (;;) {
        Variant item;
        ULONG fetched = 0;
        if (Call(items, &IEnumVARIANT::Next, 1u, item.Put(), &fetched) != S_OK || !visit(item)) {
            return;
        }
    }
}

} // namespace com
