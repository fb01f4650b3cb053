#include "benchmarks/reading/Sample.h"

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <random>
#include <system_error>

#include <stdlib.h>

namespace reading {

namespace {

std::filesystem::path makeFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "reading.XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr)
    throw std::system_error(errno, std::generic_category(), "no folder for the sample");
  return pattern;
}

/// Writes random doubles between -1000 and 1000 with as many digits as tell them from their neighbours.
class Digits {
 public:
  void append(std::string& text) {
    constexpr double scale = 1000.0 / 4503599627370496.0;  // 53 random bits fall on either side of zero
    const double value = (static_cast<double>(random_() >> 11) - 4503599627370496.0) * scale;
    char digits[32];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
  }

 private:
  std::mt19937_64 random_{5};
};

void write(const std::string& path) {
  constexpr std::size_t scalars = 100'000;
  constexpr std::size_t lists = 200;
  constexpr std::size_t listSize = 10'000;
  std::ofstream file(path, std::ios::binary);
  file.exceptions(std::ios::badbit | std::ios::failbit);
  Digits digits;
  std::string text;
  for (std::size_t number = 0; number < scalars; ++number) {
    text = (number == 0 ? "{\"gain_" : ",\n\"gain_") + std::to_string(number) + "\": ";
    digits.append(text);
    file << text;
  }
  for (std::size_t number = 0; number < lists; ++number) {
    text = ",\n\"table_" + std::to_string(number) + "\": [";
    digits.append(text);
    for (std::size_t element = 1; element < listSize; ++element) {
      text += ',';
      digits.append(text);
    }
    file << text << ']';
  }
  file << "}\n";
  file.close();
}

}  // namespace

Sample::Sample() : folder_(makeFolder()) {
  write(path());
}

Sample::~Sample() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

}  // namespace reading
