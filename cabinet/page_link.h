// What the page's threads and the cabinet's one thread hand each other: wishes one way, the state
// the other. All functions may be called from any thread.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <future>
#include <map>
#include <mutex>
#include <string>
#include <vector>

struct PageReply {
  std::string error;  // empty if all went well
  std::string said;   // what the command has to say
};

struct PageRequest {
  enum Kind {
    COMMAND,  // `text` is a line of the command language
    KEY,      // `text` is "press NAME" or "release NAME", a key of the game's window
    GONE,     // the page is closed: it lets go of all that it holds
  };
  Kind kind;
  std::string page;  // the name that the page gave itself
  std::string text;
  std::promise<PageReply> reply;
};

struct PageLink {
  int wake = -1;                  // becomes readable when a request waits
  std::atomic<int> game_pid{-1};  // -1: no game runs

  std::mutex mutex;
  std::condition_variable changed;  // the state, or `closing`
  std::vector<PageRequest> requests;
  std::map<std::string, int> pages;  // open streams of each page
  std::string state;                 // JSON
  long state_number = 0;             // 0: there is none yet
  std::string picture_trouble;       // why there is no picture; empty if there is
  bool closing = false;
};

// Makes the file descriptor. Returns an error text, empty if all went well.
std::string page_link_open(PageLink& link);

// Wakes every thread that waits for the cabinet, for the last time. Files are closed when no thread
// is left, by `page_link_free`.
void page_link_close(PageLink& link);
void page_link_free(PageLink& link);

// Has the cabinet do something, and waits for its answer, two seconds at most.
PageReply page_link_ask(PageLink& link, PageRequest::Kind kind, const std::string& page,
                        const std::string& text);

// The cabinet's side: takes what waits.
std::vector<PageRequest> page_link_take(PageLink& link);

// The cabinet's side: shows a new state, if it is one.
void page_link_publish(PageLink& link, std::string state);

// A state newer than `number`, which becomes its number. Waits at most `wait_ms`, and returns an
// empty text if there was none.
std::string page_link_state(PageLink& link, long& number, int wait_ms);

// A page's stream of states begins and ends. With the last one the page counts as closed.
void page_link_enter(PageLink& link, const std::string& page);
void page_link_leave(PageLink& link, const std::string& page);

// Whether this page has a stream open, and whether any has.
bool page_link_knows(PageLink& link, const std::string& page);
bool page_link_watched(PageLink& link);

bool page_link_closing(PageLink& link);
