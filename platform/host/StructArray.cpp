#include "platform/host/StructArray.h"

#include <memory>
#include <utility>

#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/ContainerBody.h"
#include "platform/host/internal/raise.h"

using hvdetail::FieldTable;
using hvdetail::StructBody;

namespace {

const StructBody& structuresOf(const hvArray* array, const char* operation) {
  return static_cast<const StructBody&>(hvdetail::bodyOf(array, hvClassCode::Structure, operation));
}

std::size_t fieldNumber(const StructBody& structures, std::string_view name, const char* operation) {
  const std::size_t field = structures.fields().find(name);
  if (field != FieldTable::none) return field;
  std::string known;
  for (const std::string& other : structures.fields().names()) {
    if (!known.empty()) known += ", ";
    known += other;
  }
  hvdetail::raiseNoSuchField(operation, name, known.empty() ? "none" : known);
}

}  // namespace

hvArray* hvCreateStructArray(const hvDims& dimensions, std::vector<std::string> fieldNames) {
  auto fields = std::make_shared<const FieldTable>(std::move(fieldNames));
  return new hvArray(hvdetail::BodyRef(new StructBody(hvdetail::Shape(dimensions), std::move(fields))));
}

std::size_t hvGetNumberOfFields(const hvArray* array) {
  return structuresOf(array, "hvGetNumberOfFields").fields().names().size();
}

const std::string& hvGetFieldName(const hvArray* array, std::size_t field) {
  const std::vector<std::string>& names = structuresOf(array, "hvGetFieldName").fields().names();
  hvdetail::checkIndex(field, names.size(), "hvGetFieldName");
  return names[field];
}

bool hvHasField(const hvArray* array, std::string_view name) noexcept {
  return hvIsStruct(array) &&
         static_cast<const StructBody&>(array->body()).fields().find(name) != FieldTable::none;
}

const hvArray* hvGetField(const hvArray* array, std::size_t index, std::string_view name) {
  const StructBody& structures = structuresOf(array, "hvGetField");
  const std::size_t field = fieldNumber(structures, name, "hvGetField");
  hvdetail::checkIndex(index, structures.count(), "hvGetField");
  return structures.child(structures.position(index, field));
}

const hvArray* hvGetFieldByNumber(const hvArray* array, std::size_t index, std::size_t field) {
  const StructBody& structures = structuresOf(array, "hvGetFieldByNumber");
  hvdetail::checkIndex(field, structures.fields().names().size(), "hvGetFieldByNumber");
  hvdetail::checkIndex(index, structures.count(), "hvGetFieldByNumber");
  return structures.child(structures.position(index, field));
}

void hvSetField(hvArray* array, std::size_t index, std::string_view name, hvArray* value) {
  hvArray& changed = hvdetail::changeable(array, hvClassCode::Structure, "hvSetField");
  const auto& structures = static_cast<const StructBody&>(changed.body());
  const std::size_t field = fieldNumber(structures, name, "hvSetField");
  hvdetail::checkIndex(index, structures.count(), "hvSetField");
  hvdetail::putChild(changed, structures.position(index, field), value, "hvSetField");
}
