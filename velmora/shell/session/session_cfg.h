/// Sessions as configuration objects.
#pragma once

#include "velmora/shell/session/normal_float_session.h"

namespace velmora {

/// The session that a `CustomCompute` object describes. Keys that are unknown are ignored.
/// InvalidParametersException "Invalid Mode: " and the mode, "Invalid constant token."; ParseException for
/// missing keys and values of the wrong kind.
std::unique_ptr<NormalFloatSession> load_session(const lumo::DetectedHardware& hardware,
                                                 const lumo::Config::Object& custom_compute);

/// The text of a `.cfg` file that load_session() reads back to the same session.
std::string session_text(const NormalFloatSession& session);
/// Writes that text. InvalidParametersException "No file name was given." for a path without one,
/// FileIO::FileException when the file cannot be written.
void save_session(const NormalFloatSession& session, const std::string& path);

}  // namespace velmora
