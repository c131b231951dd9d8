// The engine behind one line of JSON: a request per line on standard input, a reply per line on standard
// output. It holds no logic of its own: every operation is a direct call of the engine.
#include "tools/probe/Probe.h"

#include "MailCore/Model/MailError.h"

#include <iostream>
#include <system_error>

namespace Probe {
namespace {

const Operations& operations() {
    static const Operations all = [] {
        Operations table;
        for (const auto room : {sourceOperations, outlookOperations, decodingOperations, renderingOperations,
                                searchOperations, linkOperations})
            table.merge(room());
        return table;
    }();
    return all;
}

Json answer(const std::string& line) {
    try {
        const Json request = Json::parse(line);
        if (!request.is_object()) throw UsageError("not an object");
        const auto operation = operations().find(text(request, "op"));
        if (operation == operations().end()) throw UsageError("unknown operation");
        return {{"ok", operation->second(request)}};
    } catch (const MailError& error) {
        return {{"error", error.name()}};
    } catch (const std::system_error& error) {
        return {{"error", std::string("platform: ") + error.what()}};
    } catch (const UsageError& error) {
        return {{"error", std::string("usage: ") + error.what()}};
    } catch (const Json::exception& error) {
        return {{"error", std::string("usage: ") + error.what()}};
    } catch (const std::exception& error) {
        return {{"error", std::string("platform: ") + error.what()}};
    }
}

} // namespace
} // namespace Probe

int main() {
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
        // A path may hold bytes that are no text; JSON may not.
        std::cout << Probe::answer(line).dump(-1, ' ', false, Probe::Json::error_handler_t::replace) << '\n'
                  << std::flush;
    }
}
