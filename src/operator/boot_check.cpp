#include "operator/boot_check.h"

// Nothing is checked yet: "Check CRC" stays as it is and asks again at the next boot.
void boot_check_and_version() {}
void crc_check_draw() {}
