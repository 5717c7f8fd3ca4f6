#include "text/portable_name.h"

#include <gtest/gtest.h>

#include <string>

namespace VelmoraQuavin::internal {
namespace {

TEST(PortableName, MostTextsAreAccepted) {
    for (const char* name : {"a", "model.xml", ".hidden", "two words", " space", "a.b.c", "..a",
                             "größe", "名前", "😀", "{}[]()!#$%&'+,;=@^_`~-", "\u00A0", "\x7F"}) {
        EXPECT_TRUE(isPortableName(name)) << name;
    }
}

TEST(PortableName, SpecialCharactersAreRefused) {
    for (const char character : std::string("<>:\"|?*/\\")) {
        EXPECT_FALSE(isPortableName(std::string("a") + character + "b")) << character;
        EXPECT_FALSE(isPortableName(std::string(1, character))) << character;
    }
}

TEST(PortableName, ControlCharactersAreRefused) {
    for (char character = 0; character < 32; ++character) {
        EXPECT_FALSE(isPortableName(std::string("a") + character + "b")) << int{character};
    }
}

TEST(PortableName, TrailingDotsAndSpacesAreRefused) {
    for (const char* name : {".", "..", "...", " ", "a.", "a..", "a ", "a. ", "a .", "a.b "}) {
        EXPECT_FALSE(isPortableName(name)) << name;
    }
}

TEST(PortableName, DeviceNamesAreRefused) {
    for (const std::string device :
         {"CON",  "PRN",  "AUX",  "NUL",  "CONIN$", "CONOUT$", "COM0", "COM1", "COM9",
          "LPT0", "LPT1", "LPT9", "COM¹", "COM²",   "COM³",    "LPT¹", "LPT²", "LPT³",
          "con",  "Nul",  "aUX",  "prn",  "conin$", "ConOut$", "com1", "Lpt²"}) {
        for (const char* ending : {"", ".txt", ".tar.gz", " .txt", "   .txt", ".a b"}) {
            EXPECT_FALSE(isPortableName(device + ending)) << device + ending;
        }
    }
}

TEST(PortableName, NamesThatOnlyResembleDevicesAreAccepted) {
    for (const char* name :
         {"CONSOLE", "NULL",     "NUL_",  "xNUL",  "CO",   "COM",       "LPT",    "COM10",
          "COMA",    "COM⁴",     "LPT1x", "COM 1", " NUL", "CONIN",     "CONOUT", "CONIN$x",
          "$CONIN",  "file.nul", "a.con", "N.UL",  ".NUL", "NUL x.txt", "AUX1",   "PRN1"}) {
        EXPECT_TRUE(isPortableName(name)) << name;
    }
}

// The dotless small i and the dotted capital I, which are cases of the ASCII letters in some
// locales.
TEST(PortableName, OnlyAsciiLettersMatchDevices) {
    EXPECT_TRUE(isPortableName("con\u0131n$"));
    EXPECT_TRUE(isPortableName("CON\u0130N$"));
}

TEST(PortableName, LengthIsLimitedTo255Utf16Units) {
    EXPECT_FALSE(isPortableName(""));
    EXPECT_TRUE(isPortableName(std::string(255, 'a')));
    EXPECT_FALSE(isPortableName(std::string(256, 'a')));
    std::string letters;
    std::string faces;
    for (int i = 0; i < 127; ++i) {
        letters += "öö";
        faces += "😀";
    }
    EXPECT_TRUE(isPortableName(letters + "ö"));
    EXPECT_FALSE(isPortableName(letters + "öö"));
    EXPECT_TRUE(isPortableName(faces + "a"));
    EXPECT_FALSE(isPortableName(faces + "aa"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
