#include "TesselMail/Model/ArchiveWork.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/ReplacingFile.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Search/MailSearch.h"
#include "MailCore/Sources/Decoding.h"
#include "MailCore/Sources/MailReader.h"
#include "TesselMail/Model/ApplicationID.h"
#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Platform/SerialQueue.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace TesselMail::ArchiveWork {
namespace {

using MailCore::MailError;

constexpr std::int64_t exportChunk = 131'072;

// The queues, each made when it is first used.
class Queues {
public:
    SerialQueue& indexing() { return queue(indexing_, ".index"); }
    SerialQueue& reading() { return queue(reading_, ".read"); }
    SerialQueue& searching() { return queue(searching_, ".search"); }

    void finish() {
        indexing_.reset();
        reading_.reset();
        searching_.reset();
    }

private:
    static SerialQueue& queue(std::optional<SerialQueue>& place, const char* name) {
        if (!place) place.emplace(std::string(applicationID) + name);
        return *place;
    }

    std::optional<SerialQueue> indexing_;
    std::optional<SerialQueue> reading_;
    std::optional<SerialQueue> searching_;
};

Queues& queues() {
    static Queues instance;
    return instance;
}

// Runs `work` on a queue and resumes the task that awaits the result. What `work` holds is released on the
// interface thread, before the waiting task goes on. If the thread of the queue cannot start, the work has
// failed with that error.
template <typename Value, typename Work>
Later<Value> on(SerialQueue& (Queues::*queue)(), Work work) {
    return Later<Value>([queue, work = std::make_shared<Work>(std::move(work))](auto finish) {
        (queues().*queue)().submit([work, finish = std::move(finish)]() mutable {
            auto outcome = std::make_shared<Outcome<Value>>(Outcome<Value>::of(*work));
            InterfaceThread::post(
                [work = std::move(work), finish = std::move(finish), outcome = std::move(outcome)]() mutable {
                    work.reset();
                    finish(std::move(*outcome));
                });
        });
    });
}

void check(const CancellationToken& token) {
    if (token->isStopped()) throw MailError(MailError::cancelled);
}

ReadMessage readable(MailCore::MailMessage message) {
    auto shared = std::make_shared<const MailCore::MailMessage>(std::move(message));
    auto rendered = std::make_shared<const MailCore::RenderedMail>(MailCore::SafeHTML::render(*shared));
    return {std::move(shared), std::move(rendered)};
}

MailCore::MailMessage attachedMessage(const MailCore::MailAttachment& attachment,
                                      const CancellationToken& token) {
    if (!attachment.embedded.empty()) return attachment.embedded.front();
    const auto format = MailCore::SourceKinds::formatOfAttachment(attachment.type, attachment.name);
    return MailCore::MailReader::decoded(attachment.bytes, format.value_or(MailCore::MessageFormat::mime),
                                         cancelledBy(token));
}

} // namespace

Later<MailCore::MailCollection> index(MailFileScope scope, MailCore::IndexLimits limits,
                                      CancellationToken token, std::shared_ptr<IndexDelivery> delivery) {
    return on<MailCore::MailCollection>(&Queues::indexing, [=] {
        return MailCore::MailReader::collection(
            scope->url, cancelledBy(token), [](std::size_t) {}, limits,
            [&delivery](std::span<const MailCore::SharedEntry> batch) { delivery->push(batch); });
    });
}

Later<bool> isCurrent(MailCore::SharedEntry proof, MailFileScope scope, CancellationToken token) {
    return on<bool>(&Queues::indexing, [proof, scope, token] {
        try {
            return proof && !token->isStopped() && MailCore::MailReader::isCurrent(*proof);
        } catch (const std::exception&) {
            return false; // what cannot be looked at is indexed again, which tells why
        }
    });
}

Later<ReadMessage> read(MailCore::SharedEntry entry, MailFileScope scope, CancellationToken token) {
    return on<ReadMessage>(&Queues::reading, [entry, scope, token] {
        check(token);
        auto message = MailCore::MailReader::message(*entry, cancelledBy(token));
        check(token);
        auto result = readable(std::move(message));
        check(token);
        return result;
    });
}

Later<ReadMessage> attachment(std::shared_ptr<const MailCore::MailAttachment> attachment,
                              CancellationToken token) {
    return on<ReadMessage>(&Queues::reading, [attachment, token] {
        check(token);
        auto result = readable(attachedMessage(*attachment, token));
        check(token);
        return result;
    });
}

Later<Done> exportOriginal(MailCore::SharedEntry entry, MailCore::URL destination, MailFileScope scope,
                           CancellationToken token) {
    return on<Done>(&Queues::reading, [entry, destination, scope, token] {
        MailCore::MailReader::exportOriginal(*entry, destination, cancelledBy(token), exportChunk);
        return Done();
    });
}

Later<Done> write(std::shared_ptr<const MailCore::Bytes> bytes, MailCore::URL destination) {
    return on<Done>(&Queues::reading, [bytes, destination] {
        MailCore::ReplacingFile file(destination.path(), MailCore::ReplacingFile::Access::everybody);
        file.write(*bytes);
        file.replace();
        return Done();
    });
}

Later<SearchResults> search(MailCore::EntryList entries, std::string query, bool newestFirst,
                            std::vector<MailFileScope> scopes, CancellationToken token) {
    // The list is handed on, not copied: the work runs once.
    const auto input = std::make_shared<MailCore::EntryList>(std::move(entries));
    return on<SearchResults>(
        &Queues::searching,
        [input, query = std::move(query), newestFirst, scopes = std::move(scopes), token]() -> SearchResults {
            check(token);
            const MailCore::EntryList searched = std::move(*input);
            MailCore::MailSearch::Results found =
                MailCore::MailSearch::scan(searched, query, cancelledBy(token));
            check(token);
            auto ordered = std::make_shared<const MailCore::EntryList>(
                MailCore::MailSearch::ordered(std::move(found.entries), newestFirst));
            check(token);
            return {std::move(ordered), found.unreadable};
        });
}

void release(SharedList list) {
    // By way of the interface thread, so that its views, which hear of the change in this turn, let go first.
    InterfaceThread::post([list = std::move(list)]() mutable {
        try {
            queues().searching().submit([list = std::move(list)]() mutable { list.reset(); });
        } catch (const std::exception&) {
            // No thread can be started: the list goes here and now.
        }
    });
}

void finish() {
    queues().finish();
}

} // namespace TesselMail::ArchiveWork
