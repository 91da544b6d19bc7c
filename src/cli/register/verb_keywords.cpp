// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/register/keywords.h"

namespace kv::cli {

namespace {

struct Show : RegisterVerb {
  std::optional<std::string> field;

  void describe(Command& verb) {
    addText(verb, "field", field, "The field; all of them when left out")->typeName("FIELD");
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listKeywords(session, field), options.format);
  }
};

struct OneKeyword : RegisterVerb {
  desk::Keyword entry;

  void describe(Command& verb) {
    verb.addOption("field", entry.field,
                   "The field, such as DocUser2, as the record's own column is called")
        ->required()
        ->typeName("FIELD");
    verb.addOption("keyword", entry.keyword, "The keyword; case does not matter")->required();
  }

 protected:
  void done(const std::string& sentence, const desk::Keyword& keyword) const {
    writeDone(std::cout, sentence + keyword.field,
              {{"FieldName", keyword.field}, {"Keyword", keyword.keyword}}, options.format);
  }
};

struct Add : OneKeyword {
  void check() const { desk::requireKeyword(entry.keyword); }
  void run(const Session& session) const {
    const auto added = desk::addKeyword(session, entry);
    done("added the keyword " + added.keyword + " to the field ", added);
  }
};

struct Delete : OneKeyword {
  void run(const Session& session) const {
    desk::deleteKeyword(session, entry);
    done("deleted the keyword " + entry.keyword + " of the field ", entry);
  }
};

}  // namespace

void keywordShow(Command& verb) { declare<Show>(verb); }
void keywordAdd(Command& verb) { declare<Add>(verb); }
void keywordDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
