#include "platform/host/ArrayComparison.h"

#include "platform/host/internal/ArrayHandle.h"

namespace {

bool readsAsNull(const hvArray* array) noexcept {
  if (array == nullptr) return true;
  const hvdetail::Shape& shape = array->body().shape();
  return hvGetClassCode(array) == hvClassCode::Double && !hvIsComplex(array) && shape.isMatrix() &&
         shape.rows() == 0 && shape.columns() == 0;
}

}  // namespace

bool hvEqual(const hvArray* left, const hvArray* right) {
  if (left == nullptr || right == nullptr) return readsAsNull(left) && readsAsNull(right);
  return hvdetail::equalBodies(left->body(), right->body());
}

std::size_t hvGetByteSize(const hvArray* array) {
  if (array == nullptr) return 0;
  hvdetail::SizeMemo memo;
  return array->body().byteSize(memo);
}
