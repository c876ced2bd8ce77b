// What the game asks of a player who hesitates. Main thread, inside a frame.
#pragma once

void prompt_start_draw();  // a credit waits: "press to start", with the seconds left
void prompt_coin_draw();   // a try without credit: "insert coin", breathing
void bubbles_draw();       // what the frog in the launch place says
