#pragma once

#include <functional>

namespace MailCore {

/// Asked again and again by long work; true makes it stop with MailError::cancelled. Must be cheap and
/// callable from the thread that works.
using Cancelled = std::function<bool()>;

/// The answer of work that nobody stops.
inline const Cancelled never = [] { return false; };

} // namespace MailCore
