// Stands in for the random numbers at link time, with a place for a test to come in between: what
// another thread might do in the middle of a function that draws one.
#pragma once

#include <functional>

inline std::function<void()> random_fake_before_next;  // called once
