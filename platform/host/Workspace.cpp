#include "platform/host/Workspace.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include "platform/host/internal/DataBody.h"
#include "platform/host/internal/WorkspaceTable.h"
#include "platform/text/Hash.h"

using hvdetail::BodyRef;
using hvdetail::Variable;
using hvdetail::VariableIndex;
using hvdetail::VariableRef;

namespace {

// A hint above this is taken as this, so that it can't cost more than a few pages.
constexpr std::size_t largestHint = 1024;
constexpr std::size_t fewestSlots = 8;

constexpr std::size_t usable(std::size_t slots) noexcept {
  return slots / 5 * 4;
}

std::size_t slotsFor(std::size_t variables) noexcept {
  std::size_t slots = fewestSlots;
  while (usable(slots) < variables) slots *= 2;
  return slots;
}

BodyRef bodyToStore(const hvArray* value) {
  if (value != nullptr) return value->reference();
  return hvdetail::DataBody::create(hvClassCode::Double, hvComplexity::Real, hvdetail::Shape(0, 0));
}

}  // namespace

Variable::Variable(std::size_t nameSize, BodyRef body, std::uint64_t number) noexcept
    : number_(number), nameSize_(nameSize), value_(std::move(body)) {
  value_.takeOver();
}

VariableRef Variable::create(std::string_view name, BodyRef body, std::uint64_t number) {
  VariableRef variable(new (Trailing{name.size()}) Variable(name.size(), std::move(body), number));
  std::copy(name.begin(), name.end(), static_cast<char*>(static_cast<void*>(variable.get() + 1)));
  return variable;
}

void* Variable::operator new(std::size_t size, Trailing trailing) {
  return ::operator new(size + trailing.bytes);
}
void Variable::operator delete(void* memory, Trailing) noexcept {
  ::operator delete(memory);
}
void Variable::operator delete(void* memory) noexcept {
  ::operator delete(memory);
}

std::size_t VariableIndex::hashOf(std::string_view name) noexcept {
  return lx::text::hash(name);
}

Variable* VariableIndex::find(std::string_view name, std::size_t hash) const noexcept {
  if (slots_.empty()) return nullptr;
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash & mask; slots_[i].variable != nullptr; i = (i + 1) & mask) {
    if (slots_[i].hash == hash && slots_[i].variable->name() == name) return slots_[i].variable;
  }
  return nullptr;
}

std::size_t VariableIndex::firstFree(std::size_t hash) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = hash & mask;
  while (slots_[i].variable != nullptr) i = (i + 1) & mask;
  return i;
}

void VariableIndex::reserve(std::size_t variables) {
  if (variables <= usable(slots_.size())) return;
  VariableIndex larger;
  larger.slots_.resize(slotsFor(variables));
  for (const Slot& slot : slots_) {
    if (slot.variable != nullptr) larger.slots_[larger.firstFree(slot.hash)] = slot;
  }
  swap(larger);
}

void VariableIndex::insert(Variable& variable, std::size_t hash) noexcept {
  slots_[firstFree(hash)] = Slot{hash, &variable};
}

void VariableIndex::replace(const Variable& former, Variable& variable, std::size_t hash) noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = hash & mask;
  while (slots_[i].variable != &former) i = (i + 1) & mask;
  slots_[i].variable = &variable;
}

void VariableIndex::swap(VariableIndex& other) noexcept {
  slots_.swap(other.slots_);
}

inWorkSpace_tag::inWorkSpace_tag(std::size_t sizeHint) noexcept
    : expected_(std::min(sizeHint, largestHint)) {}

void inWorkSpace_tag::assign(const hvArray* value, std::string_view name) {
  const std::size_t hash = VariableIndex::hashOf(name);
  BodyRef body = bodyToStore(value);
  Variable* const known = index_.find(name, hash);
  if (known == nullptr) return append(std::move(body), name, hash);
  if (known->isLent()) return replace(*known, std::move(body), hash);
  // What was there goes last, with the local reference: its end may run code that uses the workspace, or ends
  // it.
  known->value().exchangeReference(body);
}

