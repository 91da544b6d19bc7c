// SPDX-License-Identifier: Apache-2.0
// The life of revisions against the floor: hand-written C that reads and writes the same rows in
// one transaction. And logging in, most of which is what a password costs.

#include <argon2.h>
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "benches.h"
#include "common/clock.h"
#include "floor.h"
#include "life_register.h"
#include "sample_register.h"

namespace kv::bench {

namespace {

constexpr int kStep = 7919;

std::string prepared(const char* purpose) {
  const std::string& sample = sampleRegister(kSmall, purpose);
  prepareLife(sample, kSmall);
  return sample;
}
const std::string& lifeRegister() {
  static const std::string path = prepared("life");
  return path;
}
const std::string& registerToRoute() {
  static const std::string path = prepared("route");
  return path;
}

class FloorLife {
 public:
  explicit FloorLife(const std::string& path) : db_(path) {}

  void route(int id) {
    begin_.run();
    const Read revision = read(id);
    std::string first = firstApprover(id);
    if (first.empty()) {
      copy_.bind(1, id);
      copy_.bind(2, revision.document);
      copy_.run();
    } else {
      again_.bind(1, id);
      again_.run();
    }
    first = firstApprover(id);
    const Settings s = settings();
    tell(s, first, "Your approval is required",
         fmt::format("{} {} of the {} {} requires your approval.", s.revision, revision.level,
                     title(revision.document), s.document),
         revision.document);
    stand(id, 1);
    commit_.run();
  }

  void approve(int id) {
    begin_.run();
    const Read revision = read(id);
    const Settings s = settings();
    list_.bind(1, id);
    list_.step();
    decide_.bind(1, list_.number(0));
    list_.step();
    const std::string next(list_.text(1));
    while (list_.step()) benchmark::DoNotOptimize(list_.readRow());
    list_.reset();
    decide_.bind(2, std::string("User1"));
    decide_.bind(3, isoText(today()));
    decide_.run();
    tell(s, next, "Your Approval is required.",
         fmt::format("Your Approval is required for {} {} of the {} {}", s.revision, revision.level,
                     title(revision.document), s.document),
         std::to_string(id));
    stand(id, 2);
    commit_.run();
  }

  void putInForce(int id) {
    begin_.run();
    const Read revision = read(id);
    document_.bind(1, revision.document);
    document_.step();
    const int row = document_.number(0);
    const std::string title(document_.text(2));
    benchmark::DoNotOptimize(document_.readRow());
    document_.reset();
    outOfDate_.bind(1, revision.document);
    outOfDate_.run();
    const Settings s = settings();
    const std::string description = fmt::format("{} {} of {} {} has been released.", s.revision,
                                                revision.level, s.document, title);
    holders_.bind(1, revision.document);
    while (holders_.step())
      write(s, std::string(holders_.text(0)), std::string(holders_.text(1)),
            title + " has been updated.", description, revision.document);
    holders_.reset();
    const std::string day = isoText(today());
    inForce_.bind(1, id);
    inForce_.bind(2, day);
    inForce_.run();
    point_.bind(1, row);
    point_.bind(2, revision.level);
    point_.bind(3, day);
    point_.bind(4, id);
    point_.run();
    commit_.run();
  }

 private:
  struct Read {
    std::string document, level;
  };
  struct Settings {
    std::string options, database, originator, originatorId, document, revision;
  };

