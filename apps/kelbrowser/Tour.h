#pragma once

#include <string>

class KelBrowserWindow;

// The browser's tour without a display: it opens the input forms of several
// directives (one with a field of every kind), fills them as an operator
// would, sends them, and leaves a PNG of the window after each step and a
// transcript (transcript.txt) in the folder. 0 when every step went as
// expected.
int RunTour(KelBrowserWindow& window, const std::string& folder);
