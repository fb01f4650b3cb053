#include <limits>
#include <memory>

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
using lx::services::CatalogMessage;
using lx::services::MessageId;
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
  ~ConvertAdapterErrorsToDiagnostic() override { ndsvSetCreateDiagnosticHook({}); }

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
  const std::vector<std::pair<AdapterDiagnostic, std::string>> rows{
      {AdapterDiagnostic::GenericFailure, "AdapterErrorGeneric"},
      {AdapterDiagnostic::Unsupported, "AdapterErrorUnsupported"},
      {AdapterDiagnostic::Inaccessible, "AdapterErrorInaccessible"},
      {AdapterDiagnostic::NoPermission, "AdapterErrorNoPermission"},
      {AdapterDiagnostic::UnrecognizedFormat, "AdapterErrorUnrecognizedFormat"},
      {AdapterDiagnostic::HardError, "AdapterErrorHardError"},
      {AdapterDiagnostic::AmbiguousSource, "AdapterErrorAmbiguousSource"}};
  for (const auto& [diagnostic, key] : rows) {
    made.clear();
    const Diagnostic result = convert({makeError(diagnostic, u"the message", u"folder/x.test")});
    ASSERT_EQ(ndsvGetNumItemsInDiagnostic(result.get()), 1U) << key;
    EXPECT_EQ(ndsvGetDiagnosticItemId(result.get(), 0), (MessageId{"ndx:messages", key}));
    ASSERT_EQ(made.size(), 1U);
    EXPECT_STREQ(made[0].catalogue(), "ndx:messages");
    EXPECT_STREQ(made[0].key(), key.c_str());
    EXPECT_EQ(made[0].arguments(), (std::vector<std::u16string>{u"folder/x.test", u"the message"}));
    const std::u16string text = ndsvGetDiagnosticItemText(result.get(), 0);
    EXPECT_EQ(text, made[0].text()) << "no context is put before it";
    EXPECT_NE(text.find(u"\"folder/x.test\""), std::u16string::npos) << "the text names the source";
    EXPECT_NE(text.find(u"the message"), std::u16string::npos);
    EXPECT_EQ(text.find(u"the adapter"), std::u16string::npos) << "the adapter's name takes no part";
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
  EXPECT_NE(ndsvGetDiagnosticItemText(result.get(), 1).find(strange), std::u16string::npos);
}

TEST_F(ConvertAdapterErrorsToDiagnostic, JoinsAThousandErrors) {
  Errors errors;
  for (int number = 0; number < 1000; ++number) errors.push_back(makeError(AdapterDiagnostic::HardError));
  EXPECT_EQ(ndsvGetNumItemsInDiagnostic(convert(errors).get()), 1000U);
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
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

TEST_F(ConvertAdapterErrorsToDiagnostic, LeavesAnErrorAliveThatCanNotBeDestroyed) {
  const Model frozen = Model::create();
  AdapterError stuck = AdapterError::create(frozen);
  stuck.setError(AdapterDiagnostic::Unsupported, u"", u"", u"");
  Model::Freezer::freeze(frozen);
  const Errors errors{makeError(AdapterDiagnostic::HardError), stuck,
                      makeError(AdapterDiagnostic::HardError)};
  EXPECT_EQ(support::raisedBy([&] { convert(errors); }).substr(0, 12), "InvalidValue");
  EXPECT_FALSE(errors[0].isAlive());
  EXPECT_TRUE(stuck.isAlive());
  EXPECT_TRUE(errors[2].isAlive());
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 0U);
}

}  // namespace
