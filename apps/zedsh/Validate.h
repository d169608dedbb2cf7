// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// zedsh validate: checks dictionary and instance files as the access library
// loads them, reporting every fault it finds rather than the first.

#include <string>
#include <vector>

// Each file is recognised by its "format" ("zed-instances 1") or its
// "instances" list as an instance file; anything else is read as a dictionary. Dictionaries are checked
// first; instance files are checked against the last valid dictionary named
// among the files, else against defaultDictionary. Prints "FILE: valid" or
// one line per fault ("FILE: JSON path: what is wrong"); returns 0 when every
// file is valid, 1 when one is not, 3 when no dictionary could be had for an
// instance file.
int ZedshValidate(const std::vector<std::string>& files, const std::string& defaultDictionary);
