// The frog's lines. A group is what the game may ask for; the player picks one line of it, never
// the same one twice in a row. Lines of groups that may come every two seconds last at most 1.5 s,
// the others 2 s, because the music is turned down for that time (mainpls.txt).
#include <array>
#include <cmath>
#include <string_view>

#include "art/sound/catalogue.h"
#include "art/sound/speech.h"

namespace art::sound {

namespace {

struct SpokenRow {
  const char* name;
  Speech speech;
};

constexpr SpokenRow kLines[] = {
    {"voxalmost1", {"That was so close!", 1.0, 80}},
    {"voxalmost2", {"Nearly there!", 1.1, 60}},
    {"voxalmost3", {"Almost made it!", 1.05}},
    {"voxchatter1", {"Come and play with me!", 1.05, 80}},
    {"voxchatter2", {"The water is lovely today."}},
    {"voxchatter3", {"I am a very hungry frog.", 1.0}},
    {"voxchatter4", {"What a lovely day to play!", 1, 60}},
    {"voxchatter5", {"Who wants to play?", 1.05, 160}},
    {"voxchatter6", {"Has anyone seen my lunch?", 1, 120}},
    {"voxchatter7", {"I can do this all day.", 1.05}},
    {"voxeatbugs1", {"Let's go and eat bugs!", 0.96, 60}},
    {"voxeatbugs2", {"Bugs for lunch!", 1.1, 60}},
    {"voxeatbugs3", {"Eat more bugs!", 1.1, 60}},
    {"voxeatbugs4", {"Bugs make tickets!", 1.05, 60}},
    {"voxeatbugsattract1", {"Eat the bugs. Win tickets!", 1.0, 80}},
    {"voxeatbugsattract2", {"Every bug counts!", 1.1, 60}},
    {"voxeatbugsattract3", {"Help me catch some bugs!", 1.05, 60}},
    {"voxinsertcoins1", {"Coins in, please!", 1.0, 60}},
    {"voxinsertcoins2", {"Put in some coins!", 1.0, 60}},
    {"voxinsertcoins3", {"More coins!", 1.1, 60}},
    {"voxoops1", {"Oops!", 1.3, -120}},
    {"voxoops2", {"That was wet!", 1.1}},
    {"voxoops3", {"Splash!", 1.2}},
    {"voxoops4", {"I meant to do that.", 1.0}},
    {"voxoops5", {"Cold water!", 1.1, 80}},
    {"voxplayagain1", {"Play again?", 1.1, 160}},
    {"voxplayagain2", {"One more jump?", 1.1, 160}},
    {"voxplayagain3", {"One more game?", 1.1, 140}},
    {"voxpressbutton1", {"Press the button!", 1.1, 60}},
    {"voxpressbutton2", {"Ready when you are!", 1.05, 60}},
    {"voxpressbutton3", {"Push the start button!", 0.9, 60}},
    {"voxsmooch1", {"Sweet!", 1.2, 120}},
    {"voxsmooch2", {"How sweet!", 1.1, 100}},
    {"voxsmooch3", {"For me?", 1.15, 180}},
    {"voxsmooch4", {"Oh, my!", 1.15}},
    {"voxtickets1", {"Tickets for you!", 1.1, 80}},
    {"voxtickets2", {"Look at all those tickets!", 1.05, 60}},
    {"voxtickets3", {"Take your tickets home!", 1.05, 60}},
    {"voxtickets4", {"So many tickets!", 1.1, 100}},
    {"voxwin1", {"You win the jackpot!", 1.1, 120}},
    {"voxwin2", {"We made it across!", 1.1, 100}},
    {"voxwin3", {"You are a champion!", 1.1, 100}},
    {"voxwinticketsattract1", {"Win lots of tickets!", 1.1, 80}},
    {"voxwinticketsattract2", {"Cross the river, and win!", 1.0, 60}},
    {"voxwinticketsattract3", {"Get across, and win big!", 1.05, 60}},
    {"voxyay1", {"Hooray!", 1.2, 160}},
    {"voxyay2", {"Pretty butterfly!", 1.0, 80}},
    {"voxyay3", {"I got it!", 1.15, 100}},
    {"voxyay4", {"Yes, yes!", 1.05, 120}},
    {"voxyum1", {"Yummy!", 1.2, 120}},
    {"voxyum2", {"Tasty!", 1.2, 100}},
    {"voxyum3", {"Crunchy!", 1.2, 80}},
    {"voxyum4", {"Delicious!", 1.1, 80}},
    {"voxyum5", {"More, please!", 1.1, 120}},
};

// A kiss: air drawn through tight lips, and the pop that ends it.
Signal kiss() {
  Noise noise(61);
  Filter lips;
  double phase = 0;
  Signal out = fill(0.16, [&](double t) {
    lips.set(glide(1500, 3600, t / 0.12), 7);
    return 0.9 * lips.bandpass(noise.next()) * rise(t, 0.05) * (1 - rise(t - 0.11, 0.02));
  });
  add(out,
      fill(0.05,
           [&](double t) {
             phase += glide(420, 1350, t / 0.03) / kRate;
             return 0.7 * std::sin(kTau * phase) * rise(t, 0.002) * decay(t, 0.06);
           }),
      0.118, 1);
  return out;
}

Wave spoken(int n) {
  const SpokenRow& row = kLines[n];
  if (!std::string_view(row.name).starts_with("voxsmooch")) return {1, speak(row.speech)};
  Signal out = kiss();
  for (float& x : out) x *= 0.5f;
  add(out, speak(row.speech), 0.24, 1);
  return {1, out};
}

constexpr auto kRows = [] {
  std::array<Row, std::size(kLines)> rows{};
  for (size_t i = 0; i < rows.size(); i++)
    rows[i] = {kLines[i].name, Kind::kVoice, false, spoken, static_cast<int>(i)};
  return rows;
}();

}  // namespace

const Family kVoiceFamily = {"art/sound/voices.cpp", kRows, 0.3};

}  // namespace art::sound
