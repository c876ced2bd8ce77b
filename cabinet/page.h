// The cabinet's face: a page for the browser, with the game's screen and all that a player or an
// attendant can touch. This is its end in the cabinet's one thread; page_server.h and
// page_picture.h have threads of their own, and page_link.h lies between.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "cabinet/keys.h"

struct Cabinet;
struct PagePicture;
struct PageThreads;

struct Page {
  std::shared_ptr<PageThreads> threads;    // null: there is no page
  std::map<std::string, KeyClient> hands;  // what each open page holds
  std::int64_t publish_at_ms = 0;
};

// Starts the page of the options. Returns an error text, empty if all went well.
std::string page_open(Cabinet& cabinet);
void page_close(Cabinet& cabinet);

// Its address; empty if there is no page.
std::string page_address(const Page& page);

// Its picture; null if there is no page.
PagePicture* page_picture(const Page& page);

// A file descriptor that is readable when the page wants something, -1 if there is no page.
int page_wake(const Page& page);

// Does what the pages want, and shows them how the cabinet stands. Doesn't wait.
void page_turn(Cabinet& cabinet, std::int64_t now_ms);
