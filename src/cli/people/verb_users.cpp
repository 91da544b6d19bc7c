#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/people/view_users.h"

namespace kv::cli {

namespace {

using Listing = desk::UserListing;

int list(const Options& options, const Listing& listing) {
  const Session session(options);
  writeRows(std::cout, *desk::listUsers(session, listing), options.format);
  return kDone;
}

struct List {
  Options options;
  Listing listing;

  void describe(Command& verb) {
    addCommon(verb, options);
    addText(verb, "--query", listing.query,
            "The saved user query to list by, by number or name; everybody when left out");
    verb.addOption("--sort", listing.sort,
                   "The columns to sort by, parted by commas, each with asc or desc behind it")
        ->showDefault();
    verb.addOption("--fields", listing.fields, "The columns to list, parted by commas; * for all")
        ->showDefault();
    verb.footer(
        "Columns: ID, UserID, UserName, Alias, Title, Email, User00 to User11.\n"
        "Passwords are kept as hashes and are listed for nobody.");
  }
  [[nodiscard]] int run() const { return list(options, listing); }
};

}  // namespace

void userList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
