#include <cstdlib>
#include <exception>
#include <limits>
#include <memory>
#include <utility>

#include "nd_data_adapter/broker/messages.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "platform/foundation/Model.h"
#include "platform/services/Diagnostic.h"
#include "platform/text/Convert.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using lx::services::CatalogMessage;
using lx::services::MessageId;
using lx::text::toUtf8;
using support::contentsOf;
using support::isLeftBy;
using support::Lines;

namespace {

struct Destroy {
  void operator()(ndsvDiagnosticImpl* diagnostic) const noexcept { ndsvDestroyDiagnostic(diagnostic); }
};
using Diagnostic = std::unique_ptr<ndsvDiagnosticImpl, Destroy>;
using Errors = std::vector<AdapterError>;

class ConvertAdapterErrorsToDiagnostic : public support::BrokerTest {
 protected:
  ConvertAdapterErrorsToDiagnostic() {
    ndsvSetCreateDiagnosticHook([this](const CatalogMessage& message) { made.push_back(message); });
  }
  ~ConvertAdapterErrorsToDiagnostic() override {
    ndsvSetCreateDiagnosticHook({});
    ndsvSetReplaceDiagnosticHook({});
  }

  AdapterError makeError(AdapterDiagnostic diagnostic, const std::u16string& message = u"message",
                         const std::u16string& source = u"x.test") const {
    AdapterError error = AdapterError::create(model);
    error.setError(diagnostic, message, u"the adapter", source);
    return error;
  }

  static Diagnostic convert(const Errors& errors) {
    return Diagnostic(AdapterError::convertAdapterErrorsToDiagnostic(errors));
  }

  static Lines keysOf(const Diagnostic& diagnostic) {
    Lines keys;
    for (std::size_t item = 0; item < ndsvGetNumItemsInDiagnostic(diagnostic.get()); ++item) {
      keys.push_back(ndsvGetDiagnosticItemId(diagnostic.get(), item).key);
    }
    return keys;
  }

  const Model model = Model::create();
  std::vector<CatalogMessage> made;  // what diagnostics were made of
};

/// An error that notes what it is asked for, and gets another message when it is asked for its source.
class AskedError final : public AdapterError::Impl {
 public:
  AskedError(const Model& model, Lines& asked) : AdapterError::Impl(model, {}), asked_(&asked) {}

  AdapterDiagnostic getId() override {
    asked_->push_back("getId");
    return AdapterError::Impl::getId();
  }
  std::u16string getAdapterName() override {
    asked_->push_back("getAdapterName");
    return AdapterError::Impl::getAdapterName();
  }
  std::u16string getSource() override {
    asked_->push_back("getSource");
    setErrorMessage(u"later");
    return AdapterError::Impl::getSource();
  }

