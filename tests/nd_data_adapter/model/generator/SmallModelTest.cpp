// The small model shows what a metamodel can describe and the library's own does not use.
#include "platform/foundation/CreateElement.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/nd_data_adapter/model/generator/shop.h"
#include "tests/nd_data_adapter/model/generator/small/MetaPackageSmall.h"
#include "tests/platform/foundation/raised.h"

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Transaction;
using lx::base::Value;
using lx::base::meta::MetaRegistry;
using lx::base::meta::PropertySerializerRegistry;
using namespace lxb::messages;
using shop::Doings;
using shop::Nothing;
using shop::Shelf;
using shop::Size;
using shop::stock::Article;
using shop::stock::Book;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

std::vector<std::int32_t> numbersOf(const Shelf& shelf) {
  return shelf.articles().keys();
}

TEST(SmallModel, StartsWithTheDefaultsThatItDescribes) {
  const Model model = Model::create();
  const Book book = Book::create(model);
  EXPECT_EQ(book.number(), -1);
  EXPECT_EQ(book.label(), u"\"none\"\n");
  EXPECT_EQ(book.size(), Size::Large);
  EXPECT_TRUE(book.impl()->getSold());
  EXPECT_EQ(book.price(), 0);
  EXPECT_EQ(book.comment(), u"");
  EXPECT_FALSE(book.author().has_value());
  EXPECT_TRUE(book.chapters().empty());
}

TEST(SmallModel, AnswersWithZerosAndNotWithDefaultsOnceAnElementIsGone) {
  const Model model = Model::create();
  const Book book = Book::create(model);
  book.destroy();
  EXPECT_EQ(book.number(), 0);
  EXPECT_EQ(book.label(), u"");
  EXPECT_EQ(book.size(), Size{});
  EXPECT_FALSE(book.impl()->getSold());
  EXPECT_EQ(book.impl()->getPropertyValue(Book::metaClass().property(u"Number")), Value(std::int32_t{0}));
}

TEST(SmallModel, TellsAnEmptyDefaultFromNone) {
  const auto defaultOf = [](const char16_t* name) {
    return Article::metaClass().property(name).getDefaultText();
  };
  EXPECT_EQ(defaultOf(u"Number").value(), u"-1");
  EXPECT_EQ(defaultOf(u"label").value(), u"\"none\"\n");
  EXPECT_EQ(defaultOf(u"size").value(), u"Large");
  EXPECT_EQ(defaultOf(u"Sold").value(), u"true");
  EXPECT_EQ(defaultOf(u"comment").value(), u"");
  EXPECT_FALSE(defaultOf(u"Price").has_value());
}

TEST(SmallModel, SetsAndEmptiesAnOptionalProperty) {
  const Model model = Model::create();
  const Book book = Book::create(model);
  EXPECT_FALSE(book.hasAuthor());
  book.setAuthor(std::string("Ada"));
  EXPECT_TRUE(book.hasAuthor());
  EXPECT_EQ(book.author().value(), "Ada");
  const std::uint64_t begun = model.impl()->counters().transactions;
  book.setAuthor(std::string("Ada"));
  EXPECT_EQ(model.impl()->counters().transactions, begun);
  {
    const Transaction open = model.impl()->beginTransaction(false);
    book.setAuthor(boost::none);
    EXPECT_FALSE(book.hasAuthor());
  }
  EXPECT_EQ(book.author().value(), "Ada");
  book.setAuthor(std::string());
  EXPECT_TRUE(book.hasAuthor());
}

TEST(SmallModel, SetsAnOptionalPropertyByReflection) {
  const Model model = Model::create();
  const Book book = Book::create(model);
  EXPECT_FALSE(book.hasPropertyValue(u"author"));
  book.setPropertyValue(u"author", Value(boost::optional<std::string>("Ada")));
  EXPECT_TRUE(book.hasPropertyValue(u"author"));
  EXPECT_EQ(book.getPropertyValue(u"author").as<boost::optional<std::string>>().value(), "Ada");
  EXPECT_THAT(
      raised<CannotCastIncompatibleTypes>([&] { book.setPropertyValue(u"author", Value(std::string("B"))); }),
      StartsWith("CannotCastIncompatibleTypes(StdString; boost::optional<"));
  EXPECT_EQ(book.author().value(), "Ada");
}

