// Compares the metamodel at run time with metamodel.txt and identifiers.txt, which stand beside this file.
#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include <boost/uuid/uuid_io.hpp>

#include "nd_data_adapter/model/MetaPackageNd_data_adapter.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using lx::base::ValueFlags;
using lx::text::toUtf8;
using namespace lx::base::meta;

namespace {

using Lines = std::vector<std::string>;

/// One entry of the text: its first line, and those of its members.
struct Entry {
  std::string head;
  Lines members;
};

template <class E>
E castTo(const ModelElement& element) {
  return E(dynamic_cast<typename E::Impl*>(element.impl()));
}

std::string textOf(const boost::uuids::uuid& uuid) {
  return boost::uuids::to_string(uuid);
}

std::string flag(bool isSet, const char* word) {
  return isSet ? std::string(" ") + word : "";
}

std::string kindOf(const Property& property) {
  switch (property.getValueFlags()) {
    case ValueFlags::Optional:
      return "optional";
    case ValueFlags::Single:
      return "single";
    case ValueFlags::Sequence:
      return "sequence";
    case ValueFlags::Set:
      return "set";
    case ValueFlags::Multimap:
      return "multimap";
    case ValueFlags::Map:
      return "map";
  }
  return "?";
}

std::string typeOf(const TypedElement& element) {
  if (!element.getType()) return "-";
  const std::string name = toUtf8(element.getType().getName());
  return element.getUpper() == 1 ? name : name + (element.isOrdered() ? "[ordered]" : "[]");
}

std::string describe(const Property& property) {
  const Traits& traits = property.traits();
  std::string text = "  " + std::to_string(property.getIndex()) + " " + toUtf8(property.getName()) + " " +
                     toUtf8(property.getType().getName()) + " " + kindOf(property) +
                     flag(traits.isContained, "contained") + flag(traits.isReadOnly, "read-only") +
                     flag(traits.isDerived, "derived") + flag(traits.isTransient, "transient") +
                     flag(traits.isOrdered, "ordered") + flag(traits.isUnique, "unique") +
                     flag(traits.isHidden, "hidden") + flag(!traits.hasPublicGetter, "no-getter") +
                     flag(!traits.hasPublicSetter, "no-setter");
  if (!property.getKey().empty()) text += " key=" + toUtf8(property.getKey());
  if (property.getDefaultText()) text += " default=\"" + toUtf8(*property.getDefaultText()) + "\"";
  return text;
}

std::string describe(const Operation& operation) {
  std::string arguments;
  for (const Argument& argument : operation.getArguments()) {
    arguments += (arguments.empty() ? "" : ", ") + std::string(argument.isOut() ? "out " : "") +
                 toUtf8(argument.getName()) + " " + typeOf(argument);
  }
  return "  " + toUtf8(operation.getName()) + "(" + arguments + ") " + typeOf(operation) +
         flag(operation.isAbstract(), "abstract") + flag(operation.isStatic(), "static") +
         flag(!operation.isPublic(), "not-public");
}

Entry describe(const Type& type) {
  const std::string name = toUtf8(type.getQualifiedName());
  if (const auto primitive = castTo<PrimitiveType>(type)) {
    const auto serializer = PropertySerializerRegistry::getInstance().find(type.getQualifiedName());
    const char* const serialized = !serializer                     ? "unserialized"
                                   : serializer->isTransientOnly() ? "transient-only"
                                                                   : "serialized";
    return {"primitive " + name + " " + toUtf8(primitive.getNativeName()) + " " + serialized, {}};
  }
  const std::string identified = name + " " + textOf(type.identifier());
  if (const auto enumeration = castTo<Enum>(type)) {
    Entry entry{"enumeration " + identified + flag(type.isHidden(), "hidden"), {}};
    for (const EnumLiteral& literal : enumeration.getLiterals()) {
      entry.members.push_back("  " + toUtf8(literal.getName()) + " " + std::to_string(literal.getValue()));
    }
    return entry;
  }
  const auto described = castTo<Class>(type);
  Entry entry{"class " + identified + " " + toUtf8(described.getSuperclass().getName()) +
                  flag(described.isAbstract(), "abstract") + flag(type.isHidden(), "hidden"),
              {}};
  for (const Property& property : described.getOwnProperties()) entry.members.push_back(describe(property));
  for (const Operation& operation : described.getOwnOperations())
    entry.members.push_back(describe(operation));
  return entry;
}

Lines linesOf(const char* path) {
  std::ifstream file(path);
  Lines lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.front() != '#') lines.push_back(line);
  }
  return lines;
}

