// The cabinet's page for a browser, with the game's screen and everything that a player or an
// attendant can touch. This is its part in the cabinet's one thread. page_server.h and
// page_picture.h have threads of their own; page_link.h connects them.
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

// Starts the page according to the options. Returns an error text, empty on success.
std::string page_open(Cabinet& cabinet);
void page_close(Cabinet& cabinet);

// Its address; empty if there is no page.
std::string page_address(const Page& page);

// Its picture; null if there is no page.
PagePicture* page_picture(const Page& page);

// A file descriptor that is readable when the page wants something, -1 if there is no page.
int page_wake(const Page& page);

// Carries out the pages' requests, and gives them the cabinet's state. Doesn't wait.
void page_turn(Cabinet& cabinet, std::int64_t now_ms);
