/// Lines of coloured segments: their width, their printing, and the standard texts of progress.
#pragma once

#include "lumo/foundation/status/status_node.h"

namespace lumo {

/// Sum of the segments' lengths.
upL_t width_of(const ColorString& text);

/// Whether the two would read as one word behind each other.
bool runs_together(const ColorString& text, const ColorString& next);
/// Puts `next` behind the text, with a blank between where they would run together.
void append(ColorString& text, const ColorString& next);

/// Prints the segments in their colours under one hold of the console lock, then sets white.
void print(const ColorString& text);
void print_line(const ColorString& text);

/// Prints segments while the sum of their widths stays within `line_width`; the one that would overrun it is
/// dropped with all behind it. Returns the width printed.
upL_t print_within(const ColorString& text, upL_t line_width);

/// "12 / 100  ( 12.0% )  4.5 s": what is done, and the time that has passed. From a second on the time that
/// is left stands before it, and the rate when it is a million a second or more: "33.0 s left, 12 M/s, 4.5
/// s".
ColorString progress_text(upL_t done, upL_t total, double seconds);

/// "4.5 s" below a minute, "1:02:03" below a day, "3d 01:02:03" from there on.
std::string format_elapsed(double seconds);

}  // namespace lumo
