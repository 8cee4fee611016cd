// Projects that hold more than one module.

#include "tests/view/Fixture.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace viewtest {

namespace {

class ProjectTest : public ViewTest {
  protected:
    /// The stream of the sample as object `number`, with this value of AI1_Channel.
    static std::string Stream(const std::string& number, const std::string& channel) {
        std::string text = BytesOf(Sample(L"channels.xml"));
        text.erase(0, text.find("<Tam"));
        Replace(text, "<TamObjID>1<", "<TamObjID>" + number + "<");
        Replace(text, "<VALUE>1<", "<VALUE>" + channel + "<", text.find("<AI1_Channel>"));
        return text;
    }
    static std::string Element(const std::string& number, const std::string& user) {
        return "  <O_Tam_id>\n    <UserName>" + user +
               "</UserName>\n    <DevKey>K7</DevKey>\n    <TamObjID>" + number +
               "</TamObjID>\n  </O_Tam_id>\n";
    }
    static void Replace(std::string& text, const std::string& old, const std::string& now,
                        std::size_t from = 0) {
        const std::size_t at = text.find(old, from);
        ASSERT_NE(std::string::npos, at) << old;
        text.replace(at, old.size(), now);
    }
    static std::wstring Project(const std::string& content) {
        return FileWith(L"hall.project.xml",
                        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Project>\n" + content + "</Project>\n");
    }
    static void AwaitChannel(const Viewer& viewer, const std::wstring& value) {
        Await("the other module", [&] {
            return viewer.Count(IDC_ATTRIBUTES) == kAttributes && viewer.IsEnabled(IDM_FILE_OPEN) &&
                   viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == value;
        });
    }
    static std::size_t Times(const std::string& text, const std::string& word) {
        std::size_t times = 0;
        for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += word.size()) {
            ++times;
        }
        return times;
    }
    /// The streams of objects 1, 2 and so on, with their numbers as the values of AI1_Channel.
    static std::string Streams(int count) {
        std::string streams;
        for (int i = 1; i <= count; ++i) {
            streams += Stream(std::to_string(i), std::to_string(i)) + "\n";
        }
        return streams;
    }
    static constexpr int kPlace = 1;
    static constexpr int kMessage = 2;
};

TEST_F(ProjectTest, AStreamTakesTheElementOfItsOwnModule) {
    const std::wstring file =
        Project(Element("1", "The other hall") + Element("2", "This hall") + Stream("2", "5"));
    Viewer viewer({file});
    AwaitChannel(viewer, L"5");
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    viewer.Do(IDM_FILE_SAVE);
    Await("the save", [&] { return viewer.Title().find(L'*') == std::wstring::npos; });
    const std::string text = BytesOf(file);
    EXPECT_EQ(1U, Times(text, "The other hall")) << text;
    EXPECT_EQ(1U, Times(text, "This hall")) << text;
    EXPECT_EQ(1U, Times(text, "<Tam ") + Times(text, "<Tam>")) << text;
    EXPECT_NE(std::string::npos, text.find("<VALUE>7</VALUE>", text.find("<AI1_Channel>")));
}

TEST_F(ProjectTest, EachModuleIsOpenedFromTheMenu) {
    const std::wstring file = Project(Element("1", "First hall") + Stream("1", "5") +
                                      Element("2", "Second hall") + Stream("2", "6"));
    Viewer viewer;
    viewer.Drop({file});
    AwaitChannel(viewer, L"5");
    EXPECT_NE(std::wstring::npos, viewer.Status(VIEW_STATUS_MESSAGE).find(L"2 modules"))
        << Narrow(viewer.Status(VIEW_STATUS_MESSAGE));
    viewer.Do(IDM_FILE_MODULE + 1);
    AwaitChannel(viewer, L"6");
    viewer.Do(IDM_FILE_RELOAD);
    AwaitChannel(viewer, L"6");
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    viewer.Begin(IDM_FILE_MODULE);
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << "what is unsaved is asked for";
    box.Press(IDYES);
    AwaitChannel(viewer, L"5");
    viewer.Do(IDM_FILE_MODULE + 1);
    AwaitChannel(viewer, L"7");
    viewer.Do(IDM_FILE_MODULE + 2);
    AwaitChannel(viewer, L"7");
    EXPECT_FALSE(viewer.ShownBox()) << "there is no third one";
    const std::string text = BytesOf(file);
    EXPECT_EQ(1U, Times(text, "First hall")) << text;
    EXPECT_EQ(1U, Times(text, "Second hall")) << text;
    viewer.Close();
}

TEST_F(ProjectTest, ModulesAfterTheTenthAreOpenedToo) {
    Viewer viewer({Project(Streams(14))});
    AwaitChannel(viewer, L"1");
    viewer.Do(IDM_FILE_MODULE + 13);
    AwaitChannel(viewer, L"14");
    // Without a key of its own: from the top upward to the last entry.
    viewer.Do(IDM_FILE_MODULE);
    AwaitChannel(viewer, L"1");
    viewer.Type(L"{ALT+f}m");
    viewer.Press(VK_UP);
    viewer.Press(VK_RETURN);
    AwaitChannel(viewer, L"14");
    // The twelfth and the second do not share a key.
    viewer.Type(L"{ALT+f}m2");
    AwaitChannel(viewer, L"2");
    viewer.Type(L"{ALT+f}m0");
    AwaitChannel(viewer, L"10");
    viewer.Close();
}

TEST_F(ProjectTest, AProjectMayHaveMoreModulesThanTheMenu) {
    constexpr int kMost = IDM_FILE_MODULE_LAST - IDM_FILE_MODULE + 1;
    Viewer viewer({Project(Streams(kMost + 2))});
    AwaitChannel(viewer, L"1");
    viewer.Do(IDM_FILE_MODULE_LAST);
    AwaitChannel(viewer, std::to_wstring(kMost));
    viewer.Do(IDM_FILE_MODULE_LAST + 1);
    EXPECT_EQ(std::to_wstring(kMost), viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    viewer.Close();
}

// Its letters would be saved as what stands for those that cannot be read.
TEST_F(ProjectTest, OneInAnEncodingThatIsNotReadIsNotOpened) {
    const std::wstring file =
        FileWith(L"hall.project.xml", "<?xml version=\"1.0\" encoding=\"shift_jis\"?>\n<Project>\n<Other>\xC1"
                                      "</Other>\n" +
                                          Stream("1", "5") + "</Project>\n");
    Viewer viewer({file});
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << Narrow(box.Text());
    box.Press(IDOK);
    EXPECT_EQ(0, viewer.Count(IDC_ATTRIBUTES));
}

// A module that was copied by hand and has no number of its own yet.
TEST_F(ProjectTest, OfTwoWithOneNumberTheSecondStaysAsItIs) {
    const std::wstring file = Project(Stream("1", "5") + "\n" + Stream("1", "6"));
    Viewer viewer({file});
    AwaitChannel(viewer, L"5");
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    viewer.Begin(IDM_FILE_MODULE + 1);
    viewer.Settle();
    ASSERT_FALSE(viewer.ShownBox()) << "the entry is grey: the first one would be opened again";
    viewer.Do(IDM_FILE_SAVE);
    Await("the save", [&] { return viewer.Title().find(L'*') == std::wstring::npos; });
    const std::string text = BytesOf(file);
    EXPECT_EQ(2U, Times(text, "<Tam>") + Times(text, "<Tam ")) << text;
    EXPECT_EQ(1U, Times(text, Stream("1", "6"))) << text;
}

TEST_F(ProjectTest, TheFirstModuleStaysOpenWhenAnotherComesBeforeIt) {
    Viewer viewer({Project(Stream("1", "5"))});
    AwaitChannel(viewer, L"5");
    Project(Stream("2", "6") + Stream("1", "7"));
    viewer.NextBox().Press(IDYES);
    AwaitChannel(viewer, L"7");
}

TEST_F(ProjectTest, AfterACrashTheSameModuleComesBack) {
    Project(Stream("1", "5") + Stream("2", "6"));
    {
        Viewer viewer({FileNamed(L"hall.project.xml")});
        AwaitChannel(viewer, L"5");
        viewer.Do(IDM_FILE_MODULE + 1);
        AwaitChannel(viewer, L"6");
        viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"9");
        viewer.Kill();
    }
    Viewer viewer;
    viewer.NextBox().Press(IDYES);
    AwaitChannel(viewer, L"9");
    viewer.Do(IDM_EDIT_UNDO);
    AwaitChannel(viewer, L"6");
}

TEST_F(ProjectTest, ItsTextIsTheSourceAndItsElementsAreChecked) {
    const std::wstring file = Project("  <!-- one -->\n" + Element("1", "First hall") +
                                      "  <O_Tam_id><Strange/></O_Tam_id>\n" + Stream("1", "99999"));
    Viewer viewer({file});
    AwaitChannel(viewer, L"99999");
    if (!viewer.IsTicked(IDM_VIEW_SOURCE)) {
        viewer.Do(IDM_VIEW_SOURCE);
    }
    Await("the source", [&] { return viewer.PartText(IDC_SOURCE).find(L"<Project>") != std::wstring::npos; });
    EXPECT_NE(std::wstring::npos, viewer.PartText(IDC_SOURCE_TITLE).find(L"hall.project.xml"));
    const Texts messages = viewer.Cells(IDC_FINDINGS, kMessage);
    const auto placeOf = [&](const wchar_t* words) {
        const auto found = std::find_if(messages.begin(), messages.end(), [&](const std::wstring& message) {
            return message.find(words) != std::wstring::npos;
        });
        EXPECT_NE(messages.end(), found) << Narrow(words);
        return found == messages.end()
                   ? std::wstring()
                   : viewer.Cell(IDC_FINDINGS, static_cast<int>(found - messages.begin()), kPlace);
    };
    EXPECT_EQ(L"9:14", placeOf(L"<Strange>"));
    // The value's line, counted in the project's text.
    const std::string text = BytesOf(file);
    const auto line =
        1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(text.find("99999")), '\n');
    EXPECT_TRUE(placeOf(L"99999").starts_with(std::to_wstring(line) + L":")) << Narrow(placeOf(L"99999"));
    for (const std::wstring& message : messages) {
        EXPECT_EQ(std::wstring::npos, message.find(L"means nothing in <Tam>")) << Narrow(message);
    }
}

} // namespace

} // namespace viewtest
