#include "base/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace {

// Makes the comma the decimal point of the process: always for the streams of C++, and for C where the machine has such
// a locale.
class CommaLocale {
public:
    CommaLocale() : before(std::locale::global(std::locale(std::locale::classic(), new Comma))) {
        for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "nl_NL.UTF-8"})
            if (std::setlocale(LC_NUMERIC, name) != nullptr)
                break;
    }
    ~CommaLocale() {
        std::setlocale(LC_NUMERIC, "C");
        std::locale::global(before);
    }

private:
    class Comma final : public std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale before;
};

TEST(NumberText, IsTheSameUnderALocaleWithAComma) {
    const CommaLocale comma;
    std::ostringstream proof;
    proof << 1234.5;
    ASSERT_EQ(proof.str(), "1.234,5");
    EXPECT_EQ(fixedText(1234.5, 2), "1234.50");
    EXPECT_EQ(shortestText(0.1f), "0.1");
    EXPECT_EQ(shortestText(0.1), "0.1");
    EXPECT_EQ(wholeText(-1234567), "-1234567");
    double value = 0.0;
    EXPECT_EQ(readNumber("3.25,", value), 4u);
    EXPECT_EQ(value, 3.25);
}

TEST(NumberText, ReadsNumbersAndNothingElse) {
    double value = 7.0;
    for (const char* text : {"", "+", "-", ".", "-.", "inf", "nan", " 1", "e5", "+-1", "--1", "1e999"}) {
        EXPECT_EQ(readNumber(text, value), 0u) << text;
        EXPECT_EQ(value, 7.0) << text;
    }
    EXPECT_EQ(readNumber("+2.5e3Hz", value), 6u);
    EXPECT_EQ(value, 2500.0);
    EXPECT_EQ(readNumber("-.5", value), 3u);
    EXPECT_EQ(value, -0.5);
    EXPECT_EQ(readNumber("12.", value), 3u);
    EXPECT_EQ(value, 12.0);

    std::int64_t whole = 7;
    EXPECT_EQ(readWhole("99999999999999999999", whole), 0u);
    EXPECT_EQ(readWhole("x", whole), 0u);
    EXPECT_EQ(whole, 7);
    EXPECT_EQ(readWhole("-42.5", whole), 3u);
    EXPECT_EQ(whole, -42);
    EXPECT_EQ(readWhole("-9223372036854775808", whole), 20u);
    EXPECT_EQ(whole, std::numeric_limits<std::int64_t>::min());
}

TEST(NumberText, ShortestTextReadsBackAsTheSameValue) {
    for (const float each : {1.0f / 3.0f, 1e-38f, 16777217.0f, -0.0f, 3.4028235e38f}) {
        double value = 1.0;
        const std::string text = shortestText(each);
        EXPECT_EQ(readNumber(text, value), text.size());
        EXPECT_EQ(static_cast<float>(value), each);
    }
    EXPECT_EQ(fixedText(-1e300, 0).size(), 302u);
    EXPECT_EQ(fixedText(2.675, -1), "3");
}

} // namespace
