// The version record and the check of the installed files.
#pragma once

// Start-up, main thread, before the game thread exists.
void boot_check_and_version();
void crc_check_draw();
