// What the page's threads and the cabinet's one thread exchange: requests in one direction, the
// state in the other. All functions may be called from any thread.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <future>
#include <map>
#include <string>
#include <vector>

#include "platform/mutex.h"

struct PageReply {
  std::string error;  // empty on success
  std::string said;   // output of the command
};

struct PageRequest {
  enum Kind {
    COMMAND,  // `text` is a line of the command language
    KEY,      // `text` is "press NAME" or "release NAME", a key of the game's window
    GONE,     // the page is closed: release everything that it holds
  };
  Kind kind;
  std::string page;  // the name that the page chose
  std::string text;
  std::promise<PageReply> reply;
};

struct PageLink {
  int wake = -1;                  // readable when a request waits
  std::atomic<int> game_pid{-1};  // -1: no game is running

  Mutex mutex;
  std::condition_variable_any changed;  // the state, or `closing`
  std::vector<PageRequest> requests GUARDED_BY(mutex);
  std::map<std::string, int> pages GUARDED_BY(mutex);  // number of open streams of each page
  std::string state GUARDED_BY(mutex);                 // JSON
  long state_number GUARDED_BY(mutex) = 0;             // 0: none yet
  // Why there is no picture; empty if there is one.
  std::string picture_trouble GUARDED_BY(mutex);
  bool closing GUARDED_BY(mutex) = false;
};

// Makes the file descriptor. Returns an error text, empty on success.
std::string page_link_open(PageLink& link);

// Wakes every thread that waits for the cabinet, for the last time. `page_link_free` closes files
// once no thread is left.
void page_link_close(PageLink& link);
void page_link_free(PageLink& link);

// Sends the cabinet a request and waits for its answer, at most ten seconds.
PageReply page_link_ask(PageLink& link, PageRequest::Kind kind, const std::string& page,
                        const std::string& text);

// The cabinet's side: takes waiting requests.
std::vector<PageRequest> page_link_take(PageLink& link);

// The cabinet's side: publishes a state, if it is new.
void page_link_publish(PageLink& link, std::string state);

// A state newer than `number`, which is set to its number. Waits at most `wait_ms`; returns an
// empty text if there was none.
std::string page_link_state(PageLink& link, long& number, int wait_ms);

// A page's stream of states begins and ends. With its last stream the page counts as closed.
void page_link_enter(PageLink& link, const std::string& page);
void page_link_leave(PageLink& link, const std::string& page);

// Whether this page has a stream open, and whether any has.
bool page_link_knows(PageLink& link, const std::string& page);
bool page_link_watched(PageLink& link);

bool page_link_closing(PageLink& link);
