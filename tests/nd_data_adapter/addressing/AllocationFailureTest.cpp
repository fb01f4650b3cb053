// The questions about a path when memory runs out: each is asked with its first allocation failing, then with
// its second, and so on until it is answered.

#include <functional>
#include <new>

#include "nd_data_adapter/model/URIOperations.h"
#include "platform/services/ForwardingFileSystem.h"
#include "tests/support/AllocationFault.h"

using ndx::broker::URIOperations;

namespace {

/// A filesystem where all is there, and which may need memory to find that out.
class Full final : public lx::services::ForwardingFileSystem {
 public:
  bool needsMemory = false;

  bool exists(const std::u16string&) const override { return answer(); }
  bool access(const std::u16string&, int) const override { return answer(); }

 private:
  bool answer() const {
    if (needsMemory) memory_ = std::make_unique<int>();
    return true;
  }

  mutable std::unique_ptr<int> memory_;
};

class URIAllocationFailure : public testing::Test {
 protected:
  /// Asks with each allocation failing and gives what came of it: "bad_alloc", "true" or "false".
  static std::vector<std::string> askUntilAnswered(const std::function<bool()>& question) {
    std::vector<std::string> answers;
    for (std::size_t number = 1; number < 100; ++number) {
      const AllocationFault failing(number);
      const char* answer = "bad_alloc";
      try {
        answer = question() ? "true" : "false";
      } catch (const std::bad_alloc&) {
      }
      const bool hasFailed = AllocationFault::hasOccurred();
      const AllocationFault none(0);
      answers.emplace_back(answer);
      if (!hasFailed) return answers;
    }
    ADD_FAILURE() << "the question is never answered";
    return answers;
  }

  const std::u16string uri = u"a folder with a name that fits into no short string/a.test#KIND&VALUESRC";
  const std::shared_ptr<Full> fileSystem = std::make_shared<Full>();
  const lx::services::FileSystem::Replacement replaced{fileSystem};
};

using Answers = std::vector<std::string>;

TEST_F(URIAllocationFailure, RaisesWhenThePathCanNotBeTakenOutOfTheURI) {
  const Answers wanted{"bad_alloc", "bad_alloc",
                       "true"};  // the text before the marker, and that before the tag
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::exists(uri); }), wanted);
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::isReadable(uri); }), wanted);
}

TEST_F(URIAllocationFailure, IsFalseWhenItIsTheFilesystemThatLacksMemory) {
  fileSystem->needsMemory = true;
  const Answers wanted{"bad_alloc", "bad_alloc", "false", "true"};
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::exists(uri); }), wanted);
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::isReadable(uri); }), wanted);
}

}  // namespace
