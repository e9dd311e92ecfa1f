// Standard output: everything printed goes through here, so that a frame can leave in one piece.
#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// Appends to standard output's buffer, or to the frame that is being composed. Main thread and readers alike.
void print(std::string_view text);
void printLine(std::string_view text = {});
void flushOutput();

/// Full-screen state: a buffer of 65,536 bytes, written by flushOutput() in one piece.
void useFullBuffering();
/// Plain state, that of the start: what is printed appears at once.
void useLineBuffering();

/// From here print() collects a frame in memory, and flushOutput() leaves it there. It isn't to be nested.
void beginFrame();
/// Fits the collected frame to the terminal (see fittedFrame) and writes it in one piece. Output that isn't a terminal
/// takes it as it is.
void endFrame();

/// The frame as a terminal of this size can hold it. Lines that don't fit in height are dropped from the top, and rows
/// of absolute cursor moves shift with them; lines that are too wide are cut, never wrapped: here a wide character
/// counts as the two columns that it takes. A frame that fits is returned as it is, but for a last line feed that would
/// scroll.
std::string fittedFrame(std::string_view frame, int rows, int columns);

}  // namespace halyard
