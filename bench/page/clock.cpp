// Stands in for the game: a window of its size, as detailed as a painted scene, that shows the time
// as 32 squares, black for 0 and white for 1, lowest bit first, so that a reader of the picture
// knows its age. To the socket of LILYHOP_SOUND it sends a tone of 50 ms at each half second, from
// the next block on. Ends on SIGTERM.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int WIDTH = 1360, HEIGHT = 768, BITS = 32, SQUARE = 40, ROWS_AT_ONCE = 32;
constexpr std::chrono::milliseconds FRAME(16);

void paint_background(xcb_connection_t* x, xcb_window_t window, xcb_gcontext_t gc) {
  std::vector<std::uint32_t> rows(static_cast<std::size_t>(WIDTH) * ROWS_AT_ONCE);
  std::uint32_t noise = 1;
  for (int y = 0; y < HEIGHT; y += ROWS_AT_ONCE) {
    for (std::uint32_t& pixel : rows) {
      noise = noise * 1664525 + 1013904223;
      pixel = 0x204020 + (noise >> 27) * 0x030603;
    }
    xcb_put_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, window, gc, WIDTH, ROWS_AT_ONCE, 0,
                  static_cast<std::int16_t>(y), 0, 24,
                  static_cast<std::uint32_t>(rows.size() * sizeof rows[0]),
                  reinterpret_cast<const std::uint8_t*>(rows.data()));
  }
}

void show_time(xcb_connection_t* x, xcb_window_t window, xcb_gcontext_t gc, std::uint32_t ms) {
  for (const std::uint32_t bit : {0U, 1U}) {
    std::vector<xcb_rectangle_t> squares;
    for (int i = 0; i < BITS; ++i) {
      if ((ms >> i & 1) == bit) {
        squares.push_back({static_cast<std::int16_t>(i * SQUARE), 0, SQUARE, SQUARE});
      }
    }
    const std::uint32_t colour = bit == 0 ? 0x000000 : 0xFFFFFF;
    xcb_change_gc(x, gc, XCB_GC_FOREGROUND, &colour);
    xcb_poly_fill_rectangle(x, window, gc, static_cast<std::uint32_t>(squares.size()),
                            squares.data());
  }
  xcb_flush(x);
}

constexpr int RATE_HZ = 44100, BLOCK = 512, TONES_MS = 500, TONE_MS = 50, TONE_HZ = 1000;

struct Packet {
  std::int64_t frame = 0, time_us = 0;
  std::int32_t frames = BLOCK, zero = 0;
  std::int16_t samples[BLOCK * 2] = {};
};

void sound_loop(int socket) {
  using namespace std::chrono;
  const auto began = steady_clock::now();
  for (Packet packet;; packet.frame += BLOCK) {
    std::this_thread::sleep_until(began + microseconds(packet.frame * 1'000'000 / RATE_HZ));
    const auto now = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const bool loud = now % TONES_MS < TONE_MS;
    for (int i = 0; i < BLOCK; ++i) {
      const double angle =
          2 * 3.14159265 * TONE_HZ * static_cast<double>(packet.frame + i) / RATE_HZ;
      const auto sample = static_cast<std::int16_t>(loud ? 16000 * std::cos(angle) : 0);
      packet.samples[2 * i] = packet.samples[2 * i + 1] = sample;
    }
    packet.time_us = duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
    send(socket, &packet, sizeof packet, MSG_NOSIGNAL | MSG_DONTWAIT);
  }
}

void start_sound() {
  const char* const way = std::getenv("LILYHOP_SOUND");
  const std::string path = way == nullptr ? "" : way;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.rfind("unix:", 0) != 0 || path.size() > sizeof address.sun_path) return;
  std::strcpy(address.sun_path, path.c_str() + 5);
  const int file = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  if (connect(file, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) return;
  std::thread(sound_loop, file).detach();
}

}  // namespace

int main() {
  using namespace std::chrono;
  start_sound();
  xcb_connection_t* x = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(x) != 0) return 1;
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(x)).data;
  const xcb_window_t window = xcb_generate_id(x);
  xcb_create_window(x, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, WIDTH, HEIGHT, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
  constexpr char NAME[] = "_NET_WM_PID";
  xcb_intern_atom_reply_t* atom =
      xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, sizeof NAME - 1, NAME), nullptr);
  const pid_t pid = getpid();
  xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, atom->atom, XCB_ATOM_CARDINAL, 32, 1, &pid);
  std::free(atom);
  const xcb_gcontext_t gc = xcb_generate_id(x);
  xcb_create_gc(x, gc, window, 0, nullptr);
  xcb_map_window(x, window);
  paint_background(x, window, gc);
  while (xcb_connection_has_error(x) == 0) {
    const auto now = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    show_time(x, window, gc, static_cast<std::uint32_t>(now));
    std::this_thread::sleep_for(FRAME);
  }
  return 0;
}
