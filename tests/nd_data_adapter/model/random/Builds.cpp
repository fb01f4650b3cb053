#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "tests/nd_data_adapter/model/random/Walk.h"

using namespace model_test;
using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::CPPAdapterV2Entry;

namespace random_walk {

/// Make an element with its contents by a builder, and put it where it belongs if it is refused nowhere.
void Walk::build() {
  Id next = pairing_.next();
  const auto create = [&](Kind kind) {
    twin_.create(next, kind);
    return next++;
  };
  const auto createTuple = [&](const std::u16string& id) {
    const Id tuple = create(Kind::Tuple);
    twin_.set(tuple, 1, 2L);
    twin_.set(tuple, 2, id);
    return tuple;
  };
  const auto builderOfTuple = [](const std::u16string& id) {
    return ChangeTuple::Builder().setX(ChangeType::Delete).setId(id);
  };
  const std::u16string name = drawText(), other = drawText();
  Outcome expected = Outcome::Done;
  std::function<void()> build;
  const auto inside = [&](Id owner, unsigned index, auto createChild) {
    expected = twin_.writable(owner);
    if (expected != Outcome::Done) return;
    const Id child = createChild();
    expected = twin_.insert(owner, index, twin_.at(owner).children(index).size(), child);
  };

  const unsigned way = below(6);
  constexpr Kind owners[]{Kind::Report, Kind::Variants, Kind::Container, Kind::Cache, Kind::Metadata};
  const Id owner = way < 5 ? drawOf(owners[way]) : 0;
  next = pairing_.next();
  const Twin start = twin_;
  const ModelElement handle = owner == 0 ? ModelElement() : pairing_[owner];
  note("build #", next, way < 5 ? " in #" + std::to_string(owner) : "");
  switch (way) {
    case 0:
      inside(owner, 1, [&] { return createTuple(name); });
      build = [&] { as<ChangeReport>(handle).createIntoChanges(builderOfTuple(name)); };
      break;
    case 1:
      inside(owner, 1, [&] {
        const Id entry = create(Kind::Entry);
        twin_.set(entry, 1, name);
        twin_.set(entry, 2, other);
        return entry;
      });
      build = [&] {
        as<ConditionControlChangeReport>(handle).createIntoVariants(
            ConditionControlChangeEntry::Builder().setName(name).setPreviousValue(other));
      };
      break;
    case 2:  // metadata with a report with two tuples
      inside(owner, 5, [&] {
        const Id metadata = create(Kind::Metadata), report = create(Kind::Report);
        twin_.set(metadata, 1, name);
        for (const std::u16string& id : {name, other}) {
          twin_.insert(report, 1, twin_.at(report).children(1).size(), createTuple(id));
        }
        twin_.put(metadata, 2, report);
        return metadata;
      });
      build = [&] {
        as<DataContainer>(handle).createIntoMetaDataCache(MetaDataEntry::Builder().setName(name).setValue(
            ChangeReport::Builder().setChanges(builderOfTuple(name)).setChanges(builderOfTuple(other))));
      };
      break;
    case 3:
      inside(owner, 1, [&] {
        const Id entry = create(Kind::Held);
        twin_.set(entry, 1, name);
        return entry;
      });
      build = [&] {
        CPPAdapterV2Entry::Builder builder;
        builder.values().doSetAdapterName(name);
        as<AdapterCacheV2>(handle).impl()->getCPPCacheMutable().createInto(
            CPPAdapterV2Entry::BuilderWrapper(builder));
      };
      break;
    case 4:  // a container with texts and metadata
      expected = twin_.writable(owner);
      if (expected == Outcome::Done && !twin_.at(owner).children(2).empty()) {
        expected = Outcome::CannotAddSecondObject;
      }
      if (expected == Outcome::Done) {
        const Id container = create(Kind::Container);
        twin_.set(container, 3, std::vector<std::u16string>{name, other});
        for (const std::u16string& key : {name, other}) {
          const Id metadata = create(Kind::Metadata);
          twin_.set(metadata, 1, key);
          twin_.insert(container, 5, 0, metadata);
        }
        expected = twin_.put(owner, 2, container);
      }
      build = [&] {
        as<MetaDataEntry>(handle).createIntoValue(
            DataContainer::Builder()
                .setConditionControls({name, other})
                .setMetaDataCache(MetaDataEntry::Builder().setName(name))
                .setMetaDataCache(MetaDataEntry::Builder().setName(other)));
      };
      break;
    default: {
      const Id report = create(Kind::Report);
      twin_.insert(report, 1, 0, createTuple(name));
      build = [&] { ChangeReport::Builder(model()).setChanges(builderOfTuple(name)).create(); };
    }
  }
  if (expected != Outcome::Done) twin_ = start;
  const auto make = [&] {
    build();
    for (const ModelElement& element : model().impl()->elements()) {
      if (pairing_.idOf(element) != -1) continue;
      if (!twin_.contains(pairing_.next())) throw walking::Mismatch("the builder made too many elements");
      pairing_.add(element, twin_.at(pairing_.next()).kind);
    }
  };
  owner == 0 ? perform(expected, make) : change(owner, expected, make);
}

}  // namespace random_walk
