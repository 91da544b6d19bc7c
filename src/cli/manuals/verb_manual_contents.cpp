// SPDX-License-Identifier: Apache-2.0
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

std::string copiesText(std::int32_t copies) {
  return copies == 1 ? "1 copy" : fmt::format("{} copies", copies);
}

struct ManualVerb : RegisterVerb {
  std::string manual;

  void describe(Command& verb) {
    verb.addOption("manual", manual, "The manual, by identifier or name")->required();
  }
};

struct Contents : ManualVerb {
  void run(const Session& session) const {
    writeRows(std::cout, *desk::manualContents(session, manual), options.format);
  }
};

struct Copies : ManualVerb {
  void run(const Session& session) const {
    writeRows(std::cout, *desk::manualCopies(session, manual), options.format);
  }
};

// What is done with one document in one manual.
struct Placing : ManualVerb {
  std::string document;
  std::optional<std::int32_t> position;

  void describe(Command& verb) {
    ManualVerb::describe(verb);
    verb.addOption("document", document, "The document, by identifier or number")->required();
  }

 protected:
  Argument* addPosition(Command& verb) {
    return addNumber(verb, "position", position, "The place in the manual, counted from 1");
  }
};

struct Put : Placing {
  void describe(Command& verb) {
    Placing::describe(verb);
    addPosition(verb);
  }
  void run(const Session& session) const {
    const auto placed = desk::putIntoManual(session, manual, document, position);
    writeDone(
        std::cout,
        fmt::format("put the document {} into the manual {} at place {}, and into {} of it",
                    placed.documentId, placed.manualId, placed.place, copiesText(placed.copies)),
        {{"ManualID", placed.manualId},
         {"DocumentID", placed.documentId},
         {"Position", placed.place},
         {"Copies", placed.copies}},
        options.format);
  }
};

struct Take : Placing {
  void run(const Session& session) const {
    const auto taken = desk::takeOutOfManual(session, manual, document);
    writeDone(
        std::cout,
        fmt::format("took the document {} out of the manual {}, and out of {} of it",
                    taken.documentId, taken.manualId, copiesText(taken.copies)),
        {{"ManualID", taken.manualId}, {"DocumentID", taken.documentId}, {"Copies", taken.copies}},
        options.format);
  }
};

struct Move : Placing {
  void describe(Command& verb) {
    Placing::describe(verb);
    addPosition(verb)->required();
  }
  void run(const Session& session) const {
    const auto moved = desk::moveInManual(session, manual, document, *position);
    writeDone(
        std::cout,
        fmt::format("moved the document {} in the manual {} to place {}", moved.documentId,
                    moved.manualId, moved.place),
        {{"ManualID", moved.manualId}, {"DocumentID", moved.documentId}, {"Position", moved.place}},
        options.format);
  }
};

}  // namespace

void manualContents(Command& verb) { declare<Contents>(verb); }
void manualCopies(Command& verb) { declare<Copies>(verb); }
void manualPut(Command& verb) { declare<Put>(verb); }
void manualTake(Command& verb) { declare<Take>(verb); }
void manualMove(Command& verb) { declare<Move>(verb); }

}  // namespace kv::cli
