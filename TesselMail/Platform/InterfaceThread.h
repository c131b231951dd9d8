#pragma once

#include "TesselMail/Platform/Task.h"

#include <chrono>
#include <functional>

/// The thread that runs the default GLib main context and owns all application state.
namespace TesselMail::InterfaceThread {

/// Runs `work` on the interface thread, after what was posted before it and never from inside this call.
/// Any thread may post. `work` must not throw.
void post(std::function<void()> work);

/// Runs `work` on the interface thread once `delay` has passed. Called on the interface thread.
void postAfter(std::chrono::milliseconds delay, std::function<void()> work);

/// Goes on once `delay` has passed.
Later<Done> pause(std::chrono::milliseconds delay);

} // namespace TesselMail::InterfaceThread
