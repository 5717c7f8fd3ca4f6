#include "owner_only_windows.hpp"

#include <system_error>

#include "failure.hpp"

namespace InferenceEngine::runtime {
namespace {

void require(BOOL succeeded) {
    if (succeeded == 0) {
        throw Failure(GENERAL_ERROR,
                      "No temporary file can be made private: " +
                          std::system_category().message(static_cast<int>(::GetLastError())));
    }
}

/** The token's user, followed by the identifier that it points to. */
std::vector<unsigned char> currentUser() {
    HANDLE token = nullptr;
    require(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token));
    DWORD size = 0;
    ::GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<unsigned char> user(size);
    const BOOL succeeded = ::GetTokenInformation(token, TokenUser, user.data(), size, &size);
    ::CloseHandle(token);
    require(succeeded);
    return user;
}

}  // namespace

OwnerOnly::OwnerOnly() {
    const std::vector<unsigned char> user = currentUser();
    PSID const identifier = reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
    const DWORD size =
        static_cast<DWORD>(sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE)) + ::GetLengthSid(identifier);
    list_.resize(size);
    ACL* const list = reinterpret_cast<ACL*>(list_.data());
    require(::InitializeAcl(list, size, ACL_REVISION));
    require(::AddAccessAllowedAce(list, ACL_REVISION, FILE_ALL_ACCESS, identifier));
    require(::InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION));
    require(::SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE));
    require(::SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED));
    attributes_.nLength = sizeof attributes_;
    attributes_.lpSecurityDescriptor = &descriptor_;
}

}  // namespace InferenceEngine::runtime
