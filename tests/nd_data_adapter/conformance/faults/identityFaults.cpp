#include "tests/nd_data_adapter/conformance/faults/Fault.h"

using nd::data::adapter::AdapterType;

namespace {

/// Hands the good file over twice, under two names.
class TheSameTwice final : public Lines<LineAdapter> {
 public:
  std::u16string otherGoodSource() override { return goodSource() + u"#again"; }
};

}  // namespace

std::vector<Fault> identityFaults() {
  using namespace broken;
  const char* const identity = "KeepsItsNameSectionAndExtensions";
  const char* const extensions = "ListsExtensionsWithTheirDot";
  const char* const clones = "MakesFreshClones";
  const char* const apart = "MakesClonesThatShareNothing";
  return {
      altered("HasNoName", identity, "an empty name", {.name = [](auto&) { return u""; }}),
      planted<GetsANameByItsOpening>("GetsANameByItsOpening", identity, "after open"),
      altered("GetsASectionByItsOpening", identity, "getSectionName gives 'open' after open",
              {.section = [](auto& self) { return self.isOpen() ? u"open" : u"closed"; }}),
      altered("LearnsExtensions", identity,
              "getSupportedExtensions gives another list when it is asked again",
              {.extensions =
                   [](auto& self) {
                     return std::vector<std::u16string>(static_cast<std::size_t>(++self.count), u".lines");
                   }}),
      altered("ChangesItsType", identity, "getType gives another type after open",
              {.type =
                   [](auto& self) {
                     return self.isOpen() ? AdapterType::HOBJAdapter : AdapterType::CPPAdapter;
                   }}),
      altered("HasNoExtensions", extensions, "is empty",
              {.extensions = [](auto&) { return std::vector<std::u16string>(); }}),
      planted<ForgetsTheDot>("ForgetsTheDot", extensions, "doesn't begin with a dot"),
      altered("HasAnExtensionWithTwoDots", extensions, "no source has the extension '.tar.lines'",
              {.extensions =
                   [](auto&) {
                     return std::vector<std::u16string>{u".lines", u".tar.lines"};
                   }}),
      altered("HasAnotherExtension", extensions, "no extension of the list is that of the source",
              {.extensions = [](auto&) { return std::vector<std::u16string>{u".other"}; }}),
      planted<ClonesItsOpening>("ClonesItsOpening", clones, "A clone of an open adapter"),
      planted<HasNoClones>("HasNoClones", clones, "clone gave null"),
      altered("ClonesItself", clones, "clone gave the adapter itself",
              {.clone = [](auto& self) { return &self; }}),
      altered("ClonesOnce", clones, "clone gives an object twice",
              {.clone =
                   [](auto& self) {
                     if (self.other == nullptr) self.other = new LineAdapter;
                     return self.other;
                   }}),
      planted<SharesItsOpening>(
          "SharesItsOpening", apart,
          "An open adapter whose clones were opened, read and dropped: getData delivers"),
      {"TheSameTwice", apart, "gain = 1, rate = 20 (metadata 'unit'), so that they can't be told apart",
       make<TheSameTwice>},
  };
}
