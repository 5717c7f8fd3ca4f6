// Memory runs out while an exception becomes a status.

#include <stdexcept>
#include <string>

#include "faults/allocation_sweep.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin::testing {
namespace {

const std::string kLong(100, 'x');

template <typename Failure>
void sweepStatusOf(const Failure& failure, STATUS_CODE code) {
    QuavinStatus status;
    sweepAllocations(
        kAllAllocations,
        [&] {
            status.setDescription("");
            try {
                throw Failure(failure);
            } catch (...) {
                status = getStatusFromCurrentException();
            }
        },
        [&](bool happened) {
            const std::string text = happened ? std::bad_alloc().what() : kLong;
            EXPECT_THAT(status, IsStatus(code, text));
        });
}

TEST(StatusAllocations, OfAnExceptionKeepItsCode) {
    sweepStatusOf(SignatureException(kLong), SIGNATURE_ERROR);
}

TEST(StatusAllocations, OfAStandardExceptionAreAFailure) {
    sweepStatusOf(std::runtime_error(kLong), FAILURE);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
