#pragma once

#include <functional>

// Runs the event loop until condition holds or timeoutMs passes; returns the condition's last
// value. Window tests wait with this, never with blind sleeps.
bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 10000);
