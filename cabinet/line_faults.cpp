#include "cabinet/line_faults.h"

namespace {

constexpr const char* FAULT_NAMES[LINE_FAULTS] = {"drop", "garble", "duplicate"};

bool hit(LineFaults& faults, LineFault fault) {
  LineFaults::Kind& kind = faults.kinds[fault];
  if (kind.chance <= 0) return false;
  if (kind.rest > 0) {
    --kind.rest;
    return false;
  }
  constexpr double RANGE = 4294967296.0;
  if (static_cast<double>(faults.random()) / RANGE >= kind.chance) return false;
  kind.rest = kind.apart;
  ++kind.hits;
  return true;
}

}  // namespace

const char* line_fault_name(int fault) {
  return FAULT_NAMES[fault];
}

int line_fault_find(const std::string& name) {
  for (int i = 0; i < LINE_FAULTS; ++i) {
    if (name == FAULT_NAMES[i]) return i;
  }
  return -1;
}

bool line_faults_set(LineFaults& faults, LineFault fault, double percent, int apart) {
  if (percent < 0 || percent > 100 || apart < 0) return false;
  double chance = 0;
  if (percent > 0) {
    // On average one byte in 100 / percent is hit; `apart` of these can't be.
    const double open = 100 / percent - apart;
    if (open < 1) return false;
    chance = 1 / open;
  }
  LineFaults::Kind& kind = faults.kinds[fault];
  kind.chance = chance;
  kind.apart = apart;
  kind.rest = 0;
  return true;
}

void line_faults_seed(LineFaults& faults, std::uint32_t seed) {
  faults.random.seed(seed);
}

std::string line_faults_apply(LineFaults& faults, const std::string& bytes) {
  std::string out;
  for (char c : bytes) {
    if (hit(faults, FAULT_DROP)) continue;
    if (hit(faults, FAULT_GARBLE)) c = static_cast<char>(c ^ (1 + faults.random() % 255));
    out += c;
    if (hit(faults, FAULT_DUPLICATE)) out += c;
  }
  return out;
}
