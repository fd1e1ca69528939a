// Whether what a command writes leaves alone what it reads, and each other.
#pragma once

#include <string>
#include <vector>

// Raises a usage Failure where a file to be written is one that is read, or two places that are written are one. Empty names are
// none, nor is an input "-"; an output "-" is the file that standard output leads to. Files that exist are compared as such,
// whatever their names; others by their names.
void RefuseOverwriting(std::vector<std::string> const & inputs, std::vector<std::string> const & outputs);
