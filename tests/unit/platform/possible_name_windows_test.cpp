#include "platform/windows/possible_name.h"

#include <gtest/gtest.h>

#include <string>

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(PossibleName, MayBeMostText) {
    for (const wchar_t* name :
         {L"a", L"model.xml", L".hidden", L"two words", L" space", L"a.b.c", L"..a",
          L"gr\x00F6\x00DF"
          L"e",
          L"\x540D\x524D", L"\xD83D\xDE00", L"{}[]()!#$%&'+,;=@^_`~-", L"\x00A0", L"\x7F"}) {
        EXPECT_TRUE(isPossibleName(name)) << ::testing::PrintToString(std::wstring(name));
    }
}

TEST(PossibleName, HoldsNoCharacterThatMeansSomethingElse) {
    for (const wchar_t character : std::wstring(L"<>:\"|?*/\\")) {
        EXPECT_FALSE(isPossibleName(std::wstring(L"a") + character + L"b")) << character;
        EXPECT_FALSE(isPossibleName(std::wstring(1, character))) << character;
    }
}

TEST(PossibleName, HoldsNoControlCharacter) {
    for (wchar_t character = 0; character < 32; ++character) {
        EXPECT_FALSE(isPossibleName(std::wstring(L"a") + character + L"b")) << character;
    }
}

TEST(PossibleName, EndsInNoDotAndNoSpace) {
    for (const wchar_t* name :
         {L".", L"..", L"...", L" ", L"a.", L"a..", L"a ", L"a. ", L"a .", L"a.b "}) {
        EXPECT_FALSE(isPossibleName(name)) << ::testing::PrintToString(std::wstring(name));
    }
}

TEST(PossibleName, IsNoDevices) {
    for (const std::wstring device :
         {L"CON",       L"PRN",       L"AUX",       L"NUL",       L"CONIN$",    L"CONOUT$",
          L"COM0",      L"COM1",      L"COM9",      L"LPT0",      L"LPT1",      L"LPT9",
          L"COM\x00B9", L"COM\x00B2", L"COM\x00B3", L"LPT\x00B9", L"LPT\x00B2", L"LPT\x00B3",
          L"con",       L"Nul",       L"aUX",       L"prn",       L"conin$",    L"ConOut$",
          L"com1",      L"Lpt\x00B2"}) {
        for (const wchar_t* ending : {L"", L".txt", L".tar.gz", L" .txt", L"   .txt", L".a b"}) {
            EXPECT_FALSE(isPossibleName(device + ending))
                << ::testing::PrintToString(device + ending);
        }
    }
}

TEST(PossibleName, MayBeginOrEndLikeADevices) {
    for (const wchar_t* name :
         {L"CONSOLE", L"NULL",  L"NUL_",   L"xNUL",      L"CO",     L"COM",
          L"LPT",     L"COM10", L"COMA",   L"COM\x2074", L"LPT1x",  L"COM 1",
          L" NUL",    L"CONIN", L"CONOUT", L"CONIN$x",   L"$CONIN", L"file.nul",
          L"a.con",   L"N.UL",  L".NUL",   L"NUL x.txt", L"AUX1",   L"PRN1"}) {
        EXPECT_TRUE(isPossibleName(name)) << ::testing::PrintToString(std::wstring(name));
    }
}

// The letters that some locales have for others' capitals.
TEST(PossibleName, IsComparedWithDevicesInAsciiAlone) {
    EXPECT_TRUE(isPossibleName(L"con\x0131n$"));
    EXPECT_TRUE(isPossibleName(L"CON\x0130N$"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
