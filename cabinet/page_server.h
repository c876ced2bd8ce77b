// The page over HTTP, on its own threads, only for browsers of this machine.
#pragma once

#include <string>

#include "cabinet/page_link.h"
#include "cabinet/page_picture.h"
#include "cabinet/sound_port.h"

struct PageServer;

// What it serves. All of it must exist until the server has stopped.
struct PageSources {
  PageLink& link;
  PagePicture& picture;
  SoundPort* sound;   // null: there is none
  std::string drive;  // the folder of the books
};

constexpr int PAGE_PORT = 8768;  // if it is free and no other was requested

// Binds the loopback address: to `port`, to any free port for 0, or, if it is negative, to
// PAGE_PORT or any free one. Returns null with a text in `error`.
PageServer* page_server_start(const PageSources& sources, int port, std::string& error);

// Ends all threads; close the link first.
void page_server_stop(PageServer* server);

int page_server_port(const PageServer& server);

// Who may use it: only a page from this server, or a program that is not a browser. `host`,
// `origin` and `site` are the headers Host, Origin and Sec-Fetch-Site, empty if missing. Returns
// why the request is refused, empty if it isn't.
std::string page_server_refuses(const std::string& host, const std::string& origin,
                                const std::string& site);
