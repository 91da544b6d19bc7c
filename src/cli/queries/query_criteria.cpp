// SPDX-License-Identifier: Apache-2.0
#include "cli/queries/query_criteria.h"

#include "cli/program/given_options.h"

namespace kv::cli {

namespace {

constexpr std::size_t kTriple = 3;

}  // namespace

void addCriteria(Command& verb, QueryCriteria& criteria) {
  addText(verb, "--kind", criteria.kind, "Which documents: controlled, uncontrolled or all")
      ->typeName("KIND");
  verb.addOption("--where", criteria.where,
                 "A column, an operator and a value; may be given once for each column")
      ->repeated(kTriple)
      ->typeName("COLUMN OP VALUE");
  addDate(verb, "--on", criteria.on, "Documents effective on this date");
  addDate(verb, "--after", criteria.after,
          "Documents effective after this date; with --before a range");
  addDate(verb, "--before", criteria.before, "Documents effective before this date");
  verb.footer(
      "Columns of documents: title, number, field1, field2, field3, field4, level; of manuals: "
      "name, field1,\nfield2, field3, field4; of users: name, alias, title, user00 to user11.\n"
      "Operators: =, contains, >, <, <>; for users' fields that are numbers =, >, <, and for those "
      "that are\ndates also between, as in user02 between 2024-01-01..2024-12-31, without these "
      "two "
      "days.\n"
      "> and < must be in quotation marks for most shells. Case does not matter in values.\n"
      "All criteria of a query must hold.");
}

void addDropping(Command& verb, QueryCriteria& criteria) {
  verb.addOption("--drop", criteria.drop,
                 "A column that loses its criterion, effective among them; may be repeated")
      ->repeated()
      ->typeName("COLUMN");
}

}  // namespace kv::cli
