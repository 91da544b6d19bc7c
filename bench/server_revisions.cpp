// SPDX-License-Identifier: Apache-2.0
// The life of revisions on PostgreSQL against hand-written libpq, with the round trips of each
// operation.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "benches.h"
#include "common/clock.h"
#include "common/text_key.h"
#include "life_register.h"
#include "round_trips.h"
#include "server_floor.h"

namespace kv::bench {

namespace {

std::string prepared() {
  std::string location = serverRegister(kSmall);
  prepareLife(location, kSmall);
  ServerFloor(location).run("ANALYZE");
  return location;
}
const std::string& lifeRegister() {
  static const std::string location = prepared();
  return location;
}
const std::string& registerToRoute() {
  static const std::string location = prepared();
  return location;
}

class ServerFloorLife {
 public:
  explicit ServerFloorLife(const std::string& location) : db_(location) {
    db_.prepare("begin", "BEGIN");
    db_.prepare("commit", "COMMIT");
    db_.prepare("revision",
                R"(SELECT "RevisionID", "DocumentID", "RevisionLevel", "RevUser1", "RevUser2", )"
                R"("ChangeDescription", "Location", "EffectiveDate", "ResponsibleID", )"
                R"("RoutingStatus", "RevisionStatus" FROM "Revisions" WHERE "RevisionID" = )"
                R"($1::int FOR UPDATE)");
    db_.prepare("list", R"(SELECT "kv_key", "UserID", "ListOrder", "ApprovalStatus", )"
                        R"("ApprovedBy", "DateApproved", "Notes" FROM "ApprovalRouting" WHERE )"
                        R"("RevID" = $1::int ORDER BY "ListOrder", "kv_key")");
    db_.prepare("copy", R"(INSERT INTO "ApprovalRouting" ("RevID", "UserID", "ListOrder", )"
                        R"("ApprovalStatus") SELECT $1::int, "UserID", "ListOrder", 0 FROM )"
                        R"("Routing" WHERE )" +
                            serverFold("DocumentID") + " = $2");
    db_.prepare("again",
                R"(UPDATE "ApprovalRouting" SET "ApprovalStatus" = 0 WHERE "RevID" = $1::int)");
    db_.prepare("settings", R"(SELECT "ProgramOptions", "DBID", "OriginatorID", "Document", )"
                            R"("Revision", "Originator" FROM "VeskConfig")");
    db_.prepare("name",
                R"(SELECT "UserName" FROM "Users" WHERE )" + serverFold("UserID") + " = $1");
    db_.prepare("title", R"(SELECT "DocumentTitle" FROM "Documents" WHERE )" +
                             serverFold("DocumentID") + " = $1");
    db_.prepare("document", "SELECT " + serverDocumentColumns() + R"( FROM "Documents" WHERE )" +
                                serverFold("DocumentID") + R"( = $1 ORDER BY "ID" FOR UPDATE)");
    db_.prepare("action", R"(INSERT INTO "Actions" ("AssigneeID", "Assignee", "Subject", )"
                          R"("Description", "Originator", "OriginatorID", "DateOpened", )"
                          R"("DateDue", "ReferenceID", "Reference", "ActionType") VALUES )"
                          R"(($1, $2, $3, $4, $5, $6, $7, $8, $9, $10, 1))");
    db_.prepare("stand", R"(UPDATE "Revisions" SET "RoutingStatus" = $2::int, "RevisionStatus" = )"
                         R"(3 WHERE "RevisionID" = $1::int)");
    db_.prepare("decide",
                R"(UPDATE "ApprovalRouting" SET "ApprovalStatus" = 1, "ApprovedBy" = 'User1', )"
                R"("DateApproved" = $2 WHERE "kv_key" = $1::bigint)");
    db_.prepare("old", R"(UPDATE "Revisions" SET "RevisionStatus" = 0 WHERE "RevisionStatus" = 1 )"
                       R"(AND )" +
                           serverFold("DocumentID") + " = $1");
    db_.prepare("force", R"(UPDATE "Revisions" SET "RevisionStatus" = 1, "EffectiveDate" = $2 )"
                         R"(WHERE "RevisionID" = $1::int)");
    db_.prepare("point", R"(UPDATE "Documents" SET "RevisionLevel" = $2, "EffectiveDate" = $3, )"
                         R"("CurrentRevID" = $4::int WHERE "ID" = $1::int)");
    db_.prepare("holders", R"(SELECT "UserID", "UserName" FROM "Users" WHERE )" +
                               serverFold("UserID") + " IN (SELECT " + serverFold("UserID") +
                               R"( FROM "Personals" WHERE )" + serverFold("DocumentID") + " = $1)");
  }

  void route(int number) {
    const std::string id = std::to_string(number);
    db_.run("begin", {});
    const Answer revision = db_.run("revision", {id});
    const std::string document = textOf(revision, 0, 1);
    if (PQntuples(db_.run("list", {id}).get()) == 0)
      (void)db_.run("copy", {id, foldKey(document)});
    else
      (void)db_.run("again", {id});
    const Answer list = db_.run("list", {id});
    benchmark::DoNotOptimize(readRows(list));
    const Settings s = settings();
    tell(s, textOf(list, 0, 1), "Your approval is required",
         fmt::format("{} {} of the {} {} requires your approval.", s.revision,
                     textOf(revision, 0, 2), title(document), s.document),
         document);
    (void)db_.run("stand", {id, "1"});
    (void)db_.run("commit", {});
  }