/// Reads metamodel.txt. What is still to come is left out unless `present` has it: first lines as they are,
/// members behind the first line of their type.
Lines expected(const std::set<std::string>& present) {
  Lines result;
  std::string head;
  bool isOwnerThere = true;
  for (std::string line : linesOf(METAMODEL_TEXT)) {
    const bool isMember = line.compare(1, 1, " ") == 0;
    const bool isToCome = line.front() == '~';
    if (isToCome && isMember) line.front() = ' ';
    if (isToCome && !isMember) line.erase(0, 1);
    if (!isMember) head = line;
    const bool isThere = !isToCome || present.count(isMember ? head + line : line) != 0;
    if (!isMember) isOwnerThere = isThere;
    if (isOwnerThere && isThere) result.push_back(line);
  }
  return result;
}

std::vector<Package> allPackages() {
  MetaPackageNd_data_adapter::getInstance();
  std::vector<Package> result{MetaRegistry::getInstance().findRootPackage(u"nd"),
                              MetaRegistry::getInstance().findRootPackage(u"ndx")};
  for (std::size_t at = 0; at < result.size(); ++at) {
    const std::vector<Package> inner = result[at].getPackages();
    result.insert(result.end(), inner.begin(), inner.end());
  }
  return result;
}

std::vector<Type> allTypes() {
  std::vector<Type> result;
  for (const Package& package : allPackages()) {
    for (const Type& type : package.getTypes()) result.push_back(type);
  }
  return result;
}

std::vector<Class> allClasses() {
  std::vector<Class> result;
  for (const Type& type : allTypes()) {
    if (const auto described = castTo<Class>(type)) result.push_back(described);
  }
  return result;
}

/// Everything that has a fixed identifier beside classes and enumerations, by its qualified name.
std::map<std::string, std::string> allIdentifiers() {
  std::map<std::string, std::string> result;
  const auto add = [&](const std::string& owner, const NamedElement& element) {
    const std::string name = owner + "." + toUtf8(element.getName());
    result[name] = textOf(element.identifier());
    return name;
  };
  for (const Type& type : allTypes()) {
    const std::string name = toUtf8(type.getQualifiedName());
    if (castTo<PrimitiveType>(type)) result[name] = textOf(type.identifier());
    if (const auto enumeration = castTo<Enum>(type)) {
      for (const EnumLiteral& literal : enumeration.getLiterals()) add(name, literal);
    }
    if (const auto described = castTo<Class>(type)) {
      for (const Property& property : described.getOwnProperties()) add(name, property);
      for (const Operation& operation : described.getOwnOperations()) {
        const std::string qualified = add(name, operation);
        for (const Argument& argument : operation.getArguments()) add(qualified, argument);
      }
    }
  }
  return result;
}

TEST(MetaPackage, DescribesEveryTypeAsItIsWrittenDown) {
  std::map<std::string, Lines> actual;
  std::set<std::string> present;
  for (const Type& type : allTypes()) {
    const Entry entry = describe(type);
    actual[entry.head] = entry.members;
    present.insert(entry.head);
    for (const std::string& member : entry.members) present.insert(entry.head + member);
  }
  std::map<std::string, Lines> wanted;
  std::string head;
  for (const std::string& line : expected(present)) {
    if (line.rfind("package", 0) == 0) continue;
    if (line.front() != ' ') head = line;
    Lines& members = wanted[head];
    if (line.front() == ' ') members.push_back(line);
  }
  EXPECT_GE(wanted.size(), 20U);
  for (const auto& [name, members] : wanted) EXPECT_EQ(actual[name], members) << name;
  for (const auto& [name, members] : actual)
    EXPECT_EQ(wanted.count(name), 1U) << name << " is not written down";
}

