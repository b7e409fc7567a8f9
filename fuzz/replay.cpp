// Runs a fuzz target once for each input on the command line, in place of the fuzzer's own main. A
// file that ends in ".base64" has an input in each of its lines, any other one is an input.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int g_inputs = 0;

// An input stands in a block of its own, so that reading past its end is noticed.
void run(std::string_view bytes) {
  const std::vector<std::uint8_t> block(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(block.data(), block.size());
  ++g_inputs;
}

std::string decoded(std::string_view base64) {
  constexpr std::string_view k_digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char c : base64) {
    const std::size_t digit = k_digits.find(c);
    if (digit == std::string_view::npos) break;
    bits = bits << 6U | static_cast<unsigned>(digit);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> static_cast<unsigned>(count));
  }
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr std::string_view k_list = ".base64";
  for (int i = 1; i < argc; ++i) {
    const std::string_view name = argv[i];
    std::ifstream file(argv[i], std::ios::binary);
    if (!file) {
      std::fprintf(stderr, "cannot read %s\n", argv[i]);
      return 1;
    }
    if (name.size() > k_list.size() && name.substr(name.size() - k_list.size()) == k_list) {
      for (std::string line; std::getline(file, line);) run(decoded(line));
    } else {
      run(std::string{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
    }
  }
  std::printf("%d inputs\n", g_inputs);
  // A run without input would be a check that cannot fail.
  return g_inputs != 0 ? 0 : 1;
}
