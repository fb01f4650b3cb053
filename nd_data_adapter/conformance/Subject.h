#pragma once

#include <memory>
#include <string>
#include <vector>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/URIOperations.h"

namespace nd::conformance {

/// What the checks have to know of an adapter: how one is made, which sources there are, and what it can't
/// do.
///
/// `FileSubject` brings the sources for adapters of single files; for others derive from this class. Each
/// check works on a subject of its own, made anew, which may be changed and is thrown away.
///
/// A predicate answers what an adapter can do as a rule. Override one only where yours is different by its
/// nature: the checks then ask less of it, and those that have nothing left to ask are reported as skipped.
class Subject {
 public:
  Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;
  virtual ~Subject() = default;

  /// Make an adapter as it would be registered. The checks open clones of it, like the broker.
  virtual std::shared_ptr<CPPAdapterV2> makeAdapter() = 0;

  /// Give a source that can be read and holds data; the same at each call.
  virtual std::u16string goodSource() = 0;

  /// Give another source that can be read, with the same variables and other values; the same at each call.
  /// Wanted if `hasOtherGoodSource`.
  virtual std::u16string otherGoodSource() { return goodSource(); }

  /// List sources that are there and can't be read, the same at each call. Wanted if `meetsBadSources`.
  virtual std::vector<std::u16string> badSources() { return {}; }

  /// List sources that are not there, the same at each call. Wanted if `meetsAbsentSources`.
  virtual std::vector<std::u16string> absentSources() { return {}; }

  /// List texts that are odd as sources, with an extension of the adapter. None of them may make an operation
  /// throw. Override it if it could do harm to open one of these.
  virtual std::vector<std::u16string> oddTexts() {
    const std::u16string good = goodSource();
    const std::u16string dotted = u"." + ndx::broker::URIOperations::getExtension(good);
    return {u" " + dotted,
            u"*" + dotted,
            u"no such folder/" + good,
            u"no such folder/&" + dotted,
            good + u"#",
            good + u"#TAG",
            std::u16string(1, u'\0') + good,
            std::u16string(1, static_cast<char16_t>(0xD800)) + good,
            std::u16string(5000, u'x') + dotted};
  }

  /// Give the good source another content, from outside, with the same variables and other values. Wanted if
  /// `canChangeSources`.
  virtual void changeGoodSource() {}

  /// Change the good source at its very end alone, from outside, if it has an end.
  virtual void changeEndOfGoodSource() { changeGoodSource(); }

  /// Give the good source its first content again, from outside, also if it still has it. Wanted if
  /// `canChangeSources`.
  virtual void rewriteGoodSource() {}

  /// Make the good source one that can't be read, from outside. Wanted if `canChangeSources` and
  /// `meetsBadSources`.
  virtual void spoilGoodSource() {}

  /// Take the good source away, from outside. Wanted if `canChangeSources` and `meetsAbsentSources`.
  virtual void removeGoodSource() {}

  /// Describe all that a question or a read must not change, such as names and contents of files.
  virtual std::string surroundings() { return {}; }

  /// Tell whether there are two sources that can be read.
  virtual bool hasOtherGoodSource() const { return true; }

  /// Tell whether a source can be there and still not be readable.
  virtual bool meetsBadSources() const { return true; }

  /// Tell whether there are texts that are no source.
  virtual bool meetsAbsentSources() const { return true; }

  /// Tell whether `open` finds out that a source is absent, and not only the read.
  virtual bool findsAbsentSourcesAtOpen() const { return true; }

  /// Tell whether there are data only while a source is open.
  virtual bool hasDataOnlyWhileOpen() const { return true; }

  /// Tell whether the content of a source can be changed from outside.
  virtual bool canChangeSources() const { return true; }

  /// Tell whether data and checksum come from the source alone, and not from what the adapter was asked
  /// before.
  virtual bool answersFromSourceAlone() const { return true; }

  /// Tell whether a read replaces all that the client held.
  virtual bool replacesWhatTheClientHeld() const { return true; }

  /// Tell whether the checksum stays when the same content is written again.
  virtual bool keepsChecksumOfRewrittenSource() const { return true; }

  /// Tell whether an open adapter may keep files open between the calls.
  virtual bool mayHoldFilesWhileOpen() const { return false; }
};

}  // namespace nd::conformance
