// Readers for the three formats, as strict as the game's own, and the folder of pictures under
// test.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "art/catalogue.h"
#include "art/picture.h"

// The pictures under test: LILYHOP_PICTURES, an installation's folder, or else one beside the build
// that the render program brings up to date first. Ends in no slash; empty if that failed.
const std::string& pictures_folder();

std::vector<uint8_t> read_file(const std::string& path);
// Empty if the file isn't there or isn't what the game accepts.
std::optional<art::Picture> read_tga(const std::string& path);
std::optional<art::Picture> read_bmp(const std::string& path);  // the key colour turns transparent
std::optional<art::Picture> read_png(const std::string& path);
std::optional<art::Picture> read_picture(const art::CatalogueRow& row);
