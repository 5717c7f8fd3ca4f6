// The cryptography library fails to compute a digest, which it does not do for want of memory.

#include <dlfcn.h>
#include <openssl/evp.h>

#include "integration/signed_package_test.h"

namespace {

// The call that fails counts down to zero; -1 means none.
int updatesUntilFailure = -1;
int finalsUntilFailure = -1;

bool failsNow(int& calls) {
    if (calls < 0) {
        return false;
    }
    --calls;
    return calls < 0;
}

template <typename Function>
Function* original(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// Called by the library's objects in this program instead of those of the cryptography library.
extern "C" int EVP_DigestUpdate(EVP_MD_CTX* ctx, const void* d, std::size_t cnt) {
    static auto* const call = original<decltype(EVP_DigestUpdate)>("EVP_DigestUpdate");
    return failsNow(updatesUntilFailure) ? 0 : call(ctx, d, cnt);
}
extern "C" int EVP_DigestFinal_ex(EVP_MD_CTX* ctx, unsigned char* md, unsigned int* s) {
    static auto* const call = original<decltype(EVP_DigestFinal_ex)>("EVP_DigestFinal_ex");
    return failsNow(finalsUntilFailure) ? 0 : call(ctx, md, s);
}

namespace VelmoraQuavin::testing {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::StrEq;

class FailingDigests : public SignedPackage {
protected:
    ~FailingDigests() override {
        updatesUntilFailure = -1;
        finalsUntilFailure = -1;
    }

    // Loads with each call failing in turn, and returns how many there are.
    int loadWithEachFailing(int& callsUntilFailure) {
        for (int failing = 0;; ++failing) {
            callsUntilFailure = failing;
            const QuavinStatus status = loadFiles();
            const bool failed = callsUntilFailure < 0;
            callsUntilFailure = -1;
            if (!failed) {
                EXPECT_THAT(status, IsOk());
                expectItsNumbers();
                return failing;
            }
            EXPECT_THAT(status.getCode(), SIGNATURE_ERROR) << failing;
            EXPECT_THAT(status.getDescription().str(),
                        AnyOf(HasSubstr("the system's cryptography fails"), StrEq(kNotTrusted)));
        }
    }

    void SetUp() override { files_ = filesOf("package"); }
};

// At least one digest for each of the manifest, the network, its weights and the list of them.
constexpr int kFewestDigests = 4;

TEST_F(FailingDigests, ADigestThatCannotBeFinishedIsASignatureError) {
    EXPECT_GE(loadWithEachFailing(finalsUntilFailure), kFewestDigests);
}

TEST_F(FailingDigests, BytesThatCannotBeAddedToADigestAreASignatureError) {
    EXPECT_GE(loadWithEachFailing(updatesUntilFailure), kFewestDigests);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
