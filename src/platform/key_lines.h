// Keys of the window as lines on a socket, for a program that simulates the cabinet's switches.
#pragma once

// Sends "press NAME" or "release NAME" to the socket of LILYHOP_KEYS. The listener is optional and
// may come and go: a line that can't be sent at once is lost. Main thread.
void key_line_send(bool pressed, const char* name);