  Read read(int id) {
    revision_.bind(1, id);
    if (!revision_.step()) throw std::runtime_error("no such revision");
    benchmark::DoNotOptimize(revision_.readRow());
    Read out{std::string(revision_.text(1)), std::string(revision_.text(2))};
    revision_.reset();
    return out;
  }
  std::string firstApprover(int id) {
    list_.bind(1, id);
    std::string out;
    while (list_.step()) {
      if (out.empty()) out = list_.text(1);
      benchmark::DoNotOptimize(list_.readRow());
    }
    list_.reset();
    return out;
  }
  Settings settings() {
    settings_.step();
    Settings out{std::string(settings_.text(0)),
                 std::string(settings_.text(1)),
                 "",
                 std::string(settings_.text(2)),
                 std::string(settings_.text(3)),
                 std::string(settings_.text(4))};
    settings_.reset();
    out.originator = name(out.originatorId);
    return out;
  }
  std::string name(const std::string& user) {
    name_.bind(1, user);
    name_.step();
    std::string out(name_.text(0));
    name_.reset();
    return out;
  }
  std::string title(const std::string& document) {
    title_.bind(1, document);
    title_.step();
    std::string out(title_.text(0));
    title_.reset();
    return out;
  }
  void tell(const Settings& s, const std::string& user, const std::string& subject,
            const std::string& description, const std::string& reference) {
    write(s, user, name(user), subject, description, reference);
  }
  void write(const Settings& s, const std::string& user, const std::string& name,
             const std::string& subject, const std::string& description,
             const std::string& reference) {
    const Date day = today();
    int place = 0;
    for (const std::string& value : {user, name, subject, description, s.originator, s.originatorId,
                                     isoText(day), isoText(day.plusDays(5)), s.database, reference})
      action_.bind(++place, value);
    action_.run();
  }
  void stand(int id, int turn) {
    stand_.bind(1, id);
    stand_.bind(2, turn);
    stand_.run();
  }

  FloorDatabase db_;
  FloorStatement begin_{db_, "BEGIN IMMEDIATE"};
  FloorStatement commit_{db_, "COMMIT"};
  FloorStatement revision_{
      db_,
      "SELECT RevisionID, DocumentID, RevisionLevel, RevUser1, RevUser2, ChangeDescription, "
      "Location, EffectiveDate, ResponsibleID, RoutingStatus, RevisionStatus FROM Revisions WHERE "
      "RevisionID = ?1"};
  FloorStatement list_{db_,
                       "SELECT kv_key, UserID, ListOrder, ApprovalStatus, ApprovedBy, "
                       "DateApproved, Notes FROM ApprovalRouting WHERE RevID = ?1 ORDER BY "
                       "ListOrder, kv_key"};
  FloorStatement copy_{db_,
                       "INSERT INTO ApprovalRouting (RevID, UserID, ListOrder, ApprovalStatus) "
                       "SELECT ?1, UserID, ListOrder, 0 FROM Routing WHERE kv_fold(DocumentID) = "
                       "kv_fold(?2)"};
  FloorStatement again_{db_, "UPDATE ApprovalRouting SET ApprovalStatus = 0 WHERE RevID = ?1"};
  FloorStatement settings_{
      db_,
      "SELECT ProgramOptions, DBID, OriginatorID, Document, Revision, Originator FROM VeskConfig"};
  FloorStatement name_{db_, "SELECT UserName FROM Users WHERE kv_fold(UserID) = kv_fold(?1)"};
  FloorStatement title_{
      db_, "SELECT DocumentTitle FROM Documents WHERE kv_fold(DocumentID) = kv_fold(?1)"};
  FloorStatement document_{db_, fmt::format("SELECT {} FROM Documents WHERE kv_fold(DocumentID) = "
                                            "kv_fold(?1) ORDER BY ID",
                                            kDocumentColumns)};
  FloorStatement action_{
      db_,
      "INSERT INTO Actions (AssigneeID, Assignee, Subject, Description, Originator, OriginatorID, "
      "DateOpened, DateDue, ReferenceID, Reference, ActionType) VALUES (?1, ?2, ?3, ?4, ?5, ?6, "
      "?7, ?8, ?9, ?10, 1)"};
  FloorStatement stand_{
      db_, "UPDATE Revisions SET RoutingStatus = ?2, RevisionStatus = 3 WHERE RevisionID = ?1"};
  FloorStatement decide_{
      db_,
      "UPDATE ApprovalRouting SET ApprovalStatus = 1, ApprovedBy = ?2, DateApproved = ?3 WHERE "
      "kv_key = ?1"};
  FloorStatement outOfDate_{db_,
                            "UPDATE Revisions SET RevisionStatus = 0 WHERE RevisionStatus = 1 AND "
                            "kv_fold(DocumentID) = kv_fold(?1)"};
  FloorStatement inForce_{
      db_, "UPDATE Revisions SET RevisionStatus = 1, EffectiveDate = ?2 WHERE RevisionID = ?1"};
  FloorStatement point_{
      db_,
      "UPDATE Documents SET RevisionLevel = ?2, EffectiveDate = ?3, CurrentRevID = ?4 WHERE ID = "
      "?1"};
  FloorStatement holders_{
      db_,
      "SELECT UserID, UserName FROM Users WHERE kv_fold(UserID) IN (SELECT kv_fold(UserID) FROM "
      "Personals WHERE kv_fold(DocumentID) = kv_fold(?1))"};
};

// ---- the two sides ----

template <bool whole>
struct Ours : LifeClient {
  explicit Ours(const std::string& path) : LifeClient(path, whole) {}
};

template <class Client>
void routeFirst(benchmark::State& state) {
  unroute(registerToRoute());
  Client client(registerToRoute());
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % kSmall;
    client.route(revisionOf(n));
  }
}

template <class Client>
void routeAgain(benchmark::State& state) {
  awaitApprovals(lifeRegister());
  Client client(lifeRegister());
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % kSmall;
    client.route(revisionOf(n));
  }
}

