// Whom an access list in memory allows to read or change a file. The lists are laid out by hand, so
// that none depends on what a file system preserves of them.

#include "platform/windows/access_list.h"

#include <gtest/gtest.h>
// After windows.h, which it needs.
#include <sddl.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "support/case_name.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using Bytes = std::vector<unsigned char>;

// The numbers of the types that an entry may have.
constexpr unsigned char kAllowed = 0;
constexpr unsigned char kDenied = 1;
constexpr unsigned char kAllowedCompound = 4;
constexpr unsigned char kAllowedObject = 5;
constexpr unsigned char kDeniedObject = 6;
constexpr unsigned char kAllowedCallback = 9;
constexpr unsigned char kDeniedCallback = 10;
constexpr unsigned char kAllowedCallbackObject = 11;
constexpr unsigned char kDeniedCallbackObject = 12;
constexpr unsigned char kLaterThanAllKnown = 0x7F;

constexpr unsigned char kInherited = 0x10;
constexpr unsigned char kInheritOnly = 0x08;

constexpr DWORD kReadData = 0x00000001;
constexpr DWORD kEverything = 0x001F01FF;
constexpr DWORD kGenericRead = 0x80000000;
constexpr DWORD kGenericAll = 0x10000000;
constexpr DWORD kAllButReading = kEverything & ~kReadData;

const char* const kUser = "S-1-5-21-1-2-3-1001";
const char* const kOwner = "S-1-5-21-1-2-3-1002";
const char* const kStranger = "S-1-5-21-1-2-3-1003";
const char* const kSystem = "S-1-5-18";
const char* const kAdministrators = "S-1-5-32-544";
const char* const kOwnerRights = "S-1-3-4";
const char* const kUsers = "S-1-5-32-545";
const char* const kAuthenticatedUsers = "S-1-5-11";
const char* const kEveryone = "S-1-1-0";

struct Entry {
    unsigned char type;
    unsigned char flags;
    DWORD mask;
    const char* identifier;
};

Bytes identifier(const std::string& text) {
    PSID made = nullptr;
    if (::ConvertStringSidToSidA(text.c_str(), &made) == 0) {
        ADD_FAILURE() << "no identifier: " << text;
        return {};
    }
    const std::unique_ptr<void, decltype(&::LocalFree)> memory(made, &::LocalFree);
    const auto* const bytes = static_cast<const unsigned char*>(made);
    return {bytes, bytes + ::GetLengthSid(made)};
}

void append(Bytes& bytes, std::size_t number, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
        bytes.push_back(static_cast<unsigned char>(number >> (8 * i)));
    }
}

void append(Bytes& bytes, const Entry& entry) {
    Bytes rest;
    if (entry.type == kAllowedObject || entry.type == kDeniedObject ||
        entry.type == kAllowedCallbackObject || entry.type == kDeniedCallbackObject) {
        append(rest, 0, 4);  // names no object
    }
    const Bytes name = identifier(entry.identifier);
    rest.insert(rest.end(), name.begin(), name.end());
    append(bytes, entry.type, 1);
    append(bytes, entry.flags, 1);
    append(bytes, 8 + rest.size(), 2);
    append(bytes, entry.mask, 4);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
}

// Revision 4 allows every type of entry.
Bytes listOf(const std::vector<Entry>& entries) {
    Bytes body;
    for (const Entry& entry : entries) {
        append(body, entry);
    }
    Bytes list;
    append(list, 4, 2);
    append(list, 8 + body.size(), 2);
    append(list, entries.size(), 4);
    list.insert(list.end(), body.begin(), body.end());
    return list;
}

bool othersMayReadBy(const std::vector<Entry>& entries) {
    Bytes list = listOf(entries);
    return othersMay(Access::kRead, reinterpret_cast<ACL*>(list.data()), identifier(kOwner).data(),
                     identifier(kUser).data());
}

struct Row {
    const char* name;
    Entry entry;
    bool others;
};

class AccessListEntry : public ::testing::TestWithParam<Row> {};

TEST_P(AccessListEntry, DecidesWhetherOthersMayRead) {
    const Row& row = GetParam();
    EXPECT_EQ(othersMayReadBy({row.entry}), row.others);
    // Another entry before it makes no difference.
    EXPECT_EQ(othersMayReadBy({{kAllowed, 0, kEverything, kUser}, row.entry}), row.others);
}

