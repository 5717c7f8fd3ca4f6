// Calls to the runtime that may fail, and the texts of their failures.
//
// The runtime's C interface keeps the text of the last failure in one place for the whole process:
// between a failing call and the reading of its text, another thread may fail and leave its own
// text there, about another network. So every call is counted while it is in progress, without a
// lock. A call that has failed and read a text waits, without blocking anyone else, until the calls
// that were in progress at the same time are over. If none of these failed, the text is its own. If
// one did, the failed call is repeated if that is allowed, and otherwise reported without the
// runtime's text.
//
// Failures caused by a host that itself uses the C interface of the same runtime go unnoticed.
#pragma once

#include <openvino/c/openvino.h>

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace InferenceEngine::runtime {

/** What is known about a failed call. */
struct CallFailure {
    ov_status_e status;
    std::string text;
    std::uint64_t failuresBefore;  // of all calls, at the start of this one
};

/** Counts a call while it is in progress. */
class CallUnderWay {
public:
    CallUnderWay() noexcept;
    CallUnderWay(const CallUnderWay&) = delete;
    CallUnderWay& operator=(const CallUnderWay&) = delete;
    ~CallUnderWay();

    /** Makes the call count as failed when it is over. */
    void failed() noexcept { failed_ = true; }
    /** The failure, with the text that the runtime holds at this moment. */
    CallFailure failure(ov_status_e status) const;

private:
    const std::uint64_t failuresBefore_;
    const unsigned side_;
    bool failed_ = false;
};

/** Makes a call; returns its failure, or nothing if it succeeds. */
template <class Call>
std::optional<CallFailure> run(Call& call) {
    CallUnderWay underWay;
    const ov_status_e status = call();
    if (status == ::OK) {
        return std::nullopt;
    }
    underWay.failed();
    return underWay.failure(status);
}

/** A lock held while checking whose text a failure has, so that failures are checked in turn. */
std::unique_lock<std::mutex> oneFailureAtATime();

/** How long a failure may wait for other calls. */
constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(1);
using Deadline = std::chrono::steady_clock::time_point;

/** Whether the text is certainly the call's own. Waits for other calls; requires the lock above. */
bool hasItsOwnText(const CallFailure& failure, Deadline deadline);

/** @throws Failure with the text or, if it is empty, with the runtime's description of the status
 */
[[noreturn]] void raise(ov_status_e status, const std::string& text);

/** Makes a call whose error text is not needed. */
template <class Call>
ov_status_e attempt(Call&& call) noexcept {
    CallUnderWay underWay;
    const ov_status_e status = call();
    if (status != ::OK) {
        underWay.failed();
    }
    return status;
}

/**
 * Makes a call.
 *
 * @param patience how long a failure may wait for other calls
 * @throws Failure with the call's own text, or else with the runtime's description of the status
 */
template <class Call>
void check(Call&& call, std::chrono::milliseconds patience = kPatience) {
    const std::optional<CallFailure> failure = run(call);
    if (!failure) {
        return;
    }
    const Deadline deadline = Deadline::clock::now() + patience;
    const auto alone = oneFailureAtATime();
    raise(failure->status, hasItsOwnText(*failure, deadline) ? failure->text : std::string());
}

/**
 * Makes a call that changes nothing if it fails, so it can be repeated if its text would be lost.
 * Other failures wait for the same lock meanwhile, so the text is hardly ever lost again.
 *
 * @throws Failure like check()
 */
template <class Call>
void checkRepeating(Call&& call) {
    constexpr int kMostRepetitions = 5;
    std::optional<CallFailure> failure = run(call);
    if (!failure) {
        return;
    }
    const Deadline deadline = Deadline::clock::now() + kPatience;
    const auto alone = oneFailureAtATime();
    for (int repetition = 0; repetition < kMostRepetitions; ++repetition) {
        if (hasItsOwnText(*failure, deadline)) {
            raise(failure->status, failure->text);
        }
        failure = run(call);
        if (!failure) {
            return;
        }
    }
    raise(failure->status, hasItsOwnText(*failure, deadline) ? failure->text : std::string());
}

}  // namespace InferenceEngine::runtime
