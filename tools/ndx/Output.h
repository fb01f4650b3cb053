#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace nd::tools {

/// How text is laid out for whoever reads a stream.
struct Look {
  std::size_t width = 100;
  bool hasColours = false;
};

/// Output that could not be written; `what` says why.
class OutputFailure : public std::runtime_error {
 public:
  OutputFailure(const std::string& why, bool isClosedPipe)
      : std::runtime_error(why), isClosedPipe_(isClosedPipe) {}

  /// Whether the reader of a pipe has gone, as that of `ndx … | head` does once it has seen enough.
  bool isClosedPipe() const noexcept { return isClosedPipe_; }

 private:
  bool isClosedPipe_;
};

/// A stream of text with a buffer. After the first failure, which is raised, what comes later is dropped.
class Output {
 public:
  explicit Output(const Look& look) noexcept : look_(look) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  virtual ~Output();

  /// Add text. Raises OutputFailure when the buffer overflows and can't be written.
  void write(std::string_view text);

  /// Hand over all that was written. Raises OutputFailure.
  void finish();

  const Look& look() const noexcept { return look_; }

 protected:
  /// Write the text whole, or raise OutputFailure.
  virtual void put(std::string_view text) = 0;

  /// Find out whether what was put has arrived, or raise OutputFailure.
  virtual void settle() {}

 private:
  template <typename Action>
  void unlessFailed(Action action);

  Look look_;
  std::string buffer_;
  bool hasFailed_ = false;
};

/// A stream to a file descriptor, which stays open. It has the width of the terminal if it is one, and
/// colours if it is one and the environment doesn't forbid them by NO_COLOR or a TERM that has none.
class FileOutput final : public Output {
 public:
  explicit FileOutput(int descriptor);

 protected:
  void put(std::string_view text) override;
  void settle() override;

 private:
  int descriptor_;
};

/// Make sure that the descriptors 0 to 2 are taken, so that no file is opened as one of them; a missing one
/// is then open in the way that makes its use fail. Let writing to a closed pipe fail instead of ending the
/// process.
void prepareStandardStreams() noexcept;

}  // namespace nd::tools
