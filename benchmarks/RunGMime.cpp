// gmime-run index|decode FILE, gmime-run search FILE QUERY: the same work done with GMime, printed alike. Its
// search decodes the texts and looks for the query with ASCII case ignored; tags are not taken out of HTML.

#include <gmime/gmime.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/resource.h>

namespace {

std::size_t decodedBytes(GMimeObject* object) {
    if (GMIME_IS_MULTIPART(object)) {
        std::size_t bytes = 0;
        const int count = g_mime_multipart_get_count(GMIME_MULTIPART(object));
        for (int index = 0; index < count; ++index)
            bytes += decodedBytes(g_mime_multipart_get_part(GMIME_MULTIPART(object), index));
        return bytes;
    }
    if (!GMIME_IS_PART(object)) return 0;
    if (GMIME_IS_TEXT_PART(object)) {
        char* const text = g_mime_text_part_get_text(GMIME_TEXT_PART(object));
        const std::size_t bytes = text ? std::string_view(text).size() : 0;
        g_free(text);
        return bytes;
    }
    GMimeDataWrapper* const content = g_mime_part_get_content(GMIME_PART(object));
    if (!content) return 0;
    GMimeStream* const memory = g_mime_stream_mem_new();
    const gssize written = g_mime_data_wrapper_write_to_stream(content, memory);
    g_object_unref(memory);
    return written > 0 ? static_cast<std::size_t>(written) : 0;
}

bool textContains(GMimeObject* object, const char* query) {
    if (GMIME_IS_MULTIPART(object)) {
        const int count = g_mime_multipart_get_count(GMIME_MULTIPART(object));
        for (int index = 0; index < count; ++index) {
            if (textContains(g_mime_multipart_get_part(GMIME_MULTIPART(object), index), query)) return true;
        }
        return false;
    }
    if (!GMIME_IS_TEXT_PART(object)) return false;
    char* const text = g_mime_text_part_get_text(GMIME_TEXT_PART(object));
    const bool found = text && ::strcasestr(text, query) != nullptr;
    g_free(text);
    return found;
}

/// What an index needs of a message: the decoded texts and the date.
std::size_t indexedBytes(GMimeMessage* message) {
    std::size_t bytes = 0;
    if (const char* subject = g_mime_message_get_subject(message)) bytes += std::string_view(subject).size();
    for (InternetAddressList* list : {g_mime_message_get_from(message), g_mime_message_get_to(message)}) {
        char* const text = list ? internet_address_list_to_string(list, nullptr, FALSE) : nullptr;
        bytes += text ? std::string_view(text).size() : 0;
        g_free(text);
    }
    if (GDateTime* date = g_mime_message_get_date(message)) bytes += g_date_time_to_unix(date) != 0;
    return bytes;
}

} // namespace

int main(int count, char** arguments) {
    const std::string_view work(count > 1 ? arguments[1] : "");
    if (count != (work == "search" ? 4 : 3)) return 2;
    g_mime_init();
    const auto begin = std::chrono::steady_clock::now();
    GMimeStream* const stream = g_mime_stream_fs_open(arguments[2], 0, 0, nullptr);
    GMimeParser* const parser = g_mime_parser_new_with_stream(stream);
    g_mime_parser_set_format(parser, GMIME_FORMAT_MBOX);
    g_mime_parser_set_persist_stream(parser, TRUE);
    std::size_t messages = 0;
    std::size_t bytes = 0;
    while (!g_mime_parser_eos(parser)) {
        GMimeMessage* const message = g_mime_parser_construct_message(parser, nullptr);
        if (!message) break;
        ++messages;
        if (work == "search") {
            bytes += textContains(g_mime_message_get_mime_part(message), arguments[3]);
        } else {
            bytes += indexedBytes(message);
        }
        if (work == "decode") bytes += decodedBytes(g_mime_message_get_mime_part(message));
        g_object_unref(message);
    }
    g_object_unref(parser);
    g_object_unref(stream);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("%.3f %zu %ld %zu\n", seconds.count(), messages, usage.ru_maxrss, bytes);
}
