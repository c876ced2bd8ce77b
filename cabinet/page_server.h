// The page over HTTP, on threads of its own, for browsers of this machine alone.
#pragma once

#include <string>

#include "cabinet/page_link.h"
#include "cabinet/page_picture.h"
#include "cabinet/sound_port.h"

struct PageServer;

// What it serves. All of it must stay until the server has been stopped.
struct PageSources {
  PageLink& link;
  PagePicture& picture;
  SoundPort* sound;  // null: there is none
};

constexpr int PAGE_PORT = 8768;  // if it is free, and no other was asked for

// Binds the loopback address: to `port`, to any free one if it is 0, and if it is negative to
// PAGE_PORT or, where that is taken, to any. Returns null with a text in `error`.
PageServer* page_server_start(PageSources sources, int port, std::string& error);

// Ends all threads; the link must have been closed before.
void page_server_stop(PageServer* server);

int page_server_port(const PageServer& server);

// Who may ask: only a page that this server has sent, or a program that is no browser. `host`,
// `origin` and `site` are the headers Host, Origin and Sec-Fetch-Site, empty where there is none.
// Returns why the request is refused, empty if it isn't.
std::string page_server_refuses(const std::string& host, const std::string& origin,
                                const std::string& site);
