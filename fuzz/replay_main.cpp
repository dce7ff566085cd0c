// Replays inputs through a fuzz target without libFuzzer, so that the
// ordinary builds run every corpus file: each argument is a file or a
// directory of files (not recursive), run in name order. Each input's path
// is printed before it runs, so a crash names its input.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

bool Replay(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "replay: cannot read %s\n", path.c_str());
    return false;
  }
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());
  std::fprintf(stderr, "replay: %s (%zu bytes)\n", path.c_str(), bytes.size());
  // A copy of exactly the input's size, so that a sanitizer sees any read
  // beyond it, as it would under libFuzzer.
  std::vector<uint8_t> input(bytes.begin(), bytes.end());
  // libFuzzer never passes a null pointer, not even for the empty input.
  static const uint8_t kEmpty = 0;
  LLVMFuzzerTestOneInput(input.empty() ? &kEmpty : input.data(), input.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> inputs;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path(argv[i]);
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
      for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
        if (entry.is_regular_file()) inputs.push_back(entry.path());
      }
    } else {
      inputs.push_back(path);
    }
    if (error) {
      std::fprintf(stderr, "replay: cannot list %s: %s\n", argv[i], error.message().c_str());
      return 1;
    }
  }
  if (inputs.empty()) {
    std::fprintf(stderr, "replay: no inputs\n");
    return 1;
  }
  std::sort(inputs.begin(), inputs.end());
  for (const auto& path : inputs) {
    if (!Replay(path)) return 1;
  }
  std::fprintf(stderr, "replay: %zu inputs passed\n", inputs.size());
  return 0;
}
