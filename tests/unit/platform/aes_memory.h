#pragma once

namespace VelmoraQuavin::testing {

/// The memory that decryption takes, which differs from system to system.

/// Whether its allocations can be made to fail.
bool canFailAesAllocations();
/// Lets so many more allocations succeed, and all behind them fail.
void grantAesAllocations(int count);
/// Lets every allocation succeed again.
void grantAllAesAllocations();
/// A decryption takes no fewer allocations that can fail.
extern const int kLeastAesAllocations;

/// Whether the host's own list of cryptographic errors, where the system has one, is empty.
bool hostSeesNoAesError();

}  // namespace VelmoraQuavin::testing
