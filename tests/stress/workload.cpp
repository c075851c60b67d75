#include "workload.hpp"

#include <cstdio>
#include <memory>
#include <random>

namespace palvex::stress {
namespace {

// What GetLastException_1 delivered.
struct LastError {
  uint32_t code = 0;
  std::string message;
};

void ReceiveLastError(PX_ErrorContext context, uint32_t code, const char *message, int64_t, int64_t) {
  *static_cast<LastError *>(context) = LastError{code, message ? message : ""};
}

// Conversions run one at a time: the rule a host follows. Opening an MGJSON file needs
// no lock of the host's.
std::unique_lock<std::mutex> ConversionTurn(Shared &shared, const Input &input, Tally &tally) {
  if (!input.converts) return {};
  ++tally.conversions;
  return std::unique_lock(shared.conversionLock);
}

ISensorFileHandler *Open(Shared &shared, IPalvex &manager, const Input &input, const char *location,
                         host::ErrorLog &errors, Tally &tally) {
  ISensorFileHandler *file = nullptr;
  const auto turn = ConversionTurn(shared, input, tally);
  ++tally.opens;
  manager.OpenFile(&file, input.path.c_str(), location, &errors);
  return file;
}

std::string OpenAndDigest(Shared &shared, IPalvex &manager, size_t index, host::ErrorLog &errors,
                          Tally &tally) {
  ISensorFileHandler *file = Open(shared, manager, shared.inputs[index], nullptr, errors, tally);
  if (file == nullptr) return "not opened\n" + DescribeErrors(errors);
  std::string digest = DigestFile(*file, errors, tally.queries);
  manager.CloseFile(&file, &errors);
  return digest + DescribeErrors(errors);
}

std::string StreamDigest(Shared &shared, IPalvex &manager, size_t index, host::ErrorLog &errors,
                         Tally &tally) {
  const Input &input = shared.inputs[index];
  IMgjsonStream *stream = nullptr;
  {
    const auto turn = ConversionTurn(shared, input, tally);
    ++tally.streams;
    manager.CreateMgjsonStream(&stream, input.path.c_str(), 1, &errors);
  }
  if (stream == nullptr) return "no stream\n" + DescribeErrors(errors);
  std::string digest = DigestStream(*stream, errors, tally.queries);
  manager.ReleaseMgjsonStream(&stream, &errors);
  return digest + DescribeErrors(errors);
}

std::string LocalizedMessage() {
  PX_HostString text;
  GetLocalizedErrorMsg_1(kMissingFileKey, "x", nullptr, nullptr, nullptr, &text);
  return text.text;
}

class Worker {
 public:
  Worker(Shared &shared, int thread, Tally &tally)
      : shared_(shared), thread_(thread), tally_(tally), random_(static_cast<unsigned>(thread) + 1),
        outputFolder_(shared.workspace + "/out" + std::to_string(thread)) {}

  void Run(int iterations) {
    // Odd threads hold a use of the manager and one open file through the first half, so
    // there the others' opens and closes meet a file that stays open; in the second half
    // every use comes and goes and the manager itself is torn down and made again.
    IPalvex *anchor = thread_ % 2 == 1 ? Create() : nullptr;
    const size_t heldInput = static_cast<size_t>(thread_) % shared_.inputs.size();
    ISensorFileHandler *held = anchor ? Open(shared_, *anchor, shared_.inputs[heldInput], nullptr, log_, tally_) : nullptr;
    for (iteration_ = 0; iteration_ < iterations; ++iteration_) {
      if (held != nullptr) Check("held file", shared_.expected.files[heldInput], DigestFile(*held, log_, tally_.queries));
      if (anchor != nullptr && iteration_ == iterations / 2) {
        // A close that is not the last leaves the pointer set, yet another thread's close
        // may destroy the handler at any moment: it is dropped here either way.
        if (held != nullptr) anchor->CloseFile(&held, &log_);
        held = nullptr;
        Release(anchor);
      }
      Round();
    }
  }

 private:
  size_t AnyInput() { return std::uniform_int_distribution<size_t>(0, shared_.inputs.size() - 1)(random_); }

  void Check(const std::string &what, const std::string &expected, const std::string &actual) {
    if (expected != actual) shared_.Mismatch(thread_, iteration_, what, expected, actual);
    log_.clear();
  }

  IPalvex *Create() {
    IPalvex *manager = nullptr;
    ++tally_.managers;
    CreatePalvex_1(&manager, shared_.pluginFolder.c_str(), nullptr, nullptr, &log_, host::Callbacks(), nullptr);
    Check("creation", "", manager ? DescribeErrors(log_) : "no manager\n" + DescribeErrors(log_));
    return manager;
  }

  void Release(IPalvex *&manager) {
    DestroyPalvex_1(&manager, &log_);
    Check("release", "", DescribeErrors(log_));
  }

