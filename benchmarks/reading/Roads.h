#pragma once

#include <string>
#include <utility>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

struct inWorkSpace_tag;

/// The two ways to the numbers of a JSON file that are compared.
namespace reading {

/// The numbers under each name, in the order of the file.
using NamedNumbers = std::vector<std::pair<std::string, std::vector<double>>>;

/// Read the numbers and lists of numbers of a file's one object by simdjson alone, which checks less than a
/// reader has to. Throws what the parser throws.
NamedNumbers readByPeer(const std::string& path);

/// Open a file as a source, get its data and close it. Throws `std::runtime_error` with what the library
/// says if that fails.
boost::shared_ptr<inWorkSpace_tag> readByLibrary(const std::string& path);

/// Tell the first name under which the two differ, be it by a single bit; empty if they don't.
std::string findDifference(const boost::shared_ptr<inWorkSpace_tag>& workspace, const NamedNumbers& numbers);

}  // namespace reading
