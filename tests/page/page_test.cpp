// The page's server over real sockets, with a running cabinet.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <utility>

#include "cabinet/cabinet.h"
#include "cabinet/greeting.h"
#include "cabinet/media_files.h"
#include "cabinet/page_server.h"
#include "tests/temp_folder.h"

using nlohmann::json;

namespace {

// False if it doesn't hold within ten seconds.
bool soon(const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!holds()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::yield();
  }
  return true;
}

class PageTest : public testing::Test {
 protected:
  void SetUp() override { begin(SOUND_PAGE); }
  void TearDown() override { end(); }

  void begin(SoundWay sound) {
    cabinet.options.drive = drive.path();
    cabinet.options.no_game = cabinet.options.page = true;
    cabinet.options.page_port = 0;
    cabinet.options.sound = sound;
    ASSERT_EQ(cabinet_open(cabinet), "");
    address = page_address(cabinet.page);
    address.pop_back();  // the slash
    port = std::stoi(address.substr(address.rfind(':') + 1));
    core = std::thread([this] {
      while (!ending) cabinet_turn(cabinet, 50);
    });
  }
  void end() {
    stop();
    cabinet_close(cabinet);
  }

  void stop() {
    ending = true;
    if (core.joinable()) core.join();
  }
  httplib::Result post(const std::string& path, const std::string& body) {
    return httplib::Client(address).Post(path, body, "text/plain");
  }
  std::string refusal(const std::string& line) {
    const auto reply = post("/command", line);
    if (!reply) return "no reply";
    EXPECT_EQ(reply->status, reply->body.empty() ? 200 : 400);
    return reply->body;
  }
  // The first line of the answer to this request.
  std::string first_line(const std::string& request) {
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<std::uint16_t>(port));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(client, reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
    EXPECT_EQ(write(client, request.data(), request.size()), static_cast<ssize_t>(request.size()));
    std::string text;
    for (char c = 0; read(client, &c, 1) == 1 && c != '\r';) text += c;
    close(client);
    return text;
  }
  // Reads the stream of states until one is as wanted. Returns the last one.
  json watch(
      const std::string& page, const std::function<bool(const json&)>& wanted,
      const std::function<void()>& begun = [] {}) {
    json state;
    std::string pending;
    httplib::Client client(address);
    bool first = true;
    client.set_read_timeout(5);
    client.Get("/state?page=" + page, [&](const char* data, std::size_t size) {
      pending.append(data, size);
      for (std::size_t end; (end = pending.find("\n\n")) != std::string::npos;) {
        if (pending.compare(0, 6, "data: ") == 0) state = json::parse(pending.substr(6, end - 6));
        pending.erase(0, end + 2);
        if (state.is_null()) continue;
        if (std::exchange(first, false)) begun();
        if (wanted(state)) return false;
      }
      return true;
    });
    return state;
  }
  static bool has(const json& list, const char* text) {
    return std::find(list.begin(), list.end(), text) != list.end();
  }

  TempFolder drive;
  Cabinet cabinet;
  std::string address;
  int port = 0;
  std::thread core;
  std::atomic<bool> ending = false;
};

TEST(PageGuard, AllowsOnlyThisMachineAndThisPage) {
  EXPECT_EQ(page_server_refuses("127.0.0.1:8768", "", ""), "");
  EXPECT_EQ(page_server_refuses("localhost:9000", "http://localhost:9000", "same-origin"), "");
  EXPECT_EQ(page_server_refuses("[::1]:8768", "", "none"), "");
  for (const char* host : {"", "evil.example", "127.0.0.1.evil.example:8768", "localhostile:8768",
                           "192.168.1.7:8768"}) {
    EXPECT_NE(page_server_refuses(host, "", ""), "") << host;
  }
  // Another page of this machine, one without an origin, and one that hides it.
  EXPECT_NE(page_server_refuses("localhost:8768", "http://localhost:3000", ""), "");
  EXPECT_NE(page_server_refuses("localhost:8768", "http://127.0.0.1:8768", ""), "");
  EXPECT_NE(page_server_refuses("localhost:8768", "null", ""), "");
  EXPECT_NE(page_server_refuses("localhost:8768", "", "cross-site"), "");
}

