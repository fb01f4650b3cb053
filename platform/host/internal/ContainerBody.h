#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/host/internal/Body.h"
#include "platform/text/Hash.h"

namespace hvdetail {

/// The arrays that a cell or structure array holds, and owns.
class ContainerBody : public Body {
 public:
  ~ContainerBody() override;

  std::size_t childCount() const noexcept { return children_.size(); }
  const hvArray* child(std::size_t position) const noexcept { return children_[position]; }

  /// Tell the nesting that this body would have with another child at a position; raises NestedTooDeep.
  std::size_t nestingWith(std::size_t position, const hvArray* value, std::string_view operation) const;
  /// Put a child in its place and give the former one, which the caller destroys.
  hvArray* exchangeChild(std::size_t position, hvArray* value, std::size_t nesting) noexcept;

  bool holdsSame(const Body& other) const override;
  std::size_t byteSize(SizeMemo& memo) const override;
  std::size_t nesting() const noexcept override { return nesting_; }

 protected:
  ContainerBody(hvClassCode classCode, Shape shape, std::size_t childCount);
  void copyChildren(const ContainerBody& other);

 private:
  std::vector<hvArray*> children_;
  std::size_t nesting_ = 1;
};

class CellBody final : public ContainerBody {
 public:
  explicit CellBody(const Shape& shape);
  BodyRef clone() const override;
};

/// The names of the fields of a structure array, with a quick way from name to number.
class FieldTable {
 public:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  /// Raise DuplicateField.
  explicit FieldTable(std::vector<std::string> names);

  const std::vector<std::string>& names() const noexcept { return names_; }
  /// Tell the number of a field, or none.
  std::size_t find(std::string_view name) const noexcept;

 private:
  // So few names are compared one by one, without a table.
  static constexpr std::size_t fewNames = 8;

  std::size_t scan(std::string_view name) const noexcept;

  std::vector<std::string> names_;
  std::unordered_map<std::string_view, std::size_t, lx::text::Hash> numbers_;
};

class StructBody final : public ContainerBody {
 public:
  StructBody(const Shape& shape, std::shared_ptr<const FieldTable> fields);

  const FieldTable& fields() const noexcept { return *fields_; }
  std::size_t position(std::size_t index, std::size_t field) const noexcept {
    return index * fields_->names().size() + field;
  }

  BodyRef clone() const override;
  bool holdsSame(const Body& other) const override;

 private:
  std::shared_ptr<const FieldTable> fields_;
};

/// Put a value into a container at a position of its children, as hvSetCell and hvSetField say.
void putChild(hvArray& container, std::size_t position, hvArray* value, std::string_view operation);

}  // namespace hvdetail