  void Round() {
    IPalvex *manager = Create();
    if (manager == nullptr) return;
    for (int n = 0; n < 3; ++n) {
      const size_t index = AnyInput();
      Check("file " + shared_.inputs[index].path, shared_.expected.files[index],
            OpenAndDigest(shared_, *manager, index, log_, tally_));
    }
    OpenTwiceAndPlace(*manager);
    FailOnPurpose(*manager);
    const size_t index = AnyInput();
    Check("stream " + shared_.inputs[index].path, shared_.expected.streams[index],
          StreamDigest(shared_, *manager, index, log_, tally_));
    Check("formats", shared_.expected.formats, DigestFormats(log_, tally_.queries));
    ++tally_.queries.calls;
    Check("localized message", shared_.expected.localizedMessage, LocalizedMessage());
    Release(manager);
  }

  // The same path opened twice gives one handler; the second open also places a copy of
  // the MGJSON file in this thread's own folder. Two closes balance the two opens.
  void OpenTwiceAndPlace(IPalvex &manager) {
    const size_t index = AnyInput();
    const Input &input = shared_.inputs[index];
    ISensorFileHandler *first = Open(shared_, manager, input, nullptr, log_, tally_);
    ISensorFileHandler *second = Open(shared_, manager, input, outputFolder_.c_str(), log_, tally_);
    if (first == nullptr || first != second) {
      Check("one handler for " + input.path, "", "two handlers or none\n" + DescribeErrors(log_));
    } else {
      Check("placed " + input.path, shared_.expected.files[index], DigestFile(*second, log_, tally_.queries));
    }
    if (second != nullptr) manager.CloseFile(&second, &log_);
    if (first != nullptr) manager.CloseFile(&first, &log_);
    Check("two closes of " + input.path, "", DescribeErrors(log_));
  }

  // A path only this thread and this round use: the report and the thread's last error
  // must both name it, whatever the other threads fail on meanwhile.
  void FailOnPurpose(IPalvex &manager) {
    const std::string missing =
        shared_.workspace + "/missing-" + std::to_string(thread_) + "-" + std::to_string(iteration_) + ".csv";
    ISensorFileHandler *file = nullptr;
    ++tally_.failures;
    manager.OpenFile(&file, missing.c_str(), nullptr, &log_);
    const std::string expected = "error " + std::to_string(shared_.expected.missingFileCode) +
                                 ": File not exist at input path:" + missing + ".\n";
    const std::string reported = DescribeErrors(log_);
    Check("report of the missing file", expected, reported);
    LastError last;
    ++tally_.queries.calls;
    GetLastException_1(&last, ReceiveLastError, 1);
    Check("last error", expected, "error " + std::to_string(last.code) + ": " + last.message + "\n");
    ++tally_.queries.calls;
    GetLastException_1(&last, ReceiveLastError, 0);
    Check("last error after the reset", "error 0: \n", "error " + std::to_string(last.code) + ": " + last.message + "\n");
  }

  Shared &shared_;
  const int thread_;
  Tally &tally_;
  std::mt19937 random_;
  const std::string outputFolder_;
  host::ErrorLog log_;
  int iteration_ = -1;
};

}  // namespace

void Tally::Add(const Tally &other) {
  managers += other.managers;
  opens += other.opens;
  conversions += other.conversions;
  streams += other.streams;
  failures += other.failures;
  queries.calls += other.queries.calls;
}

void Shared::Mismatch(int thread, int iteration, const std::string &what, const std::string &expectedText,
                      const std::string &actual) {
  const std::lock_guard lock(mismatchLock);
  mismatches.push_back("thread " + std::to_string(thread) + ", round " + std::to_string(iteration) + ", " + what +
                       ":\n--- alone\n" + expectedText + "--- under load\n" + actual);
}

bool ComputeExpected(Shared &shared, Tally &tally) {
  host::Library library(nullptr, shared.pluginFolder.c_str());
  ++tally.managers;
  host::ErrorLog errors;
  if (library.manager() == nullptr || !library.errors().empty()) {
    std::fprintf(stderr, "no manager:\n%s", DescribeErrors(library.errors()).c_str());
    return false;
  }
  for (size_t index = 0; index < shared.inputs.size(); ++index) {
    shared.expected.files.push_back(OpenAndDigest(shared, *library.manager(), index, errors, tally));
    shared.expected.streams.push_back(StreamDigest(shared, *library.manager(), index, errors, tally));
    if (!errors.empty()) {
      std::fprintf(stderr, "%s:\n%s", shared.inputs[index].path.c_str(), DescribeErrors(errors).c_str());
      return false;
    }
  }
  shared.expected.formats = DigestFormats(errors, tally.queries);
  shared.expected.localizedMessage = LocalizedMessage();
  ISensorFileHandler *file = nullptr;
  library.manager()->OpenFile(&file, (shared.workspace + "/missing").c_str(), nullptr, &errors);
  shared.expected.missingFileCode = errors.errors.empty() ? 0 : errors.errors.front().code;
  LastError cleared;
  GetLastException_1(&cleared, ReceiveLastError, 1);
  return shared.expected.missingFileCode != 0;
}

void RunWorker(Shared &shared, int thread, int iterations, Tally &tally) { Worker(shared, thread, tally).Run(iterations); }

}  // namespace palvex::stress
