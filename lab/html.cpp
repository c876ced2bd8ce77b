#include "lab/html.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "books/prefs.h"
#include "lab/text.h"
#include "operator/setting_values.h"

namespace {

constexpr const char* STYLE = R"(
body { font: 15px/1.45 sans-serif; max-width: 780px; margin: 24px auto; padding: 0 12px; color: #222 }
.answer { font-size: 21px; line-height: 1.35; margin: 12px 0 }
.note, td small { color: #666 }
table { border-collapse: collapse; margin: 12px 0; font-variant-numeric: tabular-nums }
td, th { border-bottom: 1px solid #ddd; padding: 3px 10px; text-align: right; white-space: nowrap }
td:first-child, th:first-child, .text { text-align: left }
td:first-child { white-space: normal }
svg { max-width: 100%; height: auto; margin: 10px 0; font: 12px sans-serif }
td svg { margin: 0 8px 0 0; vertical-align: middle }
svg .title { font-size: 15px; font-weight: bold }
ul.settings { columns: 2; list-style: none; padding: 0 }
li { margin-bottom: 6px }
ul.settings li { margin: 0 }
h2, h3, .lead, .note { break-after: avoid }
svg, tr, li, ul.settings { break-inside: avoid }
@page { size: A4; margin: 14mm }
@media print { body { font-size: 10pt; max-width: none; margin: 0; padding: 0 }
  svg.plot { height: 60mm } .answer { font-size: 15pt } }
)";

bool is_built_in(const Setting& setting) {
  return setting_is_real(setting) ? pref_float(setting.pref) == static_cast<float>(setting.built_in)
                                  : pref_int(setting.pref) == static_cast<int>(setting.built_in);
}

bool sweep_sets(PrefIndex row) {
  return row == PREF_PAYOUT_PERCENT || row == PREF_BONUS_VALUE || row == PREF_BOOST_BONUS ||
         row == PREF_TWO_POINT_TICKETS;
}

}  // namespace

std::string html_page(const std::string& title, const std::string& body) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
         html_text(title) + "</title>\n<style>" + STYLE + "</style>\n</head>\n<body>\n<h1>" +
         html_text(title) + "</h1>\n" + body + "</body>\n</html>\n";
}

int html_decimals(double half_width, int most) {
  if (!std::isfinite(half_width) || half_width <= 0.0) return most;
  return std::clamp(1 - static_cast<int>(std::floor(std::log10(half_width))), 0, most);
}

std::string html_number(const Estimate& e, int most, const char* unit) {
  const int decimals = html_decimals(e.half_width, most);
  std::string text = text_of("%.*f%s", decimals, e.mean, unit);
  if (!std::isfinite(e.half_width)) return text;
  return text + text_of(" &plusmn; %.*f%s", decimals, e.half_width, unit);
}

std::string html_count(std::int64_t count) {
  std::string text = std::to_string(count);
  for (int at = static_cast<int>(text.size()) - 3; at > 0; at -= 3) {
    text.insert(static_cast<std::size_t>(at), ",");
  }
  return text;
}

std::string html_settings(bool swept) {
  std::string rows;
  for (const Setting& setting : SETTINGS) {
    if (setting.menu == NO_MENU || (swept && sweep_sets(setting.pref))) continue;
    std::string value = setting_value_text(setting);
    if (value.ends_with("%%")) value.pop_back();  // as a menu's format has it
    const bool built_in = is_built_in(setting);
    rows += "<li>" + html_text(setting_label(setting)) + ": " + (built_in ? "" : "<b>") +
            html_text(value) + (built_in ? "" : "</b>") + "</li>\n";
  }
  return "<h2>Settings</h2>\n<p class=\"note\">In bold: what differs from a new cabinet.</p>\n"
         "<ul class=\"settings\">\n" +
         rows + "</ul>\n";
}

std::string html_player_options(const PlayerSettings& player) {
  std::string text;
  for (const PlayerOption& option : player_options) {
    if (player.*option.value == PlayerSettings{}.*option.value) continue;
    text += (text.empty() ? " Played with " : ", ") +
            text_of("%s %g", option.name, static_cast<double>(player.*option.value));
  }
  return text.empty() ? text : text + ".";
}
