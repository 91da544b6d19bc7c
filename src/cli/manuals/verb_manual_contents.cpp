#include <fmt/format.h>

#include <iostream>
#include <optional>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/manuals/place_documents.h"
#include "desk/manuals/view_manuals.h"

namespace kv::cli {

namespace {

// What is said of one document in one manual.
struct Placing {
  std::string manual;
  std::string document;
  std::optional<std::int32_t> position;
};

std::string copiesText(std::int32_t copies) {
  return copies == 1 ? "1 copy" : fmt::format("{} copies", copies);
}

int contents(const Options& options, const std::string& manual) {
  const Session session(options);
  writeRows(std::cout, *desk::manualContents(session, manual), options.format);
  return kDone;
}

int copies(const Options& options, const std::string& manual) {
  const Session session(options);
  writeRows(std::cout, *desk::manualCopies(session, manual), options.format);
  return kDone;
}

int put(const Options& options, const Placing& given) {
  const Session session(options);
  const auto placed = desk::putIntoManual(session, given.manual, given.document, given.position);
  writeDone(
      std::cout,
      fmt::format("put the document {} into the manual {} at place {}, and into {} of it",
                  placed.documentId, placed.manualId, placed.place, copiesText(placed.copies)),
      {{"ManualID", placed.manualId},
       {"DocumentID", placed.documentId},
       {"Position", placed.place},
       {"Copies", placed.copies}},
      options.format);
  return kDone;
}

int take(const Options& options, const Placing& given) {
  const Session session(options);
  const auto taken = desk::takeOutOfManual(session, given.manual, given.document);
  writeDone(
      std::cout,
      fmt::format("took the document {} out of the manual {}, and out of {} of it",
                  taken.documentId, taken.manualId, copiesText(taken.copies)),
      {{"ManualID", taken.manualId}, {"DocumentID", taken.documentId}, {"Copies", taken.copies}},
      options.format);
  return kDone;
}

int move(const Options& options, const Placing& given) {
  const Session session(options);
  const auto moved = desk::moveInManual(session, given.manual, given.document, *given.position);
  writeDone(
      std::cout,
      fmt::format("moved the document {} in the manual {} to place {}", moved.documentId,
                  moved.manualId, moved.place),
      {{"ManualID", moved.manualId}, {"DocumentID", moved.documentId}, {"Position", moved.place}},
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