  void approve(int number) {
    const std::string id = std::to_string(number);
    db_.run("begin", {});
    const Answer revision = db_.run("revision", {id});
    const Settings s = settings();
    const Answer list = db_.run("list", {id});
    benchmark::DoNotOptimize(readRows(list));
    (void)db_.run("decide", {textOf(list, 0, 0), isoText(today())});
    tell(s, textOf(list, 1, 1), "Your Approval is required.",
         fmt::format("Your Approval is required for {} {} of the {} {}", s.revision,
                     textOf(revision, 0, 2), title(textOf(revision, 0, 1)), s.document),
         id);
    (void)db_.run("stand", {id, "2"});
    (void)db_.run("commit", {});
  }

  void putInForce(int number) {
    const std::string id = std::to_string(number);
    db_.run("begin", {});
    const Answer revision = db_.run("revision", {id});
    const std::string key = foldKey(textOf(revision, 0, 1));
    const Answer document = db_.run("document", {key});
    benchmark::DoNotOptimize(readRows(document));
    (void)db_.run("old", {key});
    const Settings s = settings();
    const std::string level = textOf(revision, 0, 2);
    const std::string title = textOf(document, 0, 2);
    const std::string subject = title + " has been updated.";
    const std::string description =
        fmt::format("{} {} of {} {} has been released.", s.revision, level, s.document, title);
    const Answer holders = db_.run("holders", {key});
    for (int row = 0; row < PQntuples(holders.get()); ++row)
      write(s, textOf(holders, row, 0), textOf(holders, row, 1), subject, description,
            textOf(revision, 0, 1));
    const std::string day = isoText(today());
    (void)db_.run("force", {id, day});
    (void)db_.run("point", {textOf(document, 0, 0), level, day, id});
    (void)db_.run("commit", {});
  }

  [[nodiscard]] std::uint64_t roundTrips() const { return db_.roundTrips(); }

 private:
  struct Settings {
    std::string database, originator, originatorId, document, revision;
  };
  Settings settings() {
    const Answer row = db_.run("settings", {});
    return {textOf(row, 0, 1), name(textOf(row, 0, 2)), textOf(row, 0, 2), textOf(row, 0, 3),
            textOf(row, 0, 4)};
  }
  std::string name(const std::string& user) {
    return textOf(db_.run("name", {foldKey(user)}), 0, 0);
  }
  std::string title(const std::string& document) {
    return textOf(db_.run("title", {foldKey(document)}), 0, 0);
  }
  void tell(const Settings& s, const std::string& user, const std::string& subject,
            const std::string& description, const std::string& reference) {
    write(s, user, name(user), subject, description, reference);
  }
  void write(const Settings& s, const std::string& user, const std::string& name,
             const std::string& subject, const std::string& description,
             const std::string& reference) {
    constexpr std::int64_t kDaysToDoIt = 5;
    (void)db_.run("action",
                  {user, name, subject, description, s.originator, s.originatorId, isoText(today()),
                   isoText(today().plusDays(kDaysToDoIt)), s.database, reference});
  }

  ServerFloor db_;
};

template <bool whole>
struct Ours : LifeClient {
  explicit Ours(const std::string& location) : LifeClient(location, whole) {}
};

template <class Client>
void routeFirst(benchmark::State& state) {
  unroute(registerToRoute());
  Client client(registerToRoute());
  measure(state, client, [&](int n) { client.route(revisionOf(n)); });
}

template <class Client>
void routeAgain(benchmark::State& state) {
  awaitApprovals(lifeRegister());
  Client client(lifeRegister());
  measure(state, client, [&](int n) { client.route(revisionOf(n)); });
}

template <class Client>
void approve(benchmark::State& state) {
  awaitApprovals(lifeRegister());
  Client client(lifeRegister());
  measure(state, client, [&](int n) { client.approve(revisionOf(n)); });
}

template <class Client, std::size_t holders>
void putInForce(benchmark::State& state) {
  Client client(lifeRegister());
  bool second = false;
  measure(state, client, [&](int) {
    second = !second;
    client.putInForce(second ? secondRevisionOf(holders, kSmall) : revisionOf(holders));
  });
}

}  // namespace

void registerServerRevisions() {
  using Whole = Ours<true>;
  using Saved = Ours<false>;
  const Pair pairs[] = {
      {"route, first time", routeFirst<Whole>, routeFirst<ServerFloorLife>},
      {"route, again", routeAgain<Whole>, routeAgain<ServerFloorLife>},
      {"route, again, and save", routeAgain<Saved>, routeAgain<ServerFloorLife>},
      {"approve", approve<Whole>, approve<ServerFloorLife>},
      {"approve, and save", approve<Saved>, approve<ServerFloorLife>},
      {"put in force, 1 holder", putInForce<Whole, 0>, putInForce<ServerFloorLife, 0>},
      {"put in force, 10 holders", putInForce<Whole, 1>, putInForce<ServerFloorLife, 1>},
      {"put in force, 1000 holders", putInForce<Whole, 2>, putInForce<ServerFloorLife, 2>},
  };
  for (const auto& pair : pairs) registerPair(pair, {kSmall});
}

}  // namespace kv::bench
