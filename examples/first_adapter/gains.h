#pragma once

// [gains]
#include <filesystem>
#include <string>
#include <vector>

/// What a line of a `.gains` file says.
struct Gain {
  std::string name;
  double value = 0.0;
};

/// Reads all lines of a content, or raises `std::invalid_argument` with the place of the first that is wrong.
std::vector<Gain> parse(const std::string& content);

/// Gives the content of a file; false if there is none that can be read.
bool readFile(const std::filesystem::path& path, std::string& content);

/// Gives a text that is another one for each content.
std::u16string checksumOf(const std::string& content);
// [/gains]
