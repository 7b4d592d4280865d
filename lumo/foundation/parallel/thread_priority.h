#pragma once

namespace lumo {

/// Sets the priority of the calling thread under the real-time class: 0 leaves the thread alone, a negative
/// value takes the class's lowest priority, a positive one its highest. The first failure of the process is
/// told as a warning, later ones are silent; failing is never an error.
void set_thread_priority(int priority);

}  // namespace lumo