TEST(Subclass, HasThePropertiesOfItsSuperclassUnderTheirIndices) {
  const auto properties = Book::metaClass().getProperties();
  std::vector<std::string> described;
  for (const auto& property : properties) {
    described.push_back(std::to_string(property.getIndex()) + " " +
                        lx::text::toUtf8(property.getQualifiedName()));
  }
  EXPECT_THAT(described, ElementsAre("1 shop.stock.Article.Number", "2 shop.stock.Article.label",
                                     "3 shop.stock.Article.size", "4 shop.stock.Article.Sold",
                                     "5 shop.stock.Article.Price", "6 shop.stock.Article.comment",
                                     "7 shop.stock.Book.author", "8 shop.stock.Book.chapters"));
  EXPECT_EQ(Book::metaClass().propertyByIndex(2).getName(), u"label");
  EXPECT_EQ(Book::metaClass().propertyByIndex(8).getName(), u"chapters");
  EXPECT_EQ(Book::metaClass().getOwnProperties().size(), 2U);
}

TEST(Subclass, UndoesInheritedAndOwnPropertiesTogether) {
  const Model model = Model::create();
  const Book book = Book::create(model);
  {
    const Transaction open = model.impl()->beginTransaction(false);
    book.setNumber(7);
    book.setAuthor(std::string("Ada"));
    book.getChaptersMutable().add(u"one");
    book.setSize(Size::Small);
  }
  EXPECT_EQ(book.number(), -1);
  EXPECT_FALSE(book.hasAuthor());
  EXPECT_TRUE(book.chapters().empty());
  EXPECT_EQ(book.size(), Size::Large);
}

TEST(Subclass, IsTakenWhereItsSuperclassIs) {
  const Model model = Model::create();
  const Shelf shelf = Shelf::create(model);
  const Book book = Book::create(model);
  shelf.impl()->getRowMutable().add(book);
  EXPECT_EQ(shelf.row().at(0), book);
  EXPECT_EQ(shelf.row().at(0).getMetaClass(), Book::metaClass());
  const Article made = shelf.createIntoArticles(Book::Builder().setAuthor(std::string("Ada")).setNumber(3));
  EXPECT_EQ(made.getMetaClass(), Book::metaClass());
  EXPECT_EQ(made.number(), 3);
  EXPECT_EQ(Book(static_cast<Book::Impl*>(made.impl())).author().value(), "Ada");
  const ModelElement any = shelf.createIntoAnything(Book::Builder().setNumber(4));
  EXPECT_EQ(any.getMetaClass(), Book::metaClass());
  EXPECT_EQ(any.container(), shelf);
}

TEST(Subclass, HasTheOperationsOfItsSuperclass) {
  const Model model = Model::create();
  const Book book = Book::create(model);
  const Value answer =
      book.invoke(u"reduce", {Value(std::int64_t{5}), Value(u"sale"), Value(std::vector<ModelElement>{}),
                              Value(std::vector<Size>{})});
  EXPECT_TRUE(answer.as<bool>());
  EXPECT_EQ(book.comment(), u"sale5");
  EXPECT_TRUE(book.invoke(u"open", {}).isEmpty());
  EXPECT_EQ(book.comment(), u"opened");
}

TEST(Subclass, IsFoundByAQueryForItsSuperclassToo) {
  const Model model = Model::create();
  const Article article = Article::create(model);
  const Book book = Book::create(model);
  Nothing::create(model);
  article.setNumber(5);
  book.setNumber(5);
  EXPECT_EQ(Article::find(model, 5), (std::vector<Article>{article, book}));
  Book::Constrainables books(model);
  books.number.equals(5);
  EXPECT_EQ(lx::base::query::find<Book>(books), std::vector<Book>{book});
}

TEST(Invoke, TakesElementsOfASubclassAndRefusesOthers) {
  const Model model = Model::create();
  const Article article = Article::create(model);
  const Book book = Book::create(model);
  const auto reduce = [&](const std::vector<ModelElement>& also) {
    return article.invoke(u"reduce",
                          {Value(std::int64_t{1}), Value(u"x"), Value(also), Value(std::vector<Size>(1))});
  };
  EXPECT_TRUE(reduce({book}).as<bool>());
  EXPECT_EQ(book.comment(), u"x1");
  const std::string refused = "CannotCastIncompatibleTypes(shop.Nothing; shop.stock.Article)";
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { reduce({Nothing::create(model)}); }), refused);
}

TEST(Invoke, RefusesAStaticOperation) {
  const Model model = Model::create();
  EXPECT_THAT(raised<InvalidValue>([&] {
                Article::create(model).invoke(u"find", {Value(model), Value(1)});
              }),
              StartsWith("InvalidValue(shop.stock.Article.find; "));
}

