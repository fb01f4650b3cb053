#include "platform/host/CellArray.h"

#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/ContainerBody.h"

using hvdetail::CellBody;

hvArray* hvCreateCellArray(const hvDims& dimensions) {
  return new hvArray(hvdetail::BodyRef(new CellBody(hvdetail::Shape(dimensions))));
}

const hvArray* hvGetCell(const hvArray* array, std::size_t index) {
  const auto& cells = static_cast<const CellBody&>(hvdetail::bodyOf(array, hvClassCode::Cell, "hvGetCell"));
  hvdetail::checkIndex(index, cells.count(), "hvGetCell");
  return cells.child(index);
}

void hvSetCell(hvArray* array, std::size_t index, hvArray* value) {
  hvArray& changed = hvdetail::changeable(array, hvClassCode::Cell, "hvSetCell");
  hvdetail::checkIndex(index, changed.body().count(), "hvSetCell");
  hvdetail::putChild(changed, index, value, "hvSetCell");
}
