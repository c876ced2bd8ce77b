#include "cabinet/script.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

#include "cabinet/cabinet.h"

namespace {

constexpr std::int64_t WAIT_UNTIL_MS = 10000;

using Names = std::vector<std::string>;

// "within MS" or "for MS", up to the end of the line.
std::string parse_limit(const Words& words, std::size_t at, ScriptLine& line) {
  if (at == words.size()) return {};
  const std::string& word = words[at].text;
  const bool lasts = word == "for" && line.kind == SCRIPT_EXPECT;
  double ms = 0;
  if ((word != "within" && !lasts) || at + 2 != words.size() || !word_number(words[at + 1], ms) ||
      ms < 0) {
    return "\"" + word + "\" can't stand behind a condition; \"within MS\" can" +
           (line.kind == SCRIPT_EXPECT ? ", and \"for MS\"" : "");
  }
  line.ms = static_cast<std::int64_t>(ms);
  if (lasts) line.kind = SCRIPT_EXPECT_FOR;
  return {};
}

std::string parse_condition(const Words& words, std::size_t at, const Names& names,
                            ScriptLine& line) {
  std::string error = condition_parse(words, at, names, line.condition);
  return error.empty() ? parse_limit(words, at, line) : error;
}

std::string parse_wait(const Words& words, const Names& names, ScriptLine& line) {
  if (words.size() > 1 && words[1].text == "until") {
    line.kind = SCRIPT_WAIT_UNTIL;
    line.ms = WAIT_UNTIL_MS;
    return parse_condition(words, 2, names, line);
  }
  line.kind = SCRIPT_WAIT;
  double ms = 0;
  if (words.size() != 2 || !word_number(words[1], ms) || ms < 0) {
    return "it is \"wait MS\" or \"wait until CONDITION [within MS]\"";
  }
  line.ms = static_cast<std::int64_t>(ms);
  return {};
}

std::string parse_let(const Words& words, Names& names, ScriptLine& line) {
  line.kind = SCRIPT_LET;
  if (words.size() < 4 || words[2].text != "=") return "it is \"let NAME = READING\"";
  std::size_t at = 3;
  std::string error = reading_parse(words, at, names, line.reading);
  if (error.empty() && at != words.size()) error = "\"" + words[at].text + "\" is too much";
  line.name = words[1].text;
  names.push_back(line.name);
  return error;
}

std::string parse_line(const Words& words, Names& names, ScriptLine& line) {
  const std::string& first = words[0].text;
  if (first == "wait") return parse_wait(words, names, line);
  if (first == "let") return parse_let(words, names, line);
  if (first == "expect") {
    line.kind = SCRIPT_EXPECT;
    return parse_condition(words, 1, names, line);
  }
  line.kind = SCRIPT_COMMAND;
  return command_parse(words, line.command);
}

std::string place(const Script& script, int number) {
  return script.file + ":" + std::to_string(number) + ": ";
}

enum Progress { PROGRESS_WAIT, PROGRESS_DONE, PROGRESS_FAILED };

Progress check_condition(Script& script, Cabinet& cabinet, const ScriptLine& line,
                         std::int64_t age_ms) {
  const Verdict verdict = condition_check(cabinet, line.condition);
  const bool lasts = line.kind == SCRIPT_EXPECT_FOR;
  if (verdict.holds) {
    if (lasts && age_ms < line.ms) return PROGRESS_WAIT;
    if (line.kind != SCRIPT_WAIT_UNTIL) ++script.expectations;
    return PROGRESS_DONE;
  }
  if (!lasts && age_ms < line.ms) return PROGRESS_WAIT;
  const std::string time = std::to_string(age_ms) + " ms";
  script_fail(script, cabinet,
              "expected " + line.condition.text + "\n  seen: " + verdict.seen +
                  (lasts ? "\n  it lasted " : "\n  after ") + time);
  return PROGRESS_FAILED;
}

Progress do_let(Script& script, Cabinet& cabinet, const ScriptLine& line) {
  const BooksValue value = reading_value(cabinet, line.reading);
  if (!value.found) {
    script_fail(script, cabinet, value.why);
    return PROGRESS_FAILED;
  }
  cabinet.names[line.name] = value.value;
  return PROGRESS_DONE;
}

Progress do_line(Script& script, Cabinet& cabinet, const ScriptLine& line, std::int64_t age_ms,
                 std::int64_t now_ms) {
  switch (line.kind) {
    case SCRIPT_WAIT:
      return age_ms < line.ms ? PROGRESS_WAIT : PROGRESS_DONE;
    case SCRIPT_LET:
      return do_let(script, cabinet, line);
    case SCRIPT_COMMAND: {
      const std::string error = command_do(cabinet, line.command, now_ms);
      std::fputs(std::exchange(cabinet.said, {}).c_str(), stdout);
      if (error.empty()) return PROGRESS_DONE;
      script_fail(script, cabinet, error);
      return PROGRESS_FAILED;
    }
    default:
      return check_condition(script, cabinet, line, age_ms);
  }
}

}  // namespace

std::string script_parse(const std::string& text, const std::string& file, Script& script) {
  script = {};
  script.file = file;
  Names names;
  std::istringstream in(text);
  std::string line_text;
  for (int number = 1; std::getline(in, line_text); ++number) {
    Words words;
    std::string error = words_split(line_text, words);
    if (error.empty() && words.empty()) continue;
    ScriptLine line;
    line.number = number;
    line.text = line_text;
    if (error.empty()) error = parse_line(words, names, line);
    if (!error.empty()) return place(script, number) + error;
    script.lines.push_back(line);
  }
  return {};
}

std::string script_load(const std::string& file, Script& script) {
  std::ifstream in(file);
  std::error_code failed;
  if (!in || std::filesystem::is_directory(file, failed)) return file + " can't be read";
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  return script_parse(text, file, script);
}

ScriptState script_step(Script& script, Cabinet& cabinet, std::int64_t now_ms) {
  if (!script.failure.empty()) return SCRIPT_FAILED;
  while (script.at < script.lines.size()) {
    const ScriptLine& line = script.lines[script.at];
    if (!script.line_begun) {
      if (cabinet.game.killed) return SCRIPT_RUNS;
      script.line_begun = true;
      script.line_began_ms = now_ms;
      if (cabinet.options.verbose) {
        std::printf("%s%s\n", place(script, line.number).c_str(), line.text.c_str());
        std::fflush(stdout);
      }
    }
    switch (do_line(script, cabinet, line, now_ms - script.line_began_ms, now_ms)) {
      case PROGRESS_WAIT:
        return SCRIPT_RUNS;
      case PROGRESS_FAILED:
        return SCRIPT_FAILED;
      case PROGRESS_DONE:
        break;
    }
    ++script.at;
    script.line_begun = false;
  }
  return SCRIPT_PASSED;
}

void script_fail(Script& script, const Cabinet& cabinet, const std::string& why) {
  const int number = script.at < script.lines.size() ? script.lines[script.at].number
                     : script.lines.empty()          ? 0
                                                     : script.lines.back().number;
  const FrameLog& log = cabinet.board.log;
  script.failure = place(script, number) + why + "\nthe last frames from the game:\n" +
                   frame_log_text(log, TO_BOARD) + "the last frames to the game:\n" +
                   frame_log_text(log, TO_HOST);
}
