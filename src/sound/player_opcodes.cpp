// What each command does.
#include <algorithm>
#include <cstdint>
#include <iterator>

#include "sound/complaints.h"
#include "sound/markers.h"
#include "sound/player_steps.h"

namespace {

const JpsCommand& command_of(const JpsPlayer& player, std::uint32_t index) {
  return player.playlist->first_command[index];
}

// The driver track of the command's track; -1 if the player has none there or has lost it.
int driver_track(const JpsCommand& command, const JpsPlayer& player) {
  return player.tracks[command.track];
}

// Continues the playlist at command `index`, as if the clock now read that command's time.
void jump(JpsPlayer& player, std::uint32_t index, float& t) {
  const float there = command_of(player, index).time;
  player.start_time += t - there;
  t = there;
  player.pc = index;
}

void run_end(const JpsCommand&, JpsPlayer& player, float&) {
  const bool sounding = std::ranges::any_of(player.tracks, [](std::int32_t track) {
    return track >= 0 && jpsdrvr_is_playing(track) == 1;
  });
  if (sounding) {
    --player.pc;  // stay
  } else {
    jps_player_stop(player);
  }
}

void start_sound(JpsSound* sound, const JpsCommand& command, int track) {
  if (sound == nullptr) return;
  sound->loop = command.loop == 1 ? 0 : 1;
  jpsdrvr_play(sound, track);
}

void run_play(const JpsCommand& command, JpsPlayer& player, float&) {
  const int track = driver_track(command, player);
  if (track < 0) return;
  const JpsSound* const playing = jpsdrvr_track(track).sound;
  if (playing != nullptr && playing->streamed == 0) jpsdrvr_stop(track);
  start_sound(command.sound, command, track);
}

void run_playgroup(const JpsCommand& command, JpsPlayer& player, float&) {
  const int track = driver_track(command, player);
  if (track < 0 || player.armed_command != nullptr) return;
  JpsSound* const sound = jps_group_pick(*command.group);
  if (sound == nullptr) return;
  if (jpsdrvr_is_playing(track) == 1) jpsdrvr_stop(track);
  start_sound(sound, command, track);
}

void run_stop(const JpsCommand& command, JpsPlayer& player, float&) {
  const int track = driver_track(command, player);
  if (track >= 0) jpsdrvr_stop(track);
}

void run_setvol(const JpsCommand& command, JpsPlayer& player, float&) {
  const int track = driver_track(command, player);
  if (track < 0) return;
  const int asked = static_cast<int>(player.volume);
  const int volume = command.value * asked / 255;
  if (command.seconds > 0 && jps_ramp_add(player, track, volume, command.seconds)) return;
  // If it is set at once, a lower volume counts twice. The scripts' levels were chosen for this.
  jpsdrvr_set_volume(track, asked - 255 + volume);
}

void run_loopstart(const JpsCommand& command, JpsPlayer& player, float&) {
  const auto free = std::ranges::find(player.loops, 0, &JpsLoop::remaining);
  if (free == std::end(player.loops)) {
    jps_complain("jps_opcode_func_loopstart(): ERROR! Loop overflow\n");
    return;
  }
  *free = {player.pc, command.count};
}

// The LOOPSTART that a LOOPEND at `pc` belongs to. False, after a message, if there is none.
bool find_loopstart(const JpsPlayer& player, std::uint32_t& index) {
  int open = 0;  // inner loops on the way
  for (index = player.pc; index-- > 0;) {
    const std::uint32_t opcode = command_of(player, index).opcode;
    if (opcode == JPS_LOOPEND) ++open;
    if (opcode == JPS_LOOPSTART && open-- == 0) return true;
  }
  jps_complain(open > 0 ? "jps_opcode_func_loopend(): ERROR! non-matching loops, ignoring\n"
                        : "jps_opcode_func_loopend(): ERROR! LOOPEND without matching LOOPSTART... "
                          "ignoring\n");
  return false;
}

void run_loopend(const JpsCommand&, JpsPlayer& player, float& t) {
  std::uint32_t start = 0;
  if (!find_loopstart(player, start)) return;
  const auto loop = std::ranges::find_if(player.loops, [start](const JpsLoop& row) {
    return row.remaining != 0 && row.start_pc == start;
  });
  if (loop == std::end(player.loops)) {
    jps_complain("ERROR! Couldn't find matching loop struct\n");
    return;
  }
  jump(player, start, t);
  if (loop->remaining > 0) --loop->remaining;
}

void run_duck(const JpsCommand& command, JpsPlayer& player, float&) {
  const JpsTrack& track = jpsdrvr_track(command.track);
  if (!(command.seconds > 0) || track.owner == nullptr) return;
  jps_ramp_add(player, command.track, std::max(track.volume - command.value, 0), command.seconds);
}

void run_unduck(const JpsCommand& command, JpsPlayer& player, float&) {
  for (std::uint32_t index = player.pc; index-- > 0;) {
    const JpsCommand& earlier = command_of(player, index);
    if (earlier.opcode != JPS_DUCK || earlier.track != command.track) continue;
    const int volume = std::min(jpsdrvr_track(command.track).volume + earlier.value, 255);
    jps_ramp_add(player, command.track, volume, command.seconds);
    return;
  }
  jps_complain("jps_opcode_func_unduck(): ERROR! Couldn't find matching duck call\n");
}

void run_signal(const JpsCommand& command, JpsPlayer&, float&) {
  jps_signal_post(command.number);
}

void run_goto(const JpsCommand& command, JpsPlayer& player, float& t) {
  for (std::uint32_t index = 0; index < player.playlist->command_count; ++index) {
    const JpsCommand& label = command_of(player, index);
    if (label.opcode != JPS_LABEL || label.key != command.key) continue;
    jump(player, index, t);
    break;
  }
}

void run_marker(const JpsCommand& command, JpsPlayer&, float&) {
  jps_marker_set(command.number, jps_clock_s());
}

void run_setpri(const JpsCommand& command, JpsPlayer& player, float&) {
  const int track = driver_track(command, player);
  if (track < 0) return;
  jpsdrvr_track(track).priority = command.value;
}

// LABEL is only a place, and WAITFOR was resolved by the parser.
void run_nothing(const JpsCommand&, JpsPlayer&, float&) {}

struct OpcodeRow {
  std::uint32_t opcode;
  void (*run)(const JpsCommand& command, JpsPlayer& player, float& t);
};

// Opcodes without a row do nothing: scripts may contain pans and frequencies.
constexpr OpcodeRow OPCODES[] = {
    {0, nullptr},
    {JPS_END, run_end},
    {JPS_PLAY, run_play},
    {JPS_STOP, run_stop},
    {JPS_SETVOL, run_setvol},
    {JPS_LOOPSTART, run_loopstart},
    {JPS_LOOPEND, run_loopend},
    {JPS_DUCK, run_duck},
    {JPS_UNDUCK, run_unduck},
    {JPS_WAITFOR, run_nothing},
    {JPS_SETPAN, nullptr},
    {JPS_SETFREQ, nullptr},
    {JPS_SIGNAL, run_signal},
    {JPS_GOTO, run_goto},
    {14, nullptr},
    {JPS_LABEL, run_nothing},
    {JPS_MARKER, run_marker},
    {JPS_PLAYGROUP, run_playgroup},
    {JPS_SETPRI, run_setpri},
};

constexpr bool rows_are_in_order() {
  for (std::uint32_t i = 0; i < std::size(OPCODES); ++i) {
    if (OPCODES[i].opcode != i) return false;
  }
  return true;
}
static_assert(rows_are_in_order());

// Whether the command may run now. An ONSMARKER command starts to wait here.
bool condition_holds(const JpsCommand& command, JpsPlayer& player) {
  if (command.condition == 0) return true;
  const int marker = static_cast<int>(command.condition >> 16);
  if ((command.condition & JPS_ON_MARKER) != 0 && jps_marker_test(marker, jps_clock_s())) {
    return true;
  }
  if ((command.condition & JPS_ONS_MARKER) == 0) return false;
  player.armed_command = &command;
  if (!jps_marker_test(marker, jps_clock_s())) return false;
  player.armed_command = nullptr;
  return true;
}

}  // namespace

bool jps_player_exec(const JpsCommand& command, JpsPlayer& player, float& t) {
  if (!condition_holds(command, player)) {
    ++player.pc;
    return false;
  }
  const bool known = command.opcode < std::size(OPCODES) && OPCODES[command.opcode].run != nullptr;
  if (known) {
    OPCODES[command.opcode].run(command, player, t);
  } else {
    jps_complain("jps_player_exec(): ERROR! Invalid opcode '0x%0x'\n", command.opcode);
  }
  ++player.pc;
  return true;
}
