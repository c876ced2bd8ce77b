// Scripts: what they reject, and how whole ones run over a real pseudo-terminal.
#include "cabinet/script.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>

#include "books/audit_list.h"
#include "books/settings.h"
#include "cabinet/cabinet.h"
#include "tests/plain_user.h"
#include "tests/temp_folder.h"

namespace {

TEST(ScriptParser, ErrorNamesLineAndExpectedForm) {
  const std::pair<const char*, const char*> rows[] = {
      {"# nothing\n\ncoin left 3 rate 20\nexpect tickets left == 3 within 50\n", ""},
      {"mark\ncoin middle\n", "s:2: the command is \"coin SIDE [COUNT] [rate RATE]\""},
      {"frobnicate\n", "s:1: there is no command \"frobnicate\""},
      {"press nose\n", "s:1: there is no switch \"nose\"; the command is \"press INPUT\""},
      {"dips 256\n",
       "s:1: BYTE has to be a whole number from 0 to 255, not 256; the command is \"dips BYTE\""},
      {"\n\nset pref \"Volume 3\n", "s:3: a quotation mark has no partner"},
      {"expect ticket left == 1\n", "s:1: there is no reading \"ticket\""},
      {"expect meter coin == 1\n",
       "s:1: there is no meter \"coin\"; the reading is \"meter METER\""},
      {"expect owed left = 1\n",
       "s:1: \"=\" can't stand behind a condition; \"within MS\" can, and \"for MS\""},
      {"wait until owed left == 1 for 3\n",
       "s:1: \"for\" can't stand behind a condition; \"within MS\" can"},
      {"expect owed left ==\n", "s:1: a reading is missing at the end"},
      {"wait soon\n", "s:1: it is \"wait MS\" or \"wait until CONDITION [within MS]\""},
      {"expect a == 1\nlet a = 1\n", "s:1: there is no reading \"a\""}};
  for (const auto& [text, error] : rows) {
    Script script;
    EXPECT_EQ(script_parse(text, "s", script), error);
  }
}

TEST(CabinetPaths, WrongPathGivesOneLineError) {
  const TempFolder folder;
  folder.write("secret", "mark\n");
  std::filesystem::create_directory(folder.file("shut"));
  chmod(folder.file("secret").c_str(), 0);
  chmod(folder.file("shut").c_str(), 0555);
  const PlainUser user(folder.path());
  ASSERT_TRUE(user.changed());
  Script script;
  for (const char* name : {"none", "shut", "secret", "secret/below"}) {
    EXPECT_EQ(script_load(folder.file(name), script), folder.file(name) + " can't be read");
  }
  static Cabinet cabinet;
  cabinet.options.drive = folder.file("shut");
  EXPECT_EQ(cabinet_open(cabinet), folder.file("shut") + ": Permission denied");
  cabinet.options.drive = folder.file("secret");
  EXPECT_EQ(cabinet_open(cabinet), folder.file("secret") + ": Not a directory");

  char program[] = "cabinet", dashes[] = "--", nothing[] = "";
  char* words[] = {program, dashes, nothing};
  Options options;
  EXPECT_EQ(options_read(3, words, options), "GAME can't be \"\"");
}

// Keeps the end of a killed process from its parent, as a busy machine can for seconds.
class Holder {
 public:
  explicit Holder(pid_t held) {
    int ready[2] = {};
    EXPECT_EQ(pipe(ready), 0);
    pid = fork();
    if (pid == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      const char good = ptrace(PTRACE_SEIZE, held, nullptr, nullptr) == 0 ? 1 : 0;
      _exit(write(ready[1], &good, 1) == 1 ? pause() : 1);
    }
    close(ready[1]);
    char good = 0;
    EXPECT_EQ(read(ready[0], &good, 1), 1);
    EXPECT_EQ(good, 1) << "this machine forbids ptrace";
    close(ready[0]);
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  ~Holder() {
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
  }

 private:
  pid_t pid;
};

// A cabinet without a game; the test holds the far end of the cable.
class CabinetTest : public testing::Test {
 protected:
  void SetUp() override {
    cabinet.options.drive = drive.path();
    cabinet.options.no_game = true;
    ASSERT_EQ(cabinet_open(cabinet), "");
  }
  void TearDown() override {
    if (port >= 0) close(port);
    cabinet_close(cabinet);
  }
  void open_port() {
    port = open(cabinet.cable.path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(port, 0);
    ASSERT_EQ(ioctl(port, TIOCEXCL), 0);
  }
  void turn(int ms) {
    for (const std::int64_t end = cabinet_now_ms() + ms; cabinet_now_ms() < end;) {
      cabinet_turn(cabinet, 1);
    }
  }
  std::string ask(const std::string& bytes) {
    EXPECT_EQ(write(port, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    turn(20);
    char buffer[4096];
    const ssize_t n = read(port, buffer, sizeof buffer);
    return n > 0 ? std::string(buffer, static_cast<std::size_t>(n)) : std::string();
  }
  ScriptState play(const std::string& text) {
    EXPECT_EQ(script_parse(text, "s", script), "");
    ScriptState state = SCRIPT_RUNS;
    while (state == SCRIPT_RUNS) {
      cabinet_turn(cabinet, 1);
      state = script_step(script, cabinet, cabinet_now_ms());
    }
    return state;
  }

  TempFolder drive;
  Cabinet cabinet;
  Script script;
  int port = -1;
};

TEST_F(CabinetTest, ScriptReadsPaperMetersFramesAndSettings) {
  open_port();
  ask("\nC0081\r\nT8003\r\nH10\r\nPa001\r");
  EXPECT_EQ(play("rate left 100\n"
                 "set pref \"Coins To Play\" 3\n"
                 "set pref \"Payout Percent\" 0.35\n"
                 "expect pref \"Coins To Play\" == 3\n"
                 "expect pref \"Payout Percent\" == 0.35\n"
                 "expect pref \"Timeout (Seconds)\" == -1\n"
                 "let before = tickets left\n"
                 "expect tickets left == before + 3 within 2000\n"
                 "expect owed left == 0 for 30\n"
                 "expect frame \"T 80 03\" count == 1\n"
                 "expect frame T\n"
                 "expect sent t count >= 4\n"
                 "expect meter coin-left == 1\n"
                 "expect lockout left on\n"
                 "expect lockout right off\n"
                 "mark\n"
                 "expect frame T == 0\n"
                 "coin left 2 rate 50\n"
                 "wait until hands idle within 2000\n"
                 "expect coins left == 2\n"
                 "expect sent S count == 4\n"
                 "expect malformed + checksum-errors == 0\n"),
            SCRIPT_PASSED)
      << script.failure;
  EXPECT_EQ(script.expectations, 15);
  EXPECT_EQ(drive.read("prefs").size(), 4U + 128 * PREF_COUNT);
  EXPECT_EQ(drive.read("prefbak"), drive.read("prefs"));
}

TEST_F(CabinetTest, FailedExpectationShowsBothSidesAndFrames) {
  open_port();
  ask("\nT8003\r");
  EXPECT_EQ(play("jam left\n\nexpect tickets left == owed left + 2 within 10\nmark\n"),
            SCRIPT_FAILED);
  const std::string& failure = script.failure;
  EXPECT_EQ(failure.find("s:3: expected tickets left == owed left + 2\n"
                         "  seen: tickets left is 0, owed left + 2 is 5\n  after "),
            0U)
      << failure;
  EXPECT_NE(failure.find("game > board  T 80 03"), std::string::npos);
  EXPECT_NE(failure.find("board > game  t 00 03"), std::string::npos);
}

TEST_F(CabinetTest, AuditsAreReadByNameFromDisk) {
  std::string bytes = "810A" + std::string(AUDIT_COUNT * 56, '\0');
  const auto row = [&bytes](std::size_t index, const char* name, std::size_t at, int value) {
    bytes.replace(4 + index * 56 + 8, std::strlen(name), name);
    bytes[4 + index * 56 + at] = static_cast<char>(value);
    bytes[4 + index * 56 + at + 1] = static_cast<char>(value >> 8);
  };
  row(0, "Time Game On", 48, 1234);
  bytes[4 + 4] = 0x20;
  row(22, "Tickets Left", 40, 700);
  EXPECT_EQ(play("expect audit \"Tickets Left\" == 0 within 5\n"), SCRIPT_FAILED);
  EXPECT_NE(script.failure.find("unknown (there is no "), std::string::npos);
  drive.write("audits", bytes);
  EXPECT_EQ(play("expect audit \"Tickets Left\" == 700\nexpect audit \"Time Game On\" == 1234\n"),
            SCRIPT_PASSED)
      << script.failure;
  EXPECT_EQ(play("expect audit \"Tickets\" == 700\n"), SCRIPT_FAILED);
  EXPECT_EQ(commands_do(cabinet, "audit \"Tickets Left\" - 1", 0), "");
  EXPECT_EQ(commands_do(cabinet, "lamp 16", 0), "there is no command \"lamp\"");
  EXPECT_EQ(cabinet.said, "audit \"Tickets Left\" - 1 is 699\n");
  drive.write("audits", bytes.substr(0, bytes.size() - 252));
  EXPECT_EQ(play("expect audit \"Tickets Left\" == 700\n"), SCRIPT_FAILED);
}

TEST_F(CabinetTest, KeysHoldSwitchesAndGiveCommands) {
  const int window = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, cabinet.keys.path.c_str());
  ASSERT_EQ(connect(window, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  const std::string lines = "press F2\npress F2\npress J\nrelease J\npress Keypad +\npress Q\npre";
  ASSERT_EQ(write(window, lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
  turn(20);
  const Switches& switches = cabinet.board.switches;
  EXPECT_TRUE(switches.closed[INPUT_TEST] && switches.closed[INPUT_VOLUME_UP]);
  EXPECT_TRUE(cabinet.board.dispensers[LEFT].jammed);
  EXPECT_EQ(switches.edges[INPUT_TEST], 1);
  close(window);  // the game is gone: no key is down
  turn(20);
  EXPECT_FALSE(switches.closed[INPUT_TEST] || switches.closed[INPUT_VOLUME_UP]);
}

TEST(LedDisplay, FindsCommandsBetweenNoise) {
  LedDisplay led;
  EXPECT_EQ(led_display_text(led), "dark");
  const std::string type("\x55\x57\x00\x02\xAA\x00", 6), blink("\x55\x59\x00\x01\xAA\x77", 6);
  led_display_receive(led, type.substr(0, 4));
  EXPECT_EQ(led.to_host, "");
  led_display_receive(led, type.substr(4) + "noise" + std::string("\x55\x55\x22\xB8\xAA\x00", 6));
  EXPECT_NE(led.to_host, "");
  EXPECT_EQ(led.value, 8888);
  EXPECT_EQ(led.malformed, 5);
  led_display_receive(led, blink);
  EXPECT_EQ(led_display_text(led), "8888*");
  led.deaf = true;
  led_display_receive(led, type);
  EXPECT_EQ(led.types, 1);
  led_display_power(led, false);
  EXPECT_EQ(led_display_text(led), "dark");
}

TEST_F(CabinetTest, StartsQuitsAndKillsGame) {
  cabinet.game.command = {"/bin/sh", "-c",
                          "test -c \"$LILYHOP_COM1\" && test -c \"$LILYHOP_COM2\" && "
                          "test -z \"$LILYHOP_COM3\" && "
                          "test \"$LILYHOP_POWER\" = off && test -d \"$LILYHOP_DRIVE_D\" && "
                          "test -S \"${LILYHOP_KEYS#unix:}\" && trap 'exit 7' TERM && "
                          ": > \"$LILYHOP_DRIVE_D/up\" && while :; do sleep 0.02; done"};
  setenv("LILYHOP_COM3", "/dev/ttyS0", 1);
  ASSERT_EQ(cabinet_start_game(cabinet), "");
  for (int i = 0; i < 200 && !drive.has("up"); ++i) turn(10);
  EXPECT_TRUE(cabinet.game.running);
  EXPECT_NE(cabinet_start_game(cabinet), "");
  EXPECT_EQ(play("quit game\nexpect game ended within 3000\nexpect game exit-code == 7\n"
                 "start game\nexpect game running for 30\nkill game\nexpect game ended\n"),
            SCRIPT_PASSED)
      << script.failure;
  EXPECT_EQ(game_verdict(cabinet.game), 0);  // it was told to end
  unsetenv("LILYHOP_COM2");
}

TEST_F(CabinetTest, KilledGameThatEndsLateStopsNothingElse) {
  const auto obey = [this](const char* line) {
    return commands_do(cabinet, line, cabinet_now_ms());
  };
  const auto games = [this] { return drive.read("starts").size(); };
  const auto wait_for_games = [&](std::size_t count) {
    for (int i = 0; i < 2000 && games() < count; ++i) turn(5);
    return games() == count && cabinet.game.running;
  };
  cabinet.game.command = {"/bin/sh", "-c",
                          "printf x >> \"$LILYHOP_DRIVE_D/starts\"; exec sleep 1000"};
  ASSERT_EQ(obey("start game"), "");
  ASSERT_TRUE(wait_for_games(1));
  {
    const Holder holder(cabinet.game.pid);
    EXPECT_EQ(obey("kill game"), "");
    open_port();
    EXPECT_EQ(ask("\nv\r8D"), "\nv0151\r");
    EXPECT_EQ(obey("set pref \"Coins To Play\" 3"), "the game has not ended yet; try again");
    EXPECT_EQ(obey("start game"), "");
    turn(50);
    EXPECT_EQ(games(), 1U);
  }
  ASSERT_TRUE(wait_for_games(2));

  int typed[2] = {};
  ASSERT_EQ(pipe(typed), 0);
  const int input = dup(STDIN_FILENO);
  dup2(typed[0], STDIN_FILENO);
  cabinet.commands_open = true;
  {
    const Holder holder(cabinet.game.pid);
    EXPECT_EQ(obey("kill game"), "");
    EXPECT_EQ(obey("start game"), "");
    ASSERT_GT(dprintf(typed[1], "kill game\nstart game\n"), 0);
    turn(50);
    EXPECT_EQ(obey("kill game"), "");
    turn(50);
    EXPECT_FALSE(cabinet.game.start_waits);  // the last word; and what is typed waits for the end
    EXPECT_EQ(games(), 2U);
  }
  cabinet.commands_open = false;
  dup2(input, STDIN_FILENO);
  for (const int file : {input, typed[0], typed[1]}) close(file);
  EXPECT_TRUE(wait_for_games(3));
}

}  // namespace
