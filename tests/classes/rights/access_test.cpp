// SPDX-License-Identifier: Apache-2.0
// What is granted and switched on: the tests and setters of the root object.
#include <gtest/gtest.h>

#include <string>

#include "classes/rights/rights.h"
#include "support/other_user.h"
#include "support/session_test.h"

namespace kv {
namespace {

constexpr std::int16_t kPlaces = 255;

// A text of zeros with a one at a place, counted from 1.
std::string onlyOn(std::int16_t place, std::size_t length = kPlaces) {
  std::string text(length, '0');
  text.at(static_cast<std::size_t>(place) - 1) = '1';
  return text;
}

class Access : public test::SessionTest {
 protected:
  Access() { logIn("Bert"); }

  void ownerRights(const std::string& text) { config("OwnerRights", text); }
  void programOptions(const std::string& text) { config("ProgramOptions", text); }
  void userOptions(const std::string& text) {
    reg_.execute("Update VeskProfiles Set UserOptions = '" + text + "' Where UserID = 'User2'");
  }
  [[nodiscard]] std::string stored(const std::string& column) const {
    return reg_.value("Select " + column + " From VeskConfig");
  }
  [[nodiscard]] std::string storedOptions(const std::string& user = "User2") const {
    return reg_.value("Select UserOptions From VeskProfiles Where UserID = '" + user + "'");
  }

