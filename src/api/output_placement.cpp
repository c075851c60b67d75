#include "api/output_placement.hpp"

#include <vector>

#include "plugin_model/scoped_file.hpp"
#include "platform/file_io.hpp"

namespace ns_sensor {
namespace {

constexpr std::size_t kCopyBlockBytes = 65536;
constexpr std::string_view kMgjsonSuffix = ".mgjson";

bool EndsWithSeparator(std::string_view path) { return !path.empty() && (path.back() == '/' || path.back() == '\\'); }

}  // namespace

std::string PlacementTarget(std::string_view directory, std::string_view inputPath) {
  const std::size_t separator = inputPath.find_last_of("/\\");
  const std::string_view name = separator == std::string_view::npos ? inputPath : inputPath.substr(separator + 1);
  std::string target(directory);
  if (!EndsWithSeparator(target)) target.push_back('/');
  target.append(name);
  target.append(kMgjsonSuffix);
  return target;
}

void CopyFileContents(std::string_view from, std::string_view to) {
  const PX_PLUGIN::ScopedFile source(File_IO::Open(from, /*readOnly=*/true, /*append=*/false));
  const bool existed = File_IO::GetFileMode(to) == File_IO::kFile;
  File_IO::Create(to, false, /*overwrite=*/false);  // false, touching nothing, when it exists
  try {
    PX_PLUGIN::ScopedFile target(File_IO::Open(to, /*readOnly=*/false, /*append=*/false));
    std::vector<char> block(kCopyBlockBytes);
    std::uint64_t copied = 0;
    for (;;) {
      const std::uint32_t count = File_IO::Read(source.get(), block.data(), block.size());
      if (count == 0) break;
      File_IO::Write(target.get(), block.data(), count);
      copied += count;
    }
    File_IO::SetEOF(target.get(), copied);
    target.Close();
  } catch (...) {
    // No half-copied file stays, as with a stream's save copy: what was there is left
    // empty, a new file goes.
    try {
      if (existed) {
        File_IO::Create(to, false, /*overwrite=*/true);
      } else {
        File_IO::Delete(to);
      }
    } catch (...) {
      // The copy's own failure is the one to report.
    }
    throw;
  }
}

PlacedFile::PlacedFile(TemporaryFile file, std::string target) : file_(std::move(file)), target_(std::move(target)) {
  const std::uint32_t mode = File_IO::GetFileMode(target_);
  // A folder in the way is refused as the file layer refuses it: NotAFile (4).
  if (mode == File_IO::kFolder) File_IO::Create(target_, false, /*overwrite=*/false);
  if (mode == File_IO::kNotExisting) {
    File_IO::Rename(file_.path(), target_);
  } else {
    File_IO::SwapData(target_, file_.path());
    swapped_ = true;
  }
}

PlacedFile::~PlacedFile() {
  if (kept_) return;  // file_ deletes the target's old data, or nothing after a rename
  try {
    if (swapped_) {
      File_IO::SwapData(target_, file_.path());
    } else {
      File_IO::Delete(target_);
    }
  } catch (...) {
    // Undoing runs on a failure path already; that failure is the one to report.
  }
}

}  // namespace ns_sensor
