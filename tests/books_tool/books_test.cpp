// What the tool makes of a drive d:, and what it says of a damaged one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <tuple>
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

using Texts = std::vector<std::string>;

struct Books {
  int coins, credits, games, tickets;  // of the left side
};

// The journal up to the line of this time.
std::string until(const std::string& journal, const char* time) {
  return journal.substr(0, journal.find(std::string("2026-11-25T") + time));
}
std::string replaced(std::string text, const std::string& part, const char* by) {
  return text.replace(text.find(part), part.size(), by);
}

class BooksTool : public testing::Test {
 protected:
  BooksTool() {
    setenv("TZ", "UTC", 1);
    tzset();
    files_use_roots(folder.path(), folder.path());
    prefs_reset();
    audits_reset();
    store({6, 0, 5, 64});
  }

  static void store(const Books& books) {
    audits[AUDIT_COIN_DROPS].count = books.coins;
    audits[AUDIT_CURRENT_CREDITS].count = books.credits;
    audits[AUDIT_GAMES_PLAYED].count = books.games;
    audits[AUDIT_TICKETS].count = books.tickets;
    prefs_save();
    audits_save();
  }
  Ledger ledger(const std::string& journal) {
    folder.write("journal", journal);
    Drive drive;
    EXPECT_EQ(drive_read(folder.path(), drive), "");
    return ledger_of(drive);
  }
  // What the check finds beside these books; "!" is wrong, all else is explained.
  Texts found(const Books& books, const std::string& journal) {
    store(books);
    Texts texts;
    for (const Finding& f : ledger(journal).findings)
      texts.push_back((f.wrong ? "!" : "") + f.text);
    return texts;
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

TEST_F(BooksTool, GameIsToldAsAStory) {
  const Ledger all = ledger(A_GAME);
  ASSERT_EQ(all.games.size(), 1U);
  EXPECT_EQ(game_story(all.games[0]),
            "2026-11-25, left game 5: paid by coin at 10:01:00, launched at 10:01:05. Caught a bug "
            "(2), a butterfly (12). Won 14 tickets at 10:01:09. The paper was out at 10:01:12.");
  EXPECT_EQ(all.paper[0].out, 14);
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
  const Ledger cleared =
      ledger(until(A_GAME, "10:01:12") +
             "2026-11-25T10:01:10.000Z 3 paper side=left owed=10 queued=0\n"
             "2026-11-25T10:01:11.000Z 3 tickets-cleared side=left owed=10 queued=0\n"
             "2026-11-25T10:01:11.100Z 3 paper side=left owed=0 queued=0\n");
  const PaperCounts& paper = cleared.paper[SIDE_LEFT];
  EXPECT_EQ(std::tuple(paper.out, paper.told, paper.owed), std::tuple(4, 4, 0));
  EXPECT_TRUE(game_story(cleared.games[0]).ends_with("The rest of the paper was cancelled."))
      << game_story(cleared.games[0]);
  EXPECT_TRUE(cleared.findings.empty());
}

TEST_F(BooksTool, CheckTellsWhatIsWrongFromWhatIsExplained) {
  const std::string launch =
      "2026-11-25T10:02:01.000Z 3 launch side=left game=6 paid=credit credits=0";
  const std::string flight =
      A_GAME + std::string("2026-11-25T10:02:00.000Z 3 coin side=left coins=1 part=0 credits=1\n") +
      launch + "\n" + replaced(restart("killed", 1, 5), "coins=6", "coins=7");
  const std::string win =
      "the books at the start don't have \"2026-11-25T10:01:09.000Z 3 tickets side=left game=5 "
      "by=catch tickets=14 paper=14 told=yes\"";
  const std::string without_win = replaced(restart("killed", 0, 5), "tickets=64", "tickets=50");
  const std::string killed = " the game was killed after 2026-11-25 ";
  EXPECT_EQ(found({6, 0, 5, 64}, A_GAME), Texts());
  EXPECT_EQ(found({5, 0, 5, 64}, A_GAME),
            Texts({"!left: coins: the books have 5, by the journal it is 6"}));
  EXPECT_EQ(found({6, 1, 4, 50}, until(A_GAME, "10:01:06")),
            Texts({"the books don't have \"2026-11-25T10:01:05.000Z 3 launch side=left game=5 "
                   "paid=credit credits=0\": the run goes on"}));
  EXPECT_EQ(found({7, 1, 5, 64}, flight),
            Texts({"left: game 6 was in flight when" + killed + "10:02:01; it ended unpaid",
                   "the books at the start don't have \"" + launch + "\":" + killed + "10:02:01"}));
  EXPECT_EQ(found({6, 0, 5, 50}, until(A_GAME, "10:01:12") + without_win),
            Texts({win + ":" + killed + "10:01:09"}))
      << "the next start is an hour later";
  EXPECT_EQ(found({6, 0, 5, 50}, A_GAME + without_win),
            Texts({"!" + win + ", though there was time to store it"}));
  EXPECT_EQ(found({6, 0, 4, 64}, A_GAME + restart("power", 0, 4)),
            Texts({"!left: frogs: the books at the start have 4, by the journal it is 5"}));
  EXPECT_EQ(ledger(flight).games.back().state, GAME_CUT_OFF);
}

TEST_F(BooksTool, TicketsPaidTwiceAreNamed) {
  const std::string twice =
      until(A_GAME, "10:01:12") + "2026-11-25T10:01:10.000Z 3 paper side=left owed=4 queued=0\n" +
      restart("power", 0, 5) +
      "2026-11-25T11:00:01.000Z 4 restored side=left owed=14 queued=0 told=yes\n"
      "2026-11-25T11:00:02.000Z 4 paper side=left owed=0 queued=0\n";
  const std::string anew = "left: 14 tickets ordered anew, 10 of which had come out already: the ";
  const std::string power = "power went after 2026-11-25 10:01:10";
  EXPECT_EQ(found({6, 0, 5, 64}, twice), Texts({anew + power}));
  EXPECT_EQ(found({6, 0, 5, 64}, replaced(twice, "last=power", "last=orderly")),
            Texts({anew + "game ended after 2026-11-25 10:01:10"}));
  const char* const stayed_up = "owed=14 queued=3 told=no";
  EXPECT_EQ(
      found({6, 0, 5, 64}, replaced(twice, "owed=14 queued=0 told=yes", stayed_up)),
      Texts(
          {"left: 3 tickets ordered again, for which the board had not answered: the " + power,
           "left: 4 tickets were owed when the " + power + ", 0 when the board was asked again"}));
  const Ledger all = ledger(twice);
  EXPECT_EQ(all.paper[0].out, 24);
  EXPECT_EQ(all.games[0].paper_ms, 1795604402000) << "with the last of them";
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
