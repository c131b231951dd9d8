// Text cut into characters: wherever the short ways end, they agree with ICU reading all of it at once.
#include "MailCore/Platform/Characters.h"

#include "fuzz/Support.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <memory>

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText* const whole =
        utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator->setText(whole, status);
    check(U_SUCCESS(status));
    std::size_t start = 0;
    for (std::size_t count = 1; count < 200; ++count) {
        const std::int32_t end = iterator->next();
        if (end == icu::BreakIterator::DONE) break;
        const auto place = static_cast<std::size_t>(end);
        check(Text::prefix(text, count).size() == place);
        check(Text::firstCharacter(text.substr(start)) == place - start || start > 0);
        start = place;
    }
    utext_close(whole);
    return 0;
}
