#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "platform/host/internal/ArrayHandle.h"

namespace hvdetail {

/// A variable of a workspace, with its name in the same piece of memory. Its workspace holds it, and so do
/// the walks that lend its value.
class Variable {
 public:
  /// Make a variable with the number that its workspace gives it.
  static boost::intrusive_ptr<Variable> create(std::string_view name, BodyRef body, std::uint64_t number);

  std::string_view name() const noexcept { return {static_cast<const char*>(nameStart()), nameSize_}; }
  hvArray& value() noexcept { return value_; }
  const hvArray& value() const noexcept { return value_; }
  std::uint64_t number() const noexcept { return number_; }
  /// Tell whether a walk lends the value, so that it must stay as it is.
  bool isLent() const noexcept { return holders_ > 1; }

  static void operator delete(void* memory) noexcept;

 private:
  struct Trailing {
    std::size_t bytes;
  };

  Variable(std::size_t nameSize, BodyRef body, std::uint64_t number) noexcept;
  static void* operator new(std::size_t size, Trailing trailing);
  static void operator delete(void* memory, Trailing trailing) noexcept;

  const void* nameStart() const noexcept { return this + 1; }

  friend void intrusive_ptr_add_ref(const Variable* variable) noexcept { ++variable->holders_; }
  friend void intrusive_ptr_release(const Variable* variable) noexcept {
    if (--variable->holders_ == 0) delete variable;
  }

  mutable std::size_t holders_ = 0;
  std::uint64_t number_;
  std::size_t nameSize_;
  hvArray value_;
};

using VariableRef = boost::intrusive_ptr<Variable>;

/// A hash table from names to variables: open addressing, a power of two slots, at most four fifths of them
/// in use. The hash beside each pointer spares nearly all visits to variables of other names.
class VariableIndex {
 public:
  static std::size_t hashOf(std::string_view name) noexcept;

  Variable* find(std::string_view name, std::size_t hash) const noexcept;

  /// Make room for so many variables in all.
  void reserve(std::size_t variables);
  /// File a variable whose name isn't there yet; there must be room.
  void insert(Variable& variable, std::size_t hash) noexcept;
  /// Put a variable in the place of one that is there, of the same name.
  void replace(const Variable& former, Variable& variable, std::size_t hash) noexcept;
  void swap(VariableIndex& other) noexcept;

 private:
  struct Slot {
    std::size_t hash = 0;
    Variable* variable = nullptr;
  };

  std::size_t firstFree(std::size_t hash) const noexcept;

  std::vector<Slot> slots_;
};

}  // namespace hvdetail

/// The variables of a workspace, in the order in which they were first assigned.
struct inWorkSpace_tag {
 public:
  explicit inWorkSpace_tag(std::size_t sizeHint) noexcept;

  void assign(const hvArray* value, std::string_view name);
  void clear() noexcept;
  const hvArray* find(std::string_view name) const noexcept;
  std::size_t size() const noexcept { return variables_.size(); }

  /// Give the first variable whose number is at least `number`, and set it to that; null at the end.
  /// Numbers are given in the order of assignment and never twice.
  const hvdetail::Variable* atOrBehind(std::uint64_t& number) const noexcept;

 private:
  void append(hvdetail::BodyRef body, std::string_view name, std::size_t hash);
  void replace(const hvdetail::Variable& former, hvdetail::BodyRef body, std::size_t hash);

  std::vector<hvdetail::VariableRef> variables_;
  hvdetail::VariableIndex index_;
  std::uint64_t firstNumber_ = 0;
  std::size_t expected_;
};
