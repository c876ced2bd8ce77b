#include "cabinet/page.h"

#include <utility>

#include "cabinet/cabinet.h"
#include "cabinet/commands.h"
#include "cabinet/page_link.h"
#include "cabinet/page_picture.h"
#include "cabinet/page_server.h"
#include "cabinet/page_state.h"

struct PageThreads {
  PageLink link;
  PagePicture* picture = nullptr;
  PageServer* server = nullptr;
};

namespace {

constexpr std::int64_t PUBLISH_MS = 50;

PageReply obey(Cabinet& cabinet, const PageRequest& request, std::int64_t now_ms) {
  switch (request.kind) {
    case PageRequest::COMMAND: {
      std::string error = commands_do(cabinet, request.text, now_ms);
      return {error, std::exchange(cabinet.said, {})};
    }
    case PageRequest::KEY:
      return {keys_line(cabinet, cabinet.page.hands[request.page], request.text, now_ms), {}};
    case PageRequest::GONE:
      keys_let_go(cabinet, cabinet.page.hands[request.page], now_ms);
      cabinet.page.hands.erase(request.page);
      break;
  }
  return {};
}

void publish(Cabinet& cabinet, std::int64_t now_ms) {
  PageLink& link = cabinet.page.threads->link;
  link.game_pid = cabinet.game.running ? cabinet.game.pid : -1;
  if (now_ms < cabinet.page.publish_at_ms || !page_link_watched(link)) return;
  cabinet.page.publish_at_ms = now_ms + PUBLISH_MS;
  std::string trouble;
  {
    const MutexLock lock(link.mutex);
    trouble = link.picture_trouble;
  }
  page_link_publish(link, page_state_text(cabinet, trouble));
}

}  // namespace

std::string page_open(Cabinet& cabinet) {
  auto threads = std::make_shared<PageThreads>();
  std::string error = page_link_open(threads->link);
  if (!error.empty()) return error;
  threads->picture = page_picture_start(threads->link);
  threads->server =
      page_server_start({threads->link, *threads->picture, cabinet.sound, cabinet.options.drive},
                        cabinet.options.page_port, error);
  if (error.empty()) {
    cabinet.page.threads = std::move(threads);
  } else {
    page_picture_stop(threads->picture);
    page_link_free(threads->link);
  }
  return error;
}

void page_close(Cabinet& cabinet) {
  PageThreads* threads = cabinet.page.threads.get();
  if (threads == nullptr) return;
  page_link_close(threads->link);
  page_server_stop(threads->server);
  page_picture_stop(threads->picture);
  page_link_free(threads->link);
  cabinet.page = {};
}

std::string page_address(const Page& page) {
  if (!page.threads) return {};
  return "http://127.0.0.1:" + std::to_string(page_server_port(*page.threads->server)) + "/";
}

PagePicture* page_picture(const Page& page) {
  return page.threads ? page.threads->picture : nullptr;
}

int page_wake(const Page& page) {
  return page.threads ? page.threads->link.wake : -1;
}

void page_turn(Cabinet& cabinet, std::int64_t now_ms) {
  if (!cabinet.page.threads) return;
  for (PageRequest& request : page_link_take(cabinet.page.threads->link)) {
    request.reply.set_value(obey(cabinet, request, now_ms));
  }
  publish(cabinet, now_ms);
}
