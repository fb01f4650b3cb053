#include "nd_data_adapter/model/AdapterError.h"
#include "platform/foundation/meta/Meta.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using support::contentsOf;
using support::Lines;
using support::ModelWatch;
using support::raisedBy;

namespace {

class AdapterErrorTest : public testing::Test {
 protected:
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
};

std::string described(int diagnostic, const std::string& message, const std::string& adapter,
                      const std::string& source) {
  return "AdapterError Diagnostic=" + std::to_string(diagnostic) + " ErrorMessage='" + message +
         "' Adapter='" + adapter + "' SourceFile='" + source + "'";
}

TEST(AdapterDiagnosticEnum, HasItsValues) {
  const std::vector<std::pair<AdapterDiagnostic, std::u16string>> literals{
      {AdapterDiagnostic::NoDiagnostic, u"NoDiagnostic"},
      {AdapterDiagnostic::GenericFailure, u"GenericFailure"},
      {AdapterDiagnostic::Unsupported, u"Unsupported"},
      {AdapterDiagnostic::Inaccessible, u"Inaccessible"},
      {AdapterDiagnostic::NoPermission, u"NoPermission"},
      {AdapterDiagnostic::UnrecognizedFormat, u"UnrecognizedFormat"},
      {AdapterDiagnostic::HardError, u"HardError"},
      {AdapterDiagnostic::AmbiguousSource, u"AmbiguousSource"}};
  for (std::size_t value = 0; value < literals.size(); ++value) {
    EXPECT_EQ(static_cast<std::size_t>(literals[value].first), value);
    EXPECT_EQ(toText(literals[value].first), literals[value].second);
  }
}

TEST_F(AdapterErrorTest, IsMadeStatingNothing) {
  EXPECT_EQ(contentsOf(model), Lines{described(0, "", "", "")});
}

TEST_F(AdapterErrorTest, HasItsFourPropertiesInTheirOrder) {
  const std::vector<lx::base::meta::Property> properties = AdapterError::metaClass().getProperties();
  std::vector<std::u16string> names;
  for (const lx::base::meta::Property& property : properties) names.push_back(property.getName());
  ASSERT_EQ(names, (std::vector<std::u16string>{u"Diagnostic", u"ErrorMessage", u"Adapter", u"SourceFile"}));
  EXPECT_TRUE(properties[0].getDefaultText() == std::u16string(u"NoDiagnostic"));
  for (const std::size_t at : {0U, 2U, 3U}) {
    EXPECT_FALSE(properties[at].traits().hasPublicGetter) << at;
    EXPECT_FALSE(properties[at].traits().hasPublicSetter) << at;
  }
  EXPECT_TRUE(properties[1].traits().hasPublicGetter);
  EXPECT_TRUE(properties[1].traits().hasPublicSetter);
}

TEST_F(AdapterErrorTest, GivesBackWhatWasSet) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  EXPECT_EQ(error.getId(), AdapterDiagnostic::HardError);
  EXPECT_EQ(error.errorMessage(), u"message");
  EXPECT_EQ(error.getAdapterName(), u"name");
  EXPECT_EQ(error.getSource(), u"source");
}

TEST_F(AdapterErrorTest, KeepsTheSecondErrorOnly) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  error.setError(AdapterDiagnostic::Unsupported, u"", u"", u"other");
  EXPECT_EQ(contentsOf(model), Lines{described(2, "", "", "other")});
}

TEST_F(AdapterErrorTest, SetsItsPropertiesInTheirOrderOneByOne) {
  const ModelWatch watch(model);
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  EXPECT_EQ(watch.transactions(), 4U);
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"changed nd.data.adapter.AdapterError.Diagnostic"},
                                                 {"changed nd.data.adapter.AdapterError.ErrorMessage"},
                                                 {"changed nd.data.adapter.AdapterError.Adapter"},
                                                 {"changed nd.data.adapter.AdapterError.SourceFile"}}));
}

TEST_F(AdapterErrorTest, MakesNoTransactionForEqualValues) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  const ModelWatch watch(model);
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  EXPECT_EQ(watch.transactions(), 0U);
  error.setError(AdapterDiagnostic::HardError, u"message", u"another", u"source");
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"changed nd.data.adapter.AdapterError.Adapter"}}));
}

