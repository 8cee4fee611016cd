#include "tests/fuzz/RandomCalls.h"
#include "tests/support/Fixture.h"

#include <optional>
#include <string>

// Any calls of a module, its collections, points, lists and types.

namespace component_fuzz {

using namespace support;

namespace {

constexpr unsigned kSequences = 40;
constexpr int kCalls = 150;

constexpr const wchar_t* kCatalogue =
    L"<SNVT_105><Name>Temperature</Name><Type>SignedNumeric</Type><Min>-5</Min><Max>50</Max><Length>2</"
    L"Length>"
    L"</SNVT_105><SNVT_36><Name>String</Name><Type>Textual</Type><Length>31</Length></SNVT_36>"
    L"<SNVT_95><Name>Switch</Name><Type>Enum</Type></SNVT_95>"
    L"<SNVT_83><Name>State</Name><Type>Bitfield</Type><Length>2</Length></SNVT_83>";

class MembersFuzzTest : public ComponentTest {
  protected:
    void SetUp() override {
        ComponentTest::SetUp();
        SetCatalogue(kCatalogue);
        catalogue_ = Parse(std::wstring(L"<Catalogue>") + kCatalogue + L"</Catalogue>");
        document_ = Parse(L"<Valve><UserName>a</UserName><OutReferences><A>1</A></OutReferences></Valve>");
        UseCompiler();
        UseDatabaseLocation();
        watchdog_.emplace(KeepFile(L"calls.txt"));
        // Its OK would keep a rename open that it refuses.
        Watcher().OnBox([](HWND window, const bench::Box& box) {
            return !box.isMessageBox && PostMessageW(window, WM_COMMAND, IDCANCEL, 0) != FALSE;
        });
    }
    void TearDown() override {
        watchdog_.reset();
        catalogue_.Reset();
        document_.Reset();
        ComponentTest::TearDown();
    }

    void Run(Random& random, bool tells) {
        Begin();
        for (int call = 0; call < kCalls && !HasFailure(); ++call) {
            calls_.CallOne(random, tells);
            if (random.OneIn(10)) {
                Boxes();
            }
        }
        calls_.End();
        Boxes();
        EXPECT_EQ(Dll().CanUnload(), S_OK) << "objects of the component are still alive";
    }

    Watchdog& Dog() { return *watchdog_; }

  private:
    void Begin() {
        com::Check(NewModule()->putref_XmlSNVTDoc(catalogue_.Get()));
        const std::wstring point =
            L"<SNVTTYPE>105</SNVTTYPE><SNVTCOMPATIBILITYLIST>105,95</SNVTCOMPATIBILITYLIST>";
        calls_.Keep(Loaded(Stream(L"<AI3_In1>" + point + L"</AI3_In1><B_In>" + point + L"</B_In>",
                                  L"<AI3_Out>" + point + L"</AI3_Out>",
                                  L"<AI3_Gain>" + point +
                                      L"</AI3_Gain><T><SNVTTYPE>36</SNVTTYPE></T><E><SNVTTYPE>95"
                                      L"</SNVTTYPE></E><S><SNVTTYPE>83</SNVTTYPE></S>"))
                        .As<IDispatch>());
        calls_.Offer(document_.As<IDispatch>());
        calls_.Offer(Root(document_).As<IDispatch>());
    }

    RandomCalls calls_;
    Document catalogue_, document_;
    std::optional<Watchdog> watchdog_;
};

TEST_F(MembersFuzzTest, HoldsForCallsInAnyOrder) {
    RunSequences(Dog(), kSequences, [this](Random& random, bool tells) { Run(random, tells); });
}

} // namespace

} // namespace component_fuzz
