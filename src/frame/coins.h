// Money in: coins, swipes, service credits, Start, and the launch by time-out. Game thread, in
// play.
#pragma once

void coins_take(int side);
void start_take(int side);
void service_credits_take();
void auto_launch();