 private:
  Lines* asked_;
};

TEST_F(ConvertAdapterErrorsToDiagnostic, GivesNullForAnEmptyList) {
  EXPECT_EQ(convert({}), nullptr);
  EXPECT_TRUE(made.empty());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, GivesNullForErrorsThatStateNothingAndDestroysThem) {
  const Errors errors{makeError(AdapterDiagnostic::NoDiagnostic), makeError(AdapterDiagnostic::NoDiagnostic)};
  EXPECT_EQ(convert(errors), nullptr);
  EXPECT_TRUE(made.empty());
  for (const AdapterError& error : errors) EXPECT_FALSE(error.isAlive());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, HasAMessageForEachKindOfFailure) {
  struct Row {
    AdapterDiagnostic diagnostic;
    std::string key;
    std::u16string sentence;
  };
  const std::vector<Row> rows{
      {AdapterDiagnostic::GenericFailure, "AdapterErrorGeneric",
       u"The source \"folder/x.test\" could not be used. the message"},
      {AdapterDiagnostic::Unsupported, "AdapterErrorUnsupported",
       u"What was asked isn't supported for the source \"folder/x.test\", or the source isn't open for this "
       u"section. the message"},
      {AdapterDiagnostic::Inaccessible, "AdapterErrorInaccessible",
       u"The source \"folder/x.test\" can't be reached. Check that it exists and that its path is right. the "
       u"message"},
      {AdapterDiagnostic::NoPermission, "AdapterErrorNoPermission",
       u"There is no permission to use the source \"folder/x.test\". Check its access rights. the message"},
      {AdapterDiagnostic::UnrecognizedFormat, "AdapterErrorUnrecognizedFormat",
       u"The source \"folder/x.test\" isn't in the format that its adapter reads. the message"},
      {AdapterDiagnostic::HardError, "AdapterErrorHardError",
       u"Using the source \"folder/x.test\" broke off with an error. the message"},
      {AdapterDiagnostic::AmbiguousSource, "AdapterErrorAmbiguousSource",
       u"The source \"folder/x.test\" is ambiguous. Name it more exactly. the message"}};
  for (const auto& [diagnostic, key, sentence] : rows) {
    made.clear();
    const Diagnostic result = convert({makeError(diagnostic, u"the message", u"folder/x.test")});
    ASSERT_EQ(ndsvGetNumItemsInDiagnostic(result.get()), 1U) << key;
    EXPECT_EQ(ndsvGetDiagnosticItemId(result.get(), 0), (MessageId{"ndx:messages", key}));
    ASSERT_EQ(made.size(), 1U);
    EXPECT_STREQ(made[0].catalogue(), "ndx:messages");
    EXPECT_STREQ(made[0].key(), key.c_str());
    EXPECT_EQ(made[0].arguments(), (std::vector<std::u16string>{u"folder/x.test", u"the message"}));
    EXPECT_EQ(toUtf8(ndsvGetDiagnosticItemText(result.get(), 0)), toUtf8(sentence));
  }
}

TEST(AdapterErrorMessages, BelongToOneCatalogueUnderTheirKeys) {
  const ndx::messages::AdapterErrorAmbiguousSource message(u"source", u"message");
  EXPECT_STREQ(message.catalogue(), "ndx:messages");
  EXPECT_STREQ(message.key(), "AdapterErrorAmbiguousSource");
  EXPECT_EQ(message.arguments(), (std::vector<std::u16string>{u"source", u"message"}));
}

TEST_F(ConvertAdapterErrorsToDiagnostic, KeepsTheOrderOfTheListAndPassesOverWhatStatesNothing) {
  const Diagnostic result =
      convert({makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::NoDiagnostic),
               makeError(AdapterDiagnostic::GenericFailure)});
  EXPECT_EQ(keysOf(result), (Lines{"AdapterErrorHardError", "AdapterErrorGeneric"}));
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U) << "those that were joined are gone";
}

TEST_F(ConvertAdapterErrorsToDiagnostic, ConsumesItsInputAndLeavesTheHandles) {
  const Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::NoDiagnostic)};
  const AdapterError bystander = makeError(AdapterDiagnostic::HardError);
  const Diagnostic result = convert(errors);
  for (const AdapterError& error : errors) {
    EXPECT_TRUE(error);
    EXPECT_FALSE(error.isAlive());
  }
  EXPECT_TRUE(bystander.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST_F(ConvertAdapterErrorsToDiagnostic, DestroysEachErrorInATransactionOfItsOwnRightAfterItsTurn) {
  const Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::GenericFailure)};
  Lines seen;
  ndsvSetCreateDiagnosticHook([&](const CatalogMessage& message) {
    seen.push_back(std::string(message.key()) + (errors[0].isAlive() ? " first alive" : " first dead"));
  });
  const support::ModelWatch watch(model);
  const Diagnostic result = convert(errors);
  EXPECT_EQ(seen, (Lines{"AdapterErrorHardError first alive", "AdapterErrorGeneric first dead"}));
  const Lines destroyed{"destroyed nd.data.adapter.AdapterError"};
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{destroyed, destroyed}));
}

TEST_F(ConvertAdapterErrorsToDiagnostic, TakesErrorsOfSeveralModels) {
  const Model other = Model::create();
  AdapterError foreign = AdapterError::create(other);
  foreign.setError(AdapterDiagnostic::Unsupported, u"", u"", u"");
  const Diagnostic result = convert({makeError(AdapterDiagnostic::HardError), foreign});
  EXPECT_EQ(keysOf(result), (Lines{"AdapterErrorHardError", "AdapterErrorUnsupported"}));
  EXPECT_FALSE(foreign.isAlive());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, PassesOverNullAndDeadHandles) {
  const AdapterError dead = makeError(AdapterDiagnostic::HardError);
  dead.destroy();
  const Diagnostic result = convert({AdapterError(), makeError(AdapterDiagnostic::Unsupported), dead});
  EXPECT_EQ(keysOf(result), Lines{"AdapterErrorUnsupported"});
  EXPECT_EQ(convert({AdapterError(), dead}), nullptr);
}

