// What the tool makes of a drive d:, and what it says of a damaged one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "platform/files.h"
#include "tests/temp_folder.h"
#include "tools/books/answers.h"
#include "tools/books/moment.h"

namespace {

// A coin and a frog on the left that wins 14 tickets, of which the paper comes out.
constexpr const char* A_GAME =
    "2026-11-25T10:00:00.000Z 3 start version=1.0.0 last=none machine=m\n"
    "2026-11-25T10:00:00.000Z 3 books side=left coins=5 part=0 credits=0 games=4 tickets=50 owed=0 "
    "service=0\n"
    "2026-11-25T10:00:00.000Z 3 books side=right coins=0 part=0 credits=0 games=0 tickets=0 owed=0 "
    "service=0\n"
    "2026-11-25T10:01:00.000Z 3 coin side=left coins=1 part=0 credits=1\n"
    "2026-11-25T10:01:05.000Z 3 launch side=left game=5 paid=credit credits=0\n"
    "2026-11-25T10:01:06.000Z 3 catch side=left game=5 catch=bug worth=2 purse=2\n"
    "2026-11-25T10:01:07.000Z 3 catch side=left game=5 catch=butterfly worth=12 purse=14\n"
    "2026-11-25T10:01:09.000Z 3 end side=left game=5 award=bug base=2 butterfly=12 purse=14 "
    "capped=0\n"
    "2026-11-25T10:01:09.000Z 3 tickets side=left game=5 by=catch tickets=14 paper=14 told=yes\n"
    "2026-11-25T10:01:09.100Z 3 paper side=left owed=14 queued=0\n"
    "2026-11-25T10:01:12.000Z 3 paper side=left owed=0 queued=0\n";

class BooksTool : public testing::Test {
 protected:
  BooksTool() {
    setenv("TZ", "UTC", 1);
    tzset();
    files_use_roots(folder.path(), folder.path());
    prefs_reset();
    audits_reset();
    books_at(6, 0, 5, 64);
  }

  void books_at(int coins, int credits, int games, int tickets) {
    audits[AUDIT_COIN_DROPS].count = coins;
    audits[AUDIT_CURRENT_CREDITS].count = credits;
    audits[AUDIT_GAMES_PLAYED].count = games;
    audits[AUDIT_TICKETS].count = tickets;
    prefs_save();
    audits_save();
  }
  // What the check finds wrong, and what it explains.
  std::vector<std::string> found(const std::string& journal, bool wrong) {
    folder.write("journal", journal);
    Drive drive;
    EXPECT_EQ(drive_read(folder.path(), drive), "");
    std::vector<std::string> texts;
    for (const Finding& finding : ledger_of(drive).findings) {
      if (finding.wrong == wrong) texts.push_back(finding.text);
    }
    return texts;
  }
  Ledger ledger(const std::string& journal) {
    folder.write("journal", journal);
    Drive drive;
    EXPECT_EQ(drive_read(folder.path(), drive), "");
    return ledger_of(drive);
  }
  static std::string restart(const char* last, int credits, int games) {
    const std::string head = "2026-11-25T11:00:00.000Z 4 ";
    return head + "start version=1.0.0 last=" + last + " machine=n\n" + head +
           "books side=left coins=6 part=0 credits=" + std::to_string(credits) +
           " games=" + std::to_string(games) + " tickets=64 owed=0 service=0\n" + head +
           "books side=right coins=0 part=0 credits=0 games=0 tickets=0 owed=0 service=0\n";
  }

