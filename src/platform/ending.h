// Requests from outside to end the program: the signals TERM, INT and HUP.
#pragma once

// From now on these signals don't end the program; they are only noted. Call it before the window
// is opened. HUP stays ignored where the program was started so. PIPE is ignored: a write that
// fails reports it itself.
void ending_watch();

// The signal that asked for the end, 0 if none did. Any thread.
int ending_requested();
