// Metapackages beside each other in one registry.
#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/nd_data_adapter/model/generator/hostile/Hostile.h"
#include "tests/nd_data_adapter/model/generator/hostile/MetaPackageHostile.h"
#include "tests/nd_data_adapter/model/generator/rival/MetaPackageRival.h"
#include "tests/nd_data_adapter/model/generator/rival/Stall.h"
#include "tests/nd_data_adapter/model/generator/small/Book.h"
#include "tests/nd_data_adapter/model/generator/small/MetaPackageSmall.h"

using hostile::std::lx::base::Hostile;
using lx::base::Model;
using lx::base::Value;
using lx::base::meta::Class;
using lx::base::meta::MetaRegistry;
using lx::base::meta::Package;
using lx::base::meta::PropertySerializerRegistry;
using shop::Stall;
using shop::detail::MetaPackageSmall;
using shop::stock::Book;

namespace {

MetaRegistry& registry() {
  return MetaRegistry::getInstance();
}

/// Takes root packages away, as far as they are there.
void unregister(const std::vector<std::u16string>& names) {
  MetaRegistry::Update update(registry());
  for (const std::u16string& name : names) {
    if (registry().findRootPackage(name)) registry().unregisterRootPackage(name);
  }
  update.commit();
}

class SeveralMetaPackages : public testing::Test {
 protected:
  SeveralMetaPackages() { restore(); }
  ~SeveralMetaPackages() override { restore(); }

  /// Leave the registry to the small metapackage and the hostile one.
  static void restore() {
    MetaPackageSmall::getInstance();
    MetaPackageHostile::getInstance();
    unregister({u"shop", u"rival"});
    MetaPackageSmall::getInstance().initialize();
    MetaPackageHostile::getInstance().initialize();
  }
};

TEST_F(SeveralMetaPackages, ReplaceARootPackageThatAnotherHas) {
  const Class book = Book::metaClass();
  MetaPackageRival::getInstance().initialize();
  EXPECT_FALSE(book.isAlive());
  EXPECT_FALSE(registry().findType(u"shop.stock.Book"));
  EXPECT_EQ(registry().getType(u"shop.Stall"), Stall::metaClass());
  EXPECT_EQ(registry().findRootPackage(u"shop").getSchema(), u"https://rival.invalid/rival/shop");
  MetaPackageSmall::getInstance().initialize();
  EXPECT_FALSE(Stall::metaClass().isAlive());
  EXPECT_EQ(registry().getType(u"shop.stock.Book"), Book::metaClass());
  EXPECT_EQ(registry().findRootPackage(u"shop").getSchema(), u"https://shop.invalid/shop/1");
}

TEST_F(SeveralMetaPackages, TakeTheSerializersOfTheirTypesAlong) {
  const PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  MetaPackageRival::getInstance().initialize();
  EXPECT_TRUE(serializers.find(u"rival.Price"));
  {
    MetaRegistry::Update abandoned(registry());
    registry().unregisterRootPackage(u"rival");
    EXPECT_FALSE(serializers.find(u"rival.Price"));
  }
  EXPECT_TRUE(serializers.find(u"rival.Price"));
  unregister({u"rival"});
  EXPECT_FALSE(serializers.find(u"rival.Price"));
}

TEST_F(SeveralMetaPackages, ReplaceTheirOwnRootPackagesAlsoAfterAnAttemptThatWasGivenUp) {
  {
    const MetaRegistry::Update abandoned(registry());
    MetaPackageSmall::getInstance().initialize();
  }
  const Package former = registry().findRootPackage(u"shop");
  EXPECT_TRUE(former.isAlive());
  MetaPackageSmall::getInstance().initialize();
  EXPECT_FALSE(former.isAlive());
  EXPECT_EQ(registry().getType(u"shop.stock.Book"), Book::metaClass());
  EXPECT_TRUE(Book::metaClass().isAlive());
}

TEST_F(SeveralMetaPackages, ComeBackOneByOneAfterTheMetaModelWasDestroyed) {
  const Model model = Model::create();
  const Book book = Book::create(model);
  const Class former = Book::metaClass();
  registry().model().destroy();
  EXPECT_FALSE(former.isAlive());
  MetaPackageSmall::getInstance().initialize();
  EXPECT_TRUE(Book::metaClass().isAlive());
  EXPECT_FALSE(Book::metaClass() == former);
  EXPECT_EQ(book.getMetaClass(), Book::metaClass());
  book.setPropertyValue(u"label", Value(u"again"));
  EXPECT_EQ(book.getPropertyValue(u"label"), Value(u"again"));
  EXPECT_EQ(Book::metaClass().property(u"label").getType(), registry().getType(u"String"));
  EXPECT_FALSE(registry().findRootPackage(u"hostile"));
  MetaPackageHostile::getInstance().initialize();
  EXPECT_EQ(registry().getType(u"hostile.std.lx.base.Hostile"), Hostile::metaClass());
  EXPECT_EQ(registry().getRootPackages().size(), 3U);
}

}  // namespace
