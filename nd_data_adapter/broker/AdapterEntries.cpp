#include "nd_data_adapter/broker/internal/AdapterEntries.h"

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "platform/foundation/ModelAccess.h"

namespace nd::data::adapter::detail {

namespace {

void fillEntry(const CPPAdapterV2Entry& entry, AdapterEntries& entries, const std::u16string& key,
               const std::shared_ptr<CPPAdapterV2>& adapter) {
  try {
    entry.setName(key);
    entry.setAdapter(adapter);
    entries.add(entry);
  } catch (...) {
    entry.destroy();  // without an observer there is no transaction that undoes its creation
    throw;
  }
}

}  // namespace

void addEntry(AdapterEntries& entries, const std::u16string& key,
              const std::shared_ptr<CPPAdapterV2>& adapter) {
  const lx::base::Model model = entries.getModel();
  if (!model.impl()->hasOpenTransaction()) {
    lx::base::MutationScope scope(*model.impl());
    fillEntry(CPPAdapterV2Entry::create(model), entries, key, adapter);
    return scope.commit();
  }
  lx::base::Transaction transaction = model.impl()->beginTransaction(false);
  fillEntry(CPPAdapterV2Entry::create(model), entries, key, adapter);
  transaction.commit();
}

void removeEntry(const CPPAdapterV2Entry& entry) {
  const std::shared_ptr<CPPAdapterV2> adapter = entry.adapter();  // so that it goes last
  const lx::base::Model model = entry.getModel();
  if (!model.impl()->hasOpenTransaction()) return entry.destroy();  // which needs no memory
  lx::base::Transaction transaction = model.impl()->beginTransaction(false);
  entry.setAdapter(nullptr);  // while the owner of the entries ends, this is final: no undo brings it back
  entry.destroy();
  transaction.commit();
}

}  // namespace nd::data::adapter::detail
