#include "c/last_error.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "c/guard.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr std::size_t kLongest = 1023;

TEST(LastError, KeepsTheTextOfAStatus) {
    EXPECT_EQ(settle({FILE_ERROR, "the text"}), QUAVIN_FILE_ERROR);
    EXPECT_STREQ(quavin_last_error(), "the text");
}

TEST(LastError, IsTheCodesNameIfThereIsNoText) {
    EXPECT_EQ(settle({TAR_CHECKSUM_MISMATCH, ""}), QUAVIN_TAR_CHECKSUM_MISMATCH);
    EXPECT_STREQ(quavin_last_error(), "TAR_CHECKSUM_MISMATCH");
}

TEST(LastError, DoesNotChangeWithASuccess) {
    settle({FAILURE, "before"});
    EXPECT_EQ(settle({SUCCESS, ""}), QUAVIN_SUCCESS);
    EXPECT_STREQ(quavin_last_error(), "before");
}

TEST(LastError, CutsLongTexts) {
    const std::string fits(kLongest, 'a');
    setLastError(fits.c_str());
    EXPECT_EQ(quavin_last_error(), fits);
    setLastError((fits + "b").c_str());
    EXPECT_EQ(quavin_last_error(), fits);
}

TEST(LastError, DoesNotCutWithinACharacter) {
    const std::string start(kLongest - 2, 'a');
    setLastError((start + "\u20ac").c_str());  // three bytes, of which two would fit
    EXPECT_EQ(quavin_last_error(), start);
    setLastError((start + "\u00e9\u00e9").c_str());  // the first of them fits
    EXPECT_EQ(quavin_last_error(), start + "\u00e9");
}

TEST(LastError, MayBeSetToItself) {
    setLastError("itself");
    setLastError(quavin_last_error());
    EXPECT_STREQ(quavin_last_error(), "itself");
}

TEST(Guard, TurnsEveryExceptionIntoAStatus) {
    EXPECT_EQ(guarded([] {}), QUAVIN_SUCCESS);
    EXPECT_EQ(guarded([] { throw RangeException("too far"); }), QUAVIN_OUT_OF_RANGE);
    EXPECT_STREQ(quavin_last_error(), "too far");
    EXPECT_EQ(guarded([] { throw std::runtime_error("standard"); }), QUAVIN_FAILURE);
    EXPECT_STREQ(quavin_last_error(), "standard");
    EXPECT_EQ(guarded([] { throw 1; }), QUAVIN_FAILURE);
    EXPECT_STREQ(quavin_last_error(), "unknown error occured");
}

}  // namespace
}  // namespace VelmoraQuavin::internal
