// The spoken lines that call for a player, each with its own pace and one gate for all.
#pragma once

// One step. Game thread, in play.
void voices_step();

// As at process start: every line may be spoken.
void voices_reset();