TEST(MapByNumber, OrdersByNumber) {
  const Model model = Model::create();
  const Shelf shelf = Shelf::create(model);
  for (const std::int32_t number : {10, -5, 9, 0})
    shelf.createIntoArticles(Article::Builder().setNumber(number));
  EXPECT_THAT(numbersOf(shelf), ElementsAre(-5, 0, 9, 10));
  EXPECT_EQ(shelf.articles().findGreater(0).number(), 9);
  shelf.articles().find(9).setNumber(-100);
  EXPECT_THAT(numbersOf(shelf), ElementsAre(-100, -5, 0, 10));
}

TEST(MapByNumber, NamesATakenNumberInItsMessage) {
  const Model model = Model::create();
  const Shelf shelf = Shelf::create(model);
  shelf.createIntoArticles(Article::Builder());
  EXPECT_EQ(raised<UniquenessConstraint>([&] { shelf.createIntoArticles(Article::Builder()); }),
            "UniquenessConstraint(shop.Shelf.articles; -1)");
  EXPECT_EQ(model.impl()->numberOfElements(), 2U);
}

TEST(KeyedCollections, MoveAnElementOnlyWhenTheirOwnKeyChanges) {
  const Model model = Model::create();
  const Shelf shelf = Shelf::create(model);
  const Article a = shelf.createIntoByLabel(Article::Builder().setLabel(u"a").setNumber(1));
  const Article b = shelf.createIntoByLabel(Article::Builder().setLabel(u"b").setNumber(2));
  const std::uint32_t stamp = shelf.byLabel().stamp();
  a.setNumber(2);
  EXPECT_EQ(shelf.byLabel().stamp(), stamp);
  a.setLabel(u"c");
  EXPECT_EQ(shelf.byLabel().first(), b);

  shelf.getArticlesMutable().add(a);
  EXPECT_EQ(shelf.byLabel().size(), 1U);
  a.setLabel(u"b");
  EXPECT_THAT(numbersOf(shelf), ElementsAre(2));
  EXPECT_EQ(raised<UniquenessConstraint>([&] { shelf.getArticlesMutable().add(b); }),
            "UniquenessConstraint(shop.Shelf.articles; 2)");
}

TEST(ContainedReference, RefusesAnElementOfTheSuperclass) {
  const Model model = Model::create();
  const Shelf shelf = Shelf::create(model);
  const Article article = Article::create(model);
  EXPECT_EQ(raised<CannotAddIncompatibleTypes>([&] { shelf.setPropertyValue(u"best", Value(article)); }),
            "CannotAddIncompatibleTypes(shop.Shelf.best; shop.stock.Article; shop.stock.Book)");
  EXPECT_FALSE(shelf.hasBest());
  EXPECT_FALSE(article.container());
}

TEST(SingleReference, IsResolvedByTheHandle) {
  const Model model = Model::create();
  const boost::uuids::uuid uuid{{1, 2, 3}};
  const Shelf shelf = Shelf::create(model), proxy = lx::base::createProxy<Shelf>(model, uuid);
  shelf.setNext(proxy);
  EXPECT_FALSE(shelf.resolveNext()) << "the model doesn't have the element";
  const Shelf loaded = Shelf::create(model, uuid);
  EXPECT_EQ(shelf.peekResolveNext(), loaded);
  EXPECT_EQ(shelf.next(), proxy);
  EXPECT_EQ(shelf.resolveNext(), loaded);
  EXPECT_EQ(shelf.next(), loaded);
  EXPECT_THAT(raised<InvalidValue>([] { static_cast<void>(Shelf().resolveNext()); }),
              StartsWith("InvalidValue(shop.Shelf.next; "));
  EXPECT_THAT(raised<InvalidValue>([] { static_cast<void>(Shelf().peekResolveNext()); }),
              StartsWith("InvalidValue(shop.Shelf.next; "));
}

TEST(InternalProperty, IsReachedByTheElementAndNotByReflection) {
  const Model model = Model::create();
  const Article article = Article::create(model);
  article.impl()->setSold(false);
  EXPECT_FALSE(article.impl()->getSold());
  EXPECT_THAT(raised<InvalidValue>([&] { article.getPropertyValue(u"Sold"); }),
              StartsWith("InvalidValue(shop.stock.Article.Sold; "));
  EXPECT_EQ(raised<CannotSetReadOnlyProperty>([&] { article.setPropertyValue(u"Sold", Value(true)); }),
            "CannotSetReadOnlyProperty(shop.stock.Article.Sold)");
  EXPECT_FALSE(article.impl()->getSold());
}