TEST_F(ConvertAdapterErrorsToDiagnostic, PassesOverAnErrorWhoseModelWasDestroyed) {
  const Model other = Model::create();
  AdapterError left = AdapterError::create(other);
  left.setError(AdapterDiagnostic::HardError, u"", u"", u"");
  other.destroy();
  const Diagnostic result = convert({left, makeError(AdapterDiagnostic::Unsupported), left});
  EXPECT_EQ(keysOf(result), Lines{"AdapterErrorUnsupported"});
  EXPECT_EQ(convert({left}), nullptr);
}

TEST_F(ConvertAdapterErrorsToDiagnostic, MakesNoItemOfAProxyAndDestroysIt) {
  const AdapterError error = makeError(AdapterDiagnostic::HardError);
  error.impl()->convertToProxy();
  EXPECT_EQ(convert({error}), nullptr);
  EXPECT_TRUE(made.empty());
  EXPECT_FALSE(error.isAlive());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, AsksForTheKindFirstAndForTheTextsOfAFailureOnlySourceFirst) {
  const Lines kindOnly{"getId"};
  const Lines all{"getId", "getSource"};
  const std::vector<std::pair<int, Lines>> rows{{0, kindOnly}, {-1, kindOnly}, {8, kindOnly},
                                                {1, all},      {6, all},       {7, all}};
  for (const auto& [value, wanted] : rows) {
    SCOPED_TRACE(value);
    made.clear();
    Lines asked;
    auto* const impl = new AskedError(model, asked);
    const AdapterError error(impl);
    impl->notifyCreated();
    impl->setDiagnostic(static_cast<AdapterDiagnostic>(value));
    impl->setErrorMessage(u"earlier");
    impl->setSourceFile(u"x.test");
    const Diagnostic result = convert({error});
    EXPECT_EQ(asked, wanted);
    EXPECT_FALSE(error.isAlive());
    if (wanted == kindOnly) continue;
    ASSERT_EQ(made.size(), 1U);
    EXPECT_EQ(made[0].arguments(), (std::vector<std::u16string>{u"x.test", u"later"}));
  }
}

TEST_F(ConvertAdapterErrorsToDiagnostic, CountsAnErrorOnceThatIsInTheListTwice) {
  const AdapterError error = makeError(AdapterDiagnostic::HardError);
  const Diagnostic result = convert({error, error});
  EXPECT_EQ(keysOf(result), Lines{"AdapterErrorHardError"});
  EXPECT_FALSE(error.isAlive());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, MakesNoItemOfAValueOutsideOneToSevenAndDestroysTheError) {
  using Limits = std::numeric_limits<std::int32_t>;
  for (const std::int32_t value : {8, 9, 256, Limits::max(), -1, -7, Limits::min()}) {
    const AdapterError error = makeError(AdapterDiagnostic::NoDiagnostic);
    error.impl()->setDiagnostic(static_cast<AdapterDiagnostic>(value));
    ASSERT_EQ(static_cast<std::int32_t>(error.getId()), value);
    EXPECT_EQ(convert({error}), nullptr) << value;
    EXPECT_FALSE(error.isAlive()) << value;
  }
  EXPECT_TRUE(made.empty());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, TakesEmptyAndStrangeTexts) {
  const std::u16string strange{u'{', u'0', u'}', u'\'', u'\0', char16_t{0xD800}};
  const Diagnostic result = convert({makeError(AdapterDiagnostic::HardError, u"", u""),
                                     makeError(AdapterDiagnostic::HardError, strange, strange)});
  ASSERT_EQ(made.size(), 2U);
  EXPECT_EQ(made[0].arguments(), (std::vector<std::u16string>{u"", u""}));
  EXPECT_EQ(made[1].arguments(), (std::vector<std::u16string>{strange, strange}));
  EXPECT_EQ(ndsvGetDiagnosticItemText(result.get(), 0), u"Using the source \"\" broke off with an error.");
  EXPECT_EQ(ndsvGetDiagnosticItemText(result.get(), 1),
            u"Using the source \"" + strange + u"\" broke off with an error. " + strange);
}

TEST_F(ConvertAdapterErrorsToDiagnostic, JoinsAThousandErrors) {
  Errors errors;
  for (int number = 0; number < 1000; ++number) errors.push_back(makeError(AdapterDiagnostic::HardError));
  EXPECT_EQ(ndsvGetNumItemsInDiagnostic(convert(errors).get()), 1000U);
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

// Callers' lists and handles that change meanwhile

TEST_F(ConvertAdapterErrorsToDiagnostic, DestroysTheErrorInWorkAlsoWhenTheCallersHandleIsSetToNull) {
  Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::Unsupported)};
  ndsvSetCreateDiagnosticHook([&](const CatalogMessage&) {
    for (AdapterError& error : errors) error = AdapterError();
  });
  const Diagnostic result = convert(errors);
  EXPECT_EQ(keysOf(result), Lines{"AdapterErrorHardError"});
  EXPECT_EQ(contentsOf(model).size(), 1U) << "the one that nobody gave any more";
}