  TempFolder folder;
};

using Texts = std::vector<std::string>;

TEST_F(BooksTool, GameIsToldAsAStory) {
  const Ledger all = ledger(A_GAME);
  ASSERT_EQ(all.games.size(), 1U);
  EXPECT_EQ(game_story(all.games[0]),
            "2026-11-25, left game 5: paid by coin at 10:01:00, launched at 10:01:05. Caught a bug "
            "(2), a butterfly (12). Won 14 tickets at 10:01:09. The paper was out at 10:01:12.");
  EXPECT_EQ(all.paper[0].out, 14);
  EXPECT_TRUE(all.findings.empty());
  Game game = all.games[0];
  game.catches.insert(game.catches.begin(), 3, game.catches[0]);
  EXPECT_NE(game_story(game).find("Caught 4 times a bug (2), a butterfly (12). "),
            std::string::npos);
  Question right;
  right.side = SIDE_RIGHT;
  EXPECT_TRUE(games_of(all, right).empty());
  EXPECT_EQ(table_csv(games_table(all.games)).substr(0, 33), "side,game,boot,paid_by,paid,launc");
}

TEST_F(BooksTool, CancelledPaperHasNotComeOut) {
  const std::string all(A_GAME);
  const Ledger cleared =
      ledger(all.substr(0, all.find("2026-11-25T10:01:12")) +
             "2026-11-25T10:01:10.000Z 3 paper side=left owed=10 queued=0\n"
             "2026-11-25T10:01:11.000Z 3 tickets-cleared side=left owed=10 queued=0\n"
             "2026-11-25T10:01:11.100Z 3 paper side=left owed=0 queued=0\n");
  EXPECT_EQ(cleared.paper[SIDE_LEFT].out, 4);
  EXPECT_EQ(cleared.paper[SIDE_LEFT].told, 4);
  EXPECT_EQ(cleared.paper[SIDE_LEFT].owed, 0);
  EXPECT_TRUE(game_story(cleared.games[0]).ends_with("The rest of the paper was cancelled."))
      << game_story(cleared.games[0]);
  EXPECT_TRUE(cleared.findings.empty());
}

TEST_F(BooksTool, MissingCoinInBooksIsWrongIfItCouldBeStored) {
  books_at(5, 0, 5, 64);
  EXPECT_EQ(found(A_GAME, true), Texts({"left: coins: the books have 5, by the journal it is 6"}));
}

TEST_F(BooksTool, LaunchThatIsNotStoredYetIsExplained) {
  books_at(6, 1, 4, 50);
  const std::string text(A_GAME);
  const std::string running = text.substr(0, text.find("2026-11-25T10:01:06"));
  EXPECT_EQ(found(running, true), Texts());
  EXPECT_EQ(found(running, false),
            Texts({"the books don't have \"2026-11-25T10:01:05.000Z 3 launch side=left game=5 "
                   "paid=credit credits=0\": the run goes on"}));
}

TEST_F(BooksTool, KillExplainsLostFrogAndReturnedCredit) {
  const std::string flight =
      std::string(A_GAME) +
      "2026-11-25T10:02:00.000Z 3 coin side=left coins=1 part=0 credits=1\n"
      "2026-11-25T10:02:01.000Z 3 launch side=left game=6 paid=credit credits=0\n";
  std::string again = restart("killed", 1, 5);
  again.replace(again.find("coins=6"), 7, "coins=7");
  books_at(7, 1, 5, 64);
  EXPECT_EQ(found(flight + again, true), Texts());
  const Texts explained = found(flight + again, false);
  ASSERT_EQ(explained.size(), 2U);
  EXPECT_EQ(explained[0],
            "left: game 6 was in flight when the game was killed after 2026-11-25 "
            "10:02:01; it ended unpaid");
  EXPECT_EQ(ledger(flight + again).games.back().state, GAME_CUT_OFF);
}

TEST_F(BooksTool, WinThatAKillKeptFromTheBooksIsWrongOnlyIfItCouldBeStored) {
  std::string again = restart("killed", 0, 5);
  again.replace(again.find("tickets=64"), 10, "tickets=50");
  books_at(6, 0, 5, 50);
  const std::string win =
      "the books at the start don't have \"2026-11-25T10:01:09.000Z 3 tickets "
      "side=left game=5 by=catch tickets=14 paper=14 told=yes\"";
  const std::string text(A_GAME);
  const std::string at_once = text.substr(0, text.find("2026-11-25T10:01:12")) + again;
  EXPECT_EQ(found(at_once, true), Texts()) << "the next start is an hour later";
  EXPECT_EQ(found(at_once, false).front(), win + ": the game was killed after 2026-11-25 10:01:09");
  EXPECT_EQ(found(A_GAME + again, true), Texts({win + ", though there was time to store it"}));
}

TEST_F(BooksTool, BooksThatWentBackAreWrong) {
  const std::string next = restart("power", 0, 4);
  books_at(6, 0, 4, 64);
  EXPECT_EQ(found(A_GAME + next, true),
            Texts({"left: frogs: the books at the start have 4, by the journal it is 5"}));
}

TEST_F(BooksTool, TicketsPaidTwiceAreNamed) {
  const std::string text(A_GAME);
  const std::string cut = text.substr(0, text.rfind("2026-11-25T10:01:12")) +
                          "2026-11-25T10:01:10.000Z 3 paper side=left owed=4 queued=0\n";
  const std::string again =
      restart("power", 0, 5) +
      "2026-11-25T11:00:01.000Z 4 restored side=left owed=14 queued=0 told=yes\n"
      "2026-11-25T11:00:02.000Z 4 paper side=left owed=0 queued=0\n";
  EXPECT_EQ(
      found(cut + again, false),
      Texts({"left: 14 tickets ordered anew, 10 of which had come out already: the power went "
             "after 2026-11-25 10:01:10"}));
  std::string orderly = cut + again;
  orderly.replace(orderly.find("last=power"), 10, "last=orderly");
  EXPECT_EQ(
      found(orderly, false),
      Texts({"left: 14 tickets ordered anew, 10 of which had come out already: the game ended "
             "after 2026-11-25 10:01:10"}));
  std::string stayed_up = cut + again;
  stayed_up.replace(stayed_up.find("owed=14 queued=0 told=yes"), 25, "owed=14 queued=3 told=no");
  EXPECT_EQ(found(stayed_up, false).front(),
            "left: 3 tickets ordered again, for which the board had not answered: the power went "
            "after 2026-11-25 10:01:10");
  EXPECT_EQ(ledger(cut + again).paper[0].out, 24);
  EXPECT_EQ(ledger(cut + again).games[0].paper_ms, 1795604402000) << "with the last of them";
}

TEST_F(BooksTool, DamagedFilesAreNamedAndTheRestIsRead) {
  folder.write("audits", "810Ashort");
  std::string text(A_GAME);
  text.replace(text.find("worth=2"), 7, "worth=x");
  folder.write("journal", text + "2026-11-25T10:03:00.000Z 3 coin side=left coi");
  Drive drive;
  EXPECT_EQ(drive_read(folder.path(), drive), "");
  EXPECT_EQ(drive.damages,
            Texts({"audits: has 9 bytes instead of " + std::to_string(4 + sizeof audits) +
                       "; audbak is read instead",
                   "journal: 1 line can't be read, the first is line 6"}));
  EXPECT_TRUE(drive.has_audits);
  EXPECT_EQ(drive.journal.lines.size(), 10U) << "without the damaged line and the torn one";
  EXPECT_NE(drive_read(folder.path() + "/none", drive), "");
}

TEST_F(BooksTool, ReportCountsFromTheLastCollection) {
  folder.write("journal", A_GAME);
  Drive drive;
  drive_read(folder.path(), drive);
  Question question;
  const std::string path = folder.file("collection");
  const auto tickets = [&] {
    for (const auto& row : report_of(drive, question, collection_read(path)).table.rows) {
      if (row[0] == "Tickets") return row[1];
    }
    return std::string();
  };
  EXPECT_EQ(tickets(), "64");
  question.has_since = true;
  ASSERT_TRUE(moment_from_words("2026-11-25 10:01", question.since_ms));
  EXPECT_EQ(tickets(), "14") << "from the journal";
  question.has_since = false;
  EXPECT_EQ(collection_write(path, drive, question.since_ms), "");
  EXPECT_EQ(tickets(), "0");
}

TEST(BooksTable, IsCsvAndJson) {
  const Table table{"t", {"a", "b"}, {{"1.5", "x,\"y\""}, {"007", ""}}};
  EXPECT_EQ(table_csv(table), "a,b\n1.5,\"x,\"\"y\"\"\"\n007,\n");
  EXPECT_EQ(table_json(table, {"d"}),
            "{\n  \"t\": [\n    {\"a\": 1.5, \"b\": \"x,\\\"y\\\"\"},\n    {\"a\": \"007\", \"b\": "
            "null}],\n  \"damaged\": [\"d\"]\n}\n");
}

}  // namespace
