#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "adapters/json/JsonAdapter.h"
#include "nd_data_adapter/nd_data_adapter.h"
#include "tests/adapters/json/TemporaryFolder.h"

/// What a container holds, to compare before with after.
struct ContainerState {
  /// Each variable as it is shown, in their order.
  std::vector<std::string> variables;
  /// The names under which there are metadata, and for each what is held there, as it is shown.
  std::vector<std::u16string> metaData;
  std::vector<std::string> contentOfMetaData;

  friend bool operator==(const ContainerState&, const ContainerState&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const ContainerState& state);
};

/// What an error states.
struct ErrorState {
  nd::data::adapter::AdapterDiagnostic diagnostic = nd::data::adapter::AdapterDiagnostic::NoDiagnostic;
  std::u16string message;
  std::u16string adapter;
  std::u16string source;

  friend bool operator==(const ErrorState&, const ErrorState&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const ErrorState& state);
};

/// An adapter, a container with a workspace to read into, and a folder for the files. A test leaves no array
/// behind.
class AdapterFixture : public testing::Test {
 protected:
  AdapterFixture();
  ~AdapterFixture() override;

  /// Write a file and give it as a source.
  std::u16string write(std::string_view name, std::string_view content) const;
  std::u16string sourceOf(std::string_view name) const;

  /// Put two variables, "former" and "a", and metadata of both into the container. Many files of the tests
  /// have an "a" too.
  void fillContainer();

  /// Read with the adapter into the container; gives what the error states afterwards.
  ErrorState getData(const std::u16string& prevChecksum = {});

  /// Read likewise; gives what a person gets to see of the error.
  std::u16string sentenceOfGetData();

  ContainerState state() const;

  /// Take everything out of the container.
  void emptyContainer();

  /// Give an entry of a variable's metadata; null if there is none.
  const hvArray* entry(const std::u16string& variable, const std::string& name) const;
  const hvArray* variable(const std::string& name) const { return inGetValueFromWorkspace(name, workspace_); }

  /// The error that the adapter is to state about a source.
  static ErrorState failure(nd::data::adapter::AdapterDiagnostic diagnostic, const std::u16string& message,
                            const std::u16string& source);

 private:
  std::size_t arraysBefore_ = hvGetLiveArrayCount();

 protected:
  TemporaryFolder folder_;
  lx::base::Model model_ = lx::base::Model::create();
  nd::data::adapter::DataContainer container_;
  boost::shared_ptr<inWorkSpace_tag> workspace_ = inCreateWorkspace(10);
  nd::adapters::json::JsonAdapter adapter_;
};
