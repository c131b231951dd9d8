// One header value: its parameters and the file name in it.
#include "MailCore/MIME/Parameters.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view value = charsOf(exact);
    checkText(MIME::extendedParameter(value));
    check(MIME::percentBytes(value).size() <= value.size());
    const MIME::Parameters parameters = MIME::parameters(value);
    check(parameters.size() <= 256);
    for (const auto& [key, found] : parameters) {
        checkText(found);
        check(!key.empty() && MIME::parameter(key, value) == found);
    }
    const Header headers[] = {{"Content-Disposition", std::string(value)}};
    const std::string name = MIME::filename(headers);
    checkText(name);
    check(name.find_first_of("/\\\n") == std::string::npos && name.size() <= 220);
    return 0;
}
