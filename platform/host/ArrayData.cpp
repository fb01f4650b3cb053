#include "platform/host/ArrayData.h"

#include <string>
#include <string_view>

#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/DataBody.h"
#include "platform/host/internal/raise.h"

namespace hvdetail {
namespace {

void checkElement(const hvArray* array, hvClassCode classCode, hvComplexity complexity,
                  std::string_view operation) {
  const Body& body = bodyOf(array, operation);
  if (body.classCode() == classCode && body.complexity() == complexity) return;
  std::string wanted(complexity == hvComplexity::Complex ? "complex " : "");
  wanted += nameOf(classCode);
  raiseWrongClass(operation, wanted, array);
}

}  // namespace

const void* readableData(const hvArray* array, hvClassCode classCode, hvComplexity complexity) {
  checkElement(array, classCode, complexity, "hvGetData");
  return static_cast<const DataBody&>(array->body()).data();
}

void* writableData(hvArray* array, hvClassCode classCode, hvComplexity complexity) {
  checkElement(array, classCode, complexity, "hvGetWritableData");
  return static_cast<DataBody&>(changeable(array, classCode, "hvGetWritableData").writableBody()).data();
}

}  // namespace hvdetail

bool hvIsLogicalScalarTrue(const hvArray* array) noexcept {
  return hvIsLogical(array) && hvIsScalar(array) &&
         *static_cast<const bool*>(static_cast<const hvdetail::DataBody&>(array->body()).data());
}