TEST(MetaPackage, HasThePackagesWithTheirSchemaPaths) {
  Lines actual;
  for (const Package& package : allPackages()) {
    const std::string schema = toUtf8(package.getSchema());
    const std::size_t path = schema.find('/', schema.find("//") + 2);
    ASSERT_NE(path, std::string::npos) << schema;
    actual.push_back("package " + toUtf8(package.getQualifiedName()) + " " + schema.substr(path));
  }
  Lines wanted;
  for (const std::string& line : linesOf(METAMODEL_TEXT)) {
    if (line.rfind("package", 0) == 0) wanted.push_back(line);
  }
  EXPECT_THAT(actual, testing::UnorderedElementsAreArray(wanted));
  EXPECT_TRUE(MetaRegistry::getInstance().findRootPackage(u"nd").getTypes().empty());
  EXPECT_TRUE(MetaRegistry::getInstance().findRootPackage(u"nd").getPackages().front().getTypes().empty());
}

TEST(MetaPackage, KeepsTheIdentifiersOfAllMembers) {
  std::map<std::string, std::string> pinned;
  for (const std::string& line : linesOf(IDENTIFIERS_TEXT)) {
    const std::size_t blank = line.find(' ');
    pinned[line.substr(0, blank)] = line.substr(blank + 1);
  }
  const auto actual = allIdentifiers();
  EXPECT_GT(actual.size(), 100U);
  for (const auto& [name, uuid] : actual) EXPECT_EQ(uuid, pinned[name]) << name;
}

TEST(MetaPackage, GivesNoIdentifierTwice) {
  MetaPackageNd_data_adapter::getInstance();
  std::set<boost::uuids::uuid> seen;
  for (const ModelElement& element : MetaRegistry::getInstance().model().impl()->elements()) {
    EXPECT_TRUE(seen.insert(element.identifier()).second);
  }
}

TEST(MetaPackage, BoundsEveryMember) {
  for (const Class& described : allClasses()) {
    for (const Property& property : described.getOwnProperties()) {
      const bool isMany = property.getValueFlags() >= ValueFlags::Sequence;
      EXPECT_EQ(property.getUpper(), isMany ? -1 : 1) << toUtf8(property.getQualifiedName());
      // A single element may be missing; a single value is always there.
      const bool isElement = static_cast<bool>(castTo<Class>(property.getType()));
      EXPECT_EQ(property.getLower(), isMany || isElement ? 0 : 1) << toUtf8(property.getQualifiedName());
      EXPECT_EQ(property.isOrdered(), property.traits().isOrdered) << toUtf8(property.getQualifiedName());
    }
    for (const Operation& operation : described.getOwnOperations()) {
      if (operation.getType()) {
        const std::pair bounds(operation.getLower(), operation.getUpper());
        EXPECT_THAT(bounds, testing::AnyOf(testing::Pair(0, -1), testing::Pair(1, 1)))
            << toUtf8(operation.getQualifiedName());
      }
      for (const Argument& argument : operation.getArguments()) {
        EXPECT_EQ(argument.getLower(), argument.getUpper() == 1 ? 1 : 0)
            << toUtf8(operation.getQualifiedName());
      }
    }
  }
}

TEST(MetaPackage, GivesAnInvokerToWhatReflectionMayCall) {
  std::size_t invokable = 0;
  for (const Class& described : allClasses()) {
    for (const Operation& operation : described.getOwnOperations()) {
      bool hasOut = false;
      for (const Argument& argument : operation.getArguments()) hasOut = hasOut || argument.isOut();
      const bool isLeftOut =
          operation.getQualifiedName() == u"nd.data.adapter.Adapter.getResourceToExternalSources";
      EXPECT_EQ(operation.hasInvoker(), !operation.isStatic() && !hasOut && !isLeftOut)
          << toUtf8(operation.getQualifiedName());
      invokable += operation.hasInvoker() ? 1U : 0U;
    }
  }
  EXPECT_GT(invokable, 10U);
}

TEST(MetaPackage, RegistersEveryTypeUnderItsDottedAndItsScopedName) {
  const MetaRegistry& registry = MetaRegistry::getInstance();
  for (const Type& type : allTypes()) {
    const std::u16string dotted = type.getQualifiedName();
    EXPECT_EQ(registry.getType(dotted), type);
    if (const auto primitive = castTo<PrimitiveType>(type)) {
      EXPECT_EQ(registry.getType(primitive.getNativeName()), type);
      continue;
    }
    std::u16string scoped;
    for (const char16_t unit : dotted)
      scoped += unit == u'.' ? std::u16string(u"::") : std::u16string(1, unit);
    EXPECT_EQ(registry.getType(scoped), type);
    EXPECT_FALSE(registry.findType(type.getName())) << "only the foundation's types have short names";
  }
}