TEST_F(ConvertAdapterErrorsToDiagnostic, EndsWithTheErrorInWorkWhenTheCallersListIsCleared) {
  Errors errors;
  for (int number = 0; number < 5; ++number) errors.push_back(makeError(AdapterDiagnostic::HardError));
  ndsvSetCreateDiagnosticHook([&](const CatalogMessage&) {
    errors.clear();
    errors.shrink_to_fit();
  });
  const Diagnostic result = convert(errors);
  EXPECT_EQ(keysOf(result), Lines{"AdapterErrorHardError"});
  EXPECT_EQ(model.impl()->numberOfElements(), 4U);
}

TEST_F(ConvertAdapterErrorsToDiagnostic, TakesErrorsAlongThatAreAddedToTheCallersListMeanwhile) {
  Errors errors{makeError(AdapterDiagnostic::HardError)};
  ndsvSetCreateDiagnosticHook([&](const CatalogMessage&) {
    if (errors.size() == 1) errors.push_back(makeError(AdapterDiagnostic::Unsupported));
  });
  const Diagnostic result = convert(errors);
  EXPECT_EQ(keysOf(result), (Lines{"AdapterErrorHardError", "AdapterErrorUnsupported"}));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST_F(ConvertAdapterErrorsToDiagnostic, MakesAnItemOfAnErrorThatIsDestroyedMeanwhile) {
  const Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::Unsupported)};
  ndsvSetCreateDiagnosticHook([&](const CatalogMessage&) {
    for (const AdapterError& error : errors) error.destroy();
  });
  EXPECT_EQ(keysOf(convert(errors)), Lines{"AdapterErrorHardError"});
}

// Within a transaction of the caller

TEST_F(ConvertAdapterErrorsToDiagnostic, GivesTheErrorsBackAndLeavesTheDiagnosticWhenTheCallerAbandonsAll) {
  const Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::NoDiagnostic),
                      makeError(AdapterDiagnostic::Unsupported)};
  const Lines before = contentsOf(model);
  ASSERT_EQ(before.size(), 3U);
  Diagnostic result;
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    result = convert(errors);
    EXPECT_TRUE(contentsOf(model).empty());
  }
  EXPECT_EQ(contentsOf(model), before);
  for (const AdapterError& error : errors) EXPECT_TRUE(error.isAlive());
  EXPECT_EQ(keysOf(result), (Lines{"AdapterErrorHardError", "AdapterErrorUnsupported"}));
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
}

// Diagnostics that are none

TEST_F(ConvertAdapterErrorsToDiagnostic, PassesOverADiagnosticThatIsNull) {
  int count = 0;
  ndsvSetReplaceDiagnosticHook([&](ndsvDiagnosticImpl* diagnostic) {
    if (++count != 2) return diagnostic;
    ndsvDestroyDiagnostic(diagnostic);
    return static_cast<ndsvDiagnosticImpl*>(nullptr);
  });
  const Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::NoPermission),
                      makeError(AdapterDiagnostic::Unsupported)};
  const Diagnostic result = convert(errors);
  EXPECT_EQ(keysOf(result), (Lines{"AdapterErrorHardError", "AdapterErrorUnsupported"}));
  EXPECT_FALSE(errors[1].isAlive());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, FreesADiagnosticWithoutItems) {
  ndsvSetReplaceDiagnosticHook([](ndsvDiagnosticImpl* diagnostic) {
    ndsvDestroyDiagnostic(diagnostic);
    return ndsvCreateDiagnosticWithoutItems();
  });
  const Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::Unsupported)};
  EXPECT_EQ(convert(errors), nullptr) << "it doesn't become the result";
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 0U);
  for (const AdapterError& error : errors) EXPECT_FALSE(error.isAlive());
}

