#include "sound/bank.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <new>
#include <span>

#include "sound/player.h"  // jps_stop_all_players

namespace {

constinit JpsBank* banks[JPS_BANKS] = {};

template <typename T>
bool make(T*& array, std::uint32_t& capacity, std::uint32_t count, const char* complaint) {
  array = new (std::nothrow) T[count]{};
  capacity = count;
  if (array == nullptr) std::fputs(complaint, stdout);
  return array != nullptr;
}

void free_arrays(JpsBank* bank) {
  delete[] bank->commands;
  delete[] bank->playlists;
  delete[] bank->sounds;
  delete[] bank->groups;
  delete[] bank->group_sounds;
  delete bank;
}

template <typename T, typename Key>
T* find(T* array, std::uint32_t count, Key T::* field, Key wanted) {
  const std::span<T> rows(array, count);
  const auto row = std::ranges::find(rows, wanted, field);
  return row == rows.end() ? nullptr : &*row;
}

}  // namespace

JpsBank* jps_bank_alloc(std::uint32_t commands, std::uint32_t playlists, std::uint32_t sounds,
                        std::uint32_t groups, std::uint32_t group_sounds) {
  JpsBank* const bank = new (std::nothrow) JpsBank{};
  if (bank == nullptr) {
    std::puts("jps_bank_alloc(): ERROR! Couldn't malloc mem for bank");
    return nullptr;
  }
  if (make(bank->commands, bank->command_capacity, commands,
           "jps_bank_alloc(): ERROR! Couldn't mem for command data\n") &&
      make(bank->playlists, bank->playlist_capacity, playlists,
           "jps_bank_alloc(): ERROR! Couldn't malloc mem for bank playlists\n") &&
      make(bank->sounds, bank->sound_capacity, sounds,
           "jps_bank_alloc(): ERROR! Couldn't malloc mem for bank sound buffers\n") &&
      make(bank->groups, bank->group_capacity, groups,
           "jps_bank_alloc(): ERROR! Couldn't malloc mem for bank group data\n") &&
      make(bank->group_sounds, bank->group_sound_capacity, group_sounds,
           "jps_bank_alloc(): ERROR! Couldn't malloc mem for bank group sound data\n")) {
    return bank;
  }
  free_arrays(bank);
  return nullptr;
}

void jps_bank_free(JpsBank* bank) {
  if (bank == nullptr) return;
  const SoundLock lock;
  jps_stop_all_players();
  for (JpsSound& sound : std::span(bank->sounds, bank->sound_count)) jpsdrvr_free_sound(sound);
  std::ranges::replace(banks, bank, nullptr);
  free_arrays(bank);
}

void jps_bank_register(JpsBank* bank) {
  const SoundLock lock;
  JpsBank** const place = std::ranges::find(banks, nullptr);
  if (place != std::end(banks)) *place = bank;
}

JpsBank* jps_bank_find(std::string_view path) {
  const JpsKey key = jps_key(path);
  JpsBank** const place = std::ranges::find_if(
      banks, [key](const JpsBank* bank) { return bank != nullptr && bank->key == key; });
  return place == std::end(banks) ? nullptr : *place;
}

void jps_banks_free() {
  const SoundLock lock;
  for (JpsBank* bank : banks) jps_bank_free(bank);
}

const JpsPlaylist* jps_find_playlist(const JpsBank& bank, JpsKey key) {
  return find(bank.playlists, bank.playlist_count, &JpsPlaylist::key, key);
}

const JpsPlaylist* jps_find_playlist(const JpsBank& bank, std::int32_t number) {
  return find(bank.playlists, bank.playlist_count, &JpsPlaylist::number, number);
}

JpsSound* jps_find_sound(const JpsBank& bank, JpsKey key) {
  return find(bank.sounds, bank.sound_count, &JpsSound::key, key);
}

JpsGroup* jps_find_group(const JpsBank& bank, JpsKey key) {
  return find(bank.groups, bank.group_count, &JpsGroup::key, key);
}
