#pragma once

#include <stdexcept>

// A mistake in how the renderer was called; reported with a pointer to --help.
struct UsageError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// Anything else that stops the work: a missing or unreadable input, an output
// that may not be replaced, a failed write.
struct RenderError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};
