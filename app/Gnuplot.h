#pragma once

#include <filesystem>
#include <string>

// Whether a picture is made as PNG, and not as SVG, by the ending of its name. UsageError for another ending.
bool IsPng(std::filesystem::path const &picture);

// Runs gnuplot on a script and keeps what it draws, whole or not at all. `project` is that of the command. Throws
// NCError when gnuplot is not there, or with its message when it fails.
void WritePicture(std::string const &script, std::filesystem::path const &picture,
                  std::filesystem::path const &project);

// The same as a text, of a script that makes SVG.
std::string PictureText(std::string const &script);
