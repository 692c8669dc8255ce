#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "base/CustomValueBlock.h"
#include "base/SectionFileReader.h"
#include "base/SectionFileWriter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

TEST(BinaryStreams, LayOutEveryFieldByteForByteAndReadItBack) {
    std::stringstream stream;
    BinaryDataWriter writer(&stream);
    writer.writeHeader("abc", 0x01020304);
    writer.writeInt32(-2);
    writer.writeInt64(0x1122334455667788);
    writer.writeFloat(1.0f);
    writer.writeBool(true);
    writer.writeString("h\xC3\xBC");
    const std::string bytes = "abc\0\4\3\2\1\xFE\xFF\xFF\xFF\x88\x77\x66\x55\x44\x33\x22\x11"
                              "\0\0\x80\x3F\1\0\0\0\3\0\0\0h\xC3\xBC"s;
    ASSERT_EQ(stream.str(), bytes);

    BinaryDataReader reader(&stream);
    EXPECT_EQ(reader.version, -1);
    EXPECT_EQ(reader.readHeader(), "abc\0"s);
    EXPECT_EQ(reader.version, 0x01020304);
    EXPECT_EQ(reader.readInt32(), -2);
    EXPECT_EQ(reader.readInt64(), 0x1122334455667788);
    EXPECT_EQ(reader.readFloat(), 1.0f);
    EXPECT_TRUE(reader.readBool());
    EXPECT_EQ(reader.readString(), "h\xC3\xBC");
    EXPECT_TRUE(reader.good());
    EXPECT_EQ(reader.readFloat(), 0.0f);
    EXPECT_FALSE(reader.good());
    EXPECT_EQ(reader.readHeader(), "");
}

TEST(BinaryStreams, TakeOnlyTheCountOfAnEmptyTextAndFailOnOneThatIsNotThere) {
    std::istringstream empty("\0\0\0\0\xFF\xFF\xFF\xFFx"s);
    BinaryDataReader reader(&empty);
    EXPECT_EQ(reader.readString() + reader.readString(), "");
    EXPECT_TRUE(reader.good());
    EXPECT_EQ(empty.get(), 'x');
    for (const std::string& bytes : {"\xFF\xFF\xFF\x7Fxyz"s, "\4\0\0\0xyz"s, "\1\0"s}) {
        std::istringstream damaged(bytes);
        BinaryDataReader damagedReader(&damaged);
        EXPECT_EQ(damagedReader.readString(), "");
        EXPECT_FALSE(damagedReader.good());
    }
}

TEST(CustomValueBlock, IsOrderedByKeyAndABadOneChangesNothing) {
    std::ostringstream out;
    BinaryDataWriter writer(&out);
    writeCustomValues(writer, {{"b", ""}, {"A", "xy"}});
    const std::string bytes = "CuSV\1\0\0\0\2\0\0\0\1\0\0\0A\2\0\0\0xy\1\0\0\0b\0\0\0\0"s;
    ASSERT_EQ(out.str(), bytes);
    std::string huge = bytes;
    huge[8] = huge[9] = huge[10] = '\xFF';
    huge[11] = '\x7F';
    std::string negative = huge;
    negative[11] = '\xFF';
    const CustomValues before{{"kept", "1"}};
    for (const std::string& bad : {"CuSW"s + bytes.substr(4), bytes.substr(0, bytes.size() - 1), huge, negative}) {
        std::istringstream in(bad);
        BinaryDataReader reader(&in);
        CustomValues values = before;
        EXPECT_FALSE(readCustomValues(reader, values));
        EXPECT_EQ(values, before);
    }
    std::istringstream in(bytes);
    BinaryDataReader reader(&in);
    CustomValues values = before;
    EXPECT_TRUE(readCustomValues(reader, values));
    EXPECT_EQ(values, (CustomValues{{"A", "xy"}, {"b", ""}}));
}

// Every step of the reader as one line: "[section" or "key=value", and the error code at the end.
std::vector<std::string> stepsOf(const std::string& text) {
    std::istringstream in(text);
    SectionFileReader reader(in);
    std::vector<std::string> steps;
    for (;;) {
        const std::string key = reader.next();
        if (!key.empty())
            steps.push_back(key + "=" + reader.value());
        else if (!reader.sectionName().empty())
            steps.push_back("[" + reader.sectionName());
        else
            break;
    }
    steps.push_back(std::to_string(reader.error()));
    EXPECT_TRUE(reader.next().empty() && reader.value().empty());
    return steps;
}

TEST(SectionFileReader, SplitsAtTheFirstEqualsSignAndDecodesValues) {
    using Steps = std::vector<std::string>;
    EXPECT_EQ(stepsOf("\r\n \t[ One ]  \rkey  = a=b  \r\n\n q=\" x\\\"y \" \nlast=\\\\\\n\\r"),
              (Steps{"[One", "key=a=b", "q= x\"y ", "last=\\\n\r", "0"}));
    EXPECT_EQ(stepsOf("a=x\\ty"), (Steps{"a=x\\ty", "0"}));
    EXPECT_EQ(stepsOf("a=end\\"), (Steps{"a=end\\", "0"}));
    EXPECT_EQ(stepsOf("a=\\ \t"), (Steps{"a=\\", "0"}));
    EXPECT_EQ(stepsOf(""), Steps{"0"});
    const std::pair<const char*, const char*> wrong[] = {{"=5", "1"},         {"[ ]", "2"},      {"[]", "2"},
                                                         {"key", "3"},        {"[Preset", "4"},  {"[", "4"},
                                                         {"[Preset] x", "5"}, {"a=\"b\" c", "5"}};
    for (const auto& [line, code] : wrong)
        EXPECT_EQ(stepsOf("k=v\n"s + line + "\nnever=read\n"), (Steps{"k=v", code})) << line;
    EXPECT_EQ(stepsOf("k=" + std::string(SectionFileReader::longestLine, 'x')), Steps{"3"});
}

TEST(SectionFileWriter, QuotesBlanksEscapesTheRestAndPartsSections) {
    std::ostringstream out;
    SectionFileWriter writer(out);
    writer.beginSection("One");
    writer.writeValue("third", 1.0 / 3.0);
    writer.writeValue("float", static_cast<double>(9.965784f));
    writer.writeText("plain", "\"\\\n\r");
    writer.beginSection("Two");
    writer.writeText("blank", " a\"");
    writer.writeText("empty", "");
    EXPECT_EQ(out.str(), "[One]\nthird=0.333333333333333\nfloat=9.96578407287598\nplain=\\\"\\\\\\n\\r\n\n"
                         "[Two]\nblank=\" a\\\"\"\nempty=\n");
    EXPECT_EQ(stepsOf(out.str()), (std::vector<std::string>{"[One", "third=0.333333333333333", "float=9.96578407287598",
                                                            "plain=\"\\\n\r", "[Two", "blank= a\"", "empty=", "0"}));
}

} // namespace
