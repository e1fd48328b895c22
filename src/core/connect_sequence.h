// The connect sequence: reads the settings of the office into the session, opens the connections
// that they ask for and brings the database up to this version, step by step in one fixed order.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

class Connection;
class Session;
class Desk;

// Runs the steps on the open main connection and calls `progress` with the name of each before it
// begins.
//
// A failing statement or a connection that does not open throws SqlError and ends the start; what
// stands by then stays, and the next start goes on from there (a patch says in schema_patches.h how
// far it comes back).
void RunConnectSequence(Session& session, Desk& desk,
                        const std::function<void(std::string_view step)>& progress);

// What this program answers to an office that a newer one has patched: it does not know what it
// would write into. Nothing where it knows the office's newest patch, or no program has named one.
std::optional<Caption> TooOldFor(Connection& main);

// The names of the steps in their order.
std::vector<std::string_view> ConnectSteps();

}  // namespace kaunter
