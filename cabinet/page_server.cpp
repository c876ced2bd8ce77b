#include "cabinet/page_server.h"

#include <httplib.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

#include "cabinet/page_books.h"
#include "cabinet/page_files.h"

using httplib::Request;
using httplib::Response;

struct PageServer {
  explicit PageServer(PageSources sources)
      : link(sources.link),
        picture(sources.picture),
        sound(sources.sound),
        drive(std::move(sources.drive)) {}
  PageLink& link;
  PagePicture& picture;
  SoundPort* sound;
  std::string drive;
  httplib::Server http;
  int port = 0;
  std::thread thread;
};

namespace {

constexpr const char* LOOPBACK = "127.0.0.1";
constexpr int STATE_WAIT_MS = 1000;  // then a sign of life, which shows when a page has gone
constexpr int PICTURE_WAIT_MS = 1000;
constexpr int SOUND_WAIT_MS = 250;     // then a sign of life, too
constexpr int STATE_GAP_MS = 45;       // at most about 20 a second
constexpr int THREADS = 32;            // one for each connection; a browser opens at most six
constexpr int KEEP_ALIVE_SECONDS = 1;  // at the end, idle connections delay it by this
constexpr std::size_t BODY_BYTES_MAX = 4096, PAGE_NAME_MAX = 40;
constexpr const char* TEXT = "text/plain; charset=utf-8";

bool is_loopback_name(const std::string& host) {
  for (const char* name : {"127.0.0.1", "localhost", "[::1]"}) {
    const std::string start = name;
    if (host == start || host.compare(0, start.size() + 1, start + ":") == 0) return true;
  }
  return false;
}

void refuse(Response& response, int status, const std::string& why) {
  response.status = status;
  response.set_content(why + "\n", TEXT);
}

// The name of the page that asks. Empty, and the request is refused, if it has no valid one.
std::string page_of(const Request& request, Response& response) {
  std::string page = request.get_param_value("page");
  const bool good = !page.empty() && page.size() <= PAGE_NAME_MAX;
  if (!good) refuse(response, 400, "the request needs ?page=NAME, at most 40 letters");
  return good ? page : std::string();
}

void send_picture(PageServer& server, const Request& request, Response& response) {
  const long number = std::strtol(request.get_param_value("after").c_str(), nullptr, 10);
  const auto frame = page_picture_next(server.picture, number, PICTURE_WAIT_MS);
  if (!frame) {
    response.status = 204;
    return;
  }
  response.set_header("X-Frame", std::to_string(frame->number));
  response.set_content_provider(
      frame->jpeg.size(), "image/jpeg",
      [frame](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
        return sink.write(frame->jpeg.data() + offset, length);
      });
}

// Server-sent events: a line of JSON for each change.
void send_states(PageServer& server, const Request& request, Response& response) {
  const std::string page = page_of(request, response);
  if (page.empty()) return;
  PageLink& link = server.link;
  page_link_enter(link, page);
  response.set_chunked_content_provider(
      "text/event-stream",
      [&link, number = 0L](std::size_t, httplib::DataSink& sink) mutable {
        const std::string state = page_link_state(link, number, STATE_WAIT_MS);
        if (page_link_closing(link)) return false;
        const std::string event = state.empty() ? ": still here\n\n" : "data: " + state + "\n\n";
        if (!sink.write(event.data(), event.size())) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(STATE_GAP_MS));
        return true;
      },
      [&link, page](bool) { page_link_leave(link, page); });
}

// Packets of sound as the game sent them, until the listener leaves.
void send_sound(PageServer& server, Response& response) {
  if (server.sound == nullptr) return refuse(response, 404, "the sound doesn't go to the page");
  response.set_chunked_content_provider(
      "application/octet-stream",
      [&link = server.link, &sound = *server.sound, number = sound_port_newest(*server.sound)](
          std::size_t, httplib::DataSink& sink) mutable {
        std::string packets;
        auto block = sound_port_next(sound, number, SOUND_WAIT_MS);
        for (; block; block = sound_port_next(sound, number, 0)) {
          number = block->number;
          packets += block->packet;
        }
        if (page_link_closing(link)) return false;
        if (packets.empty()) packets.assign(SOUND_PORT_HEAD, '\0');  // a packet without frames
        return sink.write(packets.data(), packets.size());
      });
}

void send_time(Response& response) {
  using namespace std::chrono;
  const auto time = duration_cast<microseconds>(steady_clock::now().time_since_epoch());
  response.set_content(std::to_string(time.count()), TEXT);
}

void answer(Response& response, const PageReply& reply) {
  if (!reply.error.empty()) return refuse(response, 400, reply.error);
  response.set_content(reply.said, TEXT);
}

