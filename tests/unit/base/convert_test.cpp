#include "base/convert.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tl {
namespace {

TEST(RoundHalfEven, HalvesGoToTheEvenNeighbour) {
    EXPECT_EQ(roundHalfEven(2.5), 2.0);
    EXPECT_EQ(roundHalfEven(3.5), 4.0);
    EXPECT_EQ(roundHalfEven(-2.5), -2.0);
    EXPECT_EQ(roundHalfEven(-3.5), -4.0);
    EXPECT_EQ(roundHalfEven(0.5), 0.0);
    EXPECT_EQ(roundHalfEven(151.5), 152.0);
    EXPECT_EQ(roundHalfEven(2.4999), 2.0);
}

TEST(IntegerConversion, RefusesWhatDoesNotFit) {
    EXPECT_EQ(toInt16(32767.0), 32767);
    EXPECT_EQ(toInt16(32767.5), std::nullopt);  // rounds to 32768
    EXPECT_EQ(toInt16(-32768.5), -32768);       // rounds to the even -32768
    EXPECT_EQ(toInt16(-32769.0), std::nullopt);
    EXPECT_EQ(toInt32(2147483647.0), 2147483647);
    EXPECT_EQ(toInt32(2147483648.0), std::nullopt);
    EXPECT_EQ(toInt32(std::nan("")), std::nullopt);
    EXPECT_EQ(toInt16Or(1e9, 7), 7);
}

struct NumberCase {
    const char* text;
    char separator;
    std::optional<double> expected;
};

class ParseNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(ParseNumber, ReadsWholeTextOrNothing) {
    const auto& c = GetParam();
    EXPECT_EQ(parseNumber(c.text, c.separator), c.expected) << "text: '" << c.text << "'";
}

INSTANTIATE_TEST_SUITE_P(Table, ParseNumber,
                         testing::Values(NumberCase{"3.5", '.', 3.5}, NumberCase{"  42  ", '.', 42.0},
                                         NumberCase{"-1", '.', -1.0}, NumberCase{"+7", '.', 7.0},
                                         NumberCase{"0,25", ',', 0.25}, NumberCase{"0.25", ',', std::nullopt},
                                         NumberCase{"1E3", '.', 1000.0}, NumberCase{"2.5e-1", '.', 0.25},
                                         NumberCase{".5", '.', 0.5}, NumberCase{"5.", '.', 5.0},
                                         NumberCase{"&H10", '.', 16.0}, NumberCase{"&HFFFF", '.', -1.0},
                                         NumberCase{"&O17", '.', 15.0}, NumberCase{"&H", '.', std::nullopt},
                                         NumberCase{"", '.', std::nullopt}, NumberCase{"   ", '.', std::nullopt},
                                         NumberCase{"yes", '.', std::nullopt},
                                         NumberCase{"12abc", '.', std::nullopt},
                                         NumberCase{"1 2", '.', std::nullopt}, NumberCase{"-", '.', std::nullopt},
                                         NumberCase{"\t8\t", '.', 8.0}));

TEST(LeadingNumber, TakesWhatANumberBeginsWith) {
    EXPECT_EQ(leadingNumber("2"), 2.0);
    EXPECT_EQ(leadingNumber("7"), 7.0);
    EXPECT_EQ(leadingNumber("?"), 0.0);
    EXPECT_EQ(leadingNumber(""), 0.0);
    EXPECT_EQ(leadingNumber("C:\\a.jpg"), 0.0);
    EXPECT_EQ(leadingNumber("12abc"), 12.0);
    EXPECT_EQ(leadingNumber(" 1 2 3"), 123.0);  // blanks anywhere are skipped
    EXPECT_EQ(leadingNumber("\t-3\t"), -3.0);
    EXPECT_EQ(leadingNumber("2.5xyz"), 2.5);
    EXPECT_EQ(leadingNumber("1e2"), 100.0);
    EXPECT_EQ(leadingNumber("1e"), 1.0);
    EXPECT_EQ(leadingNumber("&H1F"), 31.0);
    EXPECT_EQ(leadingNumber("&h1fz"), 31.0);
    EXPECT_EQ(leadingNumber("&O777"), 511.0);
    EXPECT_EQ(leadingNumber("&HFFFFFFFF"), -1.0);
    EXPECT_EQ(leadingNumber("&H10000"), 65536.0);
    EXPECT_EQ(leadingNumber("-5"), -5.0);
    EXPECT_EQ(leadingNumber("10 minutes"), 10.0);
}

TEST(ParseBool, WordsAnyCaseOrNumbers) {
    EXPECT_EQ(parseBool("True", '.'), true);
    EXPECT_EQ(parseBool("FALSE", '.'), false);
    EXPECT_EQ(parseBool("tRuE", '.'), true);
    EXPECT_EQ(parseBool("0", '.'), false);
    EXPECT_EQ(parseBool("-1", '.'), true);
    EXPECT_EQ(parseBool("2.5", '.'), true);
    EXPECT_EQ(parseBool("yes", '.'), std::nullopt);
    EXPECT_EQ(parseBool("", '.'), std::nullopt);
}

TEST(FormatDouble, ShortestTextThatReadsBack) {
    EXPECT_EQ(formatDouble(0.25, '.'), "0.25");
    EXPECT_EQ(formatDouble(1.5, '.'), "1.5");
    EXPECT_EQ(formatDouble(1.5, ','), "1,5");
    EXPECT_EQ(formatDouble(0.0, '.'), "0");
    EXPECT_EQ(formatDouble(-2.0, '.'), "-2");
    EXPECT_EQ(formatDouble(100.0, '.'), "100");
    EXPECT_EQ(formatDouble(0.1 + 0.2, '.'), "0.3");  // 15 significant digits at most
    EXPECT_EQ(formatDouble(1.0 / 3.0, '.'), "0.333333333333333");
    EXPECT_EQ(formatDouble(0.0001, '.'), "0.0001");
    EXPECT_EQ(formatDouble(0.00001, '.'), "1E-05");
    EXPECT_EQ(formatDouble(1e20, '.'), "1E+20");
    EXPECT_EQ(formatDouble(123456789012345.0, '.'), "123456789012345");
    EXPECT_EQ(formatDouble(1234567890123456.0, '.'), "1.23456789012346E+15");
}

TEST(FormatDouble, RoundTripsThroughParseNumber) {
    for (double v : {0.25, 1.5, 3.14159, -0.001, 12345.678, 1e-7, 6.02e23}) {
        for (char sep : {'.', ','}) {
            const auto back = parseNumber(formatDouble(v, sep), sep);
            ASSERT_TRUE(back.has_value()) << formatDouble(v, sep);
            EXPECT_DOUBLE_EQ(*back, v);
        }
    }
}

TEST(FormatSigned, LeadingBlankUnlessNegative) {
    EXPECT_EQ(formatSigned(12), " 12");
    EXPECT_EQ(formatSigned(0), " 0");
    EXPECT_EQ(formatSigned(-3), "-3");
}

}  // namespace
}  // namespace tl
