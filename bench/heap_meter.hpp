// Counts the bytes the C heap holds, and their peak, for the benchmarks. Including this
// header in exactly one benchmark program replaces malloc and friends for the whole
// process (glibc lets a program do that), so the library's allocations count too.
#pragma once

#include <cstddef>

namespace palvex::bench {

// Bytes held now, and the most held since the last ResetPeak.
std::size_t HeapInUse();
std::size_t HeapPeak();
void ResetHeapPeak();

}  // namespace palvex::bench
