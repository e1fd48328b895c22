// What the program does while a statement takes long: the desktop goes on painting its windows.
#pragma once

#include <functional>

namespace kaunter {

// Called again and again while a statement of the embedded engine runs, some hundred times a
// second; empty for nothing. It must not throw, and a statement sent from within is a fault
// (std::logic_error): the one that is running would be disturbed.
void SetWhileWaiting(std::function<void()> act);

// True within the act.
bool IsWaiting();

// The engine's side.
void ActWhileWaiting() noexcept;

}  // namespace kaunter
