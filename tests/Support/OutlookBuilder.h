#pragma once

#include "tests/Support/ContainerBuilder.h"

#include <fmt/format.h>

#include <utility>

namespace MailCore::Testing {

/// Builds an Outlook message file (MS-OXMSG), property by property:
/// `OutlookMail().subject("Minutes").plain("Hello").recipient("Ana", "ana@tessel.example")`.
/// The same class makes messages, recipients and attachments, which all are storages with properties;
/// identifiers and tags are those of MS-OXPROPS. Setting a property again replaces it.
class OutlookMail {
public:
    /// A string property in Unicode.
    OutlookMail& text(std::uint16_t id, std::string_view text) { return units(id, utf16(text)); }
    /// The same as bytes, which need not be Unicode.
    OutlookMail& units(std::uint16_t id, std::string_view bytes) {
        return property(id, 0x001F, std::string(bytes));
    }
    /// A string property as bytes of a code page.
    OutlookMail& narrow(std::uint16_t id, std::string_view bytes) {
        return property(id, 0x001E, std::string(bytes));
    }
    OutlookMail& binary(std::uint16_t id, std::string_view bytes) {
        return property(id, 0x0102, std::string(bytes));
    }
    /// A property that is all in its record, of 64 bits; the last of a tag counts, and both are written.
    OutlookMail& fixed(std::uint32_t tag, std::uint64_t value) {
        records_ += littleEndian(tag, 4) + littleEndian(6, 4) + littleEndian(value, 8);
        return *this;
    }
    /// The whole property stream, instead of the one that is due.
    OutlookMail& propertyStream(std::string_view bytes) {
        propertyStream_ = bytes;
        return *this;
    }
    OutlookMail& withoutPropertyStream() {
        hasPropertyStream_ = false;
        return *this;
    }

    // Of messages.
    OutlookMail& subject(std::string_view value) { return text(0x0037, value); }
    OutlookMail& from(std::string_view name, std::string_view address) {
        if (!name.empty()) text(0x0C1A, name);
        if (!address.empty()) text(0x5D01, address);
        return *this;
    }
    OutlookMail& to(std::string_view display) { return text(0x0E04, display); }
    OutlookMail& cc(std::string_view display) { return text(0x0E03, display); }
    OutlookMail& plain(std::string_view value) { return text(0x1000, value); }
    OutlookMail& html(std::string_view bytes) { return binary(0x1013, bytes); }
    OutlookMail& transport(std::string_view headers) { return text(0x007D, headers); }
    OutlookMail& codepage(std::uint32_t number) { return fixed(0x3FFD'0003, number); }
    OutlookMail& internetCodepage(std::uint32_t number) { return fixed(0x3FDE'0003, number); }
    OutlookMail& submitted(std::uint64_t fileTime) { return fixed(0x0039'0040, fileTime); }
    OutlookMail& delivered(std::uint64_t fileTime) { return fixed(0x0E06'0040, fileTime); }

    /// Kind 1 is To, 2 is Cc, 3 is Bcc.
    OutlookMail& recipient(std::string_view name, std::string_view address, std::uint32_t kind = 1) {
        OutlookMail entry;
        entry.fixed(0x0C15'0003, kind);
        if (!name.empty()) entry.text(0x3001, name);
        if (!address.empty()) entry.text(0x39FE, address);
        return recipient(entry);
    }
    OutlookMail& recipient(const OutlookMail& entry) {
        recipients_.push_back(entry);
        return *this;
    }
    OutlookMail& file(std::string_view name, std::string_view mediaType, std::string_view content,
                      std::string_view contentID = {}) {
        OutlookMail file;
        file.fixed(0x3705'0003, 1).text(0x3707, name).text(0x370E, mediaType).binary(0x3701, content);
        if (!contentID.empty()) file.text(0x3712, contentID);
        return attachment(file);
    }
    OutlookMail& attachedMessage(const OutlookMail& message, std::string_view name = {}) {
        OutlookMail holder;
        holder.fixed(0x3705'0003, 5).embedded(message);
        if (!name.empty()) holder.text(0x3707, name);
        return attachment(holder);
    }
    OutlookMail& attachment(const OutlookMail& entry) {
        attachments_.push_back(entry);
        return *this;
    }
    /// Of an attachment: the message that it is.
    OutlookMail& embedded(const OutlookMail& message) {
        embedded_.assign(1, message);
        return *this;
    }

    /// The container with all entries, for damage of its own kind.
    Container container() const {
        Container container;
        container.classID(std::string("\x0B\x0D\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16));
        // The table of named properties, with none.
        for (const std::string_view name : {"00020102", "00030102", "00040102"})
            container.stream(fmt::format("__nameid_version1.0/__substg1.0_{}", name), "");
        write(container, "", 32);
        return container;
    }
    std::string string() const { return container().file().data; }
    Bytes bytes() const { return container().file().bytes(); }
    operator Bytes() const { return bytes(); }

private:
    OutlookMail& property(std::uint16_t id, std::uint16_t type, std::string content) {
        streams_[std::pair(id, type)] = std::move(content);
        return *this;
    }

    void write(Container& container, const std::string& prefix, std::size_t headerSize) const {
        std::string header(8, '\0');
        for (int round = 0; round < 2; ++round) // the next numbers, then the counts
            header += littleEndian(recipients_.size(), 4) + littleEndian(attachments_.size(), 4);
        header.resize(headerSize);
        std::string properties = header + records_;
        for (const auto& [key, content] : streams_) {
            const auto [id, type] = key;
            container.stream(fmt::format("{}__substg1.0_{:04X}{:04X}", prefix, id, type), content);
            const std::size_t terminator = type == 0x001F ? 2 : type == 0x001E ? 1 : 0;
            properties += record(id, type, content.size() + terminator);
        }
        if (!embedded_.empty()) properties += record(0x3701, 0x000D, 0x1'FFFF'FFFF);
        if (hasPropertyStream_) {
            container.stream(prefix + "__properties_version1.0",
                             propertyStream_.empty() ? properties : propertyStream_);
        }
        for (std::size_t index = 0; index < recipients_.size(); ++index) {
            const std::string storage = fmt::format("{}__recip_version1.0_#{:08X}", prefix, index);
            container.storage(storage);
            recipients_[index].write(container, storage + "/", 8);
        }
        for (std::size_t index = 0; index < attachments_.size(); ++index) {
            const std::string storage = fmt::format("{}__attach_version1.0_#{:08X}", prefix, index);
            container.storage(storage);
            attachments_[index].write(container, storage + "/", 8);
        }
        if (!embedded_.empty()) {
            container.storage(prefix + "__substg1.0_3701000D");
            embedded_.front().write(container, prefix + "__substg1.0_3701000D/", 24);
        }
    }

    static std::string record(std::uint16_t id, std::uint16_t type, std::uint64_t value) {
        return littleEndian(type, 2) + littleEndian(id, 2) + littleEndian(6, 4) + littleEndian(value, 8);
    }

    std::map<std::pair<std::uint16_t, std::uint16_t>, std::string> streams_; // by identifier and type
    std::string records_;
    std::string propertyStream_;
    bool hasPropertyStream_ = true;
    std::vector<OutlookMail> recipients_;
    std::vector<OutlookMail> attachments_;
    std::vector<OutlookMail> embedded_; // none or one
};

} // namespace MailCore::Testing
