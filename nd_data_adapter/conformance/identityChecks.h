#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "nd_data_adapter/conformance/Answers.h"
#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "nd_data_adapter/model/URIOperations.h"
#include "platform/text/FoldedCompare.h"

/// What an adapter says of itself, and what its clones are.
namespace nd::conformance::checks {

struct Identity {
  std::u16string name;
  std::u16string section;
  std::vector<std::u16string> extensions;
  data::adapter::AdapterType type{};

  static Identity of(CPPAdapterV2& adapter) {
    return {adapter.getAdapterName(), adapter.getSectionName(), adapter.getSupportedExtensions(),
            adapter.getType()};
  }
};

inline void keepsItsNameSectionAndExtensions(Subject& subject, Report& report) {
  const std::shared_ptr<CPPAdapterV2> prototype = newPrototype(subject);
  const Identity first = Identity::of(*prototype);
  report.expect(!first.name.empty(), "getAdapterName gives an empty name");
  const auto compare = [&](CPPAdapterV2& adapter, const std::string& when) {
    const Identity now = Identity::of(adapter);
    report.expect(now.name == first.name, "getAdapterName gives " + inQuotes(now.name) + " " + when +
                                              " and gave " + inQuotes(first.name) + " at first");
    report.expect(now.section == first.section, "getSectionName gives " + inQuotes(now.section) + " " + when +
                                                    " and gave " + inQuotes(first.section) + " at first");
    report.expect(now.extensions == first.extensions,
                  "getSupportedExtensions gives another list " + when + " than at first");
    report.expect(now.type == first.type, "getType gives another type " + when + " than at first");
  };
  compare(*prototype, "when it is asked again");
  const std::unique_ptr<CPPAdapterV2> adapter = cloneOf(*prototype);
  compare(*adapter, "for a clone");
  adapter->open(subject.goodSource());
  compare(*adapter, "after open");
  Client().read(*adapter);
  compare(*adapter, "after getData");
  adapter->close();
  compare(*adapter, "after close");
  compare(*prototype, "for the prototype of an adapter that was opened");
}

inline void makesFreshClones(Subject& subject, Report& report) {
  const std::shared_ptr<CPPAdapterV2> used = newPrototype(subject);
  used->open(subject.goodSource());
  Answers::of(*used);
  expectSameAnswers(Answers::of(*cloneOf(*used)), Answers::of(*newAdapter(subject)), subject, report,
                    "A clone of an open adapter, compared with a clone of one that was never opened");

  const std::shared_ptr<CPPAdapterV2> maker = subject.makeAdapter();
  std::unique_ptr<CPPAdapterV2> one(maker->clone());
  CPPAdapterV2* const another = maker->clone();
  if (report.expect(one.get() != another, "clone gives an object twice, and not a new one each time")) {
    delete another;
  }
}

inline void makesClonesThatShareNothing(Subject& subject, Report& report) {
  const std::u16string good = subject.goodSource();
  const std::u16string other = goodSources(subject).back();
  const Answers ofGood = Answers::of(*newAdapter(subject), good);
  const Answers ofOther = Answers::of(*newAdapter(subject), other);
  report.expect(
      other == good || !subject.answersFromSourceAlone() || !ofGood.contents.equals(ofOther.contents),
      "the two good sources deliver the same, " + ofGood.contents.describe() +
          ", so that they can't be told apart; let the other one have other values");

  const std::shared_ptr<CPPAdapterV2> prototype = newPrototype(subject);
  const std::unique_ptr<CPPAdapterV2> adapter = cloneOf(*prototype);
  adapter->open(good);
  {
    const std::unique_ptr<CPPAdapterV2> clone = cloneOf(*adapter);
    expectSameAnswers(Answers::of(*clone, other), ofOther, subject, report,
                      "A clone that is opened beside the adapter that it comes from");
    clone->close();
    const std::unique_ptr<CPPAdapterV2> dropped = cloneOf(*prototype);
    dropped->open(other);
  }
  expectSameAnswers(Answers::of(*adapter), ofGood, subject, report,
                    "An open adapter whose clones were opened, read and dropped");
}

inline void listsExtensionsWithTheirDot(Subject& subject, Report& report) {
  const std::vector<std::u16string> extensions = newPrototype(subject)->getSupportedExtensions();
  report.expect(!extensions.empty(),
                "getSupportedExtensions is empty, so that no source reaches the adapter");
  for (const std::u16string& extension : extensions) {
    const bool isDotted = report.expect(extension.starts_with(u'.'),
                                        "the extension " + inQuotes(extension) + " doesn't begin with a dot");
    report.expect(!isDotted || extension.find_first_of(u"./#", 1) == std::u16string::npos,
                  "no source has the extension " + inQuotes(extension) +
                      ": an extension is what follows the last dot of a file's name");
  }
  for (const std::u16string& source : goodSources(subject)) {
    const std::u16string its = u"." + ndx::broker::URIOperations::getExtension(source);
    const bool isClaimed =
        std::any_of(extensions.begin(), extensions.end(), [&](const std::u16string& extension) {
          return lx::text::equalNormalizedIgnoringCase(extension, its);
        });
    report.expect(isClaimed, "no extension of the list is that of the source " + inQuotes(source));
  }
}

}  // namespace nd::conformance::checks
