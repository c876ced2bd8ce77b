// Test screens of the board's inputs and outputs and of the watchdog. Inputs are steps of the game
// thread, drawing is the main thread's.
#pragma once

void switch_test_begin();
void switch_test_input();
void switch_test_draw();

void dip_test_input();
void dip_test_draw();

void meter_test_input();
void meter_test_draw();

void watchdog_test_begin();
void watchdog_test_input();
void watchdog_test_draw();
