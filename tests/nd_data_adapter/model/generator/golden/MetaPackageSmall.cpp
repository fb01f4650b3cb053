// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#include "tests/nd_data_adapter/model/generator/small/MetaPackageSmall.h"

#include "tests/nd_data_adapter/model/generator/small/Article.h"
#include "tests/nd_data_adapter/model/generator/small/Book.h"
#include "tests/nd_data_adapter/model/generator/small/Shelf.h"
#include "tests/nd_data_adapter/model/generator/small/Nothing.h"
#include "tests/nd_data_adapter/model/generator/small/Size.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/Invoker.h"
#include "platform/foundation/meta/MetaRegistry.h"

namespace shop::detail {

namespace {

using ::lx::base::ValueFlags;
using namespace ::lx::base::meta;

template <class S>
::std::shared_ptr<const PropertySerializer> makeSerializer() {
  return ::std::make_shared<const S>();
}

template <class B>
::std::unique_ptr<::lx::base::ModelElement::Builder> makeBuilder(const ::lx::base::Model& model) {
  return ::std::make_unique<B>(model);
}

constexpr LiteralRow Literals_Size[] = {
    {"b768c6cd-869b-3a1c-a40a-fcaeab2186b3", u"Small", 1},
    {"80c226e4-9176-33db-9ee9-71a09b4400cd", u"Large", -2147483648},
};

constexpr PropertyRow Properties_Article[] = {
    {.uuid = "53c17a2e-b26e-325e-ae2e-30da8989a5a9",
     .name = u"Number",
     .description = u"The number by which it is found.",
     .index = 1,
     .flags = ValueFlags::Single,
     .traits = {.isContained = false, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = true, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"Integer",
     .lower = 1,
     .upper = 1,
     .defaultText = u"-1",
     .key = nullptr},
    {.uuid = "b17cddef-7bc5-3b64-8f04-ee7e66b42df2",
     .name = u"label",
     .description = u"What stands on it.",
     .index = 2,
     .flags = ValueFlags::Single,
     .traits = {.isContained = false, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = true, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"String",
     .lower = 1,
     .upper = 1,
     .defaultText = u"\"none\"\012",
     .key = nullptr},
    {.uuid = "36c5da19-0827-32cd-bd88-1b7bf318d765",
     .name = u"size",
     .description = u"How large it is.",
     .index = 3,
     .flags = ValueFlags::Single,
     .traits = {.isContained = false, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"shop.Size",
     .lower = 1,
     .upper = 1,
     .defaultText = u"Large",
     .key = nullptr},
    {.uuid = "e9c2b344-0f65-3512-b7cd-f33a119b1f43",
     .name = u"Sold",
     .description = u"Whether it is gone.",
     .index = 4,
     .flags = ValueFlags::Single,
     .traits = {.isContained = false, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = false, .hasPublicSetter = false},
     .type = u"Boolean",
     .lower = 1,
     .upper = 1,
     .defaultText = u"true",
     .key = nullptr},
    {.uuid = "296d1c10-d43a-385e-a2bd-ba0ff638d7f6",
     .name = u"Price",
     .description = u"What it costs.",
     .index = 5,
     .flags = ValueFlags::Single,
     .traits = {.isContained = false, .isReadOnly = true, .isDerived = false, .isTransient = true, .isOrdered = false, .isUnique = false, .isHidden = true, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"shop.Money",
     .lower = 1,
     .upper = 1,
     .defaultText = nullptr,
     .key = nullptr},
    {.uuid = "a472ea00-15ab-3139-b47a-5314ab20488e",
     .name = u"comment",
     .description = u"What is to be said of it.",
     .index = 6,
     .flags = ValueFlags::Single,
     .traits = {.isContained = false, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"String",
     .lower = 1,
     .upper = 1,
     .defaultText = u"",
     .key = nullptr},
};

constexpr ArgumentRow Arguments_Article_reduce[] = {
    {"b270eb8f-f5ec-3820-bb1b-791d2516ef6c", u"by", u"shop.Money", false, false},
    {"f20fc8f5-2012-3b07-848e-c2cff3cb8828", u"because", u"String", false, false},
    {"87877c38-dbf6-3b43-9e46-cdf7f0e85d9d", u"also", u"shop.stock.Article", true, true},
    {"75be6aec-fd10-3739-8151-a9edf7a133ef", u"sizes", u"shop.Size", true, false},
};

constexpr ArgumentRow Arguments_Article_find[] = {
    {"e78038a4-2f39-3d99-9c8e-a774c9832a7c", u"model", u"Model", false, false},
    {"cb2923ca-c735-3062-a37c-993b6c0db27e", u"Number", u"Integer", false, false},
};

constexpr OperationRow Operations_Article[] = {
    {.uuid = "2c79f7ed-56ce-31a5-8381-dc81e8f967b7",
     .name = u"reduce",
     .description = u"Makes it cheaper.",
     .type = u"Boolean",
     .isList = false,
     .isStatic = false,
     .invoker = &invokeMember<&::shop::stock::Article::Impl::reduce>,
     .arguments = Arguments_Article_reduce},
    {.uuid = "6a52b70c-8f26-348b-a971-720e3becbccb",
     .name = u"find",
     .description = u"Finds articles.",
     .type = u"shop.stock.Article",
     .isList = true,
     .isStatic = true,
     .invoker = nullptr,
     .arguments = Arguments_Article_find},
};

constexpr PropertyRow Properties_Book[] = {
    {.uuid = "56fe2e59-85af-39ef-9f1e-61f75eb5e310",
     .name = u"author",
     .description = u"Who wrote it; absent if that is not known.",
     .index = 7,
     .flags = ValueFlags::Optional,
     .traits = {.isContained = false, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"StdString",
     .lower = 0,
     .upper = 1,
     .defaultText = nullptr,
     .key = nullptr},
    {.uuid = "1125bda7-e495-3395-808b-b0347c0518db",
     .name = u"chapters",
     .description = u"What its parts are called.",
     .index = 8,
     .flags = ValueFlags::Sequence,
     .traits = {.isContained = false, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = true, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"String",
     .lower = 0,
     .upper = -1,
     .defaultText = nullptr,
     .key = nullptr},
};

constexpr OperationRow Operations_Book[] = {
    {.uuid = "e77f9109-0ff5-3cd8-8a2d-042dd00c7c4a",
     .name = u"open",
     .description = u"Opens it.",
     .type = nullptr,
     .isList = false,
     .isStatic = false,
     .invoker = &invokeMember<&::shop::stock::Book::Impl::open>,
     .arguments = {}},
};

constexpr PropertyRow Properties_Shelf[] = {
    {.uuid = "c96d9690-cd5f-3a5c-b0cf-e74c0fee532a",
     .name = u"articles",
     .description = u"What stands there.",
     .index = 1,
     .flags = ValueFlags::Map,
     .traits = {.isContained = true, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"shop.stock.Article",
     .lower = 0,
     .upper = -1,
     .defaultText = nullptr,
     .key = u"Number"},
    {.uuid = "ba59ad3d-b715-330b-9125-e342cef0e0fb",
     .name = u"byLabel",
     .description = u"What lies there.",
     .index = 2,
     .flags = ValueFlags::Multimap,
     .traits = {.isContained = true, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"shop.stock.Article",
     .lower = 0,
     .upper = -1,
     .defaultText = nullptr,
     .key = u"label"},
    {.uuid = "970e83d9-9a62-3e67-bf7e-f10701e2b761",
     .name = u"row",
     .description = u"What is in line.",
     .index = 3,
     .flags = ValueFlags::Sequence,
     .traits = {.isContained = true, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = true, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = false},
     .type = u"shop.stock.Article",
     .lower = 0,
     .upper = -1,
     .defaultText = nullptr,
     .key = nullptr},
    {.uuid = "6b392bee-7537-3121-a6c8-a02b6075030f",
     .name = u"best",
     .description = u"What is shown.",
     .index = 4,
     .flags = ValueFlags::Single,
     .traits = {.isContained = true, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = true, .hasPublicSetter = true},
     .type = u"shop.stock.Book",
     .lower = 0,
     .upper = 1,
     .defaultText = nullptr,
     .key = nullptr},
    {.uuid = "96f471ea-4a09-3c84-a668-07b0e7d95b9c",
     .name = u"anything",
     .description = u"What else there is.",
     .index = 5,
     .flags = ValueFlags::Single,
     .traits = {.isContained = true, .isReadOnly = false, .isDerived = false, .isTransient = false, .isOrdered = false, .isUnique = false, .isHidden = false, .hasPublicGetter = false, .hasPublicSetter = true},
     .type = u"ModelElement",
     .lower = 0,
     .upper = 1,
     .defaultText = nullptr,
     .key = nullptr},
};

constexpr OperationRow Operations_Shelf[] = {
    {.uuid = "d5467b49-045d-344b-8143-c748e84bf5a1",
     .name = u"till",
     .description = u"Gives the till beside it.",
     .type = u"shop.Till",
     .isList = false,
     .isStatic = false,
     .invoker = &invokeMember<&::shop::Shelf::Impl::till>,
     .arguments = {}},
};

constexpr PrimitiveRow Primitives_shop[] = {
    {"eef7205f-4f4c-34bc-99a5-6e932a9c736b", u"Money", u"Money", &makeSerializer<TransientOnlyPropertySerializer<::std::int64_t>>},
    {"5fbc663b-9de6-3b59-868f-2aaab457b638", u"Till", u"Till", nullptr},
};

constexpr EnumRow Enumerations_shop[] = {
    {.uuid = "5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a01",
     .name = u"Size",
     .scopedName = u"shop::Size",
     .description = u"How large something is.",
     .isHidden = false,
     .literals = Literals_Size,
     .serializer = &makeSerializer<DefaultPropertySerializer<::shop::Size>>},
};

constexpr ClassRow Classes_shop[] = {
    {.uuid = "5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a04",
     .name = u"Shelf",
     .scopedName = u"shop::Shelf",
     .description = u"Where articles stand.",
     .superclass = u"ModelElement",
     .isHidden = true,
     .properties = Properties_Shelf,
     .operations = Operations_Shelf,
     .builder = &makeBuilder<::shop::Shelf::Builder>},
    {.uuid = "5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a05",
     .name = u"Nothing",
     .scopedName = u"shop::Nothing",
     .description = u"A class without members.",
     .superclass = u"ModelElement",
     .isHidden = false,
     .properties = {},
     .operations = {},
     .builder = &makeBuilder<::shop::Nothing::Builder>},
};

constexpr PackageRow Package_shop = {
    .qualifiedName = u"shop",
    .schema = u"https://shop.invalid/shop/1",
    .primitives = Primitives_shop,
    .enumerations = Enumerations_shop,
    .classes = Classes_shop};

constexpr ClassRow Classes_shop_stock[] = {
    {.uuid = "5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a03",
     .name = u"Article",
     .scopedName = u"shop::stock::Article",
     .description = u"Something that is sold. It has a number, by which it is found, and a size; what else is said about it stands on a long line, so that the comment is wrapped.",
     .superclass = u"ModelElement",
     .isHidden = false,
     .properties = Properties_Article,
     .operations = Operations_Article,
     .builder = &makeBuilder<::shop::stock::Article::Builder>},
    {.uuid = "5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a02",
     .name = u"Book",
     .scopedName = u"shop::stock::Book",
     .description = u"An article to read.",
     .superclass = u"shop.stock.Article",
     .isHidden = false,
     .properties = Properties_Book,
     .operations = Operations_Book,
     .builder = &makeBuilder<::shop::stock::Book::Builder>},
};

constexpr PackageRow Package_shop_stock = {
    .qualifiedName = u"shop.stock",
    .schema = u"https://shop.invalid/shop/1/stock",
    .primitives = {},
    .enumerations = {},
    .classes = Classes_shop_stock};

}  // namespace

MetaPackageSmall& MetaPackageSmall::getInstance() {
  static MetaPackageSmall& instance = *new MetaPackageSmall;  // outlives all elements
  return instance;
}

MetaPackageSmall::MetaPackageSmall() { initialize(); }
MetaPackageSmall::~MetaPackageSmall() = default;

::lx::base::meta::Class MetaPackageSmall::getClass(const ::boost::uuids::uuid& uuid) const {
  const auto found = classes_.find(uuid);
  if (found == classes_.end()) ::lx::base::report::noSuchType(u"class of this identifier");
  return found->second;
}

void MetaPackageSmall::initialize() {
  MetaRegistry& registry = MetaRegistry::getInstance();
  MetaRegistry::Update update(registry);
  if (registry.findRootPackage(u"shop")) registry.unregisterRootPackage(u"shop");
  Parts parts;
  instantiate_shop(parts);
  instantiate_shop_stock(parts);
  weave_shop(parts);
  weave_shop_stock(parts);
  registry.registerRootPackage(parts.packages.at(u"shop"));
  ::std::map<::boost::uuids::uuid, Class> classes;
  for (const auto& [name, type] : parts.classes) classes.emplace(type.getUuid(), type);
  update.commit();
  classes_.swap(classes);
}

void MetaPackageSmall::instantiate_shop(Parts& parts) { instantiate(Package_shop, parts); }
void MetaPackageSmall::weave_shop(Parts& parts) { weave(Package_shop, parts); }

void MetaPackageSmall::instantiate_shop_stock(Parts& parts) { instantiate(Package_shop_stock, parts); }
void MetaPackageSmall::weave_shop_stock(Parts& parts) { weave(Package_shop_stock, parts); }

}  // namespace shop::detail