void take_key(PageServer& server, const Request& request, Response& response) {
  const std::string page = page_of(request, response);
  if (page.empty()) return;
  if (!page_link_knows(server.link, page)) {
    return refuse(response, 409, "a page that holds keys must have its /state open");
  }
  answer(response, page_link_ask(server.link, PageRequest::KEY, page, request.body));
}

void set_headers(Response& response) {
  response.set_header("Cache-Control", "no-store");
  response.set_header("X-Content-Type-Options", "nosniff");
  response.set_header("Cross-Origin-Resource-Policy", "same-origin");
  response.set_header("Content-Security-Policy",
                      "default-src 'self'; img-src 'self' data:; frame-ancestors 'none'");
}

httplib::Server::HandlerResponse guard(const Request& request, Response& response) {
  set_headers(response);
  const std::string why =
      page_server_refuses(request.get_header_value("Host"), request.get_header_value("Origin"),
                          request.get_header_value("Sec-Fetch-Site"));
  if (why.empty()) return httplib::Server::HandlerResponse::Unhandled;
  refuse(response, 403, why);
  return httplib::Server::HandlerResponse::Handled;
}

void add_routes(PageServer& server) {
  httplib::Server& http = server.http;
  http.set_pre_routing_handler(guard);
  for (const PageFile& file : PAGE_FILES) {
    http.Get(file.path, [&file](const Request&, Response& response) {
      response.set_content(reinterpret_cast<const char*>(file.bytes), file.size, file.type);
    });
  }
  http.Get("/picture", [&server](const Request& request, Response& response) {
    send_picture(server, request, response);
  });
  http.Get("/sound",
           [&server](const Request&, Response& response) { send_sound(server, response); });
  http.Get("/time", [](const Request&, Response& response) { send_time(response); });
  http.Get("/books", [&server](const Request&, Response& response) {
    response.set_content(page_books_text(server.drive), "application/json");
  });
  http.Get("/state", [&server](const Request& request, Response& response) {
    send_states(server, request, response);
  });
  http.Post("/command", [&server](const Request& request, Response& response) {
    answer(response, page_link_ask(server.link, PageRequest::COMMAND, {}, request.body));
  });
  http.Post("/key", [&server](const Request& request, Response& response) {
    take_key(server, request, response);
  });
  http.set_error_handler([](const Request& request, Response& response) {
    if (!response.body.empty()) return;
    refuse(response, response.status,
           response.status == 404 ? "there is no " + request.method + " " + request.path
                                  : "HTTP status " + std::to_string(response.status));
  });
}

void set_limits(httplib::Server& http) {
  http.new_task_queue = [] { return new httplib::ThreadPool(THREADS); };
  http.set_keep_alive_max_count(1 << 30);
  http.set_keep_alive_timeout(KEEP_ALIVE_SECONDS);
  http.set_tcp_nodelay(true);
  http.set_payload_max_length(BODY_BYTES_MAX);
  // The library would share the port with another cabinet.
  http.set_socket_options([](socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
}

// A server at that port of the loopback address, at any free port for 0; null if it is taken. Each
// attempt needs a new server: the library's binds only once, and never after a failed attempt.
std::unique_ptr<PageServer> bound_server(const PageSources& sources, int port) {
  auto server = std::make_unique<PageServer>(sources);
  set_limits(server->http);
  add_routes(*server);
  if (port == 0) {
    server->port = server->http.bind_to_any_port(LOOPBACK);
  } else if (server->http.bind_to_port(LOOPBACK, port)) {
    server->port = port;
  }
  return server->port > 0 ? std::move(server) : nullptr;
}

}  // namespace

std::string page_server_refuses(const std::string& host, const std::string& origin,
                                const std::string& site) {
  if (!is_loopback_name(host)) {
    return "this page is only for this machine: open it as 127.0.0.1 or localhost, not as \"" +
           host + "\"";
  }
  const bool foreign_origin = !origin.empty() && origin != "http://" + host;
  const bool foreign_site = !site.empty() && site != "same-origin" && site != "none";
  if (foreign_origin || foreign_site) {
    return "other pages may not use this cabinet; type its address into the browser";
  }
  return {};
}

PageServer* page_server_start(const PageSources& sources, int port, std::string& error) {
  std::unique_ptr<PageServer> server = bound_server(sources, port < 0 ? PAGE_PORT : port);
  if (!server && port < 0) server = bound_server(sources, 0);
  if (!server) {
    error = "the page can't have port " + std::to_string(port) +
            "; another program has it: choose another port or none";
    return nullptr;
  }
  server->thread = std::thread([&http = server->http] { http.listen_after_bind(); });
  // A server that doesn't listen yet can't be stopped: it would begin later and never end.
  while (!server->http.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return server.release();
}

void page_server_stop(PageServer* server) {
  server->http.stop();
  server->thread.join();
  delete server;
}

int page_server_port(const PageServer& server) {
  return server.port;
}
