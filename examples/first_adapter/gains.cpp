// [parse]
#include "gains.h"

#include <charconv>
#include <set>
#include <sstream>
#include <stdexcept>
#include <system_error>

std::vector<Gain> parse(const std::string& content) {
  std::vector<Gain> gains;
  std::set<std::string> names;
  std::istringstream lines(content);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    const auto wrong = [&](const std::string& words) {
      return std::invalid_argument("Line " + std::to_string(number) + ": " + words);
    };
    std::istringstream words(line);
    Gain gain;
    std::string value;
    std::string more;
    if (!(words >> gain.name)) continue;
    words >> value;
    const char* const end = value.data() + value.size();
    const auto read = std::from_chars(value.data(), end, gain.value);
    if (read.ec != std::errc() || read.ptr != end)
      throw wrong("expected a number, but found '" + value + "'");
    if (words >> more) throw wrong("expected the end of the line, but found '" + more + "'");
    if (!names.insert(gain.name).second) throw wrong("the name '" + gain.name + "' is there already");
    gains.push_back(gain);
  }
  return gains;
}
// [/parse]

// [file]
#include <fstream>
#include <iterator>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/text/Convert.h"

bool readFile(const std::filesystem::path& path, std::string& content) {
  std::error_code ignored;  // a folder can be opened, and waiting for a pipe may take forever
  if (!std::filesystem::is_regular_file(path, ignored)) return false;
  std::ifstream file(path, std::ios::binary);
  if (!file) return false;
  content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  return !file.bad();
}

std::u16string checksumOf(const std::string& content) {
  const boost::uuids::name_generator_sha1 generate{boost::uuids::ns::oid()};
  return lx::text::toUtf16(to_string(generate(content.data(), content.size())));
}
// [/file]
