#include "cabinet/page_books.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/books/answers.h"
#include "tools/books/drive.h"
#include "tools/books/ledger.h"

using nlohmann::json;

namespace {

constexpr std::size_t LAST_GAMES = 10;

}  // namespace

std::string page_books_text(const std::string& folder) {
  Drive drive;
  const std::string unread = drive_read(folder, drive);
  if (!unread.empty())
    return json{{"unread", unread}}.dump(-1, ' ', false, json::error_handler_t::replace);
  const Ledger ledger = ledger_of(drive);
  Question question;
  const Report report = report_of(drive, question, collection_read(folder + "/collection"));
  question.last = LAST_GAMES;
  json stories = json::array();
  for (const Game& game : games_of(ledger, question))
    stories.insert(stories.begin(), game_story(game));
  json wrong = json(drive.damages);
  for (const Finding& finding : ledger.findings) {
    if (finding.wrong) wrong.push_back(finding.text);
  }
  return json{
      {"span", report.span}, {"sheet", report.table.rows}, {"games", stories}, {"wrong", wrong}}
      .dump(-1, ' ', false, json::error_handler_t::replace);
}
