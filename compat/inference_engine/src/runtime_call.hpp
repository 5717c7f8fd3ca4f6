// Calls of the runtime that may fail, and the texts of their failures.
//
// The runtime's C interface keeps the text of the last failure in one place for the whole process:
// between a failing call and the reading of its text another thread may fail and leave its own
// there, about another network. So every call counts itself while it is under way, without a lock.
// One that has failed and read a text waits until the calls are over that were under way beside it,
// and keeps nobody else from going on. If none of these has failed, the text is its own. If one
// has, a call that may be repeated is, and any other goes without the runtime's words.
//
// What cannot be seen are failures of a host that uses the C interface of the same runtime itself.
#pragma once

#include <openvino/c/openvino.h>

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace InferenceEngine::runtime {

/** What a failed call has left. */
struct CallFailure {
    ov_status_e status;
    std::string text;
    std::uint64_t failuresBefore;  // of all calls, when this one began
};

/** Counts a call as long as it is under way. */
class CallUnderWay {
public:
    CallUnderWay() noexcept;
    CallUnderWay(const CallUnderWay&) = delete;
    CallUnderWay& operator=(const CallUnderWay&) = delete;
    ~CallUnderWay();

    /** Has the call count as failed when it is over. */
    void failed() noexcept { failed_ = true; }
    /** The failure, with the text that the runtime has at this moment. */
    CallFailure failure(ov_status_e status) const;

private:
    const std::uint64_t failuresBefore_;
    const unsigned side_;
    bool failed_ = false;
};

/** Empty for a call that succeeds. */
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

/** Held while a failure looks whose text it has, so that they do so one after the other. */
std::unique_lock<std::mutex> oneFailureAtATime();

/** How long a failure may wait for other calls. */
constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(1);
using Deadline = std::chrono::steady_clock::time_point;

/** Whether the text is certainly that call's own. Waits for other calls; under the lock above. */
bool hasItsOwnText(const CallFailure& failure, Deadline deadline);

/** @throws Failure with the text or, if it is empty, with the runtime's words for the status */
[[noreturn]] void raise(ov_status_e status, const std::string& text);

/** Makes a call whose text nobody asks for. */
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
 * @throws Failure with the call's own text, or with the runtime's words for the status alone
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
 * Makes a call that changes nothing when it fails: it is repeated where its text would be lost.
 * Others that fail meanwhile wait with theirs, so that it hardly ever is.
 *
 * @throws Failure as check() does
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