 private:
  void config(const std::string& column, const std::string& text) {
    reg_.execute("Update VeskConfig Set " + column + " = '" + text + "'");
  }
};

// ---- user rights ----

TEST_F(Access, AUserHoldsTheRightsThatHisProfileGrants) {
  for (std::int16_t granted = 1; granted <= kPlaces; ++granted) {
    vesk_->DataServer()->Profile()->Rights(onlyOn(granted));
    for (std::int16_t n = 1; n <= kPlaces; ++n) {
      if (vesk_->UserAccess(n) != (n == granted) || vesk_->UserAccess(0, n) != (n == granted))
        ADD_FAILURE() << n << " with " << granted << " granted";
    }
  }
}

TEST_F(Access, OnlyAOneGrantsARight) {
  vesk_->DataServer()->Profile()->Rights("1x2 T10");
  std::string held;
  for (std::int16_t n = 1; n <= 8; ++n) held += vesk_->UserAccess(n) ? '1' : '0';
  EXPECT_EQ(held, "10000100");
}

TEST_F(Access, ANumberInTheSecondArgumentWins) {
  vesk_->DataServer()->Profile()->Rights(onlyOn(urCreateNewManual));
  EXPECT_TRUE(vesk_->UserAccess(urCreateNewManual));
  EXPECT_TRUE(vesk_->UserAccess(urCreateNewManual, 0));
  EXPECT_TRUE(vesk_->UserAccess(urViewDocumentList, urCreateNewManual));
  EXPECT_FALSE(vesk_->UserAccess(urCreateNewManual, urViewDocumentList));
}

TEST_F(Access, AGrantOfOneOfTheTwoFiftyTwosGrantsTheOther) {
  vesk_->DataServer()->Profile()->Rights(onlyOn(urEditManualUser1));
  EXPECT_TRUE(vesk_->UserAccess(urChangeUsersWorkGroup));
  EXPECT_TRUE(vesk_->UserAccess(urEditManualUser1));
  vesk_->DataServer()->Profile()->Rights(onlyOn(urEditManualUser2));
  EXPECT_FALSE(vesk_->UserAccess(urChangeUsersWorkGroup));
}

TEST_F(Access, ARightBeyondTheTextIsNotHeld) {
  vesk_->DataServer()->Profile()->Rights("111");
  EXPECT_TRUE(vesk_->UserAccess(3));
  EXPECT_FALSE(vesk_->UserAccess(4));
  EXPECT_FALSE(vesk_->UserAccess(256));
  EXPECT_FALSE(vesk_->UserAccess(0, 32767));
}

TEST_F(Access, ARightMustBeNamed) {
  for (const char* name : {"Bert", "Anna"}) {
    logIn(name);
    EXPECT_RAISES(kInvalidCall, (void)vesk_->UserAccess());
    EXPECT_RAISES(kInvalidCall, (void)vesk_->UserAccess(0, 0));
    EXPECT_RAISES(kInvalidCall, (void)vesk_->UserAccess(-1));
    EXPECT_RAISES(kInvalidCall, (void)vesk_->UserAccess(1, -1));
  }
}

TEST_F(Access, AnAdministratorHoldsEveryRight) {
  logIn("Anna");
  for (std::int16_t n = 1; n <= 300; ++n) EXPECT_TRUE(vesk_->UserAccess(n)) << n;
}

TEST_F(Access, AUserWithoutAProfileRowHoldsNone) {
  reg_.execute("Delete * From VeskProfiles Where UserID = 'User2'");
  logIn("Bert");
  for (std::int16_t n = 1; n <= 300; ++n) EXPECT_FALSE(vesk_->UserAccess(n)) << n;
}

TEST_F(Access, BeforeALogInNobodyHoldsARight) {
  const test::TestSession vesk;
  EXPECT_FALSE(vesk->UserAccess(urViewDocumentList));
  vesk->OpenConnection(reg_.path());
  EXPECT_FALSE(vesk->UserAccess(urViewDocumentList));
}

// ---- owner rights ----

TEST_F(Access, OwnersHoldWhatIsConfigured) {
  for (std::int16_t granted = 1; granted <= 21; ++granted) {
    ownerRights(onlyOn(granted, 21));
    for (std::int16_t n = 1; n <= 21; ++n) {
      EXPECT_EQ(vesk_->OwnerAccess(n), n == granted) << n << " of " << granted;
      EXPECT_EQ(vesk_->OwnerAccess(0, n), n == granted) << n << " of " << granted;
      EXPECT_EQ(vesk_->OwnerAccess(n, kWithoutOverride), n == granted) << n << " of " << granted;
    }
  }
}

TEST_F(Access, AnOwnerRightInTheSecondArgumentWins) {
  ownerRights(onlyOn(orReleaseToUsers, 21));
  EXPECT_TRUE(vesk_->OwnerAccess(orReleaseToUsers));
  EXPECT_TRUE(vesk_->OwnerAccess(orEditDocumentTitle, orReleaseToUsers));
  EXPECT_FALSE(vesk_->OwnerAccess(orReleaseToUsers, orEditDocumentTitle));
  EXPECT_FALSE(vesk_->OwnerAccess(orReleaseToUsers, 1999)) << "a number like any other";
  EXPECT_FALSE(vesk_->OwnerAccess(orReleaseToUsers, 2001)) << "a number like any other";
}

TEST_F(Access, TheOverrideGrantsWhateverIsConfigured) {
  logIn("Anna");
  for (const char* rights : {"", "0", "000000000000000000000"}) {
    ownerRights(rights);
    EXPECT_TRUE(vesk_->OwnerAccess(orReleaseToUsers)) << rights;
    EXPECT_TRUE(vesk_->OwnerAccess(0, orReleaseToUsers)) << rights;
    EXPECT_TRUE(vesk_->OwnerAccess(32767)) << rights;
    EXPECT_TRUE(vesk_->OwnerAccess()) << "no place is asked for";
  }
}

TEST_F(Access, TwoThousandAsksOnlyForWhatIsConfigured) {
  logIn("Anna");
  ownerRights("000000000000000000000");
  EXPECT_FALSE(vesk_->OwnerAccess(orReleaseToUsers, 2000));
  ownerRights(onlyOn(orReleaseToUsers, 21));
  EXPECT_TRUE(vesk_->OwnerAccess(orReleaseToUsers, 2000));
  EXPECT_FALSE(vesk_->OwnerAccess(orCollectFromUsers, 2000));
  EXPECT_RAISES(kInvalidCall, (void)vesk_->OwnerAccess(0, 2000));
}

TEST_F(Access, OwnerRightsBeyondTheTextAreOff) {
  ownerRights("111");
  EXPECT_TRUE(vesk_->OwnerAccess(3));
  EXPECT_FALSE(vesk_->OwnerAccess(4));
  EXPECT_FALSE(vesk_->OwnerAccess(32767));
  EXPECT_FALSE(vesk_->OwnerAccess(0, 4));
  reg_.execute("Update VeskConfig Set OwnerRights = Null");
  EXPECT_FALSE(vesk_->OwnerAccess(1));
  EXPECT_RAISES(kInvalidCall, (void)vesk_->OwnerAccess());
  EXPECT_RAISES(kInvalidCall, (void)vesk_->OwnerAccess(-1));
}

TEST_F(Access, TheConfigurationIsFoundInLowerCaseToo) {
  ownerRights("01");
  const auto config = vesk_->DataServer()->Config();
  EXPECT_EQ(config->Value("ownerrights"), Variant("01"));
  EXPECT_EQ(config->Value("OwnerRights"), Variant("01"));
  EXPECT_TRUE(vesk_->OwnerAccess(0, 2));
}

TEST_F(Access, OnlyAOneSwitchesOn) {
  ownerRights("x1T");
  programOptions("21 1");
  userOptions("-11");
  EXPECT_FALSE(vesk_->OwnerAccess(1));
  EXPECT_TRUE(vesk_->OwnerAccess(2));
  EXPECT_FALSE(vesk_->OwnerAccess(3));
  EXPECT_FALSE(vesk_->AppOption(1));
  EXPECT_TRUE(vesk_->AppOption(2));
  EXPECT_FALSE(vesk_->AppOption(3));
  EXPECT_TRUE(vesk_->AppOption(4));
  EXPECT_FALSE(vesk_->UserOption(1));
  EXPECT_TRUE(vesk_->UserOption(2));
}

TEST_F(Access, PlacesCountCharactersAndNotBytes) {
  ownerRights(
      "\xC3\xA4\xE2\x82\xAC"
      "10");
  EXPECT_TRUE(vesk_->OwnerAccess(3));
  EXPECT_FALSE(vesk_->OwnerAccess(2));
  vesk_->SetOwnerAccess(2, true);
  EXPECT_EQ(stored("OwnerRights"),
            "\xC3\xA4"
            "110");
}

// ---- options ----

TEST_F(Access, OptionsOfUsersAreTheirOwn) {
  for (std::int16_t on = 1; on <= 7; ++on) {
    userOptions(onlyOn(on, 7));
    for (std::int16_t n = 1; n <= 7; ++n) {
      EXPECT_EQ(vesk_->UserOption(n), n == on) << n << " of " << on;
      EXPECT_EQ(vesk_->UserOption(0, n), n == on) << n << " of " << on;
    }
  }
  logIn("Anna");
  EXPECT_FALSE(vesk_->UserOption(7)) << "nobody else's, and no option comes with being in charge";
}

TEST_F(Access, OptionsOfTheRegister) {
  for (std::int16_t on = 1; on <= 11; ++on) {
    programOptions(onlyOn(on, 11));
    for (std::int16_t n = 1; n <= 11; ++n) {
      EXPECT_EQ(vesk_->AppOption(n), n == on) << n << " of " << on;
      EXPECT_EQ(vesk_->AppOption(0, n), n == on) << n << " of " << on;
    }
  }
}

TEST_F(Access, AnOptionInTheSecondArgumentWins) {
  userOptions("0100000");
  programOptions("01000000000");
  EXPECT_TRUE(vesk_->UserOption(uoVerifyDelete, uoUseNewManualWizard));
  EXPECT_FALSE(vesk_->UserOption(uoUseNewManualWizard, uoVerifyDelete));
  EXPECT_TRUE(vesk_->UserOption(uoUseNewManualWizard, 0));
  EXPECT_TRUE(vesk_->AppOption(aoSendActions, aoShowBoth));
  EXPECT_FALSE(vesk_->AppOption(aoShowBoth, aoSendActions));
  EXPECT_TRUE(vesk_->AppOption(aoShowBoth, 0));
}

TEST_F(Access, OptionsBeyondTheTextAreOff) {
  userOptions("1111");
  EXPECT_TRUE(vesk_->UserOption(uoUseNewRevisionWizard));
  EXPECT_FALSE(vesk_->UserOption(uoVerifyDelete));
  programOptions("1");
  EXPECT_TRUE(vesk_->AppOption(aoShowVirtual));
  EXPECT_FALSE(vesk_->AppOption(aoShowBoth));
  EXPECT_FALSE(vesk_->AppOption(0, 32767));
  reg_.execute("Update VeskConfig Set ProgramOptions = Null");
  reg_.execute("Update VeskProfiles Set UserOptions = Null");
  EXPECT_FALSE(vesk_->AppOption(aoShowVirtual));
  EXPECT_FALSE(vesk_->UserOption(uoUseNewDocumentWizard));
}

TEST_F(Access, AnOptionMustBeNamed) {
  userOptions("1111111");
  EXPECT_RAISES(kInvalidCall, (void)vesk_->UserOption());
  EXPECT_RAISES(kInvalidCall, (void)vesk_->UserOption(-3));
  EXPECT_RAISES(kInvalidCall, (void)vesk_->AppOption());
  EXPECT_RAISES(kInvalidCall, (void)vesk_->AppOption(1, -1));
}

// ---- setters ----

TEST_F(Access, SettersChangeOnePlaceAndNothingElse) {
  ownerRights("010101010101010101010");
  userOptions("0101010");
  programOptions("01010101010");
  for (std::int16_t n = 1; n <= 21; ++n) {
    const bool before = vesk_->OwnerAccess(n);
    std::string expected = stored("OwnerRights");
    expected.at(static_cast<std::size_t>(n) - 1) = before ? '0' : '1';
    vesk_->SetOwnerAccess(n, !before);
    EXPECT_EQ(stored("OwnerRights"), expected);
    vesk_->SetOwnerAccess(n, !before);
    EXPECT_EQ(stored("OwnerRights"), expected) << "once more changes nothing";
    EXPECT_EQ(vesk_->OwnerAccess(n), !before);
  }
  for (std::int16_t n = 1; n <= 7; ++n) {
    std::string expected = storedOptions();
    expected.at(static_cast<std::size_t>(n) - 1) = '1';
    vesk_->SetUserOption(n, true);
    EXPECT_EQ(storedOptions(), expected);
    EXPECT_TRUE(vesk_->UserOption(n));
  }
  EXPECT_EQ(storedOptions("User1"), "0000000") << "another user's stay";
  for (std::int16_t n = 1; n <= 11; ++n) {
    std::string expected = stored("ProgramOptions");
    expected.at(static_cast<std::size_t>(n) - 1) = '0';
    vesk_->SetAppOption(n, false);
    EXPECT_EQ(stored("ProgramOptions"), expected);
    EXPECT_FALSE(vesk_->AppOption(n));
  }
}

TEST_F(Access, SettersKeepWhatIsNeitherOneNorZero) {
  ownerRights("x0y");
  vesk_->SetOwnerAccess(2, true);
  EXPECT_EQ(stored("OwnerRights"), "x1y");
  programOptions("abcdefghijklm");
  vesk_->SetAppOption(13, true);
  EXPECT_EQ(stored("ProgramOptions"), "abcdefghijkl1") << "a longer text is no matter";
}

TEST_F(Access, ASetterNeverMakesATextLonger) {
  ownerRights("000");
  EXPECT_RAISES(kInvalidCall, vesk_->SetOwnerAccess(4, true));
  EXPECT_RAISES(kInvalidCall, vesk_->SetOwnerAccess(4, false));
  EXPECT_RAISES(kInvalidCall, vesk_->SetOwnerAccess(32767, true));
  EXPECT_EQ(stored("OwnerRights"), "000");
  userOptions("0000");
  EXPECT_RAISES(kInvalidCall, vesk_->SetUserOption(5, true));
  EXPECT_EQ(storedOptions(), "0000");
  reg_.execute("Update VeskConfig Set OwnerRights = Null");
  EXPECT_RAISES(kInvalidCall, vesk_->SetOwnerAccess(1, true));
  EXPECT_EQ(stored("OwnerRights"), "~");
}

TEST_F(Access, ASetterNeedsAPlace) {
  ownerRights("000");
  programOptions("000");
  for (const auto none : std::initializer_list<std::int16_t>{0, -1, -32768}) {
    EXPECT_RAISES(kInvalidCall, vesk_->SetOwnerAccess(none, true));
    EXPECT_RAISES(kInvalidCall, vesk_->SetUserOption(none, true));
    EXPECT_RAISES(kInvalidCall, vesk_->SetAppOption(none, true));
  }
  EXPECT_EQ(stored("OwnerRights"), "000");
  EXPECT_EQ(stored("ProgramOptions"), "000") << "not even filled up";
  EXPECT_EQ(storedOptions(), "0000000");
}

TEST_F(Access, ApplicationOptionsAreFilledUpToEleven) {
  struct Case {
    const char* before;
    std::int16_t option;
    bool on;
    const char* after;
  };
  for (const Case& c :
       {Case{"", 3, true, "00100000000"}, Case{"", 11, true, "00000000001"},
        Case{"", 1, false, "00000000000"}, Case{"1111", 10, true, "11110000010"},
        Case{"1111", 2, false, "10110000000"}, Case{"11111111111", 11, false, "11111111110"}}) {
    programOptions(c.before);
    vesk_->SetAppOption(c.option, c.on);
    EXPECT_EQ(stored("ProgramOptions"), c.after);
  }
  reg_.execute("Update VeskConfig Set ProgramOptions = Null");
  vesk_->SetAppOption(aoAllowNewKeywords, true);
  EXPECT_EQ(stored("ProgramOptions"), "00100000000");
}

TEST_F(Access, BeyondElevenAnApplicationOptionMustBeThere) {
  programOptions("1");
  EXPECT_RAISES(kInvalidCall, vesk_->SetAppOption(12, true));
  EXPECT_EQ(stored("ProgramOptions"), "1") << "and nothing is filled up then";
}

TEST_F(Access, AUserWithoutAProfileRowHasNoOptions) {
  reg_.execute("Delete * From VeskProfiles Where UserID = 'User2'");
  logIn("Bert");
  const auto before = everything();
  EXPECT_FALSE(vesk_->UserOption(uoUseNewDocumentWizard));
  EXPECT_RAISES(kInvalidCall, vesk_->SetUserOption(uoUseNewDocumentWizard, true));
  EXPECT_EQ(everything(), before);
}

TEST_F(Access, WhatIsSetShowsInOtherSessionsAtOnce) {
  const test::TestSession other;
  other->Login("Bert", "secret", reg_.path());
  EXPECT_FALSE(other->OwnerAccess(orAddToManuals));
  EXPECT_FALSE(other->UserOption(uoVerifyDelete));
  EXPECT_FALSE(other->AppOption(aoSendActions));
  vesk_->SetOwnerAccess(orAddToManuals, true);
  vesk_->SetUserOption(uoVerifyDelete, true);
  vesk_->SetAppOption(aoSendActions, true);
  EXPECT_TRUE(other->OwnerAccess(orAddToManuals));
  EXPECT_TRUE(other->UserOption(uoVerifyDelete));
  EXPECT_TRUE(other->AppOption(aoSendActions));
}

TEST_F(Access, SettersInAClientsTransactionGoWithIt) {
  const auto before = everything();
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  vesk_->SetOwnerAccess(1, true);
  vesk_->SetUserOption(1, true);
  vesk_->SetAppOption(1, true);
  EXPECT_TRUE(vesk_->OwnerAccess(1) && vesk_->UserOption(1) && vesk_->AppOption(1));
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
  EXPECT_FALSE(vesk_->OwnerAccess(1) || vesk_->UserOption(1) || vesk_->AppOption(1));
}

TEST_F(Access, TwoProcessesSettingDifferentPlacesLoseNothing) {
  ownerRights(std::string(kPlaces, '0'));
  const auto answers = test::inProcesses(2, [&](int p) {
    const auto vesk = clsVesk::create(test::kCheapPasswords);
    vesk->Login("Bert", "secret", reg_.path());
    for (auto n = static_cast<std::int16_t>(p + 1); n <= kPlaces; n += 2)
      vesk->SetOwnerAccess(n, true);
    vesk->CloseSession();
    return std::string("done");
  });
  EXPECT_EQ(answers, (std::vector<std::string>{"done", "done"}));
  EXPECT_EQ(stored("OwnerRights"), std::string(kPlaces, '1'));
}

// ---- without what they need ----

TEST_F(Access, ErrorsOfConfigurationAndProfilePassThrough) {
  vesk_->DataServer()->Close();
  EXPECT_RAISES(kObjectNotSet, (void)vesk_->OwnerAccess(1));
  EXPECT_RAISES(kObjectNotSet, (void)vesk_->AppOption(1));
  EXPECT_RAISES(kObjectNotSet, vesk_->SetOwnerAccess(1, true));
  EXPECT_RAISES(kObjectNotSet, vesk_->SetAppOption(1, true));
  EXPECT_RAISES(kNoConnection, (void)vesk_->UserOption(1));
}

TEST_F(Access, ASpentSessionHasNothingToAsk) {
  vesk_->CloseSession();
  EXPECT_RAISES(kObjectNotSet, (void)vesk_->UserAccess(1));
  EXPECT_RAISES(kObjectNotSet, (void)vesk_->OwnerAccess(1));
  EXPECT_RAISES(kObjectNotSet, (void)vesk_->OwnerAccess(1, 2000));
  EXPECT_RAISES(kObjectNotSet, (void)vesk_->UserOption(1));
  EXPECT_RAISES(kObjectNotSet, (void)vesk_->AppOption(1));
  EXPECT_RAISES(kObjectNotSet, vesk_->SetOwnerAccess(1, true));
  EXPECT_RAISES(kObjectNotSet, vesk_->SetUserOption(1, true));
  EXPECT_RAISES(kObjectNotSet, vesk_->SetAppOption(1, true));
  EXPECT_EQ(vesk_->urDescription(1), "View the document list") << "texts need no session";
}

class FaultyAccess : public test::FaultySessionTest {};

TEST_F(FaultyAccess, ASetterThatCannotWriteStoresNothing) {
  const auto before = everything();
  for (const bool atCommit : {false, true}) {
    const auto fails = [&](const std::function<void()>& setter) {
      (atCommit ? faults_->failCommitAfter : faults_->failWriteAfter) = 0;
      EXPECT_RAISES(kEngineFailure, setter());
      EXPECT_EQ(everything(), before);
    };
    fails([&] { vesk_->SetOwnerAccess(1, true); });
    fails([&] { vesk_->SetUserOption(1, true); });
    fails([&] { vesk_->SetAppOption(1, true); });
  }
  vesk_->SetOwnerAccess(1, true);
  EXPECT_NE(everything(), before) << "the connection goes on";
}

}  // namespace
}  // namespace kv