TEST_F(AdapterErrorTest, MakesNoTransactionForTheClearStateThatItHasFromTheBeginning) {
  const ModelWatch watch(model);
  error.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(AdapterErrorTest, GoesBackWithTheTransactionAroundIt) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    error.setError(AdapterDiagnostic::Unsupported, u"", u"", u"");
  }
  EXPECT_EQ(contentsOf(model), Lines{described(6, "message", "name", "source")});
}

TEST_F(AdapterErrorTest, TakesItsOwnTextsAsArguments) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  error.setError(error.getId(), error.getSource(), error.errorMessage(), error.getAdapterName());
  EXPECT_EQ(contentsOf(model), Lines{described(6, "source", "message", "name")});
}

TEST_F(AdapterErrorTest, CanBeSetAndAskedByReflection) {
  using lx::base::Value;
  error.invoke(u"setError",
               {Value(AdapterDiagnostic::HardError), Value(u"message"), Value(u"name"), Value(u"source")});
  EXPECT_EQ(contentsOf(model), Lines{described(6, "message", "name", "source")});
  EXPECT_EQ(error.invoke(u"getId", {}).as<AdapterDiagnostic>(), AdapterDiagnostic::HardError);
  EXPECT_EQ(error.invoke(u"getAdapterName", {}).as<std::u16string>(), u"name");
  EXPECT_EQ(error.invoke(u"getSource", {}).as<std::u16string>(), u"source");
  EXPECT_EQ(raisedBy([&] { error.invoke(u"getId", {Value(1)}); }),
            "InvalidValue(nd.data.adapter.AdapterError.getId)");
}

TEST_F(AdapterErrorTest, RefusesToBeChangedAsAProxyAlsoByEqualValues) {
  error.impl()->convertToProxy();
  EXPECT_EQ(raisedBy([&] { error.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u""); }),
            "CannotModifyProxy(nd.data.adapter.AdapterError.Diagnostic)");
}

TEST_F(AdapterErrorTest, ReadsAsClearAsAProxy) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  error.impl()->convertToProxy();
  EXPECT_TRUE(error.isAlive());
  EXPECT_EQ(error.getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(error.errorMessage(), u"");
  EXPECT_EQ(error.getAdapterName(), u"");
  EXPECT_EQ(error.getSource(), u"");
}

TEST_F(AdapterErrorTest, RaisesWhenItIsNull) {
  const AdapterError none;
  const std::string name = "nd.data.adapter.AdapterError.";
  EXPECT_EQ(raisedBy([&] { none.setError(AdapterDiagnostic::HardError, u"", u"", u""); }),
            "InvalidValue(" + name + "setError)");
  EXPECT_EQ(raisedBy([&] { none.getId(); }), "InvalidValue(" + name + "getId)");
  EXPECT_EQ(raisedBy([&] { none.getAdapterName(); }), "InvalidValue(" + name + "getAdapterName)");
  EXPECT_EQ(raisedBy([&] { none.getSource(); }), "InvalidValue(" + name + "getSource)");
}

void expectToBeDead(const AdapterError& error) {
  const std::string name = "nd.data.adapter.AdapterError.";
  EXPECT_EQ(raisedBy([&] { error.setError(AdapterDiagnostic::HardError, u"", u"", u""); }),
            "InvalidValue(" + name + "setError)");
  EXPECT_EQ(raisedBy([&] { error.getId(); }), "InvalidValue(" + name + "getId)");
  EXPECT_EQ(raisedBy([&] { error.getAdapterName(); }), "InvalidValue(" + name + "getAdapterName)");
  EXPECT_EQ(raisedBy([&] { error.getSource(); }), "InvalidValue(" + name + "getSource)");
  EXPECT_EQ(raisedBy([&] { error.setErrorMessage(u"x"); }), "InvalidValue(" + name + "ErrorMessage)");
  EXPECT_EQ(error.errorMessage(), u"");
}

TEST_F(AdapterErrorTest, RaisesWhenItIsDeadButForItsProperty) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  error.destroy();
  expectToBeDead(error);
}

TEST_F(AdapterErrorTest, RaisesButForItsPropertyWhenItsModelWasDestroyedOrLetGo) {
  error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source");
  model.destroy();
  expectToBeDead(error);
  const AdapterError left = AdapterError::create(Model::create());
  expectToBeDead(left);
}

}  // namespace
