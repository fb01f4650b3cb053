#include "platform/host/Array.h"

#include <utility>

#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/DataBody.h"
#include "platform/host/internal/raise.h"

using hvdetail::BodyRef;
using hvdetail::DataBody;
using hvdetail::Shape;

namespace {

std::size_t liveArrays = 0;

hvArray* createData(hvClassCode classCode, hvComplexity complexity, Shape shape) {
  return new hvArray(DataBody::create(classCode, complexity, std::move(shape)));
}

hvArray* createNumeric(hvClassCode classCode, hvComplexity complexity, Shape shape) {
  if (!hvdetail::isNumeric(classCode)) hvdetail::raiseNotNumeric(classCode);
  return createData(classCode, complexity, std::move(shape));
}

template <typename T>
hvArray* createScalar(T value) {
  using Element = hvdetail::Element<T>;
  BodyRef body = DataBody::create(Element::classCode, Element::complexity, Shape(1, 1));
  *static_cast<T*>(static_cast<DataBody&>(*body).data()) = value;
  return new hvArray(std::move(body));
}

}  // namespace

hvArray::hvArray(BodyRef body) noexcept : body_(std::move(body)) {
  ++liveArrays;
}

hvArray::~hvArray() {
  --liveArrays;
}

hvdetail::Body& hvArray::writableBody() {
  if (body_->isShared()) body_ = body_->clone();
  return *body_;
}

void hvArray::takeOver() noexcept {
  body_->endPermits();
  takenOver_ = true;
}

namespace hvdetail {

const Body& bodyOf(const hvArray* array, std::string_view operation) {
  if (array == nullptr) raiseNullArray(operation);
  return array->body();
}

const Body& bodyOf(const hvArray* array, hvClassCode classCode, std::string_view operation) {
  const Body& body = bodyOf(array, operation);
  if (body.classCode() != classCode) raiseWrongClass(operation, nameOf(classCode), array);
  return body;
}

hvArray& changeable(hvArray* array, hvClassCode classCode, std::string_view operation) {
  static_cast<void>(bodyOf(array, classCode, operation));
  if (array->isTakenOver()) raiseAlreadyTakenOver(operation);
  return *array;
}

}  // namespace hvdetail

void hvDestroyArray(hvArray* array) noexcept {
  if (array != nullptr && !array->isTakenOver()) delete array;
}

hvArray* hvCreateNumericMatrix(std::size_t rows, std::size_t columns, hvClassCode classCode,
                               hvComplexity complexity) {
  return createNumeric(classCode, complexity, Shape(rows, columns));
}

hvArray* hvCreateNumericArray(const hvDims& dimensions, hvClassCode classCode, hvComplexity complexity) {
  return createNumeric(classCode, complexity, Shape(dimensions));
}

hvArray* hvCreateDoubleScalar(double value) {
  return createScalar(value);
}

hvArray* hvCreateLogicalArray(const hvDims& dimensions) {
  return createData(hvClassCode::Logical, hvComplexity::Real, Shape(dimensions));
}

hvArray* hvCreateLogicalScalar(bool value) {
  return createScalar(value);
}

hvArray* hvCreateSharedDataCopy(const hvArray* array) {
  return array == nullptr ? nullptr : new hvArray(array->reference());
}

hvClassCode hvGetClassCode(const hvArray* array) noexcept {
  return array == nullptr ? hvClassCode::Unknown : array->body().classCode();
}

std::string_view hvGetClassName(const hvArray* array) noexcept {
  return array == nullptr ? std::string_view() : array->body().className();
}

bool hvIsClass(const hvArray* array, std::string_view className) noexcept {
  return array != nullptr && array->body().className() == className;
}

bool hvIsA(const hvArray* array, std::string_view className) noexcept {
  return array != nullptr && array->body().isA(className);
}

bool hvIsNumeric(const hvArray* array) noexcept {
  return hvdetail::isNumeric(hvGetClassCode(array));
}
bool hvIsLogical(const hvArray* array) noexcept {
  return hvGetClassCode(array) == hvClassCode::Logical;
}
bool hvIsChar(const hvArray* array) noexcept {
  return hvGetClassCode(array) == hvClassCode::Character;
}
bool hvIsString(const hvArray* array) noexcept {
  return hvGetClassCode(array) == hvClassCode::String;
}
bool hvIsCell(const hvArray* array) noexcept {
  return hvGetClassCode(array) == hvClassCode::Cell;
}
bool hvIsStruct(const hvArray* array) noexcept {
  return hvGetClassCode(array) == hvClassCode::Structure;
}

bool hvIsComplex(const hvArray* array) noexcept {
  return array != nullptr && array->body().complexity() == hvComplexity::Complex;
}

bool hvIsEmpty(const hvArray* array) noexcept {
  return hvGetNumberOfElements(array) == 0;
}
bool hvIsScalar(const hvArray* array) noexcept {
  return hvGetNumberOfElements(array) == 1;
}

hvDims hvGetDimensions(const hvArray* array) {
  return array == nullptr ? hvDims{0, 0} : array->body().shape().dimensions();
}

std::size_t hvGetNumberOfElements(const hvArray* array) noexcept {
  return array == nullptr ? 0 : array->body().count();
}

std::size_t hvGetM(const hvArray* array) noexcept {
  return array == nullptr ? 0 : array->body().shape().rows();
}
std::size_t hvGetN(const hvArray* array) noexcept {
  return array == nullptr ? 0 : array->body().shape().columns();
}

std::size_t hvGetLiveArrayCount() noexcept {
  return liveArrays;
}