INSTANTIATE_TEST_SUITE_P(
    ExaminedTypes, AccessListEntry,
    ::testing::Values(
        Row{"TheUser", {kAllowed, 0, kEverything, kUser}, false},
        Row{"TheOwner", {kAllowed, 0, kEverything, kOwner}, false},
        Row{"TheSystem", {kAllowed, 0, kEverything, kSystem}, false},
        Row{"Administrators", {kAllowed, 0, kEverything, kAdministrators}, false},
        Row{"OwnerRights", {kAllowed, 0, kEverything, kOwnerRights}, false},
        Row{"AnotherUser", {kAllowed, 0, kEverything, kStranger}, true},
        Row{"Users", {kAllowed, 0, kEverything, kUsers}, true},
        Row{"AuthenticatedUsers", {kAllowed, 0, kEverything, kAuthenticatedUsers}, true},
        Row{"Everyone", {kAllowed, 0, kEverything, kEveryone}, true},
        Row{"Inherited", {kAllowed, kInherited, kEverything, kEveryone}, true},
        Row{"InheritOnly", {kAllowed, kInheritOnly, kEverything, kEveryone}, false},
        Row{"ReadData", {kAllowed, 0, kReadData, kUsers}, true},
        Row{"GenericRead", {kAllowed, 0, kGenericRead, kUsers}, true},
        Row{"GenericAll", {kAllowed, 0, kGenericAll, kUsers}, true},
        Row{"AllButReading", {kAllowed, 0, kAllButReading, kUsers}, false},
        Row{"Denied", {kDenied, 0, kEverything, kEveryone}, false},
        Row{"DeniedObject", {kDeniedObject, 0, kEverything, kEveryone}, false},
        Row{"DeniedCallback", {kDeniedCallback, 0, kEverything, kEveryone}, false},
        Row{"DeniedCallbackObject", {kDeniedCallbackObject, 0, kEverything, kEveryone}, false},
        Row{"CallbackOfTheUser", {kAllowedCallback, 0, kEverything, kUser}, false},
        Row{"CallbackOfAdministrators", {kAllowedCallback, 0, kEverything, kAdministrators}, false},
        Row{"CallbackOfEveryone", {kAllowedCallback, 0, kReadData, kEveryone}, true},
        Row{"CallbackInheritOnly", {kAllowedCallback, kInheritOnly, kEverything, kUsers}, false},
        Row{"CallbackAllButReading", {kAllowedCallback, 0, kAllButReading, kUsers}, false}),
    testing::CaseName());

// The identifiers in entries of these types are not examined, so that even the user's own entries
// count as others'.
INSTANTIATE_TEST_SUITE_P(
    UnexaminedTypes, AccessListEntry,
    ::testing::Values(
        Row{"Object", {kAllowedObject, 0, kReadData, kUser}, true},
        Row{"ObjectAllButReading", {kAllowedObject, 0, kAllButReading, kUsers}, false},
        Row{"ObjectInheritOnly", {kAllowedObject, kInheritOnly, kEverything, kUsers}, false},
        Row{"CallbackObject", {kAllowedCallbackObject, 0, kReadData, kUser}, true},
        Row{"Compound", {kAllowedCompound, 0, kReadData, kUser}, true},
        Row{"Later", {kLaterThanAllKnown, 0, kGenericAll, kUser}, true}),
    testing::CaseName());

TEST(AccessList, AnEmptyListLetsNobodyRead) {
    EXPECT_FALSE(othersMayReadBy({}));
}

TEST(AccessList, AMissingListLetsEverybodyRead) {
    EXPECT_TRUE(
        othersMay(Access::kRead, nullptr, identifier(kOwner).data(), identifier(kUser).data()));
}

TEST(AccessList, AFileWithoutAnOwnerCountsAsReadableByOthers) {
    Bytes list = listOf({{kAllowed, 0, kEverything, kUser}});
    EXPECT_TRUE(othersMay(Access::kRead, reinterpret_cast<ACL*>(list.data()), nullptr,
                          identifier(kUser).data()));
}

TEST(AccessList, AListThatEndsInsideAnEntryCountsAsReadableByOthers) {
    Bytes list = listOf({{kAllowed, 0, kEverything, kUser}});
    list[10] = static_cast<unsigned char>(list[10] + 4);  // the entry's size
    EXPECT_TRUE(othersMay(Access::kRead, reinterpret_cast<ACL*>(list.data()),
                          identifier(kOwner).data(), identifier(kUser).data()));
}

TEST(AccessList, AnyRightToChangeTheFileOrItsListCountsAsChange) {
    const std::vector<DWORD> masks = {0x2, 0x4, 0x40000, 0x80000, 0x40000000, kGenericAll};
    for (const DWORD mask : masks) {
        Bytes list = listOf({{kAllowed, 0, mask, kUsers}});
        EXPECT_TRUE(othersMay(Access::kChange, reinterpret_cast<ACL*>(list.data()),
                              identifier(kOwner).data(), identifier(kUser).data()))
            << mask;
    }
}

TEST(AccessList, ReadAccessAloneDoesNotLetOthersChange) {
    Bytes list = listOf({{kAllowed, 0, kReadData, kEveryone},
                         {kAllowed, 0, kGenericRead, kUsers},
                         {kDenied, 0, kEverything, kEveryone},
                         {kAllowed, 0, kEverything, kUser},
                         {kAllowed, 0, kEverything, kOwner}});
    EXPECT_FALSE(othersMay(Access::kChange, reinterpret_cast<ACL*>(list.data()),
                           identifier(kOwner).data(), identifier(kUser).data()));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