TEST_F(PageTest, RefusesForeignHostsAndOriginsOnEveryPath) {
  const std::string ours = "Host: localhost:" + std::to_string(port) + "\r\n";
  EXPECT_EQ(first_line("GET / HTTP/1.1\r\n" + ours + "\r\n"), "HTTP/1.1 200 OK");
  for (const char* path : {"/", "/page.js", "/picture", "/state?page=a", "/nothing"}) {
    const std::string get = std::string("GET ") + path + " HTTP/1.1\r\n";
    EXPECT_EQ(first_line(get + "Host: evil.example\r\n\r\n"), "HTTP/1.1 403 Forbidden") << path;
    EXPECT_EQ(first_line(get + ours + "Origin: http://evil.example\r\n\r\n"),
              "HTTP/1.1 403 Forbidden")
        << path;
  }
  EXPECT_EQ(first_line("POST /command HTTP/1.1\r\n" + ours +
                       "Origin: http://evil.example\r\nContent-Length: 9\r\n\r\njam left\n"),
            "HTTP/1.1 403 Forbidden");
  const json state = watch("p", [](const json&) { return true; });
  EXPECT_FALSE(state["sides"][0]["jammed"]);
}

TEST_F(PageTest, ExecutesCommandsAndExplainsWrongOnes) {
  EXPECT_EQ(refusal("jam right"), "");
  EXPECT_TRUE(watch("p", [](const json& s) {
                return s["sides"][1]["jammed"].get<bool>();
              }).at("sides")[1]["jammed"]);
  EXPECT_EQ(refusal("jump left"), "there is no command \"jump\"\n");
  EXPECT_NE(refusal("jam middle").find("the command is \"jam SIDE [toggle]\""), std::string::npos);
  EXPECT_NE(refusal("coin \"left"), "");
  EXPECT_NE(post("/command", "help")->body.find("coin SIDE [COUNT]"), std::string::npos);
  EXPECT_EQ(post("/command", std::string(5000, 'x'))->status, 413);
  EXPECT_EQ(httplib::Client(address).Get("/nowhere")->status, 404);
}

TEST_F(PageTest, CoinCommandPressesTheSwitch) {
  EXPECT_EQ(refusal("coin left 2"), "");
  stop();
  EXPECT_TRUE(soon([this] {
    cabinet_turn(cabinet, 5);
    return hands_idle(cabinet.hands);
  }));
  EXPECT_EQ(cabinet.board.switches.edges[INPUT_COIN_LEFT], 4);
}

TEST_F(PageTest, ClosedPageReleasesItsKeys) {
  EXPECT_EQ(post("/key?page=p", "press T")->status, 409);
  const auto test_is_down = [](const json& s) { return has(s["pressed"], "test"); };
  json state = watch("p", test_is_down, [this] {
    EXPECT_EQ(post("/key?page=p", "press T")->status, 200);
    EXPECT_EQ(post("/key?page=p", "press Q")->status, 400);
    EXPECT_EQ(post("/key", "press T")->status, 400);
  });
  EXPECT_TRUE(test_is_down(state));
  state = watch("q", [&](const json& s) { return !test_is_down(s); });
  EXPECT_FALSE(test_is_down(state));
}

TEST_F(PageTest, StateExplainsMissingPicture) {
  EXPECT_EQ(httplib::Client(address).Get("/picture?after=0")->status, 204);
  const json state = watch("p", [](const json& s) { return s["picture_trouble"] != ""; });
  EXPECT_EQ(state["picture_trouble"], "the game isn't running");
  EXPECT_EQ(state["led"]["value"], -1);
  EXPECT_EQ(state["lamps"].size(), static_cast<std::size_t>(LAMP_CHANNELS));
}

