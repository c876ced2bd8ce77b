// Glides and fades.
#pragma once

// From one value to another as t goes from 0 to 1; held to its ends outside. 32-bit floats, as all
// that is compared with the clock is.
inline float lerp(float from, float to, float t) {
  return t <= 0.0F ? from : t >= 1.0F ? to : from + t * (to - from);
}
