// Helpers for tests that touch files: a fresh folder per test, descriptor counting,
// and a check of the exact error an operation raises.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <unistd.h>

#include "api/px_exception.hpp"
#include "platform/fault_injection.hpp"

namespace palvex::testing {

namespace fs = std::filesystem;

// A UTF-8 path as a file-system path.
inline fs::path AsPath(std::string_view utf8) { return fs::path(std::u8string(utf8.begin(), utf8.end())); }

// A new, empty folder under the system's temporary directory, removed with everything
// in it when the test ends. Every fault armed during the test is cleared with it.
class ScratchFolder {
 public:
  ScratchFolder() {
    const fs::path base = fs::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt) {
      fs::path candidate = base / ("palvex-test-" + std::to_string(getpid()) + "-" + std::to_string(attempt));
      if (fs::create_directory(candidate)) {
        root_ = candidate;
        return;
      }
    }
    ADD_FAILURE() << "no scratch folder could be made";
  }
  ~ScratchFolder() {
    palvex::platform::DisarmAllFaults();
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }
  ScratchFolder(const ScratchFolder &) = delete;
  ScratchFolder &operator=(const ScratchFolder &) = delete;

  const fs::path &root() const { return root_; }

  // The UTF-8 path of a name inside the folder.
  std::string Path(std::string_view name) const {
    const std::u8string text = (root_ / AsPath(name)).u8string();
    return std::string(text.begin(), text.end());
  }

  // Writes a file inside the folder and returns its path.
  std::string WriteFile(std::string_view name, std::string_view contents) const {
    const std::string path = Path(name);
    std::ofstream(AsPath(path), std::ios::binary).write(contents.data(), static_cast<std::streamsize>(contents.size()));
    return path;
  }

  // The names inside the folder, to see that nothing was left behind.
  std::set<std::string> Entries() const {
    std::set<std::string> names;
    for (const auto &entry : fs::directory_iterator(root_)) {
      const std::u8string name = entry.path().filename().u8string();
      names.emplace(name.begin(), name.end());
    }
    return names;
  }

 private:
  fs::path root_;
};

inline std::string ReadWholeFile(const std::string &path) {
  std::ifstream in(AsPath(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The environment variable that names the system's temporary folder.
#ifdef _WIN32
inline constexpr const char *kTempFolderVariable = "TMP";
#else
inline constexpr const char *kTempFolderVariable = "TMPDIR";
#endif

// Descriptors (on Windows: handles) the process holds now, to check that failures close
// what they open.
#ifdef _WIN32
std::size_t OpenHandleCount();  // open_handles_win32.cpp, which keeps <windows.h> out of here
inline std::size_t OpenDescriptorCount() { return OpenHandleCount(); }
#else
inline std::size_t OpenDescriptorCount() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto &entry : fs::directory_iterator("/proc/self/fd")) ++count;
  return count;
}
#endif

namespace detail {
#ifdef _WIN32
inline void SetVariable(const char *name, const char *value) { _putenv_s(name, value); }
inline void UnsetVariable(const char *name) { _putenv_s(name, ""); }
#else
inline void SetVariable(const char *name, const char *value) { setenv(name, value, 1); }
inline void UnsetVariable(const char *name) { unsetenv(name); }
#endif
}  // namespace detail

// Sets an environment variable for a scope and puts the old value back.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char *name, const char *value) : name_(name) {
    if (const char *old = std::getenv(name)) old_ = old;
    if (value != nullptr) {
      detail::SetVariable(name, value);
    } else {
      detail::UnsetVariable(name);
    }
  }
  ~ScopedEnvironment() {
    if (old_) {
      detail::SetVariable(name_, old_->c_str());
    } else {
      detail::UnsetVariable(name_);
    }
  }
  ScopedEnvironment(const ScopedEnvironment &) = delete;
  ScopedEnvironment &operator=(const ScopedEnvironment &) = delete;

 private:
  const char *name_;
  std::optional<std::string> old_;
};

// The failure an operation is expected to raise.
struct ExpectedFailure {
  std::uint32_t code;
  std::string_view message;
  std::int64_t detail1 = -1;
};

// Runs the operation and checks that it raises exactly the expected PX_Exception.
template <typename Operation>
::testing::AssertionResult RaisesExactly(Operation &&operation, const ExpectedFailure &expected) {
  try {
    operation();
  } catch (const ns_sensor::PX_Exception &raised) {
    if (raised.code() == expected.code && raised.what() == expected.message &&
        raised.detail1() == expected.detail1 && raised.detail2() == -1) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "raised code " << raised.code() << " \"" << raised.what()
                                         << "\" detail1 " << raised.detail1() << " detail2 " << raised.detail2()
                                         << "; expected code " << expected.code << " \"" << expected.message
                                         << "\" detail1 " << expected.detail1;
  }
  return ::testing::AssertionFailure() << "nothing raised; expected \"" << expected.message << "\"";
}

#define PALVEX_SKIP_WITHOUT_FAULT_SEAM()                \
  if (!palvex::platform::FaultInjectionAvailable()) {   \
    GTEST_SKIP() << "built without the fault seam";     \
  }

// A fixture with a fresh folder that fails when a descriptor opened during the test
// stays open. A derived TearDown lets go of what it holds before calling this one.
class FolderTest : public ::testing::Test {
 protected:
  void SetUp() override { descriptorsBefore_ = OpenDescriptorCount(); }
  void TearDown() override { EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore_) << "a handle stayed open"; }

  ScratchFolder folder_;
  std::size_t descriptorsBefore_ = 0;
};

// The same for tests that arm faults, skipped where the seam is not built in: a derived
// SetUp calls this one first and returns if IsSkipped().
class FaultSeamTest : public FolderTest {
 protected:
  void SetUp() override {
    PALVEX_SKIP_WITHOUT_FAULT_SEAM();
    FolderTest::SetUp();
  }
  void TearDown() override {
    if (palvex::platform::FaultInjectionAvailable()) FolderTest::TearDown();
  }
};

}  // namespace palvex::testing