TEST(MetaPackage, GivesNoNativeNameToTwoPrimitives) {
  std::vector<Type> types = allTypes();
  const Package base = MetaRegistry::getInstance().findRootPackage(u"lx").getPackages().front();
  for (const Type& type : base.getTypes()) types.push_back(type);
  std::map<std::u16string, Type> byNativeName;
  for (const Type& type : types) {
    const auto primitive = castTo<PrimitiveType>(type);
    if (!primitive) continue;
    EXPECT_TRUE(byNativeName.emplace(primitive.getNativeName(), type).second)
        << toUtf8(type.getQualifiedName()) << " is " << toUtf8(primitive.getNativeName());
    EXPECT_EQ(MetaRegistry::getInstance().getType(primitive.getNativeName()), type);
  }
  EXPECT_EQ(byNativeName.count(u""), 0U);
  EXPECT_EQ(byNativeName.at(u"lx::base::Model").getQualifiedName(), u"nd.data.adapter.LXBModel");
  EXPECT_EQ(byNativeName.at(u"hvArray").getQualifiedName(), u"lx.base.HvArray");
}

TEST(MetaPackage, GivesEveryClassByItsIdentifier) {
  for (const Class& described : allClasses()) {
    EXPECT_EQ(MetaPackageNd_data_adapter::getInstance().getClass(described.getUuid()), described);
    EXPECT_EQ(described.identifier(), described.getUuid());
  }
  EXPECT_EQ(ChangeTuple::metaClass().getUuid(), ChangeTuple::Uuid());
  EXPECT_EQ(textOf(ChangeTuple::Uuid()), "5f7011ef-5edc-386e-8582-fde24f6cb3fd");
  boost::uuids::uuid unknown = ChangeTuple::Uuid();
  std::reverse(unknown.begin(), unknown.end());
  for (const boost::uuids::uuid& uuid : {unknown, boost::uuids::uuid{}}) {
    EXPECT_EQ(
        raised<lxb::messages::NoSuchType>([&] { MetaPackageNd_data_adapter::getInstance().getClass(uuid); }),
        "NoSuchType(class " + textOf(uuid) + ")");
  }
}

TEST(MetaPackage, DescribesEverythingInWords) {
  for (const Class& described : allClasses()) {
    EXPECT_FALSE(described.getDescription().empty()) << toUtf8(described.getQualifiedName());
    for (const Property& each : described.getOwnProperties()) EXPECT_FALSE(each.getDescription().empty());
    for (const Operation& each : described.getOwnOperations()) EXPECT_FALSE(each.getDescription().empty());
  }
}

TEST(MetaPackage, GivesABuilderForEveryClassThatIsNotAbstract) {
  const Model model = Model::create();
  for (const Class& described : allClasses()) {
    EXPECT_NE(described.impl()->builderFactory, nullptr) << toUtf8(described.getQualifiedName());
    const auto builder = described.impl()->instantiateBuilder(model);
    EXPECT_EQ(static_cast<bool>(builder), !described.isAbstract()) << toUtf8(described.getQualifiedName());
    if (!builder) continue;
    EXPECT_EQ(builder->getMetaClass(), described);
    EXPECT_EQ(builder->create().getMetaClass(), described);
  }
}

TEST(MetaPackage, GivesEveryElementTheDefaultsThatItDescribes) {
  const Model model = Model::create();
  const PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  std::size_t compared = 0;
  for (const Class& described : allClasses()) {
    const auto builder = described.impl()->instantiateBuilder(model);
    if (!builder) continue;
    const ModelElement element = builder->create();
    for (const Property& property : described.getOwnProperties()) {
      const auto serializer = serializers.find(property.getType().getQualifiedName());
      if (!serializer || property.getValueFlags() != ValueFlags::Single) continue;
      const Value wanted = property.getDefaultText() ? serializer->parseValue(*property.getDefaultText())
                                                     : serializer->createDefaultValue();
      EXPECT_EQ(element.impl()->getPropertyValue(property), wanted) << toUtf8(property.getQualifiedName());
      ++compared;
    }
  }
  EXPECT_GT(compared, 15U);
}

