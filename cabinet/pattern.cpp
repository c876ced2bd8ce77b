#include "cabinet/pattern.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "cabinet/board.h"
#include "cabinet/coils.h"
#include "cabinet/switches.h"

namespace {

struct NumberKind {
  const char* name;
  double least, most;
  bool whole;
};

constexpr NumberKind NUMBER_KINDS[] = {
    {"COUNT", 1, 1e6, true},         {"RATE", 0.1, 1000, false}, {"MS", 0, 3.6e6, true},
    {"PERCENT", 0, 100, false},      {"BYTES", 0, 1000, true},   {"BYTE", 0, 255, true},
    {"COUNTER", 0, 15, true},        {"CHANNEL", 0, 15, true},   {"PAPER", 0, 1e6, true},
    {"SEED", 0, 4294967295.0, true}, {"STEPS", -127, 127, true},
};

struct Matcher {
  const Words& words;
  std::size_t at;
  Arguments& arguments;
  std::string& error;
};

using Tokens = std::vector<std::string>;

bool is_argument(const std::string& token) {
  return std::isupper(static_cast<unsigned char>(token[0])) != 0;
}

bool match_number(Matcher& m, const std::string& token) {
  double number = 0;
  if (!word_number(m.words[m.at], number)) return false;
  for (const NumberKind& kind : NUMBER_KINDS) {
    if (token != kind.name) continue;
    if (number < kind.least || number > kind.most || (kind.whole && number != std::floor(number))) {
      std::ostringstream text;
      text << token << " has to be " << (kind.whole ? "a whole number " : "") << "from "
           << kind.least << " to " << kind.most << ", not " << m.words[m.at].text;
      m.error = text.str();
      return false;
    }
    m.arguments.numbers[token] = number;
    return true;
  }
  return false;
}

bool match_argument(Matcher& m, const std::string& token) {
  const std::string& text = m.words[m.at].text;
  if (token == "SIDE") {
    if (text != "left" && text != "right") return false;
    m.arguments.side = text == "left" ? LEFT : RIGHT;
    return true;
  }
  if (token == "INPUT") {
    m.arguments.input = input_find(text);
    if (m.arguments.input < 0) m.error = "there is no switch \"" + text + "\"";
    return m.arguments.input >= 0;
  }
  if (token == "METER") {
    m.arguments.meter = meter_find(text);
    if (m.arguments.meter < 0) m.error = "there is no meter \"" + text + "\"";
    return m.arguments.meter >= 0;
  }
  if (token == "NAME" || token == "VALUE" || token == "FRAME") {
    m.arguments.texts.push_back(text);
    return true;
  }
  return match_number(m, token);
}

bool match_choice(Matcher& m, const std::string& token) {
  if (m.words[m.at].quoted) return false;
  const std::string& text = m.words[m.at].text;
  if (token.find('|') == std::string::npos) return token == text;
  std::istringstream choices(token);
  for (std::string choice; std::getline(choices, choice, '|');) {
    if (choice != text) continue;
    m.arguments.choices.push_back(text);
    return true;
  }
  return false;
}

bool match_tokens(Matcher& m, const Tokens& tokens) {
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (tokens[i] == "[") {
      Tokens group;
      for (++i; tokens[i] != "]"; ++i) group.push_back(tokens[i]);
      const std::size_t at = m.at;
      const Arguments arguments = m.arguments;
      if (!match_tokens(m, group)) {
        m.at = at;
        m.arguments = arguments;
      }
      continue;
    }
    if (m.at >= m.words.size()) return false;
    if (is_argument(tokens[i]) ? !match_argument(m, tokens[i]) : !match_choice(m, tokens[i])) {
      return false;
    }
    ++m.at;
  }
  return true;
}

Tokens tokens_of(const std::string& pattern) {
  Tokens tokens;
  std::istringstream words(pattern);
  for (std::string word; words >> word;) {
    const bool opens = word.front() == '[', closes = word.back() == ']';
    if (opens) tokens.emplace_back("[");
    tokens.push_back(word.substr(opens ? 1 : 0, word.size() - (opens ? 1 : 0) - (closes ? 1 : 0)));
    if (closes) tokens.emplace_back("]");
  }
  return tokens;
}

}  // namespace

std::string words_split(const std::string& line, Words& words) {
  words.clear();
  std::size_t i = 0;
  while (i < line.size()) {
    if (std::isspace(static_cast<unsigned char>(line[i])) != 0) {
      ++i;
    } else if (line[i] == '#') {
      break;
    } else if (line[i] == '"') {
      const std::size_t end = line.find('"', i + 1);
      if (end == std::string::npos) return "a quotation mark has no partner";
      words.push_back({line.substr(i + 1, end - i - 1), true});
      i = end + 1;
    } else {
      const std::size_t begin = i;
      while (i < line.size() && std::isspace(static_cast<unsigned char>(line[i])) == 0) ++i;
      words.push_back({line.substr(begin, i - begin), false});
    }
  }
  return {};
}

bool word_number(const Word& word, double& number) {
  if (word.quoted || word.text.empty()) return false;
  const char first = word.text[0];
  if (std::isdigit(static_cast<unsigned char>(first)) == 0 && first != '-' && first != '.') {
    return false;
  }
  char* end = nullptr;
  number = std::strtod(word.text.c_str(), &end);
  return end != word.text.c_str() && *end == '\0' && std::isfinite(number);
}

int pattern_match(const std::string& pattern, const Words& words, std::size_t at,
                  Arguments& arguments, std::string& error) {
  arguments = {};
  error.clear();
  Matcher matcher{words, at, arguments, error};
  return match_tokens(matcher, tokens_of(pattern)) ? static_cast<int>(matcher.at) : -1;
}

double argument(const Arguments& arguments, const char* name, double otherwise) {
  const auto found = arguments.numbers.find(name);
  return found == arguments.numbers.end() ? otherwise : found->second;
}

std::string help_line(const std::string& pattern, const std::string& help) {
  constexpr std::size_t COLUMN = 36;
  std::string line = "  " + pattern;
  if (line.size() > COLUMN) line += "\n";
  const std::size_t last = line.size() > COLUMN ? 0 : line.size();
  return line + std::string(COLUMN + 1 - last, ' ') + help + "\n";
}
