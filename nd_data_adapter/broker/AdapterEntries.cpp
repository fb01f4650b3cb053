#include "nd_data_adapter/broker/internal/AdapterEntries.h"

#include "nd_data_adapter/broker/CPPAdapterV2.h"

namespace nd::data::adapter::detail {

void addEntry(AdapterEntries& entries, const std::u16string& key,
              const std::shared_ptr<CPPAdapterV2>& adapter) {
  const lx::base::Model model = entries.getModel();
  lx::base::Transaction transaction = model.impl()->beginTransaction(false);
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.setName(key);
  entry.setAdapter(adapter);
  entries.add(entry);
  transaction.commit();
}

bool removeEntry(AdapterEntries& entries, const std::u16string& key) {
  const CPPAdapterV2Entry entry = entries.find(key);
  if (!entry) return false;
  std::shared_ptr<CPPAdapterV2> adapter;  // declared before the transaction, so that it goes after it
  lx::base::Transaction transaction = entries.getModel().impl()->beginTransaction(false);
  adapter = entry.adapter();
  entry.setAdapter(nullptr);  // while the owner of the entries ends, this lets go of it at once
  entry.destroy();
  transaction.commit();
  return true;
}

}  // namespace nd::data::adapter::detail
