#pragma once

namespace VelmoraQuavin::testing {

/// Controls the memory that decryption allocates, which differs between systems.

/// Whether its allocations can be made to fail.
bool canFailAesAllocations();
/// Lets `count` more allocations succeed and all later ones fail.
void grantAesAllocations(int count);
/// Lets every allocation succeed again.
void grantAllAesAllocations();
/// The least number of allocations in a decryption that can fail.
extern const int kLeastAesAllocations;

/// Whether the host's own list of cryptographic errors, if the system has one, is empty.
bool hostSeesNoAesError();

}  // namespace VelmoraQuavin::testing
