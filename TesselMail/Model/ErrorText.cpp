#include "TesselMail/Model/ErrorText.h"

#include "MailCore/Model/MailError.h"

namespace TesselMail {

using MailCore::MailError;

const Phrase& errorText(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const MailError& mailError) {
        switch (mailError.which()) {
        case MailError::tooLarge: return Texts::tooLarge;
        case MailError::malformed: return Texts::malformed;
        case MailError::unsupported: return Texts::unsupported;
        case MailError::tooMany: return Texts::tooMany;
        case MailError::cancelled: return Texts::cancelled;
        case MailError::sourceChanged: return Texts::sourceChanged;
        case MailError::unsafeDestination: return Texts::unsafeDestination;
        }
    } catch (...) {
        // Whatever the system reports is said in the one general sentence.
    }
    return Texts::fileFailed;
}

} // namespace TesselMail
