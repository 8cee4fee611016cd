#include "tests/com/Subjects.h"
#include "tests/support/ImportPatch.h"

#include <array>
#include <cstddef>

// What goes wrong in objects of other makers while the component tells of a
// failure.

using namespace contract;

namespace {

constexpr const wchar_t* kTheirs = L"Theirs alone";

/// The document of a parser that does not know the newest property and says
/// so, and then fails without a word.
class OldParser {
  public:
    explicit OldParser(HMODULE component)
        : create_(component, "CoCreateInstance", reinterpret_cast<const void*>(&Create)) {}

  private:
    // IUnknown 3, IDispatch 4, IXMLDOMNode 36, IXMLDOMDocument 33 and
    // IXMLDOMDocument2 7 members, with room for an implementation's later ones.
    static constexpr std::size_t kMembers = 90;
    static constexpr std::size_t kLoadXml = 65;
    static constexpr std::size_t kSetProperty = 80;
    using Table = std::array<void*, kMembers>;

    static HRESULT WINAPI Create(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** out) {
        const HRESULT result = CoCreateInstance(clsid, outer, context, iid, out);
        if (SUCCEEDED(result) && iid == __uuidof(IXMLDOMDocument2)) {
            auto** const table = static_cast<Table**>(*out);
            original_ = *table;
            changed_ = *original_;
            changed_[kSetProperty] = reinterpret_cast<void*>(&SetProperty);
            changed_[kLoadXml] = reinterpret_cast<void*>(&LoadXml);
            *table = &changed_;
        }
        return result;
    }
    static HRESULT STDMETHODCALLTYPE SetProperty(IXMLDOMDocument2* document, BSTR name, VARIANT value) {
        if (com::View(name) == L"ProhibitDTD") {
            com::Ref<ICreateErrorInfo> create;
            com::Check(CreateErrorInfo(create.Put()));
            create->SetDescription(com::Bstr(kTheirs).Get());
            SetErrorInfo(0, create.As<IErrorInfo>().Get());
            return E_FAIL;
        }
        using Function = HRESULT(STDMETHODCALLTYPE*)(IXMLDOMDocument2*, BSTR, VARIANT);
        return reinterpret_cast<Function>((*original_)[kSetProperty])(document, name, value);
    }
    static HRESULT STDMETHODCALLTYPE LoadXml(IXMLDOMDocument2*, BSTR, VARIANT_BOOL* done) {
        *done = VARIANT_FALSE;
        return E_ABORT;
    }

    static inline Table* original_ = nullptr;
    /// Outlives every document.
    static inline Table changed_{};
    support::ImportPatch create_;
};

/// An error object that cannot tell its texts, and leaves in the places for
/// them what nobody may free.
class Speechless final : public IErrorInfo {
  public:
    static inline OLECHAR kNobodys[] = L"not to be freed";

    virtual ~Speechless() = default;
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        *out = iid == IID_IUnknown || iid == IID_IErrorInfo ? this : nullptr;
        return *out != nullptr ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetGUID(GUID*) override { return E_FAIL; }
    STDMETHODIMP GetSource(BSTR* source) override { return Fail(source); }
    STDMETHODIMP GetDescription(BSTR* description) override { return Fail(description); }
    STDMETHODIMP GetHelpFile(BSTR*) override { return E_FAIL; }
    STDMETHODIMP GetHelpContext(DWORD*) override { return E_FAIL; }

  private:
    static HRESULT Fail(BSTR* text) {
        *text = kNobodys;
        return E_FAIL;
    }
};

/// A host's document that fails with an error object of this kind.
class Host final : public com::DualObject<Host, IHostDocument> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    STDMETHODIMP get_View(IDispatch** value) override {
        *value = nullptr;
        SetErrorInfo(0, &error_);
        return E_ACCESSDENIED;
    }

  private:
    Speechless error_;
};

/// Counts the texts freed that nobody may free.
class Frees {
  public:
    explicit Frees(HMODULE component)
        : free_(component, "SysFreeString", reinterpret_cast<const void*>(&Free)) {
        wrong_ = 0;
    }
    static int Wrong() { return wrong_; }

  private:
    static void WINAPI Free(BSTR text) {
        if (text == Speechless::kNobodys) {
            ++wrong_;
        } else {
            SysFreeString(text);
        }
    }

    static inline int wrong_ = 0;
    support::ImportPatch free_;
};

class UnusualErrorsTest : public ContractTest {};

TEST_F(UnusualErrorsTest, TellsNoFailureInTheWordsOfAnotherNorInItsOwn) {
    const auto module = NewModule().As<ITamObject>();
    const OldParser parser(Dll().Module());
    const com::Bstr stream(support::Stream({}));
    EXPECT_EQ(module->LoadFromXmlStream(stream.Get()), E_ABORT);
    EXPECT_FALSE(support::HasLastError());
}

TEST_F(UnusualErrorsTest, FreesNothingThatAFailingErrorObjectLeft) {
    const auto module = NewModule();
    const auto host = Host::Make();
    ASSERT_EQ(module->putref_Parent(static_cast<IHostDocument*>(host.Get())), S_OK);
    {
        const Frees frees(Dll().Module());
        EXPECT_EQ(module->Show(), S_OK);
        EXPECT_EQ(frees.Wrong(), 0);
    }
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    support::ExpectReport(boxes[0], {}, L"IAppObject_Show Class Module CDBAppObject", L"Sub IAppObject_Show");
    ASSERT_EQ(module->putref_Parent(nullptr), S_OK);
    SetErrorInfo(0, nullptr);
}

} // namespace
