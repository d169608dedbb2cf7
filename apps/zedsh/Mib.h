// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// zedsh mib: MIB modules compiled into a dictionary, written on standard
// output, so that what a console makes of them can be read, kept and checked.

#include <string>
#include <vector>

// words: [--mib-dirs DIRS] [--with-retired] MODULE... (a module by its name
// or a file by its path, or ALL); mibDirs: a --mib-dirs given before the command. Prints the dictionary's JSON on
// standard output and the faults on standard error, one per line; returns 0 when every module named compiled, 1 when
// one could not, 2 on a bad command line.
int ZedshMib(std::vector<std::string> words, std::string mibDirs, const char* usage);
