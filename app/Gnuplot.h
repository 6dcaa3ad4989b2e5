#pragma once

#include <string>

// Runs gnuplot on a script and lets it write to an open file. Throws NCError when gnuplot is not there, or with its
// message when it fails.
void RunGnuplot(std::string const &script, int output);
