#include "tests/support/ProbeAdapter.h"

#include <utility>

#include "platform/text/Convert.h"

namespace support {

namespace {

std::size_t liveProbes = 0;

std::string inBrackets(const std::u16string& text) {
  return "(" + lx::text::toUtf8(text) + ")";
}

}  // namespace

ProbeAdapter::ProbeAdapter(std::shared_ptr<Kind> kind, std::string label)
    : kind_(std::move(kind)), label_(std::move(label)) {
  if (kind_->script.hold) held_ = kind_->script.hold();
  ++liveProbes;
}

ProbeAdapter::ProbeAdapter(std::shared_ptr<CallLog> log, ProbeScript script)
    : ProbeAdapter(std::make_shared<Kind>(), lx::text::toUtf8(script.name)) {
  kind_->log = std::move(log);
  kind_->script = std::move(script);
  kind_->label = label_;
  if (kind_->script.hold) held_ = kind_->script.hold();
}

ProbeAdapter::~ProbeAdapter() {
  --liveProbes;
  enter("~");
}

std::size_t ProbeAdapter::live() noexcept {
  return liveProbes;
}

std::string ProbeAdapter::labelOf(const std::shared_ptr<CPPAdapterV2>& adapter) {
  if (!adapter) return "null";
  const auto* const probe = dynamic_cast<const ProbeAdapter*>(adapter.get());
  return probe == nullptr ? "?" : probe->label();
}

void ProbeAdapter::enter(const char* operation, const std::string& arguments) {
  const std::shared_ptr<CallLog> log = kind_->log;  // an action may end this object
  log->enter(label_, operation, arguments);
}

CPPAdapterV2* ProbeAdapter::clone() {
  enter("clone");
  if (!script().clones) return nullptr;
  return new ProbeAdapter(kind_, kind_->label + "'" + std::to_string(++kind_->clones));
}

std::u16string ProbeAdapter::getAdapterName() {
  enter("getAdapterName");
  return script().name;
}

std::vector<std::u16string> ProbeAdapter::getSupportedExtensions() {
  enter("getSupportedExtensions");
  return script().extensions;
}

std::u16string ProbeAdapter::getSectionName() {
  enter("getSectionName");
  return script().section ? *script().section : CPPAdapterV2::getSectionName();
}

bool ProbeAdapter::isSourceValid(const std::u16string& source) {
  enter("isSourceValid", inBrackets(source));
  return script().sourceIsValid;
}

bool ProbeAdapter::supportsReading(const std::u16string& source) {
  enter("supportsReading", inBrackets(source));
  return script().reads;
}

bool ProbeAdapter::supportsWriting(const std::u16string& source) {
  enter("supportsWriting", inBrackets(source));
  return script().writes;
}

bool ProbeAdapter::open(const std::u16string& source) {
  enter("open", inBrackets(source));
  return script().opens;
}

bool ProbeAdapter::close() {
  enter("close");
  return false;  // the broker must not care
}

std::vector<std::u16string> ProbeAdapter::getExternalSources() {
  enter("getExternalSources");
  return script().externalSources;
}

std::u16string ProbeAdapter::getCurrentChecksum() {
  enter("getCurrentChecksum");
  return script().checksum;
}

bool ProbeAdapter::hasData() {
  enter("hasData");
  return true;
}

bool ProbeAdapter::getData(const Workspace& dataCache, MetaDataCache& metaDataCache,
                           const std::u16string& prevChecksum, nd::data::adapter::AdapterError& error) {
  enter("getData", inBrackets(prevChecksum));
  return script().getData ? script().getData(dataCache, metaDataCache, prevChecksum, error) : true;
}

bool ProbeAdapter::writeData(const Workspace&, const Workspace&, MetaDataCache&,
                             const nd::data::adapter::ChangeReport&, nd::data::adapter::AdapterError&) {
  enter("writeData");
  return true;
}

bool ProbeAdapter::hasVariants() {
  enter("hasVariants");
  return script().hasVariants;
}

std::vector<std::u16string> ProbeAdapter::getVariantControls() {
  enter("getVariantControls");
  return script().controls;
}

bool ProbeAdapter::getConditionalData(const Workspace& conditionalCache,
                                      const nd::data::adapter::ConditionControlChangeReport& cccr,
                                      const std::u16string& prevChecksum,
                                      nd::data::adapter::AdapterError& error) {
  enter("getConditionalData", inBrackets(prevChecksum));
  return CPPAdapterV2::getConditionalData(conditionalCache, cccr, prevChecksum, error);
}

nd::data::adapter::AdapterType ProbeAdapter::getType() {
  enter("getType");
  return script().type;
}

bool ProbeAdapter::isReady() {
  enter("isReady");
  return true;
}

}  // namespace support
