#pragma once

#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/MailMessage.h"

#include <vector>

namespace MailCore::MIME {

struct Split {
    std::vector<Header> headers;
    ByteView body; // points into the entity
};

Split split(ByteView entity);
MailMessage parse(ByteView data, const Cancelled& cancelled);
void part(ByteView entity, int depth, int& count, std::int64_t& budget, MailMessage& message,
          const Cancelled& cancelled);

} // namespace MailCore::MIME