template <class Client>
void approve(benchmark::State& state) {
  awaitApprovals(lifeRegister());
  Client client(lifeRegister());
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % kSmall;
    client.approve(revisionOf(n));
  }
}

template <class Client, std::size_t holders>
void putInForce(benchmark::State& state) {
  Client client(lifeRegister());
  bool second = false;
  for (auto _ : state) {
    second = !second;
    client.putInForce(second ? secondRevisionOf(holders, kSmall) : revisionOf(holders));
  }
}

// ---- logging in ----

// On a connection that is open already.
template <bool real>
void logIn(benchmark::State& state) {
  const BenchSession session(lifeRegister());
  for (auto _ : state) session.vesk().Login(real ? kRealUser : "Anna", "secret");
}

template <bool real>
void logInFloor(benchmark::State& state) {
  FloorDatabase db(lifeRegister());
  FloorStatement user(
      db, "SELECT UserID, UserName, Password FROM Users WHERE kv_fold(UserName) = kv_fold(?1)");
  FloorStatement profile(db,
                         "SELECT Rights, GroupID, Administrator, UserName FROM VeskProfiles WHERE "
                         "kv_fold(UserID) = kv_fold(?1)");
  const std::string name = real ? kRealUser : "Anna";
  const std::string password = "secret";
  for (auto _ : state) {
    user.bind(1, name);
    user.step();
    const std::string id(user.text(0));
    const std::string hash(user.text(2));
    user.reset();
    if (argon2id_verify(hash.c_str(), password.data(), password.size()) != ARGON2_OK)
      state.SkipWithError("the password is another one");
    profile.bind(1, id);
    profile.step();
    benchmark::DoNotOptimize(profile.readRow());
    profile.reset();
  }
}

}  // namespace

void registerRevisions() {
  using Whole = Ours<true>;
  using Saved = Ours<false>;
  const Pair pairs[] = {
      {"route, first time", routeFirst<Whole>, routeFirst<FloorLife>},
      {"route, again", routeAgain<Whole>, routeAgain<FloorLife>},
      {"route, again, and save", routeAgain<Saved>, routeAgain<FloorLife>},
      {"approve", approve<Whole>, approve<FloorLife>},
      {"approve, and save", approve<Saved>, approve<FloorLife>},
      {"put in force, 1 holder", putInForce<Whole, 0>, putInForce<FloorLife, 0>},
      {"put in force, 10 holders", putInForce<Whole, 1>, putInForce<FloorLife, 1>},
      {"put in force, 1000 holders", putInForce<Whole, 2>, putInForce<FloorLife, 2>},
      {"log in, argon2id 19 MiB, 2 passes", logIn<true>, logInFloor<true>},
      {"log in, argon2id 64 KiB, 1 pass", logIn<false>, logInFloor<false>},
  };
  for (const auto& pair : pairs) registerPair(pair, {});
}

}  // namespace kv::bench
