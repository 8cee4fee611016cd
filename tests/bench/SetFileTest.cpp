// set with a file for the stream: the new values, and all else as it was.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace benchtest {

namespace {

std::wstring Channels() {
    return SamplesFolder() + L"streams\\channels.xml";
}

class SetFileTest : public testing::Test {
  protected:
    std::string Set(const std::wstring& stream, const std::vector<std::wstring>& values) const {
        std::vector<std::wstring> arguments{L"set", stream};
        arguments.insert(arguments.end(), values.begin(), values.end());
        arguments.insert(arguments.end(), {L"-o", file_});
        const Outcome run = RunBench(arguments);
        EXPECT_EQ(0U, run.status) << run.err;
        return ReadFileBytes(file_);
    }
    const std::wstring& File() const { return file_; }

  private:
    std::wstring file_ = ScratchFolder() + L"set.xml";
};

TEST_F(SetFileTest, HasTheNewValuesAndAllElseAsItWas) {
    std::string expected = ReadFileBytes(Channels());
    expected = Replaced(expected, "<VALUE>-0.50</VALUE>", "<VALUE>1.5</VALUE>");
    expected = Replaced(expected, "<PROTOCOLREFERENCE>DI1_Out<", "<PROTOCOLREFERENCE>AO1_Out<");
    const std::string written = Set(Channels(), {L"AI1_Offset=1.5", L"do1_in1=AO1_Out"});
    EXPECT_EQ(expected, written);
}

TEST_F(SetFileTest, ChangesNoOtherCharacter) {
    const std::string head = "<?xml version='1.0' standalone='yes' ?>\n<Tam ><Name>N&#228;</Name>\r\n"
                             "<DevKey>K9</DevKey>\n<IsLastOnDev>1</IsLastOnDev><TamObjID  >7</TamObjID>";
    const std::string stream =
        head + "<Attributes><A><SNVTTYPE>105</SNVTTYPE><VISIBLE></VISIBLE><!-- > --><VALUE note='>'\n>"
               "1<!-- </VALUE> --></VALUE></A><B><SNVTTYPE>105</SNVTTYPE><value/></B>"
               "<C><SNVTTYPE>105</SNVTTYPE></C></Attributes></Tam>";
    const std::string expected =
        head + "<Attributes><A><SNVTTYPE>105</SNVTTYPE><VISIBLE></VISIBLE><!-- > --><VALUE note='>'\n>"
               "2</VALUE></A><B><SNVTTYPE>105</SNVTTYPE><value>3</value></B>"
               "<C><SNVTTYPE>105</SNVTTYPE><VALUE>4</VALUE></C></Attributes></Tam>";
    EXPECT_EQ(expected, Set(WrittenFile(L"own.xml", stream), {L"A=1", L"A=2", L"B=3", L"C=4"}));
}

TEST_F(SetFileTest, IsUtf8AndSaysSo) {
    const std::string rest =
        "\n<Tam><Name>B\xFCro</Name><DevKey>K9</DevKey><IsLastOnDev>1</IsLastOnDev>"
        "<TamObjID>7</TamObjID><Attributes><A><SNVTTYPE>105</SNVTTYPE></A></Attributes></Tam>";
    const std::string written =
        Set(WrittenFile(L"latin.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + rest), {L"A=1"});
    EXPECT_TRUE(written.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Tam><Name>B\xC3\xBCro<"))
        << written;
}

TEST_F(SetFileTest, LoadsWithTheNewValues) {
    Set(Channels(), {L"AI1_Offset=1.5", L"DO1_In1=AO1_Out"});
    const Json loaded = Bench({L"inspect", File()});
    EXPECT_EQ("1.5", Named(loaded["attributes"], "AI1_Offset")["value"]);
    EXPECT_EQ("AO1_Out", Named(loaded["inputs"], "DO1_In1")["reference"]);
    EXPECT_EQ(11U, loaded["attributes"].size());
}

TEST_F(SetFileTest, AddsAValueWhereThereIsNone) {
    const std::wstring stream = WrittenFile(
        L"no_value.xml", "<Tam>\r\n  <Name>N</Name><DevKey>K9</DevKey><IsLastOnDev>1</IsLastOnDev>"
                         "<TamObjID>7</TamObjID>\r\n  <!-- kept -->\r\n  <Attributes>\r\n    <A>\r\n"
                         "      <snvttype>105</snvttype>\r\n    </A>\r\n  </Attributes>\r\n</Tam>\r\n");
    const std::string written = Set(stream, {L"A=2<3&"});
    EXPECT_NE(std::string::npos, written.find("<!-- kept -->\r\n")) << written;
    EXPECT_NE(std::string::npos, written.find("\r\n      <snvttype>105</snvttype>\r\n      <VALUE>2&lt;3&amp;"
                                              "</VALUE>\r\n    </A>\r\n"))
        << written;
}

} // namespace

} // namespace benchtest