TEST(ReadOnlyProperty, IsSetByABuilderOnly) {
  const Model model = Model::create();
  const Article article = Article::Builder(model).setPrice(12).create();
  EXPECT_EQ(article.price(), 12);
  EXPECT_EQ(article.getPropertyValue(u"Price"), Value(std::int64_t{12}));
  EXPECT_EQ(
      raised<CannotSetReadOnlyProperty>([&] { article.setPropertyValue(u"Price", Value(std::int64_t{1})); }),
      "CannotSetReadOnlyProperty(shop.stock.Article.Price)");
}

TEST(DidCreate, IsCalledOnceForEachElementHoweverItIsMade) {
  const Model model = Model::create();
  const int before = Doings::booksCreated;
  Book::create(model);
  Book::Builder(model).create();
  Shelf::create(model).createIntoBest(Book::Builder());
  EXPECT_EQ(Doings::booksCreated, before + 3);
}

TEST(DidCreate, LeavesNothingBehindWhenItThrows) {
  const Model model = Model::create();
  const Shelf shelf = Shelf::create(model);
  const boost::uuids::uuid uuid{{1, 2, 3}};
  Doings::refusesBooks = true;
  EXPECT_THROW(Book::create(model, uuid), std::runtime_error);
  EXPECT_THROW(shelf.createIntoBest(Book::Builder(), uuid), std::runtime_error);
  Doings::refusesBooks = false;
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{shelf});
  EXPECT_FALSE(shelf.hasBest());
  EXPECT_FALSE(model.impl()->findElement(uuid));
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_EQ(Book::create(model, uuid).identifier(), uuid);
}

TEST(AboutToDestroy, IsOverriddenWhereTheModelSaysSo) {
  const Model model = Model::create();
  const int before = Doings::shelvesToldOfTheirEnd;
  Shelf::create(model).destroy();
  EXPECT_EQ(Doings::shelvesToldOfTheirEnd, before + 1);
  EXPECT_EQ(Shelf::create(model).till(), &Doings::till);
}

TEST(Enumerations, HoldLiteralsUpToTheLimitsOf32Bits) {
  EXPECT_EQ(static_cast<std::int32_t>(Size::Large), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(shop::toText(Size::Large), u"Large");
  EXPECT_THAT(raised<InvalidValue>([] { shop::toText(Size{}); }),
              StartsWith("InvalidValue(shop.Size; there is no literal with the number 0"));
  Size size{};
  EXPECT_THAT(raised<InvalidValue>([&] { shop::fromText(u"small", size); }),
              StartsWith("InvalidValue(shop.Size; there is no literal \"small\""));
}

TEST(SmallMetaPackage, RegistersItsTypesUnderBothNames) {
  shop::detail::MetaPackageSmall::getInstance();
  const MetaRegistry& registry = MetaRegistry::getInstance();
  EXPECT_EQ(registry.getType(u"shop.stock.Book"), Book::metaClass());
  EXPECT_EQ(registry.getType(u"shop::stock::Book"), Book::metaClass());
  EXPECT_EQ(registry.getType(u"shop::Size"), registry.getType(u"shop.Size"));
  EXPECT_EQ(registry.getPrimitiveType(u"Money"), registry.getType(u"shop.Money"));
  EXPECT_EQ(registry.findRootPackage(u"shop").getSchema(), u"https://shop.invalid/shop/1");
  EXPECT_EQ(Book::metaClass().getPackage().getSchema(), u"https://shop.invalid/shop/1/stock");
  EXPECT_EQ(Book::metaClass().getSuperclass(), Article::metaClass());
  EXPECT_TRUE(Shelf::metaClass().isHidden());
  EXPECT_TRUE(Nothing::metaClass().getProperties().empty());
}

TEST(SmallMetaPackage, RegistersSerializersForTheTypesThatHaveThem) {
  shop::detail::MetaPackageSmall::getInstance();
  const PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  ASSERT_TRUE(serializers.find(u"shop.Money"));
  EXPECT_TRUE(serializers.find(u"shop.Money")->isTransientOnly());
  EXPECT_FALSE(serializers.find(u"shop.Till"));
  for (const char16_t* format : {u"", u"ID", u"PublicID"})
    EXPECT_TRUE(serializers.find(u"shop.Size", format));
}

}  // namespace
