#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/register/keywords.h"

namespace kv::cli {

namespace {

constexpr const char* kField = "FieldName";
constexpr const char* kKeyword = "Keyword";

using Entry = desk::Keyword;

int show(const Options& options, const std::optional<std::string>& field) {
  const Session session(options);
  writeRows(std::cout, *desk::listKeywords(session, field), options.format);
  return kDone;
}

int add(const Options& options, const Entry& entry) {
  desk::requireKeyword(entry.keyword);
  const Session session(options);
  const Entry added = desk::addKeyword(session, entry);
  writeDone(std::cout, "added the keyword " + added.keyword + " to the field " + added.field,
            {{kField, added.field}, {kKeyword, added.keyword}}, options.format);
  return kDone;
}

int remove(const Options& options, const Entry& entry) {
  const Session session(options);
  desk::deleteKeyword(session, entry);
  writeDone(std::cout, "deleted the keyword " + entry.keyword + " of the field " + entry.field,
            {{kField, entry.field}, {kKeyword, entry.keyword}}, options.format);
  return kDone;
}

struct Show : RegisterVerb {
  std::optional<std::string> field;

  void describe(Command& verb) {
    addText(verb, "field", field, "The field; all of them when left out")->typeName("FIELD");
  }
  [[nodiscard]] int run() const { return show(options, field); }
};

template <int (*make)(const Options&, const Entry&)>
struct Change : RegisterVerb {
  Entry entry;

  void describe(Command& verb) {
    verb.addOption("field", entry.field,
                   "The field, such as DocUser2, as the record's own column is called")
        ->required()
        ->typeName("FIELD");
    verb.addOption("keyword", entry.keyword, "The keyword; case does not matter")->required();
  }
  [[nodiscard]] int run() const { return make(options, entry); }
};

}  // namespace

void keywordShow(Command& verb) { declare<Show>(verb); }
void keywordAdd(Command& verb) { declare<Change<add>>(verb); }
void keywordDelete(Command& verb) { declare<Change<remove>>(verb); }

}  // namespace kv::cli