TEST(MetaPackage, SerializesEnumerationsByTheNamesOfTheirLiteralsInThreeFormats) {
  const PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  std::size_t compared = 0;
  for (const Type& type : allTypes()) {
    const auto enumeration = castTo<Enum>(type);
    if (!enumeration) continue;
    std::string names;
    for (const EnumLiteral& literal : enumeration.getLiterals())
      names += (names.empty() ? "" : ", ") + toUtf8(literal.getName());
    for (const char16_t* format : {u"", u"ID", u"PublicID"}) {
      const auto serializer = serializers.find(type.getQualifiedName(), format);
      ASSERT_TRUE(serializer) << toUtf8(type.getQualifiedName());
      EXPECT_FALSE(serializer->isTransientOnly());
      for (const EnumLiteral& literal : enumeration.getLiterals()) {
        const Value value = serializer->parseValue(literal.getName());
        EXPECT_EQ(serializer->serializeValue(value), literal.getName());
        ++compared;
      }
      EXPECT_EQ(raised<lxb::messages::InvalidValue>([&] { serializer->parseValue(u"0"); }),
                "InvalidValue(" + toUtf8(type.getQualifiedName()) +
                    "; there is no literal \"0\"; its literals are " + names + ".)");
    }
    EXPECT_FALSE(serializers.find(type.getQualifiedName(), u"Id"));
  }
  EXPECT_EQ(compared, 3U * (8 + 2 + 3));
}

TEST(MetaPackage, NumbersTheLiteralsAsTheNativeOnesAre) {
  const auto serializer = PropertySerializerRegistry::getInstance().find(u"nd.data.adapter.ChangeType");
  ASSERT_TRUE(serializer);
  EXPECT_EQ(serializer->parseValue(u"Delete"), Value(ChangeType::Delete));
  EXPECT_EQ(static_cast<std::int32_t>(ChangeType::Delete), 2);
  EXPECT_EQ(serializer->createDefaultValue(), Value(ChangeType::Create));
  EXPECT_EQ(raised<lxb::messages::InvalidValue>(
                [&] { serializer->serializeValue(Value(static_cast<ChangeType>(3))); }),
            "InvalidValue(nd.data.adapter.ChangeType; there is no literal with the number 3; "
            "its literals are Create, Modify, Delete.)");
}

TEST(MetaPackage, SerializesNoPointer) {
  MetaPackageNd_data_adapter::getInstance();  // registers them
  const PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  for (const char16_t* name :
       {u"nd.data.adapter.CPPAdapterV2Ptr", u"nd.data.adapter.LXBModel", u"nd.data.adapter.WorkspacePtr"}) {
    const auto serializer = serializers.find(name);
    ASSERT_TRUE(serializer);
    EXPECT_TRUE(serializer->isTransientOnly());
    EXPECT_EQ(raised<lxb::messages::InvalidValue>(
                  [&] { serializer->serializeValue(serializer->createDefaultValue()); }),
              "InvalidValue(serializeValue; values of this type live in memory only and have no text.)");
  }
  EXPECT_FALSE(serializers.find(u"nd.data.adapter.ndsvDiagnostic"));
}

TEST(MetaPackage, HasEveryMemberUniqueInItsQualification) {
  std::size_t members = 0;
  const auto expectUnique = [&](const TypedElement& element, const std::u16string& name) {
    EXPECT_TRUE(element.isUniqueInQualification()) << toUtf8(name);
    ++members;
  };
  for (const Class& described : allClasses()) {
    for (const Property& property : described.getOwnProperties())
      expectUnique(property, property.getQualifiedName());
    for (const Operation& operation : described.getOwnOperations()) {
      expectUnique(operation, operation.getQualifiedName());
      for (const Argument& argument : operation.getArguments())
        expectUnique(argument, operation.getQualifiedName() + u"." + argument.getName());
    }
  }
  EXPECT_GT(members, 80U);
}

TEST(MetaPackage, NumbersTheLiteralsOfEveryEnumerationByIntegers) {
  std::size_t enumerations = 0;
  for (const Type& type : allTypes()) {
    const auto enumeration = castTo<Enum>(type);
    if (!enumeration) continue;
    EXPECT_EQ(enumeration.getUnderlyingType(), MetaRegistry::getInstance().getPrimitiveType(u"Integer"))
        << toUtf8(type.getQualifiedName());
    ++enumerations;
  }
  EXPECT_EQ(enumerations, 3U);
}

}  // namespace
