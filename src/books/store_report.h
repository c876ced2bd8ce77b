// Whether the books can be stored. A store that fails costs nothing at the moment, so nobody would
// notice before the power goes. One thread at a time: start-up, then the game thread, then
// shutdown.
#pragma once

// Notes how the store of a file ended: `error` is its errno, or 0 if all went well. Prints one line
// when the first file fails, one an hour as long as one does, and one when all can be stored again.
// True if this file's last store ended otherwise.
bool store_report(const char* name, int error);

// Why a file of the books can't be stored at present, as a text; empty if all can.
const char* store_trouble();

// Forgets everything, as at process start.
void store_report_reset();
