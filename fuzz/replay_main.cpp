// Replays a corpus through a fuzz target's entry point without libFuzzer: every file named on the
// command line, and every file inside a folder named there, once, in name order. A crash or a
// sanitizer report fails the run; a corpus with no file in it fails too, so that a moved corpus
// is not taken for a passing one.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> corpus_files(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path(argv[i]);
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(path, error)) {
        if (entry.is_regular_file()) {
          files.push_back(entry.path());
        }
      }
    } else if (std::filesystem::is_regular_file(path, error)) {
      files.push_back(path);
    } else {
      std::fprintf(stderr, "replay: '%s' is neither a file nor a folder\n", argv[i]);
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Exactly `bytes.size()` bytes on the heap, so that AddressSanitizer sees a read past the end.
// Never null, as with libFuzzer, even for an empty input.
std::unique_ptr<std::uint8_t[]> exact_copy(const std::string& bytes) {
  std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), copy.get());
  return copy;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::filesystem::path> files = corpus_files(argc, argv);
  if (files.empty()) {
    std::fprintf(stderr, "replay: no corpus file found; usage: %s <file or folder>...\n", argv[0]);
    return 1;
  }
  for (const std::filesystem::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)),
                            std::istreambuf_iterator<char>());
    if (!stream.good() && !stream.eof()) {
      std::fprintf(stderr, "replay: cannot read '%s'\n", file.c_str());
      return 1;
    }
    std::printf("replay: %s (%zu bytes)\n", file.c_str(), bytes.size());
    std::fflush(stdout);  // the last name printed is the input that crashed
    const std::unique_ptr<std::uint8_t[]> data = exact_copy(bytes);
    LLVMFuzzerTestOneInput(data.get(), bytes.size());
  }
  std::printf("replay: %zu inputs, no fault\n", files.size());
  return 0;
}
