#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// The texts that are kept beside the tests.
namespace corpus {

/// Read a file whole.
std::string contentOf(const std::filesystem::path& file);

/// List the JSON files of a folder: "good", "bad" or "found".
std::vector<std::filesystem::path> filesIn(const std::string& folder);

/// Give one of the good texts by the name of its file.
std::string good(const std::string& name);

/// What is to be said about each bad file, by its name.
std::map<std::string, std::string> expectedFailures();

}  // namespace corpus