void inWorkSpace_tag::append(BodyRef body, std::string_view name, std::size_t hash) {
  VariableRef variable = Variable::create(name, std::move(body), firstNumber_ + variables_.size());
  const std::size_t expected = std::max(variables_.size() + 1, expected_);
  index_.reserve(expected);
  if (variables_.capacity() == variables_.size())
    variables_.reserve(std::max(expected, variables_.size() * 2));
  index_.insert(*variable, hash);
  variables_.push_back(std::move(variable));
}

void inWorkSpace_tag::replace(const Variable& former, BodyRef body, std::size_t hash) {
  VariableRef variable = Variable::create(former.name(), std::move(body), former.number());
  index_.replace(former, *variable, hash);
  variables_[former.number() - firstNumber_].swap(variable);
}

void inWorkSpace_tag::clear() noexcept {
  // The values go last, with these locals: their end may run code that uses the workspace, or ends it.
  std::vector<VariableRef> variables;
  VariableIndex index;
  firstNumber_ += variables_.size();
  variables.swap(variables_);
  index.swap(index_);
}

const hvArray* inWorkSpace_tag::find(std::string_view name) const noexcept {
  const Variable* const known = index_.find(name, VariableIndex::hashOf(name));
  return known == nullptr ? nullptr : &known->value();
}

const Variable* inWorkSpace_tag::atOrBehind(std::uint64_t& number) const noexcept {
  number = std::max(number, firstNumber_);
  const std::uint64_t position = number - firstNumber_;
  return position < variables_.size() ? variables_[position].get() : nullptr;
}

boost::shared_ptr<inWorkSpace_tag> inCreateWorkspace(std::size_t sizeHint) {
  return boost::make_shared<inWorkSpace_tag>(sizeHint);
}

void inAssignInDesiredWS(const hvArray* value, const std::string& name,
                         const boost::shared_ptr<inWorkSpace_tag>& workspace) {
  if (workspace) workspace->assign(value, name);
}

void inClearArraysInDesiredWS(const boost::shared_ptr<inWorkSpace_tag>& workspace) noexcept {
  if (workspace) workspace->clear();
}

const hvArray* inGetValueFromWorkspace(const std::string& name,
                                       const boost::shared_ptr<inWorkSpace_tag>& workspace) noexcept {
  return workspace ? workspace->find(name) : nullptr;
}

std::size_t inGetNumberOfVariables(const boost::shared_ptr<inWorkSpace_tag>& workspace) noexcept {
  return workspace ? workspace->size() : 0;
}

WorkSpaceIterator::WorkSpaceIterator(boost::shared_ptr<inWorkSpace_tag> workspace, bool, bool, bool) noexcept
    : workspace_(std::move(workspace)) {}

WorkSpaceIterator::WorkSpaceIterator(const WorkSpaceIterator& other) noexcept = default;
WorkSpaceIterator::WorkSpaceIterator(WorkSpaceIterator&& other) noexcept = default;
WorkSpaceIterator& WorkSpaceIterator::operator=(const WorkSpaceIterator& other) noexcept = default;
WorkSpaceIterator& WorkSpaceIterator::operator=(WorkSpaceIterator&& other) noexcept = default;
WorkSpaceIterator::~WorkSpaceIterator() = default;

bool WorkSpaceIterator::get_next_variable(const hvArray*& value, std::string& name) {
  // After the exchange it is what was lent before, and goes last: its end may run code that uses the walk.
  boost::intrusive_ptr<const Variable> variable(workspace_ ? workspace_->atOrBehind(next_) : nullptr);
  if (variable) {
    name = variable->name();
    ++next_;
  }
  value = variable ? &variable->value() : nullptr;
  lent_.swap(variable);
  return value != nullptr;
}
