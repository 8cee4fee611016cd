#include "com/LateBound.h"
#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"
#include "tests/support/ImportPatch.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

using namespace contract;

namespace {

/// A device context that keeps on which threads it was asked.
class Witness final : public com::DualObject<Witness, IDeviceContext> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    std::vector<DWORD> threads;

    STDMETHODIMP get_Document(IDispatch** value) override {
        threads.push_back(GetCurrentThreadId());
        return context_->get_Document(value);
    }
    STDMETHODIMP get_FirmwareVersion(BSTR* value) override {
        threads.push_back(GetCurrentThreadId());
        return context_->get_FirmwareVersion(value);
    }

  private:
    com::Ref<IDeviceContext> context_ = HostContext();
};

/// Keeps on which threads members of a DLL's objects run: each begins with
/// putting away what an earlier call left as its error.
class Runs {
  public:
    explicit Runs(HMODULE dll) : set_(dll, "SetErrorInfo", reinterpret_cast<const void*>(&Set)) {
        threads_.clear();
    }
    static const std::set<DWORD>& Threads() { return threads_; }

  private:
    static HRESULT WINAPI Set(ULONG reserved, IErrorInfo* info) {
        const std::lock_guard guard(lock_);
        threads_.insert(GetCurrentThreadId());
        return SetErrorInfo(reserved, info);
    }

    static inline std::mutex lock_;
    static inline std::set<DWORD> threads_;
    support::ImportPatch set_;
};

/// Objects live in the test's apartment, which waits in its message loop while
/// a second apartment works with them.
class ApartmentTest : public ContractTest {
  protected:
    using Work = std::function<void(const com::Ref<IDispatch>& script)>;
    /// Runs the work in a new apartment, on its own pointer to the object.
    void Elsewhere(COINIT kind, const com::Ref<IDispatch>& object, const Work& work) {
        IStream* stream = nullptr;
        ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object.Get(), &stream), S_OK);
        HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        std::thread worker([&] {
            EXPECT_EQ(CoInitializeEx(nullptr, kind), S_OK);
            com::Ref<IDispatch> script;
            EXPECT_EQ(CoGetInterfaceAndReleaseStream(stream, IID_IDispatch, script.PutVoid()), S_OK);
            if (script) {
                EXPECT_NE(script, object) << "a pointer of another apartment must not be used";
                work(script);
            }
            script.Reset();
            CoUninitialize();
            SetEvent(done);
        });
        DWORD index = 0;
        EXPECT_EQ(CoWaitForMultipleHandles(0, kLongest, 1, &done, &index), S_OK);
        worker.join();
        CloseHandle(done);
    }
    void ElsewhereInEachKind(const com::Ref<IDispatch>& object, const Work& work) {
        for (const COINIT kind : {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED}) {
            SCOPED_TRACE(kind == COINIT_APARTMENTTHREADED ? "apartment of one thread" : "free threads");
            Elsewhere(kind, object, work);
        }
    }
    static bool HasMember(const Subject& subject, DISPID id) {
        const auto& faces = InterfacesOf(subject);
        return std::any_of(faces.begin(), faces.end(), [&](const Interface& face) {
            return std::any_of(face.members.begin(), face.members.end(),
                               [&](const Member& member) { return member.id == id; });
        });
    }
    /// Reads every property that takes no argument; where there is none, calls
    /// the first member, which takes a text.
    static void UseAll(const Subject& subject, const com::Ref<IDispatch>& script) {
        bool isRead = false;
        for (const Interface& face : InterfacesOf(subject)) {
            for (const Member& member : face.members) {
                DISPID id = DISPID_UNKNOWN;
                EXPECT_EQ(IdOf(script.Get(), member.name, id), S_OK);
                if (member.kind == INVOKE_PROPERTYGET && member.Given() == 0) {
                    ExpectCalled(face, member, script, {});
                    isRead = true;
                }
            }
        }
        if (!isRead) {
            const com::Variant text(std::wstring_view(L"1"));
            const Interface& face = InterfacesOf(subject).front();
            ExpectCalled(face, face.members.front(), script, {text.Get()});
        }
    }
    static void ExpectCalled(const Interface& face, const Member& member, const com::Ref<IDispatch>& script,
                             std::vector<VARIANT> arguments) {
        com::Variant result;
        const HRESULT answer = support::Invoke(script.Get(), member.id, static_cast<WORD>(member.kind),
                                               arguments, result.Put(), nullptr);
        EXPECT_TRUE(answer == S_OK || answer == DISP_E_EXCEPTION) << Title(face, member);
    }
    static HRESULT Call(const com::Ref<IDispatch>& script, const wchar_t* name, const std::wstring& argument,
                        com::Variant& result, EXCEPINFO* exception = nullptr) {
        DISPID id = DISPID_UNKNOWN;
        const HRESULT known = IdOf(script.Get(), name, id);
        com::Variant text(argument);
        std::vector<VARIANT> values{text.Get()};
        return FAILED(known)
                   ? known
                   : support::Invoke(script.Get(), id, DISPATCH_METHOD, values, result.Put(), exception);
    }

  private:
    /// For a call that never comes back.
    static constexpr DWORD kLongest = 60000;
};

