#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "tests/support/walks/Outcome.h"

/// What a model is expected to be: the same elements as plain values, which are copied where the model opens
/// a transaction and put back where it abandons one. Nothing here knows of the library.
namespace random_walk {

using walking::Outcome;

/// Elements are numbered in the order of their creation, from 1; 0 is none.
using Id = int;

/// What a property holds: a text; a number for a truth value or a literal; an address; texts; elements.
using Content = std::variant<std::u16string, long, const void*, std::vector<std::u16string>, std::vector<Id>>;

enum class Kind { Tuple, Report, Entry, Variants, Metadata, Container, Held, Cache, Config };
constexpr int Kinds = 9;

/// How a property holds its content.
enum class Form { Value, Texts, Child, Sequence, Multimap, Map };

struct PropertyOfKind {
  Form form;
  Content zero;
  unsigned key = 0;  // the property of the children by which they are sorted
};

/// List the properties of a kind of elements; the one with index 1 comes first.
const std::vector<PropertyOfKind>& propertiesOf(Kind kind);

const char* nameOf(Kind kind);
std::string written(const Content& content);

class Twin {
 public:
  struct Element {
    Kind kind;
    bool isProxy = false;
    Id container = 0;
    unsigned slot = 0;                            // the container's property
    std::vector<Content> values;                  // that of property 1 comes first
    std::map<unsigned, std::vector<Id>> proxies;  // that properties with a key hold apart

    const Content& value(unsigned index) const { return values[index - 1]; }
    const std::vector<Id>& children(unsigned index) const { return std::get<std::vector<Id>>(value(index)); }
    std::vector<Id> apart(unsigned index) const {
      const auto found = proxies.find(index);
      return found == proxies.end() ? std::vector<Id>() : found->second;
    }
    bool holdsSame(const Element& other, unsigned index) const {
      return value(index) == other.value(index) && apart(index) == other.apart(index);
    }
    bool operator==(const Element&) const = default;
  };
  using Elements = std::map<Id, Element>;

  /// Give what exists. What is gone isn't here.
  const Elements& elements() const noexcept { return elements_; }
  bool contains(Id id) const { return elements_.count(id) != 0; }
  const Element& at(Id id) const { return elements_.at(id); }

  void create(Id id, Kind kind);
  Outcome set(Id id, unsigned index, const Content& value);

  /// Put a child into a collection; the position counts in a sequence only.
  Outcome insert(Id owner, unsigned index, std::size_t position, Id child);

  /// Put a child, or none, into a property for one.
  Outcome put(Id owner, unsigned index, Id child);

  Outcome clear(Id owner, unsigned index);
  Outcome replace(Id owner, unsigned index, const std::vector<Id>& children);
  Outcome destroy(Id id);
  Outcome makeProxy(Id id);

  /// Put an element into the place of a proxy that the property holds.
  Outcome resolve(Id owner, unsigned index, Id proxy, Id element);

  /// Say what a change of the element comes to before its particulars matter.
  Outcome writable(Id id) const;

  bool operator==(const Twin&) const = default;

 private:
  Outcome addable(Id owner, Id child) const;
  bool isTaken(Id owner, unsigned index, const Content& key) const;
  const PropertyOfKind& property(Id owner, unsigned index) const;
  bool isMadeOf(Id owner, unsigned index, const std::vector<Id>& children) const;
  std::vector<Id>& childrenOf(Id owner, unsigned index);
  void takeOut(Id child);
  void hang(Id owner, unsigned index, std::size_t position, Id child);
  void setApart(Id owner, unsigned index, Id proxy);
  std::size_t placeOf(Id owner, unsigned index, Id child) const;
  void erase(Id id);
  void eraseChildren(Id owner, unsigned index);

  Elements elements_;
};

}  // namespace random_walk
