#pragma once

namespace velmora {

/// From now on an interrupt from the keyboard, or a request to end, gives the console its own colours back
/// and ends the process with code 128 + signal (130 for an interrupt). Work in progress is not finished.
void end_on_interrupt();

}  // namespace velmora
