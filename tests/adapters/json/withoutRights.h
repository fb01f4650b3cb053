#pragma once

#include <functional>

/// Run checks in a process of its own that has no more rights than a stranger; the superuser has all of them
/// otherwise. Tells whether all checks have held; those that haven't are reported as ever.
bool holdsWithoutRights(const std::function<void()>& checks);
