// What the page shows of the cabinet, as JSON. The names in it are those that cabinet/page/page.js
// reads.
#pragma once

#include <string>

struct Cabinet;

// `picture_trouble`: why there is no picture of the game's screen, empty if there is one.
std::string page_state_text(const Cabinet& cabinet, const std::string& picture_trouble);
