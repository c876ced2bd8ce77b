// Keys of the window as lines on a socket, for whoever stands in for the cabinet's switches.
#pragma once

// Sends "press NAME" or "release NAME" to the socket of LILYHOP_KEYS. Nobody need listen there, and
// the listener may go and come: a line that can't be sent at once is lost. Main thread.
void key_line_send(bool pressed, const char* name);
