#include "runtime_call.hpp"

#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

#include "failure.hpp"
#include "handles.hpp"

namespace InferenceEngine::runtime {
namespace {

constexpr auto kPause = std::chrono::microseconds(100);

std::atomic<std::uint64_t> failures{0};
// Each call is counted on one of two sides. A failure that waits for the calls on one side sends
// later calls to the other, so that it does not have to wait for those too.
std::atomic<unsigned> side{0};
std::array<std::atomic<std::uint64_t>, 2> underWay{};
std::mutex failureMutex;

/** Maps the codes that the runtime shares with the interface; all others become GENERAL_ERROR. */
StatusCode statusOf(ov_status_e status) noexcept {
    return status <= ::GENERAL_ERROR && status >= ::NETWORK_NOT_READ
               ? static_cast<StatusCode>(status)
               : StatusCode::GENERAL_ERROR;
}

/** Switches sides; returns whether the calls on the old side end before the deadline. */
bool waitForSide(Deadline deadline) {
    const unsigned old = side.fetch_xor(1);
    while (underWay.at(old) != 0) {
        if (Deadline::clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

}  // namespace

CallUnderWay::CallUnderWay() noexcept : failuresBefore_(failures), side_(side) {
    ++underWay[side_];
}

// Counts the failure first: anyone who sees that the call is over also sees that it failed.
CallUnderWay::~CallUnderWay() {
    if (failed_) {
        ++failures;
    }
    --underWay[side_];
}

CallFailure CallUnderWay::failure(ov_status_e status) const {
    // If a parameter is refused, the runtime leaves the text of some earlier failure in place.
    std::string text;
    if (status != ::INVALID_C_PARAM) {
        text = usefulText(takeText(ov_get_last_err_msg()));
    }
    return {status, std::move(text), failuresBefore_};
}

std::unique_lock<std::mutex> oneFailureAtATime() {
    return std::unique_lock(failureMutex);
}

bool hasItsOwnText(const CallFailure& failure, Deadline deadline) {
    // Both sides: a call may read which side is in use and count itself there after the switch.
    return waitForSide(deadline) && waitForSide(deadline) && failures == failure.failuresBefore + 1;
}

void raise(ov_status_e status, const std::string& text) {
    throw Failure(statusOf(status),
                  text.empty() ? std::string("OpenVINO: ") + ov_get_error_info(status) : text);
}

}  // namespace InferenceEngine::runtime