TEST_F(ConvertAdapterErrorsToDiagnostic, JoinsNoDiagnosticToItself) {
  const auto convertTwoIntoOne = [this] {
    ndsvDiagnosticImpl* first = nullptr;
    ndsvSetReplaceDiagnosticHook([&](ndsvDiagnosticImpl* diagnostic) {
      if (first == nullptr) return first = diagnostic;
      ndsvDestroyDiagnostic(diagnostic);
      return first;
    });
    const Diagnostic result =
        convert({makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::Unsupported)});
    return result.get() == first && ndsvGetLiveDiagnosticCount() == 1 &&
           keysOf(result) == Lines{"AdapterErrorHardError"};
  };
  // What went wrong here was a diagnostic that is freed twice, which ends the process.
  EXPECT_EXIT(std::_Exit(convertTwoIntoOne() ? 0 : 1), testing::ExitedWithCode(0), "");
}

// What stays when it is left by an exception

TEST_F(ConvertAdapterErrorsToDiagnostic, LetsWhatTheMakingThrowsPassAndLeavesTheRestAlive) {
  for (const support::Thrown& thrown : support::everyKindOfException()) {
    SCOPED_TRACE(thrown.name);
    const Errors errors{makeError(AdapterDiagnostic::HardError), makeError(AdapterDiagnostic::Unsupported),
                        makeError(AdapterDiagnostic::GenericFailure)};
    ndsvSetCreateDiagnosticHook([&](const CatalogMessage& message) {
      if (std::string(message.key()) == "AdapterErrorUnsupported") std::rethrow_exception(thrown.object);
    });
    EXPECT_TRUE(isLeftBy(thrown.object, [&] { convert(errors); }));
    EXPECT_FALSE(errors[0].isAlive());
    EXPECT_TRUE(errors[1].isAlive()) << "the one in work";
    EXPECT_TRUE(errors[2].isAlive()) << "the one behind it";
    EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 0U) << "what was built is freed";
    EXPECT_FALSE(model.impl()->hasOpenTransaction());
    ndsvSetCreateDiagnosticHook({});
    convert(errors);
  }
}

/// An error that throws when it is asked for its kind or for its source.
class ThrowingError final : public AdapterError::Impl {
 public:
  ThrowingError(const Model& model, std::exception_ptr atKind, std::exception_ptr atSource)
      : AdapterError::Impl(model, {}), atKind_(std::move(atKind)), atSource_(std::move(atSource)) {}

  AdapterDiagnostic getId() override {
    if (atKind_) std::rethrow_exception(atKind_);
    return AdapterDiagnostic::HardError;
  }
  std::u16string getSource() override {
    if (atSource_) std::rethrow_exception(atSource_);
    return u"x.test";
  }

 private:
  std::exception_ptr atKind_;
  std::exception_ptr atSource_;
};

TEST_F(ConvertAdapterErrorsToDiagnostic, LetsWhatAnErrorThrowsPassAndFreesWhatWasBuilt) {
  for (const support::Thrown& thrown : support::everyKindOfException()) {
    for (const bool atKind : {true, false}) {
      SCOPED_TRACE(std::string(thrown.name) + (atKind ? " at its kind" : " at its source"));
      auto* const impl =
          new ThrowingError(model, atKind ? thrown.object : nullptr, atKind ? nullptr : thrown.object);
      const AdapterError inWork(impl);
      impl->notifyCreated();
      const Errors errors{makeError(AdapterDiagnostic::HardError), inWork,
                          makeError(AdapterDiagnostic::GenericFailure)};
      made.clear();
      EXPECT_TRUE(isLeftBy(thrown.object, [&] { convert(errors); }));
      EXPECT_EQ(made.size(), 1U) << "a diagnostic was built before";
      EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 0U);
      EXPECT_FALSE(errors[0].isAlive());
      EXPECT_TRUE(errors[1].isAlive());
      EXPECT_TRUE(errors[2].isAlive());
      EXPECT_FALSE(model.impl()->hasOpenTransaction());
      for (const AdapterError& error : errors) error.destroy();
    }
  }
}

TEST_F(ConvertAdapterErrorsToDiagnostic, LeavesAnErrorAliveThatCanNotBeDestroyed) {
  const Model frozen = Model::create();
  AdapterError stuck = AdapterError::create(frozen);
  stuck.setError(AdapterDiagnostic::Unsupported, u"", u"", u"");
  Model::Freezer::freeze(frozen);
  const Errors errors{makeError(AdapterDiagnostic::HardError), stuck,
                      makeError(AdapterDiagnostic::HardError)};
  EXPECT_EQ(support::raisedBy([&] { convert(errors); }), "InvalidValue(Model.beginTransaction)");
  EXPECT_FALSE(errors[0].isAlive());
  EXPECT_TRUE(stuck.isAlive());
  EXPECT_TRUE(errors[2].isAlive());
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 0U);
}

}  // namespace
