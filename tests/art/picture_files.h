// Picture files as the game reads them.
#pragma once

#include <optional>
#include <string>

#include "art/picture.h"

// `name` is below the folder. The format follows from its ending; a bitmap's key colour turns
// transparent. Empty if the game doesn't accept the file.
std::optional<art::Picture> read_picture(const std::string& folder, const std::string& name);