// The game's end of the sound.
struct Voice {
  explicit Voice(const std::string& path) : file(socket(AF_UNIX, SOCK_SEQPACKET, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(connect(file, reinterpret_cast<sockaddr*>(&address), sizeof address), 0) << path;
  }
  ~Voice() { close(file); }
  // Sends 512 numbered frames, less the last `cut` bytes. Returns what was sent.
  std::string say(std::int64_t frame, std::size_t cut = 0) const {
    std::string packet(SOUND_PORT_HEAD + 2048, '\0');
    const std::int64_t time_us = frame * 7;
    const std::int32_t frames = 512;
    std::memcpy(packet.data(), &frame, 8);
    std::memcpy(packet.data() + 8, &time_us, 8);
    std::memcpy(packet.data() + 16, &frames, 4);
    for (int i = 0; i < 1024; ++i) {
      const auto sample = static_cast<std::int16_t>(frame + i);
      std::memcpy(packet.data() + SOUND_PORT_HEAD + 2 * i, &sample, 2);
    }
    packet.resize(packet.size() - cut);
    EXPECT_EQ(send(file, packet.data(), packet.size(), 0), static_cast<ssize_t>(packet.size()));
    return packet;
  }
  int file;
};

// Reads `/sound` until as many bytes of packets with frames in them have come.
std::string listen_to(const std::string& address, std::size_t bytes,
                      const std::function<void()>& begun) {
  std::string heard;
  httplib::Client client(address);
  client.set_read_timeout(5);
  bool first = true;
  client.Get("/sound", [&](const char* data, std::size_t size) {
    heard.append(data, size);
    const std::string no_frames(SOUND_PORT_HEAD, '\0');
    while (heard.compare(0, no_frames.size(), no_frames) == 0) {
      heard.erase(0, no_frames.size());
      if (std::exchange(first, false)) begun();
    }
    return heard.size() < bytes;
  });
  return heard;
}

TEST_F(PageTest, AllListenersGetTheGamesSound) {
  const std::string path = cabinet.keys.folder + "/sound";
  std::string sent, heard[2];
  std::atomic<int> listening = 0;
  std::thread listeners[2];
  for (int i : {0, 1}) {
    listeners[i] =
        std::thread([&, i] { heard[i] = listen_to(address, 5 * 2072, [&] { ++listening; }); });
  }
  EXPECT_TRUE(soon([&] { return listening == 2; }));
  {
    const Voice game(path);
    game.say(0, 2);  // not a whole packet
    for (int i = 0; i < 3; ++i) sent += game.say(i * 512);
  }
  const Voice next_game(path);
  for (int i = 0; i < 2; ++i) sent += next_game.say(i * 512);
  for (std::thread& listener : listeners) listener.join();
  EXPECT_TRUE(heard[0] == sent);
  EXPECT_TRUE(heard[1] == sent);
  const json state = watch("p", [](const json&) { return true; });
  EXPECT_TRUE(state["sound"]);
}

TEST_F(PageTest, LateListenerSkipsToNewestBlock) {
  const Voice game(cabinet.keys.folder + "/sound");
  EXPECT_EQ(sound_port_newest(*cabinet.sound), 0);
  EXPECT_EQ(sound_port_next(*cabinet.sound, 0, 0), nullptr);
  game.say(0);
  EXPECT_EQ(sound_port_next(*cabinet.sound, 0, 5000)->number, 1);
  for (int i = 1; i <= 100; ++i) game.say(i * 512);
  long newest = 1;
  for (std::shared_ptr<const SoundBlock> block;
       (block = sound_port_next(*cabinet.sound, newest, newest < 101 ? 5000 : 0));) {
    newest = block->number;
  }
  EXPECT_EQ(newest, 101);
  EXPECT_EQ(sound_port_next(*cabinet.sound, 1, 0)->number, 101) << "the older ones are dropped";
  EXPECT_EQ(sound_port_next(*cabinet.sound, 90, 0)->frame, 90 * 512) << "the next one";
}

std::uint32_t number_at(const std::string& bytes, std::size_t at) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + at, 4);
  return number;
}

TEST_F(PageTest, RecordingFillsLostSoundWithSilence) {
  const std::string path = drive.file("show.wav");
  std::string error;
  EXPECT_EQ(recording_start(path + "x", *cabinet.sound, nullptr, error), nullptr);
  EXPECT_NE(std::exchange(error, {}), "");
  Recording* const recording = recording_start(path, *cabinet.sound, nullptr, error);
  ASSERT_EQ(error, "");
  const Voice game(cabinet.keys.folder + "/sound");
  const std::string first = game.say(512 * 10), second = game.say(512 * 12);
  // The rest fills the stream's buffer, so that the first ones are on disk.
  for (int i = 0; i < 40; ++i) game.say(512 * (13 + i));
  EXPECT_TRUE(soon([&] { return std::filesystem::file_size(path) >= 44 + 3 * 2048; }));
  EXPECT_EQ(recording_stop(recording), "");
  const std::string file = drive.read("show.wav");
  ASSERT_GE(file.size(), 44U + 3 * 2048);
  EXPECT_EQ(file.substr(0, 4) + file.substr(8, 8), "RIFFWAVEfmt ");
  EXPECT_EQ(number_at(file, 4), file.size() - 8);
  EXPECT_EQ(number_at(file, 24), 44100U);
  EXPECT_EQ(number_at(file, 40), file.size() - 44);
  EXPECT_TRUE(file.substr(44, 3 * 2048) == first.substr(SOUND_PORT_HEAD) + std::string(2048, '\0') +
                                               second.substr(SOUND_PORT_HEAD));
}

