#include "base/convert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tl {
namespace {

TEST(IntegerConversion, RoundsHalvesToEvenAndRefusesWhatDoesNotFit) {
    EXPECT_EQ((std::vector{roundHalfEven(2.5), roundHalfEven(-3.5), roundHalfEven(0.5), roundHalfEven(2.4999)}),
              (std::vector{2.0, -4.0, 0.0, 2.0}));
    EXPECT_EQ(toInt16(32767.0), 32767);
    EXPECT_EQ(toInt16(32767.5), std::nullopt);  // rounds to 32768
    EXPECT_EQ(toInt16(-32768.5), -32768);       // rounds to the even -32768
    EXPECT_EQ(toInt16(-32769.0), std::nullopt);
    EXPECT_EQ(toInt32(2147483647.0), 2147483647);
    EXPECT_EQ(toInt32(2147483648.0), std::nullopt);
    EXPECT_EQ(toInt32(std::nan("")), std::nullopt);
    EXPECT_EQ(toInt16Or(1e9, 7), 7);
}

// The strict reader takes the whole text or nothing; the forgiving one takes what the text begins with.
struct NumberCase {
    const char* text;
    std::optional<double> strict;
    double forgiving;
};

TEST(NumberReaders, StrictWholeTextAndForgivingLeadingNumber) {
    const NumberCase cases[] = {{"3.5", 3.5, 3.5},
                                {"  42  ", 42.0, 42.0},
                                {"-1", -1.0, -1.0},
                                {"1E3", 1000.0, 1000.0},
                                {".5", 0.5, 0.5},
                                {"5.", 5.0, 5.0},
                                {"&H10", 16.0, 16.0},
                                {"&HFFFF", -1.0, -1.0},
                                {"&H10000", 65536.0, 65536.0},
                                {"&O17", 15.0, 15.0},
                                {"&h1fz", std::nullopt, 31.0},
                                {"&H", std::nullopt, 0.0},
                                {"", std::nullopt, 0.0},
                                {"yes", std::nullopt, 0.0},
                                {"12abc", std::nullopt, 12.0},
                                {" 1 2 3", std::nullopt, 123.0},  // the forgiving reader skips blanks anywhere
                                {"\t-3\t", -3.0, -3.0},
                                {"-", std::nullopt, 0.0},
                                {"1e", std::nullopt, 1.0}};
    for (const NumberCase& c : cases) {
        EXPECT_EQ(parseNumber(c.text, '.'), c.strict) << "strict: '" << c.text << "'";
        EXPECT_EQ(leadingNumber(c.text), c.forgiving) << "forgiving: '" << c.text << "'";
    }
    EXPECT_EQ(parseNumber("0,25", ','), 0.25) << "the user's decimal separator";
    EXPECT_EQ(parseNumber("0.25", ','), std::nullopt);
    EXPECT_EQ(leadingNumber("0,25"), 0.0) << "the forgiving reader knows only the point";
}

TEST(ParseBool, WordsAnyCaseOrNumbers) {
    const std::vector<std::optional<bool>> want = {true, false, false, true, true, std::nullopt, std::nullopt};
    std::vector<std::optional<bool>> got;
    for (const char* text : {"tRuE", "FALSE", "0", "-1", "2,5", "yes", ""}) {
        got.push_back(parseBool(text, ','));
    }
    EXPECT_EQ(got, want);
}

TEST(FormatDouble, ShortestTextThatReadsBack) {
    const std::pair<double, const char*> cases[] = {
        {0.25, "0.25"},
        {0.0, "0"},
        {0.1 + 0.2, "0.3"},  // 15 significant digits at most
        {1.0 / 3.0, "0.333333333333333"},
        {0.00001, "1E-05"},
        {1e20, "1E+20"},
        {123456789012345.0, "123456789012345"},
        {1234567890123456.0, "1.23456789012346E+15"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(formatDouble(value, '.'), text);
    }
    EXPECT_EQ(formatDouble(1.5, ','), "1,5");
    for (double v : {0.25, 3.14159, -0.001, 12345.678, 1e-7, 6.02e23}) {
        for (char sep : {'.', ','}) {
            const auto back = parseNumber(formatDouble(v, sep), sep);
            ASSERT_TRUE(back.has_value()) << formatDouble(v, sep);
            EXPECT_DOUBLE_EQ(*back, v);
        }
    }
    EXPECT_EQ(formatSigned(12), " 12");
    EXPECT_EQ(formatSigned(-3), "-3");
}

}  // namespace
}  // namespace tl
