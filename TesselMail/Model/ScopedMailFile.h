#pragma once

#include "MailCore/Platform/URL.h"

#include <memory>

namespace TesselMail {

/// The right to read one file or folder the user chose, held by the model while it is open and by every piece
/// of work that reads it. Here files stay readable by themselves, so it is only the address; where a sandbox
/// lends them, what is lent is given back by the destructor of this, when nobody reads the file any more.
struct ScopedMailFile {
    MailCore::URL url;
};

using MailFileScope = std::shared_ptr<const ScopedMailFile>;

} // namespace TesselMail
