#include "tests/platform/foundation/random/Pools.h"

namespace model_walk {

namespace {

boost::uuids::uuid identity(std::uint8_t byte) {
  boost::uuids::uuid result{};
  std::fill(result.begin(), result.end(), byte);
  return result;
}

probe::TokenTag tags[2];

}  // namespace

template <>
const std::vector<std::u16string>& pool() {
  static const std::vector<std::u16string> values{
      u"", u"a", u"a text that has its own memory", u"ab", u"b", u"wide \" text", u"\u00e9"};
  return values;
}

template <>
const std::vector<std::string>& pool() {
  static const std::vector<std::string> values{"", "a narrow text that has its own memory", "b", "narrow"};
  return values;
}

template <>
const std::vector<bool>& pool() {
  static const std::vector<bool> values{false, true};
  return values;
}

template <>
const std::vector<std::int32_t>& pool() {
  static const std::vector<std::int32_t> values{INT32_MIN, -1, 0, 1, 3, 7};
  return values;
}

template <>
const std::vector<lx::base::Model>& pool() {
  static const std::vector<lx::base::Model> values{lx::base::Model(), lx::base::Model::create(),
                                                   lx::base::Model::create()};
  return values;
}

template <>
const std::vector<boost::uuids::uuid>& pool() {
  static const std::vector<boost::uuids::uuid> values{identity(0), identity(7), identity(0xf7)};
  return values;
}

template <>
const std::vector<probe::Colour>& pool() {
  static const std::vector<probe::Colour> values{probe::Colour::Blue, probe::Colour::Red,
                                                 probe::Colour::Green};
  return values;
}

template <>
const std::vector<std::shared_ptr<int>>& pool() {
  static const std::vector<std::shared_ptr<int>> values{nullptr, std::make_shared<int>(1),
                                                        std::make_shared<int>(2)};
  return values;
}

template <>
const std::vector<probe::TokenTag*>& pool() {
  static const std::vector<probe::TokenTag*> values{nullptr, &tags[0], &tags[1]};
  return values;
}

std::vector<long> usesOfPools() {
  std::vector<long> result;
  for (const auto& each : pool<std::shared_ptr<int>>()) result.push_back(each.use_count());
  return result;
}

}  // namespace model_walk
