// The operations on a URI when memory runs out: each is called with its first allocation failing, then with
// its second, and so on until it answers.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "nd_data_adapter/model/URIOperations.h"
#include "platform/services/ForwardingFileSystem.h"
#include "platform/text/Convert.h"
#include "tests/support/AllocationFault.h"

using ndx::broker::URIOperations;

namespace {

/// A filesystem where all is there, and which may need memory to find that out.
class Full final : public lx::services::ForwardingFileSystem {
 public:
  bool needsMemory = false;

  std::u16string make_native_form(const std::u16string& path, bool) const override { return path; }
  std::u16string extract_filename(const std::u16string& path) const override {
    return path.substr(path.rfind(u'/') + 1);
  }
  std::u16string extract_extension(const std::u16string& path) const override {
    return path.substr(path.rfind(u'.') + 1);
  }
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
    return collect<bool>(question, [](bool answer) { return std::string(answer ? "true" : "false"); });
  }

  /// Asks likewise for a text and gives "bad_alloc" or the text.
  static std::vector<std::string> askUntilTold(const std::function<std::u16string()>& question) {
    return collect<std::u16string>(question, lx::text::toUtf8);
  }

  const std::string folder = "a folder with a name that fits into no short string";
  const std::u16string uri = lx::text::toUtf16(folder + "/a.test#KIND&VALUESRC");
  const std::shared_ptr<Full> fileSystem = std::make_shared<Full>();
  const lx::services::FileSystem::Replacement replaced{fileSystem};

 private:
  template <class Answer>
  static std::vector<std::string> collect(const std::function<Answer()>& question,
                                          const std::function<std::string(const Answer&)>& describe) {
    std::vector<std::string> answers;
    for (std::size_t number = 1; number < 100; ++number) {
      std::optional<Answer> answer;
      const AllocationAttempt attempt = attemptWithout(number, [&] { answer = question(); });
      answers.push_back(attempt.isRefused ? "bad_alloc" : describe(*answer));
      if (!attempt.hasOccurred) return answers;
    }
    ADD_FAILURE() << "the question is never answered";
    return answers;
  }
};

using Answers = std::vector<std::string>;

TEST_F(URIAllocationFailure, RaisesWhenThePathCanNotBeTakenOutOfTheURI) {
  const Answers wanted{"bad_alloc", "true"};
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::exists(uri); }), wanted);
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::isReadable(uri); }), wanted);
}

TEST_F(URIAllocationFailure, IsFalseWhenItIsTheFilesystemThatLacksMemory) {
  fileSystem->needsMemory = true;
  const Answers wanted{"bad_alloc", "false", "true"};
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::exists(uri); }), wanted);
  EXPECT_EQ(askUntilAnswered([this] { return URIOperations::isReadable(uri); }), wanted);
}

// Operations that give texts, and nothing in the place of one that can't be given

TEST_F(URIAllocationFailure, RaisesWhenTheTextBeforeTheMarkerCanNotBeCopied) {
  EXPECT_EQ(askUntilTold([this] { return URIOperations::removeValueOverrideSrcTag(uri); }),
            (Answers{"bad_alloc", folder + "/a.test#KIND"}));
}

TEST_F(URIAllocationFailure, RaisesWhenTheTextBeforeTheTagCanNotBeCopied) {
  EXPECT_EQ(askUntilTold([this] { return URIOperations::removeTag(uri); }),
            (Answers{"bad_alloc", folder + "/a.test"}));
}

TEST_F(URIAllocationFailure, RaisesWhenAURIWithoutTagCanNotBeCopied) {
  const std::u16string plain = lx::text::toUtf16(folder + "/a.test&VALUESRC");
  EXPECT_EQ(askUntilTold([&] { return URIOperations::removeTag(plain); }),
            (Answers{"bad_alloc", folder + "/a.test&VALUESRC"}));
}

TEST_F(URIAllocationFailure, RaisesWhenThePathOfAFileNameCanNotBeMade) {
  EXPECT_EQ(askUntilTold([this] { return URIOperations::getFileNameWithExtension(uri); }),
            (Answers{"bad_alloc", "bad_alloc", "a.test"}))
      << "the path, and its native form";
}

TEST_F(URIAllocationFailure, RaisesWhenThePathOfAnExtensionCanNotBeMade) {
  EXPECT_EQ(askUntilTold([this] { return URIOperations::getExtension(uri); }),
            (Answers{"bad_alloc", "bad_alloc", "test"}));
}

}  // namespace
