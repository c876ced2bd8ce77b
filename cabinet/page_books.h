// What the page shows of the books behind its service door: the collection sheet and the last
// games.
#pragma once

#include <string>

// Of the drive in `folder`, as JSON. Any thread; reads the whole journal. cabinet/page/books.js
// reads these names.
std::string page_books_text(const std::string& folder);
