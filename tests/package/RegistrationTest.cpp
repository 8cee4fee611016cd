// What a registration writes, for the machine and for the user, and that
// nothing of it stays behind.

#include "tests/package/Dll.h"

#include <ostream>
#include <string>

namespace package {

namespace {

struct Case {
    const char* name;
    const DllFacts& (*facts)();
    Scope scope;
};

void PrintTo(const Case& entry, std::ostream* out) {
    *out << entry.name;
}

/// Over either registry.
template <class Base>
class OneDllTest : public Base, public ::testing::WithParamInterface<Case> {
  protected:
    Scope InScope() const { return GetParam().scope; }
    const Dll& Subject() const {
        return GetParam().facts == &Component ? this->component : this->hostServices;
    }
    /// What a snapshot has more than before is the registration and nothing else.
    void ExpectComplete() const {
        const Lines complete = Registration(Subject().Facts(), InScope(), Subject().Path(), true);
        const Lines after = Snapshot();
        EXPECT_EQ("", Difference(Added(this->before, complete), Added(this->before, after)));
        EXPECT_EQ(Lines(), Added(after, this->before)) << "something that was there is gone";
    }
};

using RegistrationTest = OneDllTest<RegistryTest>;

TEST_P(RegistrationTest, WritesTheseKeysAndNoOther) {
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    ExpectComplete();
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
}

TEST_P(RegistrationTest, TwiceIsAsGoodAsOnce) {
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    ExpectComplete();
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
    EXPECT_EQ("", Difference(before, Snapshot()));
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
}

TEST_P(RegistrationTest, ReplacesWhatAnOlderVersionLeft) {
    PlantOlderInstall(Subject().Facts(), InScope());
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    ExpectComplete();
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
}

TEST_P(RegistrationTest, TakesAwayWhatAnOlderVersionLeft) {
    PlantOlderInstall(Subject().Facts(), InScope());
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
}

/// The system's own program works on the machine's own registry.
class RegistrationRegsvr32Test : public OneDllTest<WholeRegistryTest> {
  protected:
    DWORD Run(const std::wstring& option) const {
        return Regsvr32(option + (InScope() == Scope::User ? L" /n /i:user" : L""), Subject().Path());
    }
};

TEST_P(RegistrationRegsvr32Test, RegistersTwiceAndUnregistersTwice) {
    EXPECT_EQ(0U, Run(L""));
    EXPECT_EQ(0U, Run(L""));
    ExpectComplete();
    EXPECT_EQ(0U, Run(L"/u"));
    ExpectUnchanged();
    EXPECT_EQ(0U, Run(L"/u"));
}

const auto kCases = ::testing::Values(Case{"ComponentForTheMachine", &Component, Scope::Machine},
                                      Case{"ComponentForTheUser", &Component, Scope::User},
                                      Case{"HostServicesForTheMachine", &HostServices, Scope::Machine},
                                      Case{"HostServicesForTheUser", &HostServices, Scope::User});
const auto kName = [](const auto& entry) { return std::string(entry.param.name); };
INSTANTIATE_TEST_SUITE_P(Dlls, RegistrationTest, kCases, kName);
INSTANTIATE_TEST_SUITE_P(Dlls, RegistrationRegsvr32Test, kCases, kName);

/// Both DLLs and their names.
using RegistrationTwoDllsTest = RegistryTest;

/// A class of another maker, whose file exists or is gone.
class OtherMaker {
  public:
    explicit OtherMaker(Scope scope, bool fileExists = true) : scope_(scope) {
        wchar_t file[MAX_PATH] = L"C:\\Gone\\Other.dll";
        if (fileExists) {
            GetModuleFileNameW(nullptr, file, MAX_PATH);
        }
        Plant(scope, std::wstring(kKey) + L"\\InprocServer32", nullptr, file);
    }
    ~OtherMaker() {
        Clear(scope_, kKey);
        RegDeleteKeyW(Root(scope_), L"Software\\Classes\\CLSID"); // fails while other classes are in it
    }
    OtherMaker(const OtherMaker&) = delete;
    OtherMaker& operator=(const OtherMaker&) = delete;

    /// Registers the class under a name.
    void Take(const std::wstring& name) const { Plant(scope_, name + L"\\CLSID", nullptr, kId); }

