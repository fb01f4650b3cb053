#include "tests/platform/foundation/whole/Samples.h"

#include <climits>
#include <optional>
#include <set>
#include <sstream>

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <gtest/gtest.h>

#include "platform/host/Array.h"
#include "platform/text/Convert.h"
#include "tests/support/model/Colour.h"
#include "tests/support/model/bodies.h"

namespace whole_test {

namespace {

using Text = boost::optional<std::u16string>;

template <class T>
struct Row {
  Row(T of, const std::u16string& written, bool isBack = true)
      : value(std::move(of)), text(written), comesBack(isBack) {}
  Row(T of, boost::none_t) : value(std::move(of)) {}

  T value;
  Text text;
  bool comesBack = true;
};

template <class T>
inline constexpr bool HasOrder = requires(const T& value) {
  value < value;
};

template <class T>
Samples samples(const std::u16string& type, const std::vector<Row<T>>& rows,
                std::vector<std::u16string> noTexts = {}) {
  Samples result;
  result.type = type;
  result.noTexts = std::move(noTexts);
  result.hasOrder = HasOrder<T>;
  std::vector<T> all;
  result.optionals.push_back(Value(boost::optional<T>()));
  for (const Row<T>& row : rows) {
    all.push_back(row.value);
    result.singles.push_back({Value(row.value), row.text, row.comesBack});
    result.optionals.push_back(Value(boost::optional<T>(row.value)));
  }
  const std::vector<T> backwards(all.rbegin(), all.rend());
  const std::vector<T> twice{all.back(), all.front(), all.back()};
  for (const std::vector<T>& list : {std::vector<T>(), std::vector<T>{all.front()}, all, backwards, twice})
    result.lists.push_back(Value(list));
  if constexpr (HasOrder<T>) {
    for (const std::set<T>& set :
         {std::set<T>(), std::set<T>{all.back()}, std::set<T>(all.begin(), all.end())})
      result.sets.push_back(Value(set));
  }
  return result;
}

Samples transient(Samples result) {
  result.isTransientOnly = true;
  return result;
}

Samples unserialized(Samples result) {
  result.hasSerializer = false;
  return result;
}

boost::uuids::uuid uuidOf(const char* text) {
  return boost::lexical_cast<boost::uuids::uuid>(text);
}

std::vector<Samples> makeSamples() {
  using probe::Colour;
  static const Model model = Model::create();
  static probe::TokenTag one, two;
  static const hvArrayPtr first(hvCreateDoubleScalar(1)), second(hvCreateDoubleScalar(1));
  const std::u16string lone(1, char16_t{0xd800}), other(1, char16_t{0xdfff});
  const std::u16string nul(u"a\0b", 3), beyond(u"\U0001f4a1"), full(40, u'w');
  return {
      samples<std::u16string>(u"lx.base.String", {{u"", u""},
                                                  {u"gain", u"gain"},
                                                  {lone, lone},
                                                  {other + lone, other + lone},
                                                  {nul, nul},
                                                  {beyond, beyond},
                                                  {full, full}}),
      samples<std::string>(u"lx.base.StdString", {{"", u""},
                                                  {"gain", u"gain"},
                                                  {std::string("a\0b", 3), nul},
                                                  {"\xf0\x9f\x92\xa1", beyond},
                                                  {"\xff", u"\xfffd", false},
                                                  {std::string(40, 'w'), full}}),
      samples<bool>(u"lx.base.Boolean", {{false, u"false"}, {true, u"true"}}, {u"", u"True", u"1", u" true"}),
      samples<std::int32_t>(
          u"lx.base.Integer",
          {{0, u"0"}, {1, u"1"}, {-1, u"-1"}, {INT_MIN, u"-2147483648"}, {INT_MAX, u"2147483647"}},
          {u"", u"1 ", u"2147483648", u"0x1", u"1.0", u"one"}),
      unserialized(samples<Model>(u"lx.base.Model", {{Model(), boost::none}, {model, boost::none}})),
      samples<boost::uuids::uuid>(
          u"lx.base.UUID",
          {{boost::uuids::uuid{}, u"00000000-0000-0000-0000-000000000000"},
           {uuidOf("0f40bd84-e4d9-3112-ba83-02023181b729"), u"0f40bd84-e4d9-3112-ba83-02023181b729"},
           {uuidOf("ffffffff-ffff-ffff-ffff-ffffffffffff"), u"ffffffff-ffff-ffff-ffff-ffffffffffff"}},
          {u"", u"0f40bd84", u"0f40bd84-e4d9-3112-ba83-02023181b72g"}),
      samples<Colour>(u"probe.Colour",
                      {{Colour::Red, u"Red"},
                       {Colour::Green, u"Green"},
                       {Colour::Blue, u"Blue"},
                       {static_cast<Colour>(99), boost::none}},
                      {u"", u"red", u"0", u"Red "}),
      transient(samples<std::shared_ptr<int>>(
          u"probe.Ticket", {{nullptr, boost::none}, {std::make_shared<int>(7), boost::none}}, {u"", u"7"})),
      unserialized(samples<probe::TokenTag*>(
          u"probe.Token", {{nullptr, boost::none}, {&one, boost::none}, {&two, boost::none}})),
      unserialized(samples<hvArray*>(
          u"lx.base.HvArray",
          {{nullptr, boost::none}, {first.get(), boost::none}, {second.get(), boost::none}})),
  };
}

template <class T>
std::string text(const T& value) {
  std::ostringstream out;
  if constexpr (std::is_same_v<T, std::u16string>) {
    for (const char16_t unit : value)
      out << (unit < 0x7f && unit > 0x1f ? std::string(1, static_cast<char>(unit))
                                         : "<" + std::to_string(unit) + ">");
  } else if constexpr (std::is_same_v<T, ModelElement>) {
    out << (value ? lx::text::toUtf8(value.getMetaClass().getName()) : "no element") << " at "
        << static_cast<const void*>(value.impl());
  } else if constexpr (std::is_same_v<T, Model>) {
    out << "the model at " << static_cast<const void*>(value.impl());
  } else if constexpr (std::is_same_v<T, probe::Colour>) {
    out << "colour " << static_cast<std::int32_t>(value);
  } else {
    out << value;
  }
  return out.str();
}

template <class List>
std::string textOfAll(const List& list, const char* open, const char* close) {
  std::string result = open;
  for (const auto& each : list) result += text<typename List::value_type>(each) + " ";
  return result + close;
}

template <class T>
std::optional<std::string> textAs(const Value& value) {
  if (value.is<T>()) return text<T>(value.as<T>());
  if (value.is<boost::optional<T>>()) {
    const boost::optional<T>& content = value.as<boost::optional<T>>();
    return content ? "some " + text<T>(*content) : "absent";
  }
  if (value.is<std::vector<T>>()) return textOfAll(value.as<std::vector<T>>(), "[", "]");
  if constexpr (HasOrder<T>) {
    if (value.is<std::set<T>>()) return textOfAll(value.as<std::set<T>>(), "{", "}");
  }
  return std::nullopt;
}

template <class... T>
std::string textOfAny(const Value& value) {
  std::string result = "of another type";
  static_cast<void>(((textAs<T>(value) ? (result = *textAs<T>(value), true) : false) || ...));
  return result;
}

template <class T>
bool isAbsentAs(const Value& value) {
  if constexpr (HasOrder<T>) {
    if (value.is<std::set<T>>()) return value.as<std::set<T>>().empty();
  }
  if (value.is<std::vector<T>>()) return value.as<std::vector<T>>().empty();
  return value.is<boost::optional<T>>() && !value.as<boost::optional<T>>();
}

template <class... T>
bool isPresentAsAny(const Value& value) {
  if (value.is<ModelElement>()) return static_cast<bool>(value.as<ModelElement>());
  return !(isAbsentAs<T>(value) || ...);
}

}  // namespace

std::vector<Value> Samples::of(ValueFlags flags) const {
  if (flags == ValueFlags::Optional) return optionals;
  if (flags == ValueFlags::Sequence) return lists;
  if (flags == ValueFlags::Set) return sets;
  std::vector<Value> result;
  for (const Sample& sample : singles) result.push_back(sample.value);
  return result;
}

const std::vector<Samples>& allSamples() {
  static const std::vector<Samples> samples = makeSamples();
  return samples;
}

const Samples& samplesOf(const std::u16string& type) {
  for (const Samples& each : allSamples()) {
    if (each.type == type) return each;
  }
  throw std::logic_error("there are no samples of " + lx::text::toUtf8(type));
}

Value alien() {
  return Value(3.5);
}

std::string written(const Value& value) {
  if (value.isEmpty()) return "empty";
  return textOfAny<std::u16string, std::string, bool, std::int32_t, Model, boost::uuids::uuid, probe::Colour,
                   std::shared_ptr<int>, probe::TokenTag*, hvArray*, ModelElement>(value);
}

bool isPresent(const Value& value) {
  return isPresentAsAny<std::u16string, std::string, bool, std::int32_t, Model, boost::uuids::uuid,
                        probe::Colour, std::shared_ptr<int>, probe::TokenTag*, hvArray*, ModelElement>(value);
}

}  // namespace whole_test
