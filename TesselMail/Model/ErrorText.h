#pragma once

#include "TesselMail/Model/Texts.h"

#include <exception>

namespace TesselMail {

/// One sentence for any failure: that of the case of a MailError, or the general one.
const Phrase& errorText(const std::exception_ptr& error);

} // namespace TesselMail