TEST_F(ApartmentTest, RunsACallOnTheThreadOfTheObject) {
    const DWORD here = GetCurrentThreadId();
    for (const COINIT kind : {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED}) {
        const auto manager = Dll().Create<ITamObjectManager>(__uuidof(::TamObjectManager));
        const auto witness = Witness::Make();
        ASSERT_EQ(manager->Init(static_cast<IDeviceContext*>(witness.Get())), S_OK);
        Elsewhere(kind, manager, [&](const com::Ref<IDispatch>& script) {
            EXPECT_NE(GetCurrentThreadId(), here);
            com::Variant answer;
            EXPECT_EQ(Call(script, L"IsTamInternalObject", L"o_tam_ai_id", answer), S_OK);
            EXPECT_EQ(answer.Get().vt, VT_BOOL);
            EXPECT_EQ(answer.Get().boolVal, VARIANT_TRUE);
        });
        EXPECT_EQ(witness->threads, (std::vector<DWORD>{here, here})) << "asked for both, on this thread";
    }
}

TEST_F(ApartmentTest, ShowsItsBoxesOnTheThreadOfTheObject) {
    ElsewhereInEachKind(NewModule(), [](const com::Ref<IDispatch>& script) {
        DISPID id = DISPID_UNKNOWN;
        EXPECT_EQ(IdOf(script.Get(), L"ShowAbout", id), S_OK);
        std::vector<VARIANT> none;
        EXPECT_EQ(support::Invoke(script.Get(), id, DISPATCH_METHOD, none, nullptr, nullptr), S_OK);
    });
    EXPECT_EQ(Boxes().size(), 2u) << "the watcher sees this thread's boxes alone";
}

TEST_F(ApartmentTest, TellsAFailureToTheOtherApartment) {
    ElsewhereInEachKind(NewModule(), [](const com::Ref<IDispatch>& script) {
        com::Variant result;
        EXCEPINFO exception{};
        EXPECT_EQ(Call(script, L"LoadFromXmlStream", L"no XML", result, &exception), DISP_E_EXCEPTION);
        EXPECT_EQ(exception.scode, kObjectNotSet);
        EXPECT_EQ(com::Text(exception.bstrDescription), kObjectNotSetText);
        EXPECT_EQ(com::Text(exception.bstrSource), L"O_Tam_id");
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrHelpFile);
    });
}

TEST_F(ApartmentTest, MarshalsEveryObjectOfEveryClass) {
    for (const Subject& subject : Scriptables()) {
        SCOPED_TRACE(subject.name);
        const Runs own(Dll().Module());
        const Runs services(GetModuleHandleW(L"OrvHost.dll"));
        Elsewhere(COINIT_MULTITHREADED, subject.object.As<IDispatch>(),
                  [&](const com::Ref<IDispatch>& script) { UseAll(subject, script); });
        Boxes(); // what reading shows is another test's
        EXPECT_EQ(Runs::Threads(), std::set<DWORD>{GetCurrentThreadId()});
    }
}

TEST_F(ApartmentTest, EnumeratesInAnotherApartment) {
    std::size_t count = 0;
    for (const Subject& subject : Scriptables()) {
        if (!HasMember(subject, DISPID_NEWENUM)) {
            continue;
        }
        SCOPED_TRACE(subject.name);
        ElsewhereInEachKind(subject.object.As<IDispatch>(), [](const com::Ref<IDispatch>& script) {
            std::vector<VARIANT> none;
            com::Variant result;
            ASSERT_EQ(support::Invoke(script.Get(), DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                      none, result.Put(), nullptr),
                      S_OK);
            const auto loop = com::Query<IEnumVARIANT>(result.Get().punkVal);
            ASSERT_TRUE(loop);
            for (int i = 0; i < 2; ++i) {
                com::Variant item;
                ULONG fetched = 0;
                EXPECT_EQ(loop->Next(1, item.Put(), &fetched), S_OK);
                EXPECT_EQ(fetched, 1u);
                EXPECT_EQ(item.Get().vt, VT_DISPATCH);
            }
            EXPECT_EQ(loop->Skip(1), S_FALSE);
            EXPECT_EQ(loop->Reset(), S_OK);
            com::Ref<IEnumVARIANT> copy;
            EXPECT_EQ(loop->Clone(copy.Put()), S_OK);
            EXPECT_EQ(copy->Skip(2), S_OK);
        });
        ++count;
    }
    EXPECT_EQ(count, 13u) << "module 4, channel 3, macros 2, generic object 4";
}

TEST_F(ApartmentTest, KeepsNothingForAnApartmentThatIsGone) {
    com::Ref<IDispatch> object = NewModule();
    Elsewhere(COINIT_APARTMENTTHREADED, object, [&](const com::Ref<IDispatch>& script) {
        com::Variant result;
        EXPECT_EQ(Call(script, L"LoadFromXmlStream", support::Stream(L"<In1/>"), result), S_OK);
    });
    EXPECT_EQ(Dll().CanUnload(), S_FALSE);
    object.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(ApartmentTest, APointKeepsItsModuleForAnotherApartment) {
    for (const COINIT kind : {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED}) {
        com::Ref<IDispatch> module = Module();
        com::Ref<IDispatch> input(support::Item(
            support::Object(module.As<IAppObject>(), &IAppObject::get_Inputs), &IInputs::get_Item, L"1"));
        module.Reset();
        Elsewhere(kind, input, [](const com::Ref<IDispatch>& script) {
            com::Ref<IDispatch> point = script;
            const com::Variant parent = com::GetMember(*point.Get(), L"Parent");
            point.Reset();
            ASSERT_EQ(parent.Get().vt, VT_DISPATCH);
            ASSERT_NE(parent.Get().pdispVal, nullptr);
            EXPECT_EQ(com::Text(com::GetMember(*parent.Get().pdispVal, L"ProgrammaticID").Get().bstrVal),
                      L"O_Tam_id.CDBAppObject");
        });
        EXPECT_EQ(Dll().CanUnload(), S_FALSE);
        input.Reset();
        EXPECT_EQ(Dll().CanUnload(), S_OK);
    }
}

} // namespace
