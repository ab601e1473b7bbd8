#include <gtest/gtest.h>

#include "common/Strings.h"

namespace {

using namespace UTILS;

TEST(Strings, TrimsAndChangesTheCaseOfAsciiOnly) {
    EXPECT_EQ(trimmed(" \t\v\f\r\n a b \n"), "a b");
    EXPECT_EQ(trimmed(" \t "), "");
    EXPECT_EQ(lowerCase("ÄBC Z[@"), "Äbc z[@");
    EXPECT_EQ(upperCase("éabz{`\xFF"), "éABZ{`\xFF");
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

}  // namespace