  private:
    static constexpr const wchar_t* kId = L"{22222222-0000-0000-0000-000000000000}";
    static constexpr const wchar_t* kKey = L"CLSID\\{22222222-0000-0000-0000-000000000000}";
    Scope scope_;
};

TEST_F(RegistrationTwoDllsTest, LeavesANameToTheOtherMakerWhoseFileExists) {
    const OtherMaker other(Scope::Machine);
    other.Take(L"UnitManager.Converter");
    const Lines planted = Snapshot(Scope::Machine);

    ASSERT_EQ(S_OK, hostServices.Register(Scope::Machine));
    const Lines after = Snapshot(Scope::Machine);
    EXPECT_EQ("1 {22222222-0000-0000-0000-000000000000}", after.at("HKLM UnitManager.Converter\\CLSID : "));
    EXPECT_EQ("1 {531B7FAE-4B4B-483B-9F6E-4216D9B72AB4}", after.at("HKLM OrvHost.Project\\CLSID : "));
    EXPECT_EQ(S_OK, hostServices.Unregister(Scope::Machine));
    EXPECT_EQ("", Difference(planted, Snapshot(Scope::Machine)));

    Clear(Scope::Machine, L"UnitManager.Converter");
}

TEST_F(RegistrationTwoDllsTest, TakesANameThatAGoneFileLeft) {
    const OtherMaker other(Scope::Machine, false);
    const Lines planted = Snapshot(Scope::Machine);
    other.Take(L"UnitManager.Converter");
    ASSERT_EQ(S_OK, hostServices.Register(Scope::Machine));
    EXPECT_EQ("1 {B9D8C385-B68C-42DD-9F97-3FA4AB215234}",
              Snapshot(Scope::Machine).at("HKLM UnitManager.Converter\\CLSID : "));
    EXPECT_EQ(S_OK, hostServices.Unregister(Scope::Machine));
    EXPECT_EQ("", Difference(planted, Snapshot(Scope::Machine)));
}

/// The component's own names, whoever has them.
class RegistrationOwnNamesTest : public RegistryTest, public ::testing::WithParamInterface<Scope> {
  protected:
    static constexpr const wchar_t* kNames[] = {L"O_Tam_id.CDBAppObject", L"O_Tam_id.TamObjectManager"};
};

TEST_P(RegistrationOwnNamesTest, AreTakenFromAnotherMaker) {
    for (const bool fileExists : {true, false}) {
        const OtherMaker other(GetParam(), fileExists);
        const Lines planted = Snapshot();
        const Lines complete = Registration(Component(), GetParam(), component.Path(), true);
        for (const wchar_t* const name : kNames) {
            other.Take(name);
            Plant(GetParam(), std::wstring(name) + L"\\CurVer", nullptr, std::wstring(name) + L".9");
        }
        ASSERT_EQ(S_OK, component.Register(GetParam()));
        EXPECT_EQ("", Difference(Added(planted, complete), Added(planted, Snapshot())));
        EXPECT_EQ(S_OK, component.Unregister(GetParam()));
        EXPECT_EQ("", Difference(planted, Snapshot()));
    }
}

TEST_P(RegistrationOwnNamesTest, AreLeftToAnotherMakerAtUnregistering) {
    for (const bool fileExists : {true, false}) {
        const OtherMaker other(GetParam(), fileExists);
        ASSERT_EQ(S_OK, component.Register(GetParam()));
        Clear(GetParam(), kNames[0]);
        other.Take(kNames[0]);
        EXPECT_EQ(S_OK, component.Unregister(GetParam()));

        const std::string name = Prefix(GetParam()) + "O_Tam_id.CDBAppObject";
        const Lines after = Snapshot();
        EXPECT_EQ("1 {22222222-0000-0000-0000-000000000000}", after.at(name + "\\CLSID : "));
        EXPECT_FALSE(after.contains(Prefix(GetParam()) + "O_Tam_id.TamObjectManager"));
        Clear(GetParam(), kNames[0]);
    }
}

INSTANTIATE_TEST_SUITE_P(Scopes, RegistrationOwnNamesTest, ::testing::Values(Scope::Machine, Scope::User),
                         [](const auto& scope) { return scope.param == Scope::User ? "User" : "Machine"; });

TEST_F(RegistrationTwoDllsTest, OnlyTheTextUserIsForTheUser) {
    const Lines machine = Added(before, Registration(Component(), Scope::Machine, component.Path(), true));
    for (const wchar_t* const text : {static_cast<const wchar_t*>(nullptr), L"", L"machine", L"user "}) {
        ASSERT_EQ(S_OK, component.Install(TRUE, text));
        EXPECT_EQ("", Difference(machine, Added(before, Snapshot())));
        EXPECT_EQ(S_OK, component.Install(FALSE, text));
    }
    const Lines user = Added(before, Registration(Component(), Scope::User, component.Path(), true));
    for (const wchar_t* const text : {L"user", L"User", L"USER"}) {
        ASSERT_EQ(S_OK, component.Install(TRUE, text));
        EXPECT_EQ("", Difference(user, Added(before, Snapshot())));
        EXPECT_EQ(S_OK, component.Install(FALSE, text));
    }
}

} // namespace

} // namespace package
