#include <gtest/gtest.h>

#include "common/Printable.h"
#include "common/Strings.h"

namespace {

using namespace UTILS;

TEST(Strings, TrimsAndChangesTheCaseOfAsciiOnly) {
    EXPECT_EQ(trimmed(" \t\v\f\r\n a b \n"), "a b");
    EXPECT_EQ(trimmed(" \t "), "");
    EXPECT_EQ(lowerCase("ÄA@Z[\xFF"), "Äa@z[\xFF");
    EXPECT_EQ(upperCase("éa`z{\xFF"), "éA`Z{\xFF");
    EXPECT_TRUE(equalsIgnoringCase("Nm", "nM"));
    EXPECT_FALSE(equalsIgnoringCase("nm", "nmi"));
    EXPECT_FALSE(equalsIgnoringCase("@", "`"));
}

TEST(Strings, KnowsTrueTokens) {
    for (const char* text : {"true", "TRUE", "T", "yes", "Y", "On", " 1 "})
        EXPECT_TRUE(stringIsTrueToken(text)) << text;
    for (const char* text : {"", "false", "0", "no", "off", "2", "truee", "tr ue"})
        EXPECT_FALSE(stringIsTrueToken(text)) << text;
}

TEST(Strings, AreQuotedInPart) {
    const auto front = [](std::size_t count) { return std::string(count, 'x'); };
    EXPECT_EQ(excerpt(front(40)), front(40));
    EXPECT_EQ(excerpt(front(41)), front(40) + "...");
    // Not cut within a character.
    EXPECT_EQ(excerpt(front(38) + "°°"), front(38) + "°...");
    EXPECT_EQ(excerpt(front(39) + "°°"), front(39) + "...");
}

TEST(Strings, AreShownWithoutSteeringTheTerminal) {
    EXPECT_EQ(printable("Élan 21°\t\x1b[2J\x7f\n"), "Élan 21°\\x09\\x1b[2J\\x7f\\x0a");
    // A C1 control as UTF-8 and as a byte; turned direction; a line separator.
    EXPECT_EQ(printable("\u009b1m \x9b \u202egpj.exe\u2069 \u2028"),
              "\\u009b1m \\x9b \\u202egpj.exe\\u2069 \\u2028");
    // Too long, a surrogate, cut off.
    EXPECT_EQ(printable("\xc0\x80 \xed\xa0\x80 \xe2\x80"), "\\xc0\\x80 \\xed\\xa0\\x80 \\xe2\\x80");
    EXPECT_EQ(printable("ab°c", 3), "ab... (3 bytes more)");
}

}  // namespace
