#include "cabinet/screen_grab.h"

#include <sys/shm.h>
#include <unistd.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/owned_reply.h"

struct ScreenGrab {
  xcb_connection_t* connection = nullptr;
  xcb_atom_t pid_atom = 0;
  xcb_window_t window = 0;  // 0: not found yet
  int window_pid = -1;      // the game that owns it
  xcb_shm_seg_t segment = 0;
  std::uint8_t* pixels = nullptr;
  std::size_t bytes = 0;
};

namespace {

constexpr int BYTES_PER_PIXEL = 4;
constexpr const char* NO_DISPLAY =
    "there is no X display to take the picture from; start ./play, or set DISPLAY";

void forget_segment(ScreenGrab& grab) {
  if (grab.pixels == nullptr) return;
  xcb_shm_detach(grab.connection, grab.segment);
  shmdt(grab.pixels);
  grab.pixels = nullptr;
  grab.bytes = 0;
}

void close_display(ScreenGrab& grab) {
  if (grab.connection == nullptr) return;
  forget_segment(grab);
  xcb_disconnect(grab.connection);
  grab.connection = nullptr;
  grab.window = 0;
}

std::string open_display(ScreenGrab& grab) {
  if (grab.connection != nullptr && xcb_connection_has_error(grab.connection) == 0) return {};
  close_display(grab);
  if (std::getenv("DISPLAY") == nullptr) return NO_DISPLAY;
  grab.connection = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(grab.connection) != 0) return NO_DISPLAY;
  const auto shm = owned(xcb_shm_query_version_reply(
      grab.connection, xcb_shm_query_version(grab.connection), nullptr));
  if (!shm) return "the X display can't share memory, so it isn't on this machine";
  constexpr char NAME[] = "_NET_WM_PID";
  const auto atom = owned(xcb_intern_atom_reply(
      grab.connection, xcb_intern_atom(grab.connection, 0, sizeof NAME - 1, NAME), nullptr));
  grab.pid_atom = atom ? atom->atom : 0;
  return {};
}

int pid_of(const ScreenGrab& grab, xcb_window_t window) {
  const auto cookie =
      xcb_get_property(grab.connection, 0, window, grab.pid_atom, XCB_ATOM_CARDINAL, 0, 1);
  const auto reply = owned(xcb_get_property_reply(grab.connection, cookie, nullptr));
  if (!reply || xcb_get_property_value_length(reply.get()) < 4) return -1;
  return *static_cast<const int*>(xcb_get_property_value(reply.get()));
}

// The window of the game below `parent`, 0 if there is none. A window manager puts it into a frame.
xcb_window_t find_window(const ScreenGrab& grab, xcb_window_t parent, int pid) {
  const auto tree = owned(
      xcb_query_tree_reply(grab.connection, xcb_query_tree(grab.connection, parent), nullptr));
  if (!tree) return 0;
  const xcb_window_t* children = xcb_query_tree_children(tree.get());
  for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
    const int owner = pid_of(grab, children[i]);
    if (owner > 0 && (owner == pid || getpgid(owner) == pid)) return children[i];
    const xcb_window_t below = find_window(grab, children[i], pid);
    if (below != 0) return below;
  }
  return 0;
}

std::string attach_segment(ScreenGrab& grab, std::size_t bytes) {
  if (grab.bytes == bytes) return {};
  forget_segment(grab);
  const int id = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
  if (id < 0) return std::string("shared memory: ") + std::strerror(errno);
  void* memory = shmat(id, nullptr, 0);
  grab.segment = xcb_generate_id(grab.connection);
  const auto failed = owned(xcb_request_check(
      grab.connection,
      xcb_shm_attach_checked(grab.connection, grab.segment, static_cast<std::uint32_t>(id), 0)));
  shmctl(id, IPC_RMID, nullptr);  // it is removed when nobody has it attached any more
  if (memory == reinterpret_cast<void*>(-1)) return "shared memory can't be attached";
  grab.pixels = static_cast<std::uint8_t*>(memory);
  grab.bytes = bytes;
  if (!failed) return {};
  forget_segment(grab);
  return "the X display can't share memory with this machine";
}

}  // namespace

ScreenGrab* screen_grab_new() {
  return new ScreenGrab;
}

void screen_grab_delete(ScreenGrab* grab) {
  close_display(*grab);
  delete grab;
}

std::string screen_grab_take(ScreenGrab& grab, int pid, ScreenPicture& picture) {
  if (pid < 0) return "the game isn't running";
  if (std::string error = open_display(grab); !error.empty()) return error;
  xcb_connection_t* connection = grab.connection;
  if (grab.window == 0 || grab.window_pid != pid) {
    const auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    grab.window = find_window(grab, screens.data->root, pid);
    grab.window_pid = pid;
    if (grab.window == 0) return "the game is starting";
  }
  const auto size =
      owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, grab.window), nullptr));
  if (!size) {
    grab.window = 0;
    return "the game's window has gone";
  }
  picture.width = size->width;
  picture.height = size->height;
  picture.row_bytes = size->width * BYTES_PER_PIXEL;
  const std::size_t bytes =
      static_cast<std::size_t>(picture.row_bytes) * static_cast<std::size_t>(size->height);
  if (std::string error = attach_segment(grab, bytes); !error.empty()) return error;
  const auto cookie = xcb_shm_get_image(connection, grab.window, 0, 0, size->width, size->height,
                                        ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, grab.segment, 0);
  const auto image = owned(xcb_shm_get_image_reply(connection, cookie, nullptr));
  if (!image) return "the game's window isn't completely on the screen";
  if (image->size != bytes) return "the screen doesn't have 32 bits a pixel";
  picture.pixels = grab.pixels;
  return {};
}
