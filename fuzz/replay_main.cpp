// Runs a fuzz target over files or folders of inputs, so every corpus also runs as an
// ordinary test in every build (and the targets never stop compiling).
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

int RunOne(const std::filesystem::path &path) {
  std::ifstream in(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
  return 1;
}

}  // namespace

int main(int argc, char **argv) {
  int inputs = 0;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path(argv[i]);
    if (std::filesystem::is_directory(path)) {
      for (const auto &entry : std::filesystem::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) inputs += RunOne(entry.path());
      }
    } else {
      inputs += RunOne(path);
    }
  }
  std::printf("replayed %d inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