TEST(AviFile, IndexPointsToItsChunks) {
  const TempFolder folder;
  const std::string path = folder.file("show.avi");
  const std::int16_t sound[4] = {1, 2, 3, 4};
  AviFile avi(path, 1360, 768, 25);
  avi.add_picture("odd");
  avi.add_sound(sound, 2);
  avi.add_picture("");
  avi.close();
  const std::string file = folder.read("show.avi");
  EXPECT_EQ(file.substr(0, 4) + file.substr(8, 4), "RIFFAVI ");
  ASSERT_EQ(number_at(file, 4), file.size() - 8);
  // From list to list, as players read it.
  std::size_t at = 12, movi = 0;
  for (; at < file.size() && file.compare(at, 4, "idx1") != 0; at += 8 + number_at(file, at + 4)) {
    ASSERT_EQ(file.substr(at, 4), "LIST") << at;
    if (file.compare(at + 8, 4, "movi") == 0) movi = at + 8;
  }
  ASSERT_NE(movi, 0U);
  ASSERT_EQ(number_at(file, at + 4), 3 * 16U);
  ASSERT_EQ(at + 8 + 3 * 16, file.size());
  const std::pair<std::string, std::string> chunks[] = {
      {"00dc", "odd"}, {"01wb", {reinterpret_cast<const char*>(sound), 8}}, {"00dc", ""}};
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t entry = at + 8 + 16 * i, chunk = movi + number_at(file, entry + 8);
    const auto& [kind, data] = chunks[i];
    EXPECT_EQ(file.substr(entry, 4), kind);
    EXPECT_EQ(number_at(file, chunk + 4), data.size());
    EXPECT_EQ(file.substr(chunk, 4) + file.substr(chunk + 8, data.size()), kind + data);
  }
}

TEST_F(PageTest, StateTellsWhetherThePageHasSound) {
  end();
  cabinet = Cabinet{};
  ending = false;
  begin(SOUND_CARD);
  EXPECT_EQ(httplib::Client(address).Get("/sound")->status, 404);
  EXPECT_FALSE(watch("p", [](const json&) { return true; }).at("sound"));
}

TEST_F(PageTest, GreetingNamesAddressAndKeys) {
  stop();
  unsetenv("SSH_CONNECTION");
  std::string text = greeting_text(cabinet);
  EXPECT_NE(text.find(page_address(cabinet.page)), std::string::npos);
  for (const char* word : {"The watchdog is on unix:", "5 or 6", "1 or 2", "SOUND", "help"}) {
    EXPECT_NE(text.find(word), std::string::npos) << word;
  }
  setenv("SSH_CONNECTION", "10.0.0.1 5000 10.0.0.2 22", 1);
  text = greeting_text(cabinet);
  const std::string number = std::to_string(port);
  EXPECT_NE(text.find("ssh -L " + number + ":127.0.0.1:" + number + " "), std::string::npos)
      << text;
  unsetenv("SSH_CONNECTION");
}

TEST_F(PageTest, GameOutputIsLoggedAndNamedAfterFailure) {
  stop();
  GameProcess& game = cabinet.game;
  cabinet.options.log = game.log = drive.file("game.log");
  game.command = {"sh", "-c", "echo said; echo noise >&2; exit 3"};
  ASSERT_EQ(game_start(game), "");
  ASSERT_TRUE(soon([&] { return game_watch(game, cabinet_now_ms()); }));
  EXPECT_EQ(drive.read("game.log"), "said\nnoise\n");
  EXPECT_EQ(farewell_text(cabinet, game_verdict(game)),
            "The game ended with exit code 3; its output is in " + game.log + ".\n");
  EXPECT_EQ(farewell_text(cabinet, 0), "");
}

TEST_F(PageTest, ClosesWhileAPageIsOpen) {
  std::atomic<bool> open = false;
  std::thread reader([&] { watch("p", [](const json&) { return false; }, [&] { open = true; }); });
  EXPECT_TRUE(soon([&] { return open.load(); }));
  stop();
  page_close(cabinet);
  reader.join();
}

TEST_F(PageTest, TakenPortIsAnErrorUnlessAnyPortIsAllowed) {
  Cabinet other;
  other.options.page_port = port;
  EXPECT_NE(page_open(other).find("can't have port " + std::to_string(port)), std::string::npos);
  other.options.page_port = -1;
  Cabinet third;
  third.options.page_port = -1;
  EXPECT_EQ(page_open(other), "");
  EXPECT_EQ(page_open(third), "");
  EXPECT_NE(page_address(other.page), page_address(third.page));
  page_close(other);
  page_close(third);
}

}  // namespace
