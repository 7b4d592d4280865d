#pragma once

namespace velmora {

/// From now on an interrupt from the keyboard, a request to end, or the loss of the terminal gives the
/// console its own colours back, tells what is left on the disk, and ends the process with code 128 + signal
/// (130 for an interrupt). Work in progress is not finished. Signals that the caller has chosen to ignore
/// stay ignored, as that of the terminal does under nohup.
void end_on_interrupt();

}  // namespace velmora
