#include <fmt/format.h>

#include <iostream>
#include <optional>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/documents/document_access.h"
#include "cli/manuals/manual_lookup.h"
#include "cli/people/user_lookup.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/recordset/text_field.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

[[noreturn]] void refuse(const std::string& why) { throw Error(kInvalidCall, "kvvesk", why); }

// What is said of one document in one manual.
struct Placing {
  std::string manual;
  std::string document;
  std::optional<std::int32_t> position;
};

// The place of a document in a manual, counted from 1; 0 when it is not in it.
std::int32_t placeIn(const Session& session, const ManualKey& manual, const DocumentKey& document) {
  const auto contents = session->Manual()->Contents(manual.joined);
  for (std::int32_t place = 1; !contents->Eof(); contents->MoveNext(), ++place)
    if (equalNoCase(fieldText(*contents, "DocumentID"), document.id)) return place;
  return 0;
}

// Moves a document that is in the manual. The register keeps an order, not places, so where the
// document is now is for it to say.
std::int32_t moved(const Session& session, const ManualKey& manual, const DocumentKey& document,
                   std::int32_t position) {
  const std::int32_t documents = session->Manual()->Contents(manual.joined)->RecordCount();
  if (position < 1 || position > documents)
    refuse(fmt::format("The manual has the places 1 to {}, not {}.", documents, position));
  session->Manual()->RepositionContents(manual.joined, document.joined,
                                        static_cast<std::int16_t>(position));
  return placeIn(session, manual, document);
}

int contents(const Options& options, const std::string& manual) {
  const Session session(options);
  session.requireRight(urViewManualdetail);
  const ManualKey key = findManual(session, manual);
  const auto rs = session->Manual()->Contents(key.joined);
  const HiddenDocuments hidden(session);
  AnswerSet answer({{"Position", kTypeInteger},
                    {"DocumentID", kTypeVarWChar},
                    {"DocumentNumber", kTypeVarWChar},
                    {"DocumentTitle", kTypeLongVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"EffectiveDate", kTypeDate}});
  for (std::int32_t place = 1; !rs->Eof(); rs->MoveNext(), ++place) {
    const auto value = [&](const char* column) { return rs->Fields(column)->Value(); };
    if (!hidden.contains(fieldText(*rs, "DocumentID")))
      answer.add({place, value("DocumentID"), value("DocumentNumber"), value("DocumentTitle"),
                  value("RevisionLevel"), value("EffectiveDate")});
  }
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

int copies(const Options& options, const std::string& manual) {
  const Session session(options);
  session.requireRight(urViewManualdetail);
  const ManualKey key = findManual(session, manual);
  const UserNames names(session.database());
  AnswerSet answer({{"UserID", kTypeVarWChar},
                    {"UserName", kTypeVarWChar},
                    {"HardCopy", kTypeBoolean},
                    {"CopyNumber", kTypeVarWChar}});
  const auto hard = session->Manual()->Copies(key.joined);
  for (; !hard->Eof(); hard->MoveNext()) {
    const Variant user = hard->Fields("UserID")->Value();
    answer.add({user, names.of(user), true, hard->Fields("CopyNumber")->Value()});
  }
  const auto listed = session->Manual()->Users(key.joined);
  for (; !listed->Eof(); listed->MoveNext()) {
    const Variant user = listed->Fields("UserID")->Value();
    answer.add({user, names.of(user), false, Null});
  }
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

int put(const Options& options, const Placing& given) {
  const Session session(options);
  ClientTransaction transaction(session);
  const ManualKey manual = findManual(session, given.manual);
  const DocumentKey document = findDocument(session, given.document);
  std::int32_t copies = 0;
  session->DocumentManualRelation(manual.joined, document.joined, false, copies);
  const std::int32_t place = given.position ? moved(session, manual, document, *given.position)
                                            : placeIn(session, manual, document);
  transaction.commit();
  writeDone(std::cout,
            fmt::format("put the document {} into the manual {} at place {}, and into {} of it",
                        document.id, manual.id, place,
                        copies == 1 ? "1 copy" : fmt::format("{} copies", copies)),
            {{"ManualID", manual.id},
             {"DocumentID", document.id},
             {"Position", place},
             {"Copies", copies}},
            options.format);
  return kDone;
}

int take(const Options& options, const Placing& given) {
  const Session session(options);
  ClientTransaction transaction(session);
  const ManualKey manual = findManual(session, given.manual);
  const DocumentKey document = findDocument(session, given.document);
  std::int32_t copies = 0;
  session->DocumentManualRelation(manual.joined, document.joined, true, copies);
  transaction.commit();
  writeDone(
      std::cout,
      fmt::format("took the document {} out of the manual {}, and out of {} of it", document.id,
                  manual.id, copies == 1 ? "1 copy" : fmt::format("{} copies", copies)),
      {{"ManualID", manual.id}, {"DocumentID", document.id}, {"Copies", copies}}, options.format);
  return kDone;
}

int move(const Options& options, const Placing& given) {
  const Session session(options);
  ClientTransaction transaction(session);
  const ManualKey manual = findManual(session, given.manual);
  transaction.lock("Manuals", "ManualID", manual.id);
  const DocumentKey document = findDocument(session, given.document);
  requireFieldRight(session, document, urAddDocumentsToManualContents, orAddToManuals);
  if (placeIn(session, manual, document) == 0)
    refuse("The document " + document.id + " is not in the manual " + manual.id + ".");
  const std::int32_t place = moved(session, manual, document, *given.position);
  transaction.commit();
  writeDone(std::cout,
            fmt::format("moved the document {} in the manual {} to place {}", document.id,
                        manual.id, place),
            {{"ManualID", manual.id}, {"DocumentID", document.id}, {"Position", place}},
            options.format);
  return kDone;
}

void addManualKey(Command& verb, std::string& manual) {
  verb.addOption("manual", manual, "The manual, by identifier or name")->required();
}

struct Contents : RegisterVerb {
  std::string manual;

  void describe(Command& verb) { addManualKey(verb, manual); }
  [[nodiscard]] int run() const { return contents(options, manual); }
};

struct Copies : RegisterVerb {
  std::string manual;

  void describe(Command& verb) { addManualKey(verb, manual); }
  [[nodiscard]] int run() const { return copies(options, manual); }
};

enum class Position : std::uint8_t { None, Optional, Required };

template <int (*make)(const Options&, const Placing&), Position position>
struct Change : RegisterVerb {
  Placing given;

  void describe(Command& verb) {
    addManualKey(verb, given.manual);
    verb.addOption("document", given.document, "The document, by identifier or number")->required();
    if (position != Position::None)
      addNumber(verb, "position", given.position, "The place in the manual, counted from 1")
          ->required(position == Position::Required);
  }
  [[nodiscard]] int run() const { return make(options, given); }
};

}  // namespace

void manualContents(Command& verb) { declare<Contents>(verb); }
void manualCopies(Command& verb) { declare<Copies>(verb); }
void manualPut(Command& verb) { declare<Change<put, Position::Optional>>(verb); }
void manualTake(Command& verb) { declare<Change<take, Position::None>>(verb); }
void manualMove(Command& verb) { declare<Change<move, Position::Required>>(verb); }

}  // namespace kv::cli
