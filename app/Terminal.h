#pragma once

// Whether stderr is a terminal that understands the escape sequences the
// progress bar redraws itself with. On Windows the console is switched to
// those sequences, and to UTF-8 output so file names in any script show.
bool prepareTerminalForProgress();
