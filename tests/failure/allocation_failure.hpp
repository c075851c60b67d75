// Making the N-th allocation fail, in the failure-test program only: its replacement of the
// global operator new (all forms) and the library's gate in front of RapidJSON's C
// allocations count together, and the armed one fails once (later ones succeed again).
#pragma once

#include <cstdint>

namespace palvex::failure {

// The n-th counted allocation from now fails (n >= 1).
void FailAllocation(std::uint64_t n) noexcept;

// Stops counting; returns true when the armed allocation failed.
bool StopFailing() noexcept;

// Only allocations made while one of these lives on the thread are counted: calls into
// the library (and the host callbacks they make) are, the tests' own bookkeeping is not.
class CountedScope {
 public:
  CountedScope() noexcept;
  ~CountedScope();
  CountedScope(const CountedScope &) = delete;
  CountedScope &operator=(const CountedScope &) = delete;
};

}  // namespace palvex::failure
