// SPDX-License-Identifier: Apache-2.0
#include "classes/relations/relation_lists.h"

#include <algorithm>

#include "common/convert.h"

namespace kv::test {

Places RelationLists::placesOf(const std::string& sql) const {
  Places out;
  for (const auto rs = vesk().GetRecordset(sql); !rs->Eof(); rs->MoveNext())
    out[shown(rs->Fields(0)->Value())] = placeIn(rs->Fields(1)->Value());
  return out;
}

Texts RelationLists::shownPlaces(const Places& places, bool single) {
  Texts out;
  for (const auto& [id, place] : places)
    out.push_back(id + "|" + (single ? singleCell(place) : cell(place)));
  return out;
}

void RelationLists::expectPlaces(Places& model, const Places& actual, bool single) {
  for (const auto& group : model_.ties) {
    std::vector<std::optional<double>> given;
    std::vector<std::optional<double>> found;
    for (const auto& id : group) {
      given.push_back(model[id]);
      found.push_back(actual.contains(id) ? actual.at(id) : std::nullopt);
    }
    std::sort(given.begin(), given.end());
    auto inOrder = found;
    std::sort(inOrder.begin(), inOrder.end());
    EXPECT_TRUE(given == inOrder) << "new places of " << group.size() << " at one place";
    for (std::size_t i = 0; i < group.size(); ++i) model[group[i]] = found[i];
    count("renumbered from one place");
  }
  model_.ties.clear();
  EXPECT_EQ(shownPlaces(actual, single), shownPlaces(model, single));
}

void RelationLists::compareContents(const std::string& manual) {
  expectPlaces(model_.contents[manual],
               placesOf("Select DocumentID, [Position] From ManualContents Where ManualID = '" +
                        manual + "'"),
               false);
}

void RelationLists::compareRouting(const std::string& document) {
  expectPlaces(
      model_.routing[document],
      placesOf("Select UserID, ListOrder From Routing Where DocumentID = '" + document + "'"),
      true);
}

void RelationLists::compareTables() {
  const auto compareTable = [&](const std::string& name, const std::string& columns,
                                Texts expected) {
    EXPECT_EQ(
        difference(sorted(std::move(expected)),
                   sorted(rowsOf(*vesk().GetRecordset("Select " + columns + " From " + name)))),
        "")
        << name;
  };
  Texts copies;
  for (const auto& [release, held] : model_.holdings)
    copies.push_back(std::to_string(release) + "|" + held.text());
  compareTable("Personals",
               "ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID",
               std::move(copies));
  Texts contents;
  for (const auto& [manual, places] : model_.contents)
    for (const auto& [document, place] : places)
      contents.push_back(fmt::format("{}|{}|{}", manual, document, cell(place)));
  compareTable("ManualContents", "ManualID, DocumentID, [Position]", std::move(contents));
  Texts owners;
  for (const auto& [document, user] : model_.owners) owners.push_back(document + "|" + user);
  compareTable("Owners", "DocumentID, UserID", std::move(owners));
  Texts routing;
  for (const auto& [document, places] : model_.routing)
    for (const auto& [user, place] : places)
      routing.push_back(fmt::format("{}|{}|{}", document, user, singleCell(place)));
  compareTable("Routing", "DocumentID, UserID, ListOrder", std::move(routing));
}

void RelationLists::compareDocument(const std::string& id) {
  auto& documents = *vesk().Document();
  Texts owners;
  for (const auto& [document, user] : model_.owners)
    if (document == id) owners.push_back(user);
  EXPECT_EQ(columnsOf(*documents.Owners(id), {"UserID"}), sorted(owners)) << id;

  const auto approvers = documents.Approvers(id);
  std::optional<double> before;
  for (; !approvers->Eof(); approvers->MoveNext()) {
    const auto place = placeIn(approvers->Fields("ListOrder")->Value());
    EXPECT_TRUE(before <= place) << "the order of " << id << "'s approvers";
    before = place;
  }
  EXPECT_EQ(columnsOf(*documents.Approvers(id), {"UserID", "ListOrder"}),
            sorted(shownPlaces(model_.routing[id], true)))
      << id;

  Texts manuals;
  for (const auto& [manual, places] : model_.contents)
    if (places.contains(id)) manuals.push_back(manual);
  EXPECT_EQ(columnsOf(*documents.Manuals(id), {"ManualID"}), sorted(manuals)) << id;
  EXPECT_EQ(columnsOf(*documents.Manuals(id, true), {"ManualID"}), sorted(manuals)) << id;
  for (const bool hard : {false, true}) {
    const auto meets = [&](const Holding& held) {
      return held.document == id && held.hard == hard;
    };
    const auto list = hard ? documents.Copies(id) : documents.Users(id);
    EXPECT_EQ(columnsOf(*list, {"ReleaseID"}), releasesWhere(meets)) << id << " hard " << hard;
    EXPECT_EQ(columnsOf(*vesk().Releases("", "", id, 0, 0, 0, hard), {"ReleaseID"}),
              releasesWhere(meets))
        << id << " hard " << hard;
    // Only users there are have records: some holders are not known.
    const auto records = hard ? documents.Copies(id, true) : documents.Users(id, true);
    auto holders = holdersWhere(meets, [](const Holding& held) { return held.user; });
    std::erase_if(holders, [&](const auto& user) { return !users_.contains(user); });
    EXPECT_EQ(records == nullptr ? Texts() : columnsOf(*records, {"UserID"}), holders)
        << id << " hard " << hard;
  }
}

void RelationLists::compareManual(const std::string& id) {
  auto& manuals = *vesk().Manual();
  const auto hard = [&](const Holding& held) { return held.manual == id && held.hard; };
  const auto listed = [&](const Holding& held) { return held.manual == id && !held.hard; };
  EXPECT_EQ(sorted(rowsOf(*manuals.Copies(id))),
            holdersWhere(hard, [](const Holding& held) { return held.user + "|" + held.copy; }))
      << id;
  EXPECT_EQ(sorted(rowsOf(*manuals.Users(id))),
            holdersWhere(listed, [](const Holding& held) { return held.user; }))
      << id;
  Texts contents;
  std::optional<double> before;
  const auto& places = model_.contents[id];
  for (const auto& [document, place] : places)
    if (model_.documents.contains(document)) contents.push_back(document);
  const auto list = manuals.Contents(id);
  for (; !list->Eof(); list->MoveNext()) {
    const auto found = places.find(text(*list, "DocumentID"));
    if (found == places.end()) {
      ADD_FAILURE() << "not in " << id << ": " << text(*list, "DocumentID");
      continue;
    }
    EXPECT_TRUE(before <= found->second) << "the order of " << id;
    before = found->second;
  }
  EXPECT_EQ(columnsOf(*manuals.Contents(id), {"DocumentID"}), sorted(contents)) << id;
  EXPECT_EQ(columnsOf(*vesk().Releases("", id, "", 0, 0, 0, true), {"ReleaseID"}),
            releasesWhere(hard))
      << id;
  EXPECT_EQ(columnsOf(*vesk().Releases("", id), {"ReleaseID"}), releasesWhere(listed)) << id;
  const std::string some = anyNumber();
  EXPECT_EQ(manuals.DuplicateCopyNumber(id, some), !releasesWhere([&](const Holding& held) {
                                                      return hard(held) && held.copy == some;
                                                    }).empty())
      << id << " " << some;
}

void RelationLists::compareUser(const std::string& id) {
  auto& users = *vesk().User();
  const auto isThere = [&](const Holding& held) {
    return model_.documents.contains(held.document);
  };
  for (const bool hard : {false, true}) {
    const auto held = [&](const Holding& row) { return row.user == id && row.hard == hard; };
    const auto inList = [&](const Holding& row) { return held(row) && (hard || isThere(row)); };
    EXPECT_EQ(columnsOf(hard ? *users.HardCopies(id) : *users.VirtualCopies(id), {"ReleaseID"}),
              releasesWhere(inList))
        << id << " hard " << hard;
    EXPECT_EQ(columnsOf(*vesk().Releases(id, "", "", 0, 0, 0, hard),
                        {"ReleaseID", "DocumentID", "ManualID", "CopyNumber", "RevisionID",
                         "CurrentRevID"}),
              releaseLines(held))
        << id << " hard " << hard;
    EXPECT_EQ(columnsOf(*vesk().Document()->Personals(id, !hard, hard), {"ReleaseID"}),
              releasesWhere([&](const Holding& row) { return held(row) && isThere(row); }))
        << id << " hard " << hard;
  }
  Texts owned;
  for (const auto& [document, user] : model_.owners)
    if (user == id && model_.documents.contains(document)) owned.push_back(document);
  EXPECT_EQ(columnsOf(*users.Owns(id), {"DocumentID"}), sorted(owned)) << id;
  Texts approved;
  for (const auto& [document, list] : model_.routing)
    if (list.contains(id) && model_.documents.contains(document)) approved.push_back(document);
  EXPECT_EQ(columnsOf(*users.Approves(id), {"DocumentID"}), sorted(approved)) << id;
  const auto document = anyDocument();
  EXPECT_EQ(users.UserIsOwner(id, document), model_.userIsOwner(actor(), id, document));
  EXPECT_EQ(users.UserIsApprover(id, document), model_.routing[document].contains(id));
}

void RelationLists::compareLists(int some) {
  becomeAnybody();
  what_ = "the lists, for " + actor().id;
  for (int i = 0; i < some && !HasFailure(); ++i) {
    compareDocument(anyDocument());
    compareManual(anyManual());
    compareUser(anybody());
    compareUser(anyOf(model_.holdings).second.user);
    compareDocument(anyOf(model_.holdings).second.document);
  }
}

}  // namespace kv::test
