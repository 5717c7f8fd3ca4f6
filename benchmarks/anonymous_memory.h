#pragma once

namespace benchmark {

/// What is resident of this process and not backed by a file, in KiB; 0 if the system does not say.
long anonymousMemory();

}  // namespace benchmark
