// What the page shows of the cabinet, as JSON. cabinet/page/page.js reads these names.
#pragma once

#include <string>

struct Cabinet;

// `picture_trouble`: why there is no picture of the game's screen, empty if there is one.
std::string page_state_text(const Cabinet& cabinet, const std::string& picture_trouble);
